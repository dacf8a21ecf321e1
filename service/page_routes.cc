// The web pages the plug-in opens in a browser, and the two click-through
// addresses that send the browser on to a show's or a release's page.
#include "geo.h"
#include "query.h"
#include "replies.h"
#include "server.h"

#include <httplib.h>

namespace service {
namespace {

constexpr size_t kMaxRedirectLength = 2048;

struct StaticPage {
    const char* path;
    const char* title;
    const char* body;
};

// Small real pages: what each link in the calendar promises.
const StaticPage kPages[] = {
    {"/", "Stagebeacon",
     "<p>Stagebeacon draws a calendar of the concerts of the artists in your music library, "
     "with album releases and the shows your friends go to.</p>\n"
     "<ul><li><a href=\"/download.php\">Download</a></li>"
     "<li><a href=\"/iphone.php\">iPhone app</a></li>"
     "<li><a href=\"/android.php\">Android app</a></li>"
     "<li><a href=\"/donations.php\">Support Stagebeacon</a></li></ul>"},
    {"/download.php", "Download Stagebeacon",
     "<p>The newest Stagebeacon release for Linux is built from source with "
     "<code>make</code>; the player loads the plug-in library it produces.</p>"},
    {"/iphone.php", "Stagebeacon for iPhone",
     "<p>Turn on phone sync in the preferences: your artist list is sent to the service and the "
     "phone app shows concerts of the same artists wherever you are.</p>"
     "<p><a href=\"/iphonelink.php\">Get the app</a></p>"},
    {"/iphonelink.php", "Get Stagebeacon for iPhone",
     "<p>Sign in to the app with the user name and password you chose in the plug-in's "
     "preferences.</p>"},
    {"/android.php", "Stagebeacon for Android",
     "<p>The Android app reads the same artist list as the iPhone app; sign in with your "
     "Stagebeacon user name and password.</p>"},
    {"/donations.php", "Support Stagebeacon",
     "<p>Stagebeacon is free. Buying tickets and albums through its links, or a donation, keeps "
     "the service running.</p>"},
};

bool isPlainHttpUrl(const std::string& url) {
    if (url.compare(0, 7, "http://") != 0 && url.compare(0, 8, "https://") != 0) return false;
    if (url.size() > kMaxRedirectLength) return false;
    for (char c : url)
        if (static_cast<unsigned char>(c) <= 0x20 || c == 0x7f) return false;
    return true;
}

// The show address follows "target=" as it stands, its own "&" included.
void clickThrough(const httplib::Request& request, httplib::Response& response) {
    const std::string query = rawQuery(request.target);
    const std::string key = "target=";
    if (query.compare(0, key.size(), key) != 0) {
        replyError(response, 400, "missing target");
        return;
    }
    const std::string target = query.substr(key.size());
    if (!isPlainHttpUrl(target)) {
        replyError(response, 400, "target must be an http or https address");
        return;
    }
    redirect(response, target);
}

void releaseClickThrough(const RouteContext& context, const httplib::Request& request,
                         httplib::Response& response) {
    auto query = checkedQuery(request, response, {"ASIN"}, {"CITY", "STATE"});
    if (!query) return;
    auto release = context.storage.releaseByAsin(query->get("ASIN"));
    if (!release) {
        replyError(response, 404, "no such release");
        return;
    }
    if (isPlainHttpUrl(release->storeUrl)) redirect(response, release->storeUrl);
    else redirect(response, context.publicUrl + "/release.php?ASIN=" + release->asin);
}

void releasePage(const RouteContext& context, const httplib::Request& request,
                 httplib::Response& response) {
    auto query = checkedQuery(request, response, {"ASIN"});
    if (!query) return;
    auto release = context.storage.releaseByAsin(query->get("ASIN"));
    if (!release) {
        replyError(response, 404, "no such release");
        return;
    }
    std::string formats;
    for (const std::string& format : release->formats)
        formats += (formats.empty() ? "" : ", ") + htmlEscape(format);
    reply(response,
          htmlPage(release->artist + ": " + release->title,
                   "<p>Released on " + htmlEscape(release->date) + ".</p><p>Formats: " +
                       (formats.empty() ? "standard" : formats) + ".</p>"),
          "text/html; charset=utf-8");
}

// Where the demo's event addresses lead: a page per show.
void showPage(const httplib::Request& request, httplib::Response& response) {
    auto query = checkedQuery(request, response, {}, {"artist", "venue", "date"});
    if (!query) return;
    reply(response,
          htmlPage("Tickets: " + query->get("artist"),
                   "<p>" + htmlEscape(query->get("artist")) + " at " +
                       htmlEscape(query->get("venue")) + " on " + htmlEscape(query->get("date")) +
                       ".</p><p>Tickets are sold at the door.</p>"),
          "text/html; charset=utf-8");
}

} // namespace

void addPageRoutes(RouteTable& routes, const RouteContext& context) {
    for (const StaticPage& page : kPages) {
        const std::string html = htmlPage(page.title, page.body);
        routes[page.path] = [html](const auto&, auto& r) {
            reply(r, html, "text/html; charset=utf-8");
        };
    }
    // For monitors and as the benchmark's floor: the cheapest reply there is.
    routes["/health"] = [](const auto&, auto& r) { reply(r, "OK\n"); };
    const RouteContext* c = &context;
    routes["/download/download_mac_redirect.php"] = [c](const auto&, auto& r) {
        redirect(r, c->publicUrl + "/download.php");
    };
    routes["/clickthrough.php"] = [](const auto& q, auto& r) { clickThrough(q, r); };
    routes["/CDReleases/cdreleaseclickthrough.php"] = [c](const auto& q, auto& r) {
        releaseClickThrough(*c, q, r);
    };
    routes["/release.php"] = [c](const auto& q, auto& r) { releasePage(*c, q, r); };
    routes["/show.php"] = [](const auto& q, auto& r) { showPage(q, r); };
}

} // namespace service
