// SQLite queries behind the feed part of Storage: the feeds table and the
// replacement of one feed's events.
#include "sqlite_storage.h"

namespace service {
namespace {

const char kFeedColumns[] = "SELECT id, url, site_id, every_seconds, format, etag, last_modified, "
                            "last_refresh, last_result, event_count, last_error FROM feeds";

Feed readFeed(const Statement& row) {
    Feed feed;
    feed.id = row.integer(0);
    feed.url = row.text(1);
    feed.siteId = row.integer(2);
    feed.everySeconds = row.integer(3);
    feed.format = row.text(4);
    feed.etag = row.text(5);
    feed.lastModified = row.text(6);
    feed.lastRefresh = row.integer(7);
    feed.lastResult = row.text(8);
    feed.eventCount = row.integer(9);
    feed.lastError = row.text(10);
    return feed;
}

// Notes the outcome; the validators and the count change only when given.
void writeOutcome(Connection& db, int64_t feedId, const FeedOutcome& outcome,
                  const int64_t* eventCount) {
    db.prepare("UPDATE feeds SET last_refresh = ?, last_result = ?, last_error = ?, "
               "etag = CASE WHEN ? = '' THEN etag ELSE ? END, "
               "last_modified = CASE WHEN ? = '' THEN last_modified ELSE ? END, "
               "event_count = CASE WHEN ? < 0 THEN event_count ELSE ? END WHERE id = ?")
        .bind(1, outcome.time)
        .bind(2, outcome.result)
        .bind(3, outcome.error)
        .bind(4, outcome.etag)
        .bind(5, outcome.etag)
        .bind(6, outcome.lastModified)
        .bind(7, outcome.lastModified)
        .bind(8, eventCount ? *eventCount : int64_t{-1})
        .bind(9, eventCount ? *eventCount : int64_t{-1})
        .bind(10, feedId)
        .run();
}

} // namespace

int64_t SqliteStorage::addFeed(const Feed& feed) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    {
        Statement exists = db->prepare("SELECT 1 FROM sites WHERE id = ?");
        if (!exists.bind(1, feed.siteId).step()) return 0;
    }
    int64_t id = 1;
    {
        Statement next = db->prepare("SELECT COALESCE(MAX(id), 0) + 1 FROM feeds");
        if (next.step()) id = next.integer(0);
    }
    db->prepare("INSERT INTO feeds (id, url, site_id, every_seconds, format) VALUES (?, ?, ?, ?, ?)")
        .bind(1, id)
        .bind(2, feed.url)
        .bind(3, feed.siteId)
        .bind(4, feed.everySeconds)
        .bind(5, feed.format)
        .run();
    transaction.commit();
    return id;
}

std::vector<Feed> SqliteStorage::feeds() {
    auto db = pool_.lease();
    Statement row = db->prepare(std::string(kFeedColumns) + " ORDER BY id");
    std::vector<Feed> feeds;
    while (row.step()) feeds.push_back(readFeed(row));
    return feeds;
}

bool SqliteStorage::removeFeed(int64_t id) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    db->prepare("DELETE FROM feeds WHERE id = ?").bind(1, id).run();
    if (db->changes() == 0) return false;
    db->prepare("DELETE FROM events WHERE feed_id = ?").bind(1, id).run();
    transaction.commit();
    return true;
}

bool SqliteStorage::replaceFeedEvents(int64_t feedId, const std::vector<Event>& events,
                                      const FeedOutcome& outcome) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    int64_t siteId = 0;
    {
        Statement feed = db->prepare("SELECT site_id FROM feeds WHERE id = ?");
        if (!feed.bind(1, feedId).step()) return false;
        siteId = feed.integer(0);
    }
    db->prepare("DELETE FROM events WHERE feed_id = ?").bind(1, feedId).run();
    for (const Event& event : events) insertEvent(*db, siteId, event, feedId);
    const int64_t count = static_cast<int64_t>(events.size());
    writeOutcome(*db, feedId, outcome, &count);
    transaction.commit();
    return true;
}

void SqliteStorage::recordFeedOutcome(int64_t feedId, const FeedOutcome& outcome) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    writeOutcome(*db, feedId, outcome, nullptr);
    transaction.commit();
}

size_t SqliteStorage::pruneEventsBefore(const std::string& date) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    // Site by site, so the (site, date) index finds them.
    db->prepare("DELETE FROM events WHERE site_id IN (SELECT id FROM sites) AND event_date < ?")
        .bind(1, date)
        .run();
    const size_t removed = static_cast<size_t>(db->changes());
    // A feed's count says what it holds now.
    db->exec("UPDATE feeds SET event_count = "
             "(SELECT COUNT(*) FROM events WHERE events.feed_id = feeds.id)");
    transaction.commit();
    return removed;
}

} // namespace service
