#pragma once

#include "host/value/typed_value.h"

#include <QByteArray>
#include <QString>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace cnet::gateway {

/** Why a statement or a file failed. */
struct StoreError
{
    enum class Kind {
        None,
        Full,     ///< no room right now; later it may work again
        ReadOnly, ///< no right to write
        InUse,    ///< another process has the file
        Broken,   ///< the file is damaged, or is no database
        Other,
    };

    Kind kind = Kind::None;
    QString text; ///< in the library's words; empty with None

    bool isNone() const { return kind == Kind::None; }
};

/** An SQLite file that is open on one thread. */
class Database
{
public:
    /** What a power cut may cost. */
    enum class Durability {
        Full,   ///< nothing that was committed: each commit waits for the disk
        Normal, ///< the last commits, the file stays sound
    };

    /** Who else may use the file meanwhile. */
    enum class Sharing {
        None,    ///< nobody
        Readers, ///< whoever reads it
    };

    Database() = default;
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    /**
     * Opens the file, or makes it.
     * @return what failed; then it is not open
     */
    StoreError open(const QString &path, Durability durability, Sharing sharing = Sharing::None);

    /** Opens a file that is there already, and changes nothing in it. */
    StoreError openToRead(const QString &path);

    void close();
    bool isOpen() const { return m_handle != nullptr; }

    /** Runs statements that give no rows. @param sql one or several, each with a ";" */
    StoreError run(const char *sql);

    /** Size of the file without its journal, in bytes; 0 while it is not open. */
    qint64 fileBytes();

    sqlite3 *handle() const { return m_handle; }
    /** What failed last. */
    StoreError error() const;

private:
    StoreError openFile(const QString &path, int flags);

    sqlite3 *m_handle = nullptr;
};

/** A prepared statement: bind() what stands for its "?", then step() to its rows. */
class Statement
{
public:
    enum class Step { Row, Done, Failed };

    /** @param database must outlive it; a text that is wrong fails with the first step() */
    Statement(Database &database, const char *sql);

    /** @param place of the "?", from 1 */
    Statement &bind(int place, qint64 value);
    Statement &bind(int place, const QString &text);
    Statement &bind(int place, const QByteArray &bytes);
    /** A truth as 0 or 1, a whole number beyond 2^63 as text, nothing as NULL. */
    Statement &bindScalar(int place, const Scalar &value);

    /** The next row. Behind Done and Failed it begins anew with the same values. */
    Step step();

    /** Runs it to its end. @return false: Database::error() says why */
    bool run();

    /** @param column from 0, of the row that step() came to; 0 where it holds NULL */
    qint64 number(int column) const;
    QString text(int column) const;
    QByteArray bytes(int column) const;
    double real(int column) const;
    /** A whole number, one with a fraction, text, or nothing, as the file has it. */
    Scalar scalar(int column) const;

private:
    struct Finalizer
    {
        void operator()(sqlite3_stmt *statement) const;
    };

    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};

/** All statements until commit() take effect together; without it none does. */
class Transaction
{
public:
    explicit Transaction(Database &database);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    StoreError commit();

private:
    Database &m_database;
    StoreError m_begun;
    bool m_open = false;
};

} // namespace cnet::gateway
