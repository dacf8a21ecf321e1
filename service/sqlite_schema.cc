// The database schema as a list of steps. A file records how many steps it
// has seen; opening it runs the rest in one transaction, so an old
// file is brought forward and a new one is created the same way.
//
// The DDL keeps to types both SQLite and PostgreSQL read (TEXT, INTEGER,
// BIGINT, DOUBLE PRECISION); dates are "YYYY-MM-DD" texts.
#include "sqlite_storage.h"

namespace service {
namespace {

const char* const kSteps[] = {
    // 1: the first schema.
    R"SQL(
CREATE TABLE places (
  city_key TEXT NOT NULL, region_key TEXT NOT NULL,
  city TEXT NOT NULL, region TEXT NOT NULL,
  latitude DOUBLE PRECISION NOT NULL, longitude DOUBLE PRECISION NOT NULL,
  PRIMARY KEY (city_key, region_key));
CREATE TABLE sites (
  id BIGINT PRIMARY KEY, name TEXT NOT NULL,
  latitude DOUBLE PRECISION NOT NULL, longitude DOUBLE PRECISION NOT NULL,
  reach_miles DOUBLE PRECISION NOT NULL, sells_tickets INTEGER NOT NULL);
CREATE TABLE events (
  site_id BIGINT NOT NULL REFERENCES sites (id) ON DELETE CASCADE,
  event_date TEXT NOT NULL, artists TEXT NOT NULL, venue TEXT NOT NULL,
  city TEXT NOT NULL, state TEXT NOT NULL, url TEXT NOT NULL,
  latitude DOUBLE PRECISION NOT NULL, longitude DOUBLE PRECISION NOT NULL);
CREATE INDEX events_by_site_date ON events (site_id, event_date);
CREATE TABLE releases (
  asin TEXT PRIMARY KEY, release_date TEXT NOT NULL, artist TEXT NOT NULL,
  title TEXT NOT NULL, formats TEXT NOT NULL, store_url TEXT NOT NULL);
CREATE INDEX releases_by_date ON releases (release_date);
CREATE TABLE ip_ranges (
  first_address BIGINT NOT NULL, last_address BIGINT NOT NULL,
  country TEXT NOT NULL, region TEXT NOT NULL, city TEXT NOT NULL);
CREATE TABLE sharing_users (
  username_key TEXT PRIMARY KEY, username TEXT NOT NULL, uuid TEXT NOT NULL,
  city TEXT NOT NULL, state TEXT NOT NULL, city_key TEXT NOT NULL, state_key TEXT NOT NULL,
  first_name TEXT NOT NULL, last_name TEXT NOT NULL);
CREATE INDEX sharing_users_by_place ON sharing_users (city_key, state_key);
CREATE TABLE shared_shows (
  username_key TEXT NOT NULL REFERENCES sharing_users (username_key),
  show_year INTEGER NOT NULL, show_month INTEGER NOT NULL, show_day INTEGER NOT NULL,
  tickets INTEGER NOT NULL, artist TEXT NOT NULL, venue TEXT NOT NULL,
  location TEXT NOT NULL, url TEXT NOT NULL, other_artists TEXT NOT NULL,
  PRIMARY KEY (username_key, show_year, show_month, show_day, artist, venue));
CREATE TABLE phone_accounts (
  username_key TEXT PRIMARY KEY, username TEXT NOT NULL, uuid TEXT NOT NULL,
  password_hash TEXT NOT NULL);
CREATE TABLE phone_artists (
  username_key TEXT NOT NULL REFERENCES phone_accounts (username_key),
  artist TEXT NOT NULL, PRIMARY KEY (username_key, artist));
)SQL",
    // 2: feeds, and what they tell about an event beyond the event page's fields.
    R"SQL(
CREATE TABLE feeds (
  id BIGINT PRIMARY KEY, url TEXT NOT NULL,
  site_id BIGINT NOT NULL REFERENCES sites (id) ON DELETE CASCADE,
  every_seconds BIGINT NOT NULL, format TEXT NOT NULL,
  etag TEXT NOT NULL DEFAULT '', last_modified TEXT NOT NULL DEFAULT '',
  last_refresh BIGINT NOT NULL DEFAULT 0, last_result TEXT NOT NULL DEFAULT '',
  event_count BIGINT NOT NULL DEFAULT 0, last_error TEXT NOT NULL DEFAULT '');
ALTER TABLE events ADD COLUMN feed_id BIGINT NOT NULL DEFAULT 0;
ALTER TABLE events ADD COLUMN event_time TEXT NOT NULL DEFAULT '';
ALTER TABLE events ADD COLUMN address TEXT NOT NULL DEFAULT '';
ALTER TABLE events ADD COLUMN ticket_url TEXT NOT NULL DEFAULT '';
ALTER TABLE events ADD COLUMN availability TEXT NOT NULL DEFAULT '';
CREATE INDEX events_by_feed ON events (feed_id);
)SQL",
};

} // namespace

void migrate(Connection& connection) {
    connection.exec("CREATE TABLE IF NOT EXISTS schema_version (version INTEGER NOT NULL)");
    Transaction transaction(connection);
    int64_t seen = 0;
    {
        Statement read = connection.prepare("SELECT version FROM schema_version");
        if (read.step()) seen = read.integer(0);
        else connection.prepare("INSERT INTO schema_version (version) VALUES (0)").run();
    }
    const int64_t total = static_cast<int64_t>(sizeof kSteps / sizeof kSteps[0]);
    if (seen > total) throw StorageError("database comes from a newer stagebeacon-service");
    for (int64_t step = seen; step < total; ++step) connection.exec(kSteps[step]);
    connection.prepare("UPDATE schema_version SET version = ?").bind(1, total).run();
    transaction.commit();
}

} // namespace service
