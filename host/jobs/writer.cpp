#include "host/jobs/writer.h"

#include "host/driver/job_tags.h"
#include "host/exchange/report_text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace cnet {

QVector<Piece> writePiecesOf(const Item &item, int blockWords)
{
    const int room = item.reg.isBit() ? 1 : std::clamp(blockWords, 1, kHighestWriteWords);
    QVector<Piece> pieces;
    for (int offset = 0; offset < item.count; offset += room) {
        pieces.append({offset, std::min(room, item.count - offset)});
    }
    return pieces;
}

Writer::Writer(DriverSession &driver, Exchange &exchange, int blockWords, QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_exchange(exchange)
    , m_blockWords(blockWords)
{
    connect(&exchange, &Exchange::ended, this, &Writer::handleEnded);
}

int Writer::add(const Assignment &assignment)
{
    const int number = ++m_lastNumber;
    for (const Piece &piece : writePiecesOf(assignment.item, m_blockWords)) {
        Part part{number, assignment.item, assignment.values.mid(piece.offset, piece.count)};
        part.item.start += piece.offset;
        part.item.count = piece.count;
        m_parts.append(part);
        ++m_assignments[number].parts;
    }
    if (m_tag == 0) {
        queueNext();
    }
    return number;
}

// One write at a time. A second one to the same place would take the first one's turn or undo what
// the driver shows when the first fails, and beyond 513 the driver replaces the last one: with a
// single write in its queue neither can happen. The line is no slower for it, since the next write
// is queued before the driver is asked again. And what is not queued yet can still be held back
// from a station that does not answer.
void Writer::queueNext()
{
    m_tag = 0;
    if (m_parts.isEmpty()) {
        return;
    }
    const Part part = m_parts.first();
    std::array<unsigned char, kValueAreaSize> data{};
    size_t at = 0;
    for (const quint16 value : part.values) {
        data.at(at++) = static_cast<unsigned char>(value & 0xFF);
        if (!part.item.reg.isBit()) {
            data.at(at++) = static_cast<unsigned char>(value >> 8);
        }
    }
    m_lastTag = m_lastTag < kFirstWrite || m_lastTag >= kLastWrite ? kFirstWrite : m_lastTag + 1;
    m_tag = m_lastTag;
    QString name = part.item.reg.name;
    m_driver.functions().setData(part.item.station, name, part.item.start, part.item.count,
                                 data.data(), m_tag);
    m_exchange.wake();
}

void Writer::handleEnded(const ExchangeReport &report)
{
    if (m_tag == 0 || report.request.opKind != m_tag || !report.isFinal()) {
        return;
    }
    const bool failed = report.result == kAnswerGivenUp;
    // The bit of a data register is changed within its word, which is read first. The write is
    // settled by its own frame, or when either of the two was given up.
    if (!failed && !isWriteRequest(report.frame)) {
        return;
    }
    const Part part = m_parts.takeFirst();
    note(part, failed ? failureText(report) : QString());
    if (failed && report.isSilence()) {
        dropPartsOf(part.item.station);
    }
    queueNext();
    announceSettled();
}

// What waits for a station that was silent through all attempts is not even tried. Later additions
// are.
void Writer::dropPartsOf(int station)
{
    QList<Part> kept;
    for (const Part &part : std::as_const(m_parts)) {
        if (part.item.station == station) {
            note(part, QLatin1String("not sent, the station does not answer"));
        } else {
            kept.append(part);
        }
    }
    m_parts = kept;
}

void Writer::note(const Part &part, const QString &failure)
{
    Open &open = m_assignments[part.number];
    --open.parts;
    if (open.failure.isEmpty()) {
        open.failure = failure;
    }
}

// Last of all: whoever is told may add further values.
void Writer::announceSettled()
{
    const QList<int> numbers = m_assignments.keys();
    for (const int number : numbers) {
        if (m_assignments.value(number).parts == 0) {
            const Open open = m_assignments.take(number);
            Q_EMIT settled(number, open.failure);
        }
    }
}

} // namespace cnet
