// Page opening without a desktop: the address goes to the headless log.
#include "platform/page_opener.h"

#include <atomic>
#include <string>

#include "platform/headless.h"

namespace {
std::atomic<PageOpenerBackend> chosenBackend{nullptr};
} // namespace

void setPageOpenerBackend(PageOpenerBackend backend) { chosenBackend.store(backend); }

void openPage(const char* url) {
    PageOpenerBackend backend = chosenBackend.load();
    if (backend)
        backend(url);
    else
        openPageHeadless(url);
}

void openPageHeadless(const char* url) { headlessLog(std::string("open page: ") + (url ? url : "")); }
