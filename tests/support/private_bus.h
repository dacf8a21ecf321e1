// PrivateBus: a session bus of the test's own. dbus-daemon is started with
// its socket in a new temporary folder, its address read from its standard
// output; the destructor stops it by its PID, reaps it and removes the
// folder. address() is empty when it did not start.
//
// Threads: the test's thread.
#pragma once

#include <sys/types.h>

#include <string>

class PrivateBus {
  public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return busAddress; }

  private:
    pid_t pid = -1;
    std::string folder;
    std::string busAddress;
};
