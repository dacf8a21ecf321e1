// http_get URL: one download with the plug-in's HTTP client (http_fetch),
// the body written to standard output, as a process of its own, so that a
// benchmark can set it beside curl whole process against whole process.
#include <cstdio>
#include <cstdlib>

#include "net/http_fetch.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s URL\n", argv[0]);
        return 2;
    }
    http_setTimeout(30);
    char* body = nullptr;
    int length = http_fetch(argv[1], &body);
    if (length < 0) {
        http_perror(argv[0]);
        return 1;
    }
    bool written = fwrite(body, 1, static_cast<size_t>(length), stdout) == static_cast<size_t>(length);
    free(body);
    return written && fflush(stdout) == 0 ? 0 : 1;
}
