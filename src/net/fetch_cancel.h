// FetchCancel: the signal that ends a running download at once. The thread
// that stops an update sets the flag and makes the wake-up descriptor
// readable; every wait of the HTTP client polls that descriptor beside its
// socket, and the client checks the flag between its steps (resolve,
// connect, send, each read), so a fetch stuck on a silent peer ends within
// milliseconds instead of at its time-out.
//
// Threads: request() from any thread; reset() only while no fetch runs (the
// engine calls it after joining the update thread); wakeFd() and requested()
// from the fetching thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

class FetchCancel {
  public:
    FetchCancel() : fd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~FetchCancel() {
        if (fd >= 0) close(fd);
    }
    FetchCancel(const FetchCancel&) = delete;
    FetchCancel& operator=(const FetchCancel&) = delete;

    // The descriptor stays readable until reset(), so every later wait of
    // the stopped fetch returns at once too.
    void request() {
        stop.store(true);
        uint64_t one = 1;
        if (fd >= 0) (void)!write(fd, &one, sizeof one);
    }
    // The flag first: a request that lands in between leaves the flag set
    // (and at worst no wake-up, which the flag checks cover), never a
    // wake-up without the flag.
    void reset() {
        stop.store(false);
        uint64_t drained = 0;
        if (fd >= 0) (void)!read(fd, &drained, sizeof drained);
    }
    bool requested() const { return stop.load(); }
    // -1 when no eventfd could be made: the flag checks between steps remain.
    int wakeFd() const { return fd; }

  private:
    int fd;
    std::atomic<bool> stop{false};
};
