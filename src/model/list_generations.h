// ShowListGenerations: who owns a show list, and when it is released.
//
// Each kind of show list (concerts, album releases, friends' shows) exists as
// a current and a previous generation. An update builds a new current list
// while the previous one supplies the marks to carry over (SHOWLIST::addShow);
// meanwhile the view keeps drawing whatever list is current when it looks.
// Lists never free their records, so someone must free whole generations, and
// must not do it while another thread is still walking one.
//
// The rule: a generation is held through a ShowListRef (a shared pointer).
// Whoever walks a list (the view and mouse handlers on the main thread,
// export, notifications, the update thread) takes a ShowListRef from
// current() or previous() first and keeps it for the length of the walk,
// locking the list itself as usual. replace() turns the current list into the
// previous one and drops the application's reference to the old previous
// list; that list, with every record and tag in it, is released when the last
// holder lets go, normally right there, at worst at the end of a walk that
// was under way. No record is ever shared between generations (carry-over
// copies the mark), so freeing a generation frees exactly its own records.
//
// Repeated updates therefore keep at most two generations of a kind plus
// those still being walked: memory stays flat.
//
// Threads: current() and previous() from any thread; replace() from one
// thread at a time (the update thread).
#pragma once

#include <memory>

#include "model/show_list.h"

using ShowListRef = std::shared_ptr<SHOWLIST>;

class ShowListGenerations {
  public:
    ShowListGenerations();
    ShowListGenerations(const ShowListGenerations&) = delete;
    ShowListGenerations& operator=(const ShowListGenerations&) = delete;

    ShowListRef current() const;
    ShowListRef previous() const;

    // Makes the current list the previous one and installs a new, empty
    // current list, which it returns. The old previous list is released once
    // no one holds it.
    ShowListRef replace();

  private:
    // Read and written only through std::atomic_load/std::atomic_store.
    ShowListRef currentList;
    ShowListRef previousList;
};

// A new, empty list whose records are released with it.
ShowListRef makeShowList();
