// The support folder and its two small binary files: the installation
// identifier "sbn" and the password file "pd".
//
//   sbn: 39 bytes, the installation's UUID as 36 upper-case characters, a
//        NUL and two bytes without meaning. Made once, read on every start.
//   pd:  64 bytes, the password as NUL-terminated text (at most 63
//        characters) in a 64-byte buffer.
// Both are created with mode 0600: they identify and authenticate the user.
//
// Threads: host thread (start-up and the preferences dialog).
#pragma once

#include <string>

#include "library/support_names.h"


// The identifier kept in `folder`'s "sbn". When the file does not open, or
// holds no text at all, a new UUID is made and written there (a failed write
// is said once and still returns the new identifier). A file that exists but
// cannot be read is never replaced: a new identifier is used from memory.
std::string readOrCreateInstallationId(const std::string& folder);

// The password in `folder`'s "pd": true with the text before the first NUL
// of its first 64 bytes (at most 63 characters); false when it does not open.
[[nodiscard]] bool readPasswordFile(const std::string& folder, std::string* password);

// Where the preferences dialog writes the password: the support folder path
// as it would be typed in a shell, with a backslash before the blank. The
// write therefore lands in a folder whose name holds the backslash (and does
// nothing when that folder is absent), while start-up reads only the plain
// path. The two paths differ deliberately and must stay so.
std::string dialogPasswordPath(const std::string& home);
