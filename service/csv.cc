// CSV reading: see csv.h.
#include "csv.h"

#include <fstream>

namespace service {
namespace {

// Splits one record starting at `pos`; moves `pos` past its line end and
// counts the line feeds crossed (a quoted field may span lines).
std::vector<std::string> readRecord(const std::string& text, size_t& pos, size_t& line,
                                    const std::string& name) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    while (pos < text.size()) {
        char c = text[pos++];
        if (quoted) {
            if (c == '"' && pos < text.size() && text[pos] == '"') {
                fields.back() += '"';
                ++pos;
            } else if (c == '"') {
                quoted = false;
            } else {
                if (c == '\n') ++line;
                fields.back() += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            fields.emplace_back();
        } else if (c == '\n') {
            ++line;
            break;
        } else if (c != '\r') {
            fields.back() += c;
        }
        if (fields.back().size() > kMaxCsvFieldBytes)
            throw CsvError(name + " line " + std::to_string(line) + ": field too long");
    }
    if (quoted) throw CsvError(name + ": quote not closed before the end of the file");
    return fields;
}

} // namespace

CsvTable::CsvTable(const std::string& text, const std::string& name, size_t maxRows,
                   bool padRows)
    : name_(name) {
    size_t pos = 0, line = 1;
    bool header = true;
    while (pos < text.size()) {
        size_t recordLine = line;
        if (text[pos] == '#' || text[pos] == '\n' || text[pos] == '\r') {
            size_t end = text.find('\n', pos);
            pos = end == std::string::npos ? text.size() : end + 1;
            ++line;
            continue;
        }
        std::vector<std::string> fields = readRecord(text, pos, line, name);
        if (header) {
            header_ = fields;
            for (size_t i = 0; i < fields.size(); ++i) columns_[fields[i]] = i;
            header = false;
            continue;
        }
        if (padRows) fields.resize(header_.size());
        if (fields.size() != header_.size())
            throw CsvError(name + " line " + std::to_string(recordLine) + ": " +
                           std::to_string(fields.size()) + " fields, the header has " +
                           std::to_string(header_.size()));
        if (rows_.size() >= maxRows)
            throw CsvError(name + ": more than " + std::to_string(maxRows) + " rows");
        rows_.push_back(std::move(fields));
        lines_.push_back(recordLine);
    }
}

const std::string& CsvTable::field(size_t row, const std::string& column) const {
    auto found = columns_.find(column);
    if (found == columns_.end()) throw CsvError(name_ + ": no column '" + column + "'");
    return rows_.at(row)[found->second];
}

std::string CsvTable::optionalField(size_t row, const std::string& column) const {
    auto found = columns_.find(column);
    return found == columns_.end() ? std::string() : rows_.at(row)[found->second];
}

std::string CsvTable::where(size_t row) const {
    return name_ + " line " + std::to_string(lines_.at(row));
}

std::string readFile(const std::string& path, size_t limit) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw CsvError("cannot open " + path);
    std::string text;
    char buffer[65536];
    while (file.read(buffer, sizeof buffer) || file.gcount() > 0) {
        text.append(buffer, static_cast<size_t>(file.gcount()));
        if (text.size() > limit) throw CsvError(path + " is larger than the limit of " +
                                                std::to_string(limit) + " bytes");
    }
    return text;
}

} // namespace service
