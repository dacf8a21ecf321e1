// ServiceProcess: the real stagebeacon-service binary as a child process on
// an ephemeral loopback port, with its database at a given path. Killed
// (SIGKILL) when dropped, so a test can also check what survives a crash.
#pragma once

#include <sys/types.h>

#include <string>

class ServiceProcess {
  public:
    ServiceProcess(const std::string& binary, const std::string& db);
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    // 0 when the service did not start.
    int port() const { return listenPort; }
    // "http://127.0.0.1:PORT"
    std::string url() const;
    void kill();

  private:
    pid_t pid = -1;
    int listenPort = 0;
};
