// Phone-account passwords are kept only as libsodium crypto_pwhash_str texts
// (Argon2id with a random salt). The hash is slow on purpose; the limits are
// configurable so tests and sanitizer builds can use the library's minimum.
//
// Thread contract: any thread; both calls block for the hashing time.
#pragma once

#include <cstddef>
#include <string>

namespace service {

struct PasswordLimits {
    unsigned long long opsLimit;
    size_t memLimit;

    static PasswordLimits interactive();
    static PasswordLimits moderate();
    static PasswordLimits minimum(); // for tests only
};

// Prepares libsodium; true when usable. Safe to call more than once.
bool initPasswords();

// The salted hash text; throws std::runtime_error when libsodium cannot
// allocate the memory the limits ask for.
std::string hashPassword(const std::string& password, const PasswordLimits& limits);
bool verifyPassword(const std::string& hash, const std::string& password);

} // namespace service
