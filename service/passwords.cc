// libsodium password hashing: see passwords.h.
#include "passwords.h"

#include <sodium.h>

#include <stdexcept>

namespace service {

PasswordLimits PasswordLimits::interactive() {
    return {crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE};
}

PasswordLimits PasswordLimits::moderate() {
    return {crypto_pwhash_OPSLIMIT_MODERATE, crypto_pwhash_MEMLIMIT_MODERATE};
}

PasswordLimits PasswordLimits::minimum() {
    return {crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN};
}

bool initPasswords() { return sodium_init() >= 0; }

std::string hashPassword(const std::string& password, const PasswordLimits& limits) {
    char hash[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str(hash, password.data(), password.size(), limits.opsLimit,
                          limits.memLimit) != 0)
        throw std::runtime_error("password hashing ran out of memory");
    return hash;
}

bool verifyPassword(const std::string& hash, const std::string& password) {
    if (hash.empty() || hash.size() >= crypto_pwhash_STRBYTES) return false;
    return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

} // namespace service
