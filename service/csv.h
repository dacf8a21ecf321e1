// A small reader for the demo's CSV files: a header row naming the columns,
// fields separated by commas, double quotes around fields that hold commas
// or quotes (a quote inside is doubled), lines starting with "#" ignored.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

namespace service {

struct CsvError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Files and fields past these sizes are refused with a CsvError.
constexpr size_t kMaxCsvFileBytes = 16 * 1024 * 1024;
constexpr size_t kMaxCsvFieldBytes = 4096;

class CsvTable {
public:
    // Parses `text`; `name` appears in error messages ("events.csv line 4: ...").
    // More than `maxRows` rows is refused with a CsvError. A row whose field
    // count differs from the header's is refused too, unless `padRows`: then
    // it is cut or padded with empty fields (exports write trailing extras).
    CsvTable(const std::string& text, const std::string& name, size_t maxRows = SIZE_MAX,
             bool padRows = false);

    size_t rows() const { return rows_.size(); }
    // The field of `column` in `row`; throws CsvError naming the line when
    // the column does not exist.
    const std::string& field(size_t row, const std::string& column) const;
    // Same, empty when the column is absent from the file (optional columns).
    std::string optionalField(size_t row, const std::string& column) const;
    // "name line N" for error messages about a row's values.
    std::string where(size_t row) const;
    // The column names in file order.
    const std::vector<std::string>& header() const { return header_; }

private:
    std::string name_;
    std::vector<std::string> header_;
    std::unordered_map<std::string, size_t> columns_;
    std::vector<std::vector<std::string>> rows_;
    std::vector<size_t> lines_;
};

// Reads a whole file, at most `limit` bytes; throws CsvError otherwise.
std::string readFile(const std::string& path, size_t limit = kMaxCsvFileBytes);

} // namespace service
