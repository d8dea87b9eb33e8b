#include "gateway/postgresql/pg_answer.h"

#include <QRegularExpression>

#include <array>

namespace cnet::gateway {

namespace {

struct Meaning
{
    const char *state; ///< or its first characters, which are its class
    const char *text;  ///< "%1": the server's words
};

// Those with details of their own in the server's words, which change from time to time, are told
// without them: the same trouble is the same line.
constexpr std::array<Meaning, 12> kMeanings{{
    {"23514", "there is no place for this month: %1; create = true makes it"},
    {"25006", "the server only reads; it may be a standby"},
    {"3F000", "the tables are not there: %1; create = true makes them"},
    {"40", "others write the same rows: %1"},
    {"42501", "the user lacks a right: %1"},
    {"42P01", "the tables are not there: %1; create = true makes them"},
    {"53100", "the server has no room on its disk"},
    {"53200", "the server has no memory left"},
    {"53300", "the server takes no more connections"},
    {"55P03", "somebody holds a lock on a table: %1"},
    {"57P", "the server ends: %1"},
    {"58030", "the server cannot write to its disk"},
}};

} // namespace

PgFailure failureOf(const QByteArray &state, const QString &message)
{
    PgFailure failure;
    failure.kind =
        state == "40001" || state == "40P01" ? PgFailure::Kind::Again : PgFailure::Kind::Other;
    failure.text = message;
    for (const Meaning &meaning : kMeanings) {
        if (state.startsWith(meaning.state)) {
            failure.text = QString::fromLatin1(meaning.text);
            failure.text.replace(QLatin1String("%1"), message);
        }
    }
    return failure;
}

QString firstReason(const QByteArray &words)
{
    static const QRegularExpression place(
        QLatin1String("\\Aconnection to server .*? failed: (?=.)"));
    static const QRegularExpression severity(QLatin1String("\\A[A-Z]+: +(?=.)"));
    QString line = QString::fromUtf8(words).section(QLatin1Char('\n'), 0, 0).trimmed();
    line.remove(place).remove(severity);
    return line.isEmpty() ? QLatin1String("the connection was lost") : line;
}

} // namespace cnet::gateway
