// Pure text helpers: see text.h.
#include "text.h"

#include <cerrno>
#include <cstdlib>

namespace service {

std::string nameKey(const std::string& text) {
    std::string key;
    key.reserve(text.size());
    bool pendingBlank = false;
    for (char c : text) {
        if (c == ' ' || c == '\t') {
            pendingBlank = !key.empty();
            continue;
        }
        if (pendingBlank) key += ' ';
        pendingBlank = false;
        key += (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return key;
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> pieces;
    size_t start = 0;
    for (;;) {
        size_t found = text.find(separator, start);
        if (found == std::string::npos) {
            pieces.push_back(text.substr(start));
            return pieces;
        }
        pieces.push_back(text.substr(start, found - start));
        start = found + separator.size();
    }
}

std::string join(const std::vector<std::string>& pieces, const std::string& separator) {
    std::string text;
    for (size_t i = 0; i < pieces.size(); ++i) {
        if (i) text += separator;
        text += pieces[i];
    }
    return text;
}

std::string tagSafe(const std::string& text) {
    std::string safe;
    safe.reserve(text.size());
    for (char c : text) {
        if (c == '<' || c == '>') continue;
        safe += (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) ? ' ' : c;
    }
    return safe;
}

bool isPlainName(const std::string& text) {
    for (char c : text) {
        bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                     c == ' ';
        if (!plain) return false;
    }
    return true;
}

bool parseInt(const std::string& text, long minimum, long maximum, long& value) {
    if (text.empty() || text.size() > 12) return false;
    char* end = nullptr;
    errno = 0;
    long parsed = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || end != text.c_str() + text.size()) return false;
    if (parsed < minimum || parsed > maximum) return false;
    value = parsed;
    return true;
}

} // namespace service
