// The headless player: runs a script's commands, one line at a time,
// against a started session (command reference: script.h and the
// --help text of main.cc).
#pragma once

#include <istream>
#include <string>

#include "host_services.h"
#include "log.h"
#include "session.h"

// Runs lines from script until its end or `quit`, then ends the session.
// Returns the exit status: 0, or 1 after a bad line or a failed command,
// reported on stderr as "SCRIPTNAME:LINE: what is wrong"; nothing after
// that line is sent except the hide and cleanup messages that stop the
// plug-in's threads.
[[nodiscard]] int runHeadless(VisualSession& session, HostServices& services, PlayerLog& log,
                              std::istream& script, const std::string& scriptName);
