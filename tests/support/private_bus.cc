#include "private_bus.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

extern char** environ;

namespace {

const std::chrono::milliseconds kStartWait(5000);

std::string readLine(int fd) {
    auto deadline = std::chrono::steady_clock::now() + kStartWait;
    std::string text;
    while (text.find('\n') == std::string::npos && std::chrono::steady_clock::now() < deadline) {
        pollfd p{fd, POLLIN, 0};
        if (poll(&p, 1, 100) <= 0) continue;
        char buffer[256];
        ssize_t n = read(fd, buffer, sizeof buffer);
        if (n <= 0) break;
        text.append(buffer, static_cast<size_t>(n));
    }
    size_t end = text.find('\n');
    return end == std::string::npos ? std::string() : text.substr(0, end);
}

} // namespace

PrivateBus::PrivateBus() {
    char pattern[] = "/tmp/stagebeacon-bus.XXXXXX";
    if (!mkdtemp(pattern)) return;
    folder = pattern;
    int out[2];
    if (pipe(out) != 0) return;
    std::string listen = "--address=unix:path=" + folder + "/bus";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, out[0]);
    // Its complaints about resource limits are of no interest here.
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    char* argv[] = {const_cast<char*>("dbus-daemon"), const_cast<char*>("--session"),
                    const_cast<char*>(listen.c_str()), const_cast<char*>("--nofork"),
                    const_cast<char*>("--nopidfile"),  const_cast<char*>("--print-address=1"),
                    nullptr};
    if (posix_spawnp(&pid, "dbus-daemon", &actions, nullptr, argv, environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    if (pid > 0) busAddress = readLine(out[0]);
    close(out[0]);
}

PrivateBus::~PrivateBus() {
    if (pid > 0) {
        kill(pid, SIGTERM);
        int status = 0;
        waitpid(pid, &status, 0);
    }
    if (!folder.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
}
