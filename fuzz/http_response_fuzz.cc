// An HTTP response as a peer sends it: the head (status, Location,
// Content-Length) and the body, whatever framing it claims (a chunked body
// is read as plain bytes: the client asks for none and decodes none). The
// bytes come through a pipe, so the client's own reads and waits run.
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "net/http_fetch_internal.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A pipe holds 64 KiB without a reader; larger inputs are cut there.
    if (size > 65536) size = 65536;
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) abort();
    fcntl(ends[1], F_SETPIPE_SZ, 65536);
    size_t done = 0;
    while (done < size) {
        ssize_t n = write(ends[1], data + done, size - done);
        if (n <= 0) abort();
        done += static_cast<size_t>(n);
    }
    close(ends[1]);
    timeout = 1;
    std::string location;
    PageBuffer body;
    size_t total = 0;
    (void)http_internal::readResponse(ends[0], 1, &location, true, &body, &total);
    close(ends[0]);
    return 0;
}
