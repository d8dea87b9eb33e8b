#include "gateway/postgresql/pg_connection.h"

#include "gateway/toml/config_units.h"

#include <QSocketNotifier>

#include <libpq-fe.h>

#include <utility>
#include <vector>

namespace cnet::gateway {

namespace {

void ignoreNotice(void * /*context*/, const pg_result * /*result*/) {}

/** Ends a notifier, perhaps from within its own signal. */
void dismiss(QSocketNotifier *&notifier)
{
    if (notifier != nullptr) {
        notifier->setEnabled(false);
        notifier->disconnect();
        notifier->deleteLater();
        notifier = nullptr;
    }
}

} // namespace

void PgConnection::Closer::operator()(pg_conn *connection) const
{
    PQfinish(connection);
}

PgConnection::PgConnection(Clock &clock)
    : m_silence(clock.makeAlarm())
    , m_start(clock.makeAlarm())
{
    connect(m_silence.get(), &Alarm::fired, this, [this] {
        breakOff(QString::fromLatin1("the server does not answer within %1")
                     .arg(durationText(m_timeoutMs)));
    });
    connect(m_start.get(), &Alarm::fired, this, &PgConnection::goOn);
}

PgConnection::~PgConnection()
{
    close();
}

void PgConnection::open(const Parameters &parameters, int timeoutMs)
{
    close();
    std::vector<const char *> names;
    std::vector<const char *> values;
    for (const auto &parameter : parameters) {
        names.push_back(parameter.first.constData());
        values.push_back(parameter.second.constData());
    }
    names.push_back(nullptr);
    values.push_back(nullptr);
    m_timeoutMs = timeoutMs;
    m_phase = Phase::Opening;
    m_connection.reset(PQconnectStartParams(names.data(), values.data(), 0));
    PQsetNoticeReceiver(m_connection.get(), ignoreNotice, nullptr);
    m_silence->set(timeoutMs);
    if (PQstatus(m_connection.get()) == CONNECTION_BAD) {
        m_start->set(0);
    } else {
        m_isSending = true; // as libpq says of a connection that was just begun
        watch();
    }
}

void PgConnection::close()
{
    m_silence->cancel();
    m_start->cancel();
    dismiss(m_reading);
    dismiss(m_writing);
    m_connection.reset();
    m_phase = Phase::Closed;
    m_isSent = true;
    m_isSending = false;
    m_isCopying = false;
    m_rows = Rows();
    m_answer = PgAnswer();
}

void PgConnection::run(const QByteArray &sql)
{
    run(sql, Rows());
}

void PgConnection::run(const QByteArray &sql, Rows rows)
{
    m_rows = std::move(rows);
    m_answer = PgAnswer();
    m_phase = Phase::Busy;
    m_silence->set(m_timeoutMs);
    // What fails here is told by goOn(), and by nothing before run() is left.
    m_isSent = PQsendQuery(m_connection.get(), sql.constData()) == 1;
    m_start->set(0);
}

void PgConnection::goOn()
{
    if (m_phase == Phase::Opening) {
        goOnOpening();
    } else if (m_phase != Phase::Closed) {
        goOnWorking();
    }
}

void PgConnection::goOnOpening()
{
    // While it opens, libpq may go from one socket to another, which may have the same number.
    dismiss(m_reading);
    dismiss(m_writing);
    const auto state = PQconnectPoll(m_connection.get());
    if (state == PGRES_POLLING_FAILED) {
        breakOff(firstReason(PQerrorMessage(m_connection.get())));
        return;
    }
    m_isSending = state == PGRES_POLLING_WRITING;
    if (state != PGRES_POLLING_OK) {
        watch();
        return;
    }
    PQsetnonblocking(m_connection.get(), 1);
    m_phase = Phase::Idle;
    m_silence->cancel();
    watch();
    Q_EMIT opened();
}

void PgConnection::goOnWorking()
{
    if (!m_isSent || PQconsumeInput(m_connection.get()) == 0 || !send()) {
        breakOff(firstReason(PQerrorMessage(m_connection.get())));
        return;
    }
    if (m_phase == Phase::Busy) {
        m_silence->set(m_timeoutMs);
    }
    const bool isDone = m_phase == Phase::Busy && receive();
    if (m_phase == Phase::Idle) {
        // Takes what the server says by itself, and forgets it: that it goes is said by the socket.
        PQisBusy(m_connection.get());
    }
    watch();
    if (isDone) {
        const PgAnswer answer = std::exchange(m_answer, PgAnswer());
        Q_EMIT answered(answer);
    }
}

/** @return false: the connection is lost */
bool PgConnection::send()
{
    const int left = PQflush(m_connection.get());
    m_isSending = left == 1;
    return left >= 0;
}

/** Rows while the socket takes them. @return false: the connection is lost */
bool PgConnection::sendRows()
{
    while (m_isCopying && !m_isSending) {
        const QByteArray rows = m_rows ? m_rows() : QByteArray();
        const int taken = rows.isEmpty() ? PQputCopyEnd(m_connection.get(), nullptr)
                                         : PQputCopyData(m_connection.get(), rows.constData(),
                                                         static_cast<int>(rows.size()));
        m_isCopying = !rows.isEmpty();
        if (taken != 1 || !send()) {
            return false;
        }
    }
    return true;
}

/** @return true: all is answered */
bool PgConnection::receive()
{
    if (!sendRows()) {
        breakOff(firstReason(PQerrorMessage(m_connection.get())));
        return false;
    }
    while (!m_isCopying && PQisBusy(m_connection.get()) == 0) {
        pg_result *result = PQgetResult(m_connection.get());
        if (result == nullptr) {
            m_phase = Phase::Idle;
            m_silence->cancel();
            return true;
        }
        note(result);
        const bool isCopy = PQresultStatus(result) == PGRES_COPY_IN;
        PQclear(result);
        if (isCopy) {
            m_isCopying = true;
            if (!sendRows()) {
                breakOff(firstReason(PQerrorMessage(m_connection.get())));
                return false;
            }
        }
    }
    return false;
}

void PgConnection::note(pg_result *result)
{
    const ExecStatusType status = PQresultStatus(result);
    if (status == PGRES_FATAL_ERROR || status == PGRES_BAD_RESPONSE) {
        const QByteArray state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
        const QByteArray message = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
        m_answer.failure = message.isEmpty() ? PgFailure{PgFailure::Kind::Other,
                                                         firstReason(PQresultErrorMessage(result))}
                                             : failureOf(state, QString::fromUtf8(message));
    } else if (status == PGRES_TUPLES_OK) {
        m_answer.rows.clear();
        for (int row = 0; row < PQntuples(result); ++row) {
            QStringList fields;
            for (int column = 0; column < PQnfields(result); ++column) {
                fields.append(QString::fromUtf8(PQgetvalue(result, row, column)));
            }
            m_answer.rows.append(fields);
        }
    }
    const QByteArray touched = PQcmdTuples(result);
    if (!touched.isEmpty()) {
        m_answer.touched = touched.toLongLong();
    }
}

void PgConnection::watch()
{
    if (m_phase == Phase::Closed) {
        return;
    }
    setNotifiers(PQsocket(m_connection.get()));
    m_reading->setEnabled(m_phase != Phase::Opening || !m_isSending);
    m_writing->setEnabled(m_isSending);
}

void PgConnection::setNotifiers(int socket)
{
    if (m_reading == nullptr) {
        m_reading = new QSocketNotifier(socket, QSocketNotifier::Read, this);
        m_writing = new QSocketNotifier(socket, QSocketNotifier::Write, this);
        connect(m_reading, &QSocketNotifier::activated, this, [this] { goOn(); });
        connect(m_writing, &QSocketNotifier::activated, this, [this] { goOn(); });
    }
}

void PgConnection::breakOff(const QString &reason)
{
    close();
    Q_EMIT broken(reason);
}

} // namespace cnet::gateway
