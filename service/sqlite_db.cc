// SQLite owners: see sqlite_db.h. Errors become StorageError with SQLite's
// own message, so a 500 reply and the log say what the database said.
#include "sqlite_db.h"

#include "storage.h"

namespace service {

Statement::Statement(Connection& connection, sqlite3_stmt* statement)
    : connection_(connection), statement_(statement) {}

Statement::~Statement() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

Statement& Statement::bind(int index, const std::string& value) {
    // SQLITE_TRANSIENT: SQLite copies the text, the caller's string may go.
    if (sqlite3_bind_text(statement_, index, value.data(), static_cast<int>(value.size()),
                          SQLITE_TRANSIENT) != SQLITE_OK)
        connection_.fail("bind");
    return *this;
}

Statement& Statement::bind(int index, int64_t value) {
    if (sqlite3_bind_int64(statement_, index, value) != SQLITE_OK) connection_.fail("bind");
    return *this;
}

Statement& Statement::bind(int index, double value) {
    if (sqlite3_bind_double(statement_, index, value) != SQLITE_OK) connection_.fail("bind");
    return *this;
}

bool Statement::step() {
    int rc = sqlite3_step(statement_);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    connection_.fail("step");
}

void Statement::run() {
    while (step()) {
    }
}

std::string Statement::text(int column) const {
    const unsigned char* value = sqlite3_column_text(statement_, column);
    if (!value) return std::string();
    return std::string(reinterpret_cast<const char*>(value),
                       static_cast<size_t>(sqlite3_column_bytes(statement_, column)));
}

int64_t Statement::integer(int column) const { return sqlite3_column_int64(statement_, column); }

double Statement::real(int column) const { return sqlite3_column_double(statement_, column); }

Connection::Connection(const std::string& path) {
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(path.c_str(), &db_, flags, nullptr) != SQLITE_OK) {
        std::string message = db_ ? sqlite3_errmsg(db_) : "out of memory";
        sqlite3_close(db_);
        throw StorageError("cannot open database " + path + ": " + message);
    }
    try {
        // Writers queue for up to ten seconds instead of failing at once.
        sqlite3_busy_timeout(db_, 10000);
        exec("PRAGMA journal_mode=WAL");
        exec("PRAGMA synchronous=FULL");
        exec("PRAGMA foreign_keys=ON");
    } catch (...) {
        sqlite3_close(db_);
        throw;
    }
}

Connection::~Connection() {
    for (auto& entry : statements_) sqlite3_finalize(entry.second);
    sqlite3_close(db_);
}

Statement Connection::prepare(const std::string& sql) {
    auto found = statements_.find(sql);
    if (found != statements_.end()) return Statement(*this, found->second);
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()),
                           SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK)
        fail("prepare " + sql);
    statements_.emplace(sql, statement);
    return Statement(*this, statement);
}

void Connection::exec(const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        std::string text = message ? message : sqlite3_errmsg(db_);
        sqlite3_free(message);
        throw StorageError(text);
    }
}

void Connection::fail(const std::string& what) const {
    throw StorageError(what + ": " + sqlite3_errmsg(db_));
}

Transaction::Transaction(Connection& connection) : connection_(connection) {
    // IMMEDIATE takes the write lock now, so two writers never deadlock
    // upgrading read locks.
    connection_.exec("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (done_) return;
    try {
        connection_.exec("ROLLBACK");
    } catch (const StorageError&) {
        // Nothing more can be done; the connection rolls back when closed.
    }
}

void Transaction::commit() {
    connection_.exec("COMMIT");
    done_ = true;
}

ConnectionPool::Lease ConnectionPool::lease() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!idle_.empty()) {
            std::unique_ptr<Connection> connection = std::move(idle_.back());
            idle_.pop_back();
            return Lease(*this, std::move(connection));
        }
    }
    return Lease(*this, std::make_unique<Connection>(path_));
}

void ConnectionPool::giveBack(std::unique_ptr<Connection> connection) {
    std::lock_guard<std::mutex> lock(mutex_);
    idle_.push_back(std::move(connection));
}

} // namespace service
