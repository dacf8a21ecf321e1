// CalSync: part of the application object since the first release, with
// nothing in it yet but its constructor.
//
// Threads: none of its own; it lives and dies with the application object.
#pragma once

class CalSync {
  public:
    CalSync() = default;
};
