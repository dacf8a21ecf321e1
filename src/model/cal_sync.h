// CalSync: part of the application object since the first release, with
// nothing in it yet but its constructor.
#pragma once

class CalSync {
  public:
    CalSync() = default;
};
