// New universally unique identifiers, as the 36-character upper-case text
// the service and the identifier file know ("0A1B2C3D-...").
//
// Threads: any thread; never blocks (libuuid falls back to its own random
// source when the kernel's is not ready).
#pragma once

#include <string>

constexpr int kUuidTextLength = 36;

std::string newUuidText();
