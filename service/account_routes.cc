// Accounts: the shared calendars ("/sharing/sharing.php") and the phone
// exchange ("/iphone/exchange.php"). Both pick their operation from TODO
// through a table. Replies the plug-in must act on come with status 200 and
// the marker it scans for ("Error", "StagebeaconError", "<ERROR>"); requests
// it never makes (missing keys, bad numbers) get a 400 with a readable text.
#include "passwords.h"
#include "replies.h"
#include "server.h"
#include "text.h"

#include <httplib.h>

namespace service {
namespace {

constexpr size_t kMaxNameLength = 63;
constexpr size_t kMaxUuidLength = 64;
constexpr size_t kMaxPasswordLength = 63;
constexpr int kMaxSharedShows = 2000;
constexpr int kMaxLocalUsers = 200;
constexpr int kMaxPhoneArtists = 20000;
constexpr size_t kMaxArtistLength = 255;

const char kAccepted[] = "<OK>\n";

using TodoHandler = void (*)(const RouteContext&, const httplib::Request&, httplib::Response&);
struct Todo {
    const char* name;
    TodoHandler handler;
};

// An account name as the plug-in's preferences allow it: letters, digits, blanks.
bool checkedName(const std::string& name, httplib::Response& response) {
    if (!name.empty() && name.size() <= kMaxNameLength && isPlainName(name)) return true;
    replyError(response, 400, "user names are 1 to 63 letters, digits and blanks");
    return false;
}

bool checkedUuid(const std::string& uuid, httplib::Response& response) {
    if (!uuid.empty() && uuid.size() <= kMaxUuidLength) return true;
    replyError(response, 400, "UUID must be 1 to 64 characters");
    return false;
}

void userExists(const RouteContext& context, const httplib::Request& request,
                httplib::Response& response) {
    auto query = checkedQuery(request, response, {"TODO", "USERNAME"});
    if (!query) return;
    if (context.storage.sharingUserExists(query->get("USERNAME"))) reply(response, kAccepted);
    else reply(response, "Error: no such user\n");
}

void initializeSharingUser(const RouteContext& context, const httplib::Request& request,
                           httplib::Response& response) {
    auto query = checkedQuery(request, response,
                              {"TODO", "USERNAME", "UUID", "CITY", "STATE", "FIRSTNAME", "LASTNAME"});
    if (!query || !checkedName(query->get("USERNAME"), response) ||
        !checkedUuid(query->get("UUID"), response))
        return;
    SharingUser user{query->get("USERNAME"),       query->get("UUID"),
                     tagSafe(query->get("CITY")),  tagSafe(query->get("STATE")),
                     tagSafe(query->get("FIRSTNAME")), tagSafe(query->get("LASTNAME"))};
    if (context.storage.claimSharingUser(user) == Claim::Taken)
        reply(response, "Error: that username is already taken\n");
    else reply(response, kAccepted);
}

// ADD_SHOW and DELETE_SHOW carry the same fields; nullopt after a 400.
std::optional<std::pair<std::string, SharedShow>> showRequest(const RouteContext& context,
                                                              const httplib::Request& request,
                                                              httplib::Response& response) {
    auto query = checkedQuery(request, response,
                              {"TODO", "USERNAME", "UUID", "YEAR", "MONTH", "DAY",
                               "TICKETSAVAILABLE", "ARTIST", "VENUE", "LOCATION", "URL",
                               "OTHERARTISTS"});
    if (!query) return std::nullopt;
    long year = 0, month = 0, day = 0, tickets = 0;
    if (!parseInt(query->get("YEAR"), 1900, 9999, year) ||
        !parseInt(query->get("MONTH"), 1, 12, month) || !parseInt(query->get("DAY"), 1, 31, day) ||
        !parseInt(query->get("TICKETSAVAILABLE"), 0, 1, tickets)) {
        replyError(response, 400, "YEAR, MONTH, DAY and TICKETSAVAILABLE must be numbers of a date");
        return std::nullopt;
    }
    if (!context.storage.sharingUserOwnedBy(query->get("USERNAME"), query->get("UUID"))) {
        reply(response, "Error: unknown user or wrong UUID\n");
        return std::nullopt;
    }
    SharedShow show;
    show.year = static_cast<int>(year);
    show.month = static_cast<int>(month);
    show.day = static_cast<int>(day);
    show.ticketsAvailable = tickets == 1;
    show.artist = tagSafe(query->get("ARTIST"));
    show.venue = tagSafe(query->get("VENUE"));
    show.location = tagSafe(query->get("LOCATION"));
    show.url = tagSafe(query->get("URL"));
    show.otherArtists = tagSafe(query->get("OTHERARTISTS"));
    return std::make_pair(query->get("USERNAME"), show);
}

void addShow(const RouteContext& context, const httplib::Request& request,
             httplib::Response& response) {
    auto show = showRequest(context, request, response);
    if (!show) return;
    if (context.storage.addSharedShow(show->first, show->second, kMaxSharedShows))
        reply(response, kAccepted);
    else reply(response, "Error: too many shared shows\n");
}

void deleteShow(const RouteContext& context, const httplib::Request& request,
                httplib::Response& response) {
    auto show = showRequest(context, request, response);
    if (!show) return;
    context.storage.deleteSharedShow(show->first, show->second);
    reply(response, kAccepted);
}

void localUsers(const RouteContext& context, const httplib::Request& request,
                httplib::Response& response) {
    auto query = checkedQuery(request, response, {"TODO", "CITY", "STATE"});
    if (!query) return;
    reply(response, localUsersReply(context.storage.localUsers(query->get("CITY"),
                                                               query->get("STATE"),
                                                               kMaxLocalUsers)));
}

void displayUserShows(const RouteContext& context, const httplib::Request& request,
                      httplib::Response& response) {
    auto query = checkedQuery(request, response, {"TODO", "USERNAME"});
    if (!query) return;
    auto shows = context.storage.userShows(query->get("USERNAME"));
    if (!shows) reply(response, "StagebeaconError: no such calendar\n");
    else reply(response, userShowsReply(*shows, context.publicUrl));
}

// Phone accounts: the name belongs to the UUID that registered it; that
// installation may change the password. Another installation gets in only
// with the right password (the same person on a second computer).
void initializePhoneUser(const RouteContext& context, const httplib::Request& request,
                         httplib::Response& response) {
    auto query = checkedQuery(request, response, {"TODO", "USERNAME", "UUID", "PWD"});
    if (!query || !checkedName(query->get("USERNAME"), response) ||
        !checkedUuid(query->get("UUID"), response))
        return;
    const std::string& password = query->get("PWD");
    if (password.empty() || password.size() > kMaxPasswordLength) {
        replyError(response, 400, "password must be 1 to 63 characters");
        return;
    }
    const std::string& name = query->get("USERNAME");
    auto account = context.storage.phoneAccount(name);
    if (!account) {
        PhoneAccount created{name, query->get("UUID"),
                             hashPassword(password, context.config.passwordLimits)};
        if (context.storage.createPhoneAccount(created)) {
            reply(response, kAccepted);
            return;
        }
        account = context.storage.phoneAccount(name); // lost a race for the name
    }
    if (account && verifyPassword(account->passwordHash, password)) {
        reply(response, kAccepted);
    } else if (account && account->uuid == query->get("UUID")) {
        context.storage.setPhonePasswordHash(name,
                                             hashPassword(password, context.config.passwordLimits));
        reply(response, kAccepted);
    } else {
        reply(response, "<ERROR>that username is already taken</ERROR>\n");
    }
}

void addPhoneArtists(const RouteContext& context, const httplib::Request& request,
                     httplib::Response& response) {
    auto query = checkedQuery(request, response, {"TODO", "USERNAME", "PWD", "ARTISTS"});
    if (!query) return;
    auto account = context.storage.phoneAccount(query->get("USERNAME"));
    if (!account || !verifyPassword(account->passwordHash, query->get("PWD"))) {
        reply(response, "<ERROR>wrong username or password</ERROR>\n");
        return;
    }
    std::vector<std::string> artists;
    for (const std::string& artist : split(query->get("ARTISTS"), "@@")) {
        std::string clean = tagSafe(artist);
        if (!clean.empty() && clean.size() <= kMaxArtistLength) artists.push_back(clean);
    }
    if (context.storage.addPhoneArtists(account->username, artists, kMaxPhoneArtists))
        reply(response, kAccepted);
    else reply(response, "<ERROR>too many artists</ERROR>\n");
}

const Todo kSharingTodos[] = {
    {"USER_EXISTS", userExists},         {"INITIALIZE_USER", initializeSharingUser},
    {"ADD_SHOW", addShow},               {"DELETE_SHOW", deleteShow},
    {"GETLOCALUSERS", localUsers},       {"DISPLAY_USER_SHOWS", displayUserShows},
};

const Todo kExchangeTodos[] = {
    {"INITIALIZE_USER", initializePhoneUser},
    {"ADD_ARTISTS", addPhoneArtists},
};

template <size_t N>
Handler todoRoute(const RouteContext& context, const Todo (&todos)[N]) {
    const RouteContext* c = &context;
    const Todo* table = todos;
    return [c, table](const httplib::Request& request, httplib::Response& response) {
        // TODO is picked out first; the handler parses the query with its own keys.
        std::string todo;
        for (const std::string& piece : split(rawQuery(request.target), "&"))
            if (piece.compare(0, 5, "TODO=") == 0 && todo.empty()) todo = piece.substr(5);
        for (size_t i = 0; i < N; ++i) {
            if (todo == table[i].name) {
                table[i].handler(*c, request, response);
                return;
            }
        }
        replyError(response, 400, "unknown TODO");
    };
}

} // namespace

void addAccountRoutes(RouteTable& routes, const RouteContext& context) {
    routes["/sharing/sharing.php"] = todoRoute(context, kSharingTodos);
    routes["/iphone/exchange.php"] = todoRoute(context, kExchangeTodos);
}

} // namespace service
