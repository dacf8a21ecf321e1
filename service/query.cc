// Query parsing: see query.h.
#include "query.h"

#include "text.h"

namespace service {
namespace {

std::string lower(const std::string& text) {
    std::string result = text;
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

} // namespace

Query::Query(const std::string& raw, const std::vector<std::string>& keys) {
    std::vector<std::string> known;
    known.reserve(keys.size());
    for (const std::string& key : keys) known.push_back(lower(key));

    std::string* current = nullptr; // value that continuation pieces extend
    bool skipping = false;          // inside a repeated key: ignore its pieces
    for (const std::string& piece : split(raw, "&")) {
        size_t equals = piece.find('=');
        std::string key = lower(piece.substr(0, equals));
        bool expected = equals != std::string::npos;
        if (expected) {
            expected = false;
            for (const std::string& candidate : known) expected = expected || candidate == key;
        }
        if (expected) {
            auto inserted = values_.emplace(key, piece.substr(equals + 1));
            skipping = !inserted.second;
            current = skipping ? nullptr : &inserted.first->second;
        } else if (current && !skipping) {
            *current += "&" + piece;
        }
    }
    for (auto& entry : values_) {
        std::string& value = entry.second;
        if (value.size() > kMaxValueLength) problem_ = Problem::ValueTooLong;
        for (char& c : value) {
            if (c == '+') c = ' ';
            else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
                problem_ = Problem::ControlCharacter;
        }
    }
}

bool Query::has(const std::string& key) const { return values_.count(lower(key)) != 0; }

const std::string& Query::get(const std::string& key) const {
    static const std::string empty;
    auto found = values_.find(lower(key));
    return found == values_.end() ? empty : found->second;
}

std::string Query::firstMissing(const std::vector<std::string>& keys) const {
    for (const std::string& key : keys)
        if (!has(key)) return key;
    return std::string();
}

std::string rawQuery(const std::string& target) {
    size_t mark = target.find('?');
    return mark == std::string::npos ? std::string() : target.substr(mark + 1);
}

} // namespace service
