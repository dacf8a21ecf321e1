#include "service_process.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

ServiceProcess::ServiceProcess(const std::string& binary, const std::string& db) {
    int out[2];
    if (::pipe(out) != 0) return;
    pid = ::fork();
    if (pid == 0) {
        ::dup2(out[1], STDOUT_FILENO);
        ::close(out[0]);
        ::close(out[1]);
        ::execl(binary.c_str(), "stagebeacon-service", "--db", db.c_str(), "--listen",
                "127.0.0.1:0", "--password-cost", "minimum", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(out[1]);
    // The first line names the address: "...: listening on http://127.0.0.1:PORT".
    FILE* lines = ::fdopen(out[0], "r");
    char line[256];
    while (lines && std::fgets(line, sizeof line, lines)) {
        const char* mark = std::strstr(line, "http://127.0.0.1:");
        if (mark) {
            listenPort = std::atoi(mark + std::strlen("http://127.0.0.1:"));
            break;
        }
    }
    if (lines) std::fclose(lines);
}

ServiceProcess::~ServiceProcess() { kill(); }

std::string ServiceProcess::url() const { return "http://127.0.0.1:" + std::to_string(listenPort); }

void ServiceProcess::kill() {
    if (pid <= 0) return;
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    pid = -1;
}
