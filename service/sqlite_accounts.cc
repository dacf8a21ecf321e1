// SQLite queries for the sharing calendars and the phone exchange. A name
// belongs to the installation (UUID) that registered it first: registration
// inserts the name only when it is free and then updates the row only where
// the UUID matches, so two installations racing for one name cannot both win.
#include "sqlite_storage.h"

#include "text.h"

namespace service {
namespace {

SharedShow readShow(const Statement& row) {
    SharedShow show;
    show.year = static_cast<int>(row.integer(0));
    show.month = static_cast<int>(row.integer(1));
    show.day = static_cast<int>(row.integer(2));
    show.ticketsAvailable = row.integer(3) != 0;
    show.artist = row.text(4);
    show.venue = row.text(5);
    show.location = row.text(6);
    show.url = row.text(7);
    show.otherArtists = row.text(8);
    return show;
}

// The columns that tell one shared show from another, bound in this order.
const char kShowKey[] = "username_key = ? AND show_year = ? AND show_month = ? AND show_day = ? "
                        "AND artist = ? AND venue = ?";

void bindShowKey(Statement& statement, const std::string& username, const SharedShow& show) {
    statement.bind(1, nameKey(username)).bind(2, show.year).bind(3, show.month).bind(4, show.day);
    statement.bind(5, show.artist).bind(6, show.venue);
}

int64_t countOf(Connection& db, const std::string& sql, const std::string& key) {
    Statement row = db.prepare(sql);
    row.bind(1, key);
    return row.step() ? row.integer(0) : 0;
}

} // namespace

bool SqliteStorage::sharingUserExists(const std::string& username) {
    auto db = pool_.lease();
    Statement row = db->prepare("SELECT 1 FROM sharing_users WHERE username_key = ?");
    return row.bind(1, nameKey(username)).step();
}

Claim SqliteStorage::claimSharingUser(const SharingUser& user) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    db->prepare("INSERT INTO sharing_users (username_key, username, uuid, city, state, city_key, "
                "state_key, first_name, last_name) VALUES (?, ?, ?, '', '', '', '', '', '') "
                "ON CONFLICT DO NOTHING")
        .bind(1, nameKey(user.username))
        .bind(2, user.username)
        .bind(3, user.uuid)
        .run();
    const bool created = db->changes() > 0;
    db->prepare("UPDATE sharing_users SET username = ?, city = ?, state = ?, city_key = ?, "
                "state_key = ?, first_name = ?, last_name = ? WHERE username_key = ? AND uuid = ?")
        .bind(1, user.username)
        .bind(2, user.city)
        .bind(3, user.state)
        .bind(4, nameKey(user.city))
        .bind(5, nameKey(user.state))
        .bind(6, user.firstName)
        .bind(7, user.lastName)
        .bind(8, nameKey(user.username))
        .bind(9, user.uuid)
        .run();
    const bool owned = db->changes() > 0;
    transaction.commit();
    if (!owned) return Claim::Taken;
    return created ? Claim::Created : Claim::Updated;
}

bool SqliteStorage::sharingUserOwnedBy(const std::string& username, const std::string& uuid) {
    auto db = pool_.lease();
    Statement row = db->prepare("SELECT 1 FROM sharing_users WHERE username_key = ? AND uuid = ?");
    return row.bind(1, nameKey(username)).bind(2, uuid).step();
}

bool SqliteStorage::addSharedShow(const std::string& username, const SharedShow& show,
                                  int maxShows) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    const int64_t count = countOf(*db, "SELECT COUNT(*) FROM shared_shows WHERE username_key = ?",
                                  nameKey(username));
    if (count >= maxShows) {
        // A show already there is still accepted: sending it again is harmless.
        Statement row = db->prepare(std::string("SELECT 1 FROM shared_shows WHERE ") + kShowKey);
        bindShowKey(row, username, show);
        return row.step();
    }
    storeShow(*db, username, show);
    transaction.commit();
    return true;
}

void SqliteStorage::deleteSharedShow(const std::string& username, const SharedShow& show) {
    auto db = pool_.lease();
    Statement remove = db->prepare(std::string("DELETE FROM shared_shows WHERE ") + kShowKey);
    bindShowKey(remove, username, show);
    remove.run();
}

std::vector<SharingUser> SqliteStorage::localUsers(const std::string& city,
                                                   const std::string& state, int limit) {
    auto db = pool_.lease();
    Statement row = db->prepare("SELECT username, city, state, first_name, last_name FROM "
                                "sharing_users WHERE city_key = ? AND state_key = ? "
                                "ORDER BY username_key LIMIT ?");
    row.bind(1, nameKey(city)).bind(2, nameKey(state)).bind(3, limit);
    std::vector<SharingUser> users;
    while (row.step()) {
        SharingUser user;
        user.username = row.text(0);
        user.city = row.text(1);
        user.state = row.text(2);
        user.firstName = row.text(3);
        user.lastName = row.text(4);
        users.push_back(std::move(user));
    }
    return users;
}

std::optional<std::vector<SharedShow>> SqliteStorage::userShows(const std::string& username) {
    auto db = pool_.lease();
    {
        Statement exists = db->prepare("SELECT 1 FROM sharing_users WHERE username_key = ?");
        if (!exists.bind(1, nameKey(username)).step()) return std::nullopt;
    }
    Statement row = db->prepare("SELECT show_year, show_month, show_day, tickets, artist, venue, "
                                "location, url, other_artists FROM shared_shows "
                                "WHERE username_key = ? ORDER BY show_year, show_month, show_day, "
                                "artist, venue");
    row.bind(1, nameKey(username));
    std::vector<SharedShow> shows;
    while (row.step()) shows.push_back(readShow(row));
    return shows;
}

std::optional<PhoneAccount> SqliteStorage::phoneAccount(const std::string& username) {
    auto db = pool_.lease();
    Statement row = db->prepare(
        "SELECT username, uuid, password_hash FROM phone_accounts WHERE username_key = ?");
    if (!row.bind(1, nameKey(username)).step()) return std::nullopt;
    return PhoneAccount{row.text(0), row.text(1), row.text(2)};
}

bool SqliteStorage::createPhoneAccount(const PhoneAccount& account) {
    auto db = pool_.lease();
    db->prepare("INSERT INTO phone_accounts (username_key, username, uuid, password_hash) "
                "VALUES (?, ?, ?, ?) ON CONFLICT DO NOTHING")
        .bind(1, nameKey(account.username))
        .bind(2, account.username)
        .bind(3, account.uuid)
        .bind(4, account.passwordHash)
        .run();
    return db->changes() > 0;
}

void SqliteStorage::setPhonePasswordHash(const std::string& username, const std::string& hash) {
    auto db = pool_.lease();
    db->prepare("UPDATE phone_accounts SET password_hash = ? WHERE username_key = ?")
        .bind(1, hash)
        .bind(2, nameKey(username))
        .run();
}

bool SqliteStorage::addPhoneArtists(const std::string& username,
                                    const std::vector<std::string>& artists, int maxArtists) {
    auto db = pool_.lease();
    Transaction transaction(*db);
    const std::string key = nameKey(username);
    int64_t count =
        countOf(*db, "SELECT COUNT(*) FROM phone_artists WHERE username_key = ?", key);
    for (const std::string& artist : artists) {
        db->prepare("INSERT INTO phone_artists (username_key, artist) VALUES (?, ?) "
                    "ON CONFLICT DO NOTHING")
            .bind(1, key)
            .bind(2, artist)
            .run();
        count += db->changes();
        if (count > maxArtists) return false; // the transaction rolls back
    }
    transaction.commit();
    return true;
}

std::vector<std::string> SqliteStorage::phoneArtists(const std::string& username) {
    auto db = pool_.lease();
    Statement row = db->prepare(
        "SELECT artist FROM phone_artists WHERE username_key = ? ORDER BY artist");
    row.bind(1, nameKey(username));
    std::vector<std::string> artists;
    while (row.step()) artists.push_back(row.text(0));
    return artists;
}

} // namespace service
