// Small RAII owners over the SQLite C interface: a connection that keeps its
// prepared statements, a statement guard that resets on scope exit, and a
// pool that hands each worker thread a connection of its own (SQLite
// connections must not be used by two threads at once).
//
// Thread contract: a Connection and its statements belong to one thread at a
// time; ConnectionPool::lease may be called from any thread.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace service {

class Connection;

// A cached prepared statement in use. Binding indexes start at 1, columns at
// 0. The destructor resets the statement and clears its bindings, so the
// next user finds it fresh.
class Statement {
public:
    Statement(Connection& connection, sqlite3_stmt* statement);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& bind(int index, const std::string& value);
    Statement& bind(int index, int64_t value);
    Statement& bind(int index, int value) { return bind(index, static_cast<int64_t>(value)); }
    Statement& bind(int index, double value);

    // Advances to the next row: true while a row is there, false when done.
    bool step();
    // Runs a statement that returns no rows.
    void run();

    std::string text(int column) const;
    int64_t integer(int column) const;
    double real(int column) const;

private:
    Connection& connection_;
    sqlite3_stmt* statement_;
};

class Connection {
public:
    // Opens (creating) the database file in WAL mode with full sync, so a
    // committed write survives a killed process and a power cut alike.
    explicit Connection(const std::string& path);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // The statement for `sql`, compiled once per connection.
    Statement prepare(const std::string& sql);
    // Runs SQL text that needs no parameters (schema, transactions).
    void exec(const std::string& sql);
    int changes() const { return sqlite3_changes(db_); }
    [[noreturn]] void fail(const std::string& what) const;

private:
    sqlite3* db_ = nullptr;
    std::unordered_map<std::string, sqlite3_stmt*> statements_;
};

// Runs a write transaction; rolls back unless commit() was reached.
class Transaction {
public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Connection& connection_;
    bool done_ = false;
};

class ConnectionPool {
public:
    explicit ConnectionPool(std::string path) : path_(std::move(path)) {}

    // A connection owned by the caller until the lease ends.
    class Lease {
    public:
        Lease(ConnectionPool& pool, std::unique_ptr<Connection> connection)
            : pool_(pool), connection_(std::move(connection)) {}
        ~Lease() { pool_.giveBack(std::move(connection_)); }
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        Connection& operator*() { return *connection_; }
        Connection* operator->() { return connection_.get(); }

    private:
        ConnectionPool& pool_;
        std::unique_ptr<Connection> connection_;
    };

    Lease lease();

private:
    void giveBack(std::unique_ptr<Connection> connection);

    std::string path_;
    std::mutex mutex_;
    std::vector<std::unique_ptr<Connection>> idle_;
};

} // namespace service
