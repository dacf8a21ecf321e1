// stagebeacon-service: the command line. Four commands share one option
// table:
//   stagebeacon-service [serve] [--listen HOST:PORT] [--db FILE] ...
//   stagebeacon-service seed FOLDER [--db FILE]
//   stagebeacon-service import-events FILE.ics --site N [--db FILE]
//   stagebeacon-service feeds add URL --site N [--every 6h] [--format ics|jsonld|csv]
//                       feeds list | feeds remove ID | feeds refresh [ID]
// Serving a database that has no sites first loads the demo folder, so one
// command on a fresh machine shows a working service. The serving process
// refreshes due feeds in the background.
#include "csv.h"
#include "feed_commands.h"
#include "feed_map.h"
#include "feed_scheduler.h"
#include "geo.h"
#include "passwords.h"
#include "seed.h"
#include "server.h"
#include "sqlite_storage.h"
#include "text.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <thread>

#ifndef STAGEBEACON_DEMO_DIR
#define STAGEBEACON_DEMO_DIR "resources/demo"
#endif

namespace {

struct Options {
    std::string command = "serve";
    std::string argument; // seed folder, calendar file or feeds verb
    std::vector<std::string> more; // further words (a feed's URL or ID)
    std::string listen = "127.0.0.1:8470";
    std::string db = "stagebeacon-service.db";
    std::string demo = STAGEBEACON_DEMO_DIR;
    std::string site;
    std::string loopback; // "COUNTRY,REGION,CITY"
    std::string passwordCost = "interactive";
    std::string every = "6h";
    std::string format;
    std::string feedWorkers = "4";
    std::string feedCheck = "60";
    service::ServiceConfig config;
};

struct CommandOption {
    const char* flag;
    const char* help;
    std::string Options::*field;
};

const CommandOption kOptions[] = {
    {"--listen", "HOST:PORT to listen on (default 127.0.0.1:8470; port 0 picks one)",
     &Options::listen},
    {"--db", "SQLite database file, created on first start (default stagebeacon-service.db)",
     &Options::db},
    {"--demo", "folder seeded into a database without sites when serving", &Options::demo},
    {"--public-url", "address the plug-in reaches this service at (default http://HOST:PORT)",
     nullptr},
    {"--current-version", "newest plug-in version, X.Y (default 2.9)", nullptr},
    {"--loopback-location", "COUNTRY,REGION,CITY shown to loopback clients", &Options::loopback},
    {"--password-cost", "interactive (default), moderate or minimum", &Options::passwordCost},
    {"--site", "site number the calendar's events join (import-events)", &Options::site},
    {"--threads", "worker threads, open connections served at once (default 32)", nullptr},
    {"--every", "how often a feed is refreshed: 30m, 6h (default), 1d (feeds add)",
     &Options::every},
    {"--format", "ics, jsonld or csv (feeds add; default: told by the content)", &Options::format},
    {"--feed-workers", "feeds refreshed at once (default 4)", &Options::feedWorkers},
    {"--feed-check", "seconds between looks for due feeds when serving (default 60)",
     &Options::feedCheck},
};

void usage() {
    std::fprintf(stderr, "usage: stagebeacon-service [serve | seed FOLDER | import-events "
                         "FILE.ics --site N] [options]\n"
                         "       stagebeacon-service feeds add URL --site N [--every 6h] "
                         "[--format ics|jsonld|csv]\n"
                         "       stagebeacon-service feeds list | remove ID | refresh [ID]\n");
    for (const CommandOption& option : kOptions) std::fprintf(stderr, "  %-20s %s\n", option.flag, option.help);
}

bool parseArguments(int argc, char** argv, Options& options) {
    int i = 1;
    if (i < argc && argv[i][0] != '-') {
        options.command = argv[i++];
        if (options.command != "serve") {
            if (i >= argc) return false;
            options.argument = argv[i++];
        }
    }
    for (; i < argc && argv[i][0] != '-'; ++i) options.more.push_back(argv[i]);
    for (; i < argc; i += 2) {
        const CommandOption* option = nullptr;
        for (const CommandOption& candidate : kOptions)
            if (std::strcmp(argv[i], candidate.flag) == 0) option = &candidate;
        if (!option || i + 1 >= argc) return false;
        const std::string value = argv[i + 1];
        long number = 0;
        if (option->field) options.*(option->field) = value;
        else if (std::strcmp(option->flag, "--public-url") == 0) options.config.publicUrl = value;
        else if (std::strcmp(option->flag, "--current-version") == 0)
            options.config.currentVersion = value;
        else if (service::parseInt(value, 1, 256, number))
            options.config.threads = static_cast<int>(number);
        else return false;
    }
    size_t colon = options.listen.rfind(':');
    long port = 0;
    if (colon == std::string::npos ||
        !service::parseInt(options.listen.substr(colon + 1), 0, 65535, port))
        return false;
    options.config.host = options.listen.substr(0, colon);
    options.config.port = static_cast<int>(port);
    if (options.passwordCost == "minimum")
        options.config.passwordLimits = service::PasswordLimits::minimum();
    else if (options.passwordCost == "moderate")
        options.config.passwordLimits = service::PasswordLimits::moderate();
    else if (options.passwordCost != "interactive") return false;
    if (!options.loopback.empty()) {
        std::vector<std::string> parts = service::split(options.loopback, ",");
        if (parts.size() != 3) return false;
        options.config.loopbackCountry = parts[0];
        options.config.loopbackRegion = parts[1];
        options.config.loopbackCity = parts[2];
    }
    return true;
}

int seed(service::Storage& storage, const std::string& folder) {
    service::Catalog catalog = service::loadCatalog(folder);
    storage.replaceCatalog(catalog);
    std::printf("seeded %zu places, %zu sites, %zu events, %zu releases, %zu sharing users\n",
                catalog.places.size(), catalog.sites.size(), catalog.events.size(),
                catalog.releases.size(), catalog.sharingUsers.size());
    return 0;
}

// A calendar file goes through the feeds' own reading and mapping, once.
int importEvents(service::Storage& storage, const Options& options) {
    long siteId = 0;
    if (!service::parseInt(options.site, 1, 1L << 30, siteId)) {
        std::fprintf(stderr, "stagebeacon-service: import-events needs --site N\n");
        return 2;
    }
    auto site = storage.site(siteId);
    if (!site) {
        std::fprintf(stderr, "stagebeacon-service: there is no site %ld\n", siteId);
        return 1;
    }
    service::ParseLimits limits;
    limits.windowStart = service::isoDateFromToday(0);
    service::MapCounts counts;
    std::vector<service::Event> events;
    try {
        events = service::eventsFromFeed(
            service::parseICalendar(service::readFile(options.argument), limits), *site, storage,
            limits.windowStart, counts);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "stagebeacon-service: %s: %s\n", options.argument.c_str(),
                     failure.what());
        return 1;
    }
    if (!storage.addEvents(siteId, events)) {
        std::fprintf(stderr, "stagebeacon-service: there is no site %ld\n", siteId);
        return 1;
    }
    std::printf("imported %zu events into site %ld, skipped %zu (past: %zu, no artist: %zu, "
                "repeated: %zu)\n",
                events.size(), siteId, counts.past + counts.noArtist + counts.duplicates,
                counts.past, counts.noArtist, counts.duplicates);
    return 0;
}

// SIGINT and SIGTERM are taken by a thread of their own that stops the
// server; the worker threads never see them.
int serve(service::Storage& storage, const Options& options) {
    if (storage.allSites().empty() && !options.demo.empty()) seed(storage, options.demo);
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);

    long workers = 0, check = 0;
    if (!service::parseInt(options.feedWorkers, 1, 64, workers) ||
        !service::parseInt(options.feedCheck, 1, 86400, check)) {
        std::fprintf(stderr, "stagebeacon-service: --feed-workers takes 1 to 64, --feed-check 1 "
                             "to 86400 seconds\n");
        return 2;
    }
    service::Service server(storage, options.config);
    if (!server.bind()) {
        std::fprintf(stderr, "stagebeacon-service: cannot listen on %s\n", options.listen.c_str());
        return 1;
    }
    service::FeedSettings feedSettings;
    feedSettings.workers = static_cast<int>(workers);
    service::FeedScheduler feeds(storage, feedSettings, std::chrono::seconds(check));
    feeds.start();
    std::printf("stagebeacon-service: listening on %s\n", server.publicUrl().c_str());
    std::fflush(stdout);
    std::thread stopper([&server, stopSignals] {
        int signal = 0;
        sigwait(&stopSignals, &signal);
        // A signal in the first instant may come before run() has begun.
        for (int waited = 0; waited < 2000 && !server.isServing(); ++waited)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        server.stop();
    });
    server.run();
    // run() also ends when the server fails; wake the stopper so it can be joined.
    pthread_kill(stopper.native_handle(), SIGTERM);
    stopper.join();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    if (!parseArguments(argc, argv, options)) {
        usage();
        return 2;
    }
    if (!service::initPasswords()) {
        std::fprintf(stderr, "stagebeacon-service: libsodium cannot start\n");
        return 1;
    }
    try {
        service::SqliteStorage storage(options.db);
        if (options.command == "serve") return serve(storage, options);
        if (options.command == "seed") return seed(storage, options.argument);
        if (options.command == "import-events") return importEvents(storage, options);
        if (options.command == "feeds") {
            service::FeedCommand command{options.argument, options.more, options.site,
                                         options.every, options.format, options.feedWorkers};
            return service::runFeedCommand(storage, command);
        }
        usage();
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "stagebeacon-service: %s\n", failure.what());
        return 1;
    }
}
