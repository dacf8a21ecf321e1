// The tables start-up decides by: the system version from the version
// query's binary-coded value, and the calendar export location by version.
//
// Threads: plain functions.
#pragma once

#include <string>

constexpr float kSystem10_3 = 10.3f;
constexpr float kSystem10_4 = 10.4f;
constexpr float kSystem10_5 = 10.5f;
constexpr float kSystem10_6 = 10.6f;

// `known` false (the query failed) gives 10.4, as does any value from 0x1070
// on: no later system is known, so the default stands.
float systemVersionFromQuery(bool known, long value);

// The export location for `version`: a file path under `home` up to 10.4,
// from 10.5 on a text saying there is no custom location.
std::string exportLocationFor(float version, const std::string& home);
