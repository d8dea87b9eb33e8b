#include "gateway/store/database.h"

#include <sqlite3.h>

namespace cnet::gateway {

namespace {

// What SQLite may keep of a commit's pages before they reach the file itself.
constexpr int kJournalPages = 1000;
// How long a reader waits for a writer that is just sorting its journal.
constexpr int kPatienceMs = 5000;

StoreError::Kind kindOf(int code)
{
    // The low byte is the class of the error, the rest a detail.
    switch (code & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return StoreError::Kind::None;
    case SQLITE_FULL:
    case SQLITE_IOERR:
    case SQLITE_NOMEM:
        return StoreError::Kind::Full;
    case SQLITE_READONLY:
        return StoreError::Kind::ReadOnly;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return StoreError::Kind::InUse;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return StoreError::Kind::Broken;
    default:
        return StoreError::Kind::Other;
    }
}

const char *synchronousMode(Database::Durability durability)
{
    return durability == Database::Durability::Full ? "FULL" : "NORMAL";
}

} // namespace

Database::~Database()
{
    close();
}

StoreError Database::openFile(const QString &path, int flags)
{
    close();
    const QByteArray name = path.toUtf8();
    if (sqlite3_open_v2(name.constData(), &m_handle, flags | SQLITE_OPEN_NOMUTEX, nullptr) !=
        SQLITE_OK) {
        return error();
    }
    sqlite3_extended_result_codes(m_handle, 1);
    return StoreError();
}

StoreError Database::openToRead(const QString &path)
{
    StoreError failed = openFile(path, SQLITE_OPEN_READONLY);
    if (failed.isNone()) {
        sqlite3_busy_timeout(m_handle, kPatienceMs);
        failed = run("SELECT count(*) FROM sqlite_master;");
    }
    if (!failed.isNone()) {
        close();
    }
    return failed;
}

StoreError Database::open(const QString &path, Durability durability, Sharing sharing)
{
    StoreError failed = openFile(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (failed.isNone()) {
        // The lock is taken with the first write and kept, so two programs never share a file. How
        // free pages are given back is settled before the first table, or not at all.
        const QByteArray sql =
            QByteArray(sharing == Sharing::None ? "PRAGMA locking_mode=EXCLUSIVE;" : "") +
            QByteArray("PRAGMA auto_vacuum=INCREMENTAL; PRAGMA journal_mode=WAL; PRAGMA "
                       "wal_autocheckpoint=") +
            QByteArray::number(kJournalPages) + "; PRAGMA journal_size_limit=0;" +
            "PRAGMA synchronous=" + synchronousMode(durability) + ";" + "BEGIN IMMEDIATE; COMMIT;";
        failed = run(sql.constData());
    }
    if (!failed.isNone()) {
        close();
    }
    return failed;
}

void Database::close()
{
    sqlite3_close(m_handle);
    m_handle = nullptr;
}

StoreError Database::run(const char *sql)
{
    return sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) == SQLITE_OK ? StoreError()
                                                                               : error();
}

qint64 Database::fileBytes()
{
    if (!isOpen()) {
        return 0;
    }
    Statement pages(*this, "PRAGMA page_count");
    Statement size(*this, "PRAGMA page_size");
    pages.step();
    size.step();
    return pages.number(0) * size.number(0);
}

StoreError Database::error() const
{
    StoreError result;
    if (!m_handle) {
        result.kind = StoreError::Kind::Other;
        result.text = QLatin1String("the file is not open");
        return result;
    }
    result.kind = kindOf(sqlite3_extended_errcode(m_handle));
    if (!result.isNone()) {
        result.text = QString::fromUtf8(sqlite3_errmsg(m_handle));
    }
    return result;
}

void Statement::Finalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

Statement::Statement(Database &database, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    if (database.isOpen()) {
        sqlite3_prepare_v2(database.handle(), sql, -1, &statement, nullptr);
    }
    m_statement.reset(statement);
}

Statement &Statement::bind(int place, qint64 value)
{
    sqlite3_bind_int64(m_statement.get(), place, value);
    return *this;
}

Statement &Statement::bind(int place, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(m_statement.get(), place, utf8.constData(), static_cast<int>(utf8.size()),
                      SQLITE_TRANSIENT);
    return *this;
}

Statement &Statement::bind(int place, const QByteArray &bytes)
{
    sqlite3_bind_blob(m_statement.get(), place, bytes.constData(), static_cast<int>(bytes.size()),
                      SQLITE_TRANSIENT);
    return *this;
}

Statement &Statement::bindScalar(int place, const Scalar &value)
{
    if (const auto *truth = std::get_if<bool>(&value)) {
        return bind(place, qint64(*truth ? 1 : 0));
    }
    if (const auto *whole = std::get_if<qint64>(&value)) {
        return bind(place, *whole);
    }
    if (const auto *large = std::get_if<quint64>(&value)) {
        return bind(place, QString::number(*large));
    }
    if (const auto *text = std::get_if<QString>(&value)) {
        return bind(place, *text);
    }
    if (const auto *fraction = std::get_if<double>(&value)) {
        sqlite3_bind_double(m_statement.get(), place, *fraction);
    } else {
        sqlite3_bind_null(m_statement.get(), place);
    }
    return *this;
}

Statement::Step Statement::step()
{
    if (!m_statement) {
        return Step::Failed;
    }
    const int code = sqlite3_step(m_statement.get());
    if (code == SQLITE_ROW) {
        return Step::Row;
    }
    sqlite3_reset(m_statement.get());
    return code == SQLITE_DONE ? Step::Done : Step::Failed;
}

bool Statement::run()
{
    Step last = step();
    while (last == Step::Row) {
        last = step();
    }
    return last == Step::Done;
}

qint64 Statement::number(int column) const
{
    return m_statement ? sqlite3_column_int64(m_statement.get(), column) : 0;
}

QString Statement::text(int column) const
{
    return QString::fromUtf8(bytes(column));
}

QByteArray Statement::bytes(int column) const
{
    if (!m_statement) {
        return QByteArray();
    }
    const void *data = sqlite3_column_blob(m_statement.get(), column);
    return QByteArray(static_cast<const char *>(data),
                      sqlite3_column_bytes(m_statement.get(), column));
}

double Statement::real(int column) const
{
    return m_statement ? sqlite3_column_double(m_statement.get(), column) : 0;
}

Scalar Statement::scalar(int column) const
{
    switch (m_statement ? sqlite3_column_type(m_statement.get(), column) : SQLITE_NULL) {
    case SQLITE_INTEGER:
        return number(column);
    case SQLITE_FLOAT:
        return real(column);
    case SQLITE_TEXT:
        return text(column);
    default:
        return {};
    }
}

Transaction::Transaction(Database &database)
    : m_database(database)
    , m_begun(database.isOpen() ? database.run("BEGIN IMMEDIATE") : database.error())
    , m_open(m_begun.isNone())
{}

Transaction::~Transaction()
{
    // After some failures SQLite has rolled back by itself.
    if (m_open && !sqlite3_get_autocommit(m_database.handle())) {
        m_database.run("ROLLBACK");
    }
}

StoreError Transaction::commit()
{
    if (!m_begun.isNone()) {
        return m_begun;
    }
    StoreError failed = m_database.run("COMMIT");
    m_open = !failed.isNone();
    return failed;
}

} // namespace cnet::gateway
