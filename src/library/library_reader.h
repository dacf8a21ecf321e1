// LibraryReader: the music library file as a stream of lines, for the scan.
//
// Like LineReader (file_io.h) it reads in fixed-size pieces, never holds the
// file, ends lines at "\n" (dropping a "\r" before it), counts a last line
// without "\n", and cuts a line longer than kMaxLine to its first kMaxLine
// bytes while skipping the rest, so the next line starts where it should.
//
// Its second mode serves the scan's common case: outside the plug-in's
// playlist a line without a key text changes nothing, so next(..., true)
// hands out only the lines on which a key text may start
// (key_text_filter.h). It looks for such places in the whole piece read and
// finds line ends only around them, instead of walking every line.
//
// Threads: one reader is used by one thread.
#pragma once

#include <string_view>
#include <vector>

#include "library/file_io.h"

class LibraryReader {
  public:
    static constexpr size_t kMaxLine = 1 << 20;

    explicit LibraryReader(const char* path);
    bool isOpen() const { return file.isOpen(); }

    // The next line, or with `keyLinesOnly` the next line on which a key
    // text may start; valid until the following call. False at the end of
    // the file or on a read error.
    [[nodiscard]] bool next(std::string_view* line, bool keyLinesOnly);

  private:
    // Moves the unread bytes to the front and reads more after them; false
    // (and atEnd set) when nothing more comes.
    bool refill();
    // Hands out buffer[from, to) as the line, dropping a final "\r".
    bool give(std::string_view* line, size_t from, size_t to);

    FileDescriptor file;
    std::vector<char> buffer;
    size_t begin = 0; // always at a line's start, unless skipping
    size_t end = 0;
    bool atEnd = false;
    bool skipping = false; // inside the rest of a line that was cut
};
