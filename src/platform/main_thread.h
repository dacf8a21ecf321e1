// Handing a call to the main thread. GTK, and so every alert, may be used
// from the main thread only, while the update thread is the one that learns
// that, say, a sharing name is taken. It queues the call here and goes on;
// the host runs the queue from its idle tick on the main thread.
//
// The default back end only queues: the host (or a test) calls
// drainMainThreadQueue() from the main thread. A windowed host may install a
// poster that hands each call to its main loop instead (an idle source).
//
// Threads: runOnMainThread from any thread; it never blocks on the call and
// never runs it itself, not even on the main thread, so a caller holding a
// lock cannot deadlock with the call. drainMainThreadQueue and
// setMainThreadPoster on the main thread only. The queue holds at most
// kMainThreadQueueLimit calls; past that the oldest is dropped (a call that
// waited that long is stale, and the update thread must not grow memory
// when no host drains).
#pragma once

#include <cstddef>
#include <functional>

#include "platform/alert.h"

constexpr size_t kMainThreadQueueLimit = 256;

void runOnMainThread(std::function<void()> call);

// Runs, in order, the calls queued before it started; calls queued meanwhile
// wait for the next drain. Returns how many ran.
size_t drainMainThreadQueue();

// Hands each call to the host's main loop; null goes back to queueing.
using MainThreadPoster = void (*)(std::function<void()> call);
void setMainThreadPoster(MainThreadPoster poster);

// Shows `request` on the main thread through runAlert; returns at once and
// drops the answer (for alerts that only inform). Any thread.
void postAlert(const AlertRequest& request);
