// Page opening on a desktop: the opener program gets the address as its one
// argument; no shell ever sees it. The child is reaped by a detached thread
// so that neither the caller nor the main loop waits for the browser.
#include "platform/page_opener.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <string>
#include <thread>

extern char** environ;

bool openPageWith(const char* program, const char* url) {
    if (!program || !url) return false;
    std::string programCopy(program);
    std::string urlCopy(url);
    char* argv[] = {&programCopy[0], &urlCopy[0], nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, program, nullptr, nullptr, argv, environ) != 0) return false;
    std::thread([child] {
        int status = 0;
        while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
    }).detach();
    return true;
}

void openPageDesktop(const char* url) {
    // Nothing to tell the user when no opener is installed: the page simply
    // does not open, as with any browser that fails to start.
    (void)openPageWith("xdg-open", url);
}
