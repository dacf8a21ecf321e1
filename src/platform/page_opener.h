// Opening a web page in the user's browser. The desktop back end starts
// `xdg-open` with an argument vector (never through a shell, so a quote or a
// semicolon in an address is only ever part of the address); headless, the
// address is written to the headless log.
//
// Threads: any thread. Never waits for the browser: the opener program is
// reaped by a detached thread. setPageOpenerBackend at start.
#pragma once

void openPage(const char* url);

using PageOpenerBackend = void (*)(const char* url);
// Chooses the back end; null goes back to the headless one (the default).
void setPageOpenerBackend(PageOpenerBackend backend);

void openPageHeadless(const char* url);
// openPageWith("xdg-open", url).
void openPageDesktop(const char* url);
// Starts `program` (looked up in PATH unless it holds a "/") with `url` as
// its only argument. False when it could not be started.
[[nodiscard]] bool openPageWith(const char* program, const char* url);
