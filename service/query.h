// The plug-in's query strings. It escapes nothing but blanks (sent as "+"),
// so "%" is an ordinary character here, and a value may hold a raw "&" (an
// event address with its own parameters). Splitting at every "&" would cut
// such a value, so a piece whose key is not one the route expects is taken
// as the continuation of the value before it.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace service {

// Longest value the service accepts; the plug-in's whole request is at most
// 1023 characters, so this leaves room and still bounds every stored text.
constexpr size_t kMaxValueLength = 1024;

class Query {
public:
    enum class Problem { None, ValueTooLong, ControlCharacter };

    // Parses `raw` (the text after "?") with the keys a route expects,
    // compared without regard to case. Repeated keys keep the first value.
    Query(const std::string& raw, const std::vector<std::string>& keys);

    Problem problem() const { return problem_; }
    bool has(const std::string& key) const;
    // The value, "+" turned to blanks; empty when the key is absent.
    const std::string& get(const std::string& key) const;
    // The first expected key that is absent, or empty when all are there.
    std::string firstMissing(const std::vector<std::string>& keys) const;

private:
    Problem problem_ = Problem::None;
    std::unordered_map<std::string, std::string> values_; // lower-case key -> value
};

// The raw query of a request target ("/path?query"): empty without "?".
std::string rawQuery(const std::string& target);

} // namespace service
