#include "view/values/table/value_writer.h"

#include "host/address/value_text.h"
#include "host/tag/tag_writing.h"
#include "host/tag/typed_item.h"
#include "host/tag/value_format.h"

namespace cnet::view {

namespace {

QString withoutUnit(const Tag &tag, const QString &text)
{
    const QString trimmed = text.trimmed();
    const bool isText = tag.type.kind == ValueKind::String || tag.type.kind == ValueKind::Enum;
    const bool hasUnit = !tag.unit.isEmpty() && !isText && trimmed.endsWith(tag.unit);
    return hasUnit ? trimmed.left(trimmed.size() - tag.unit.size()).trimmed() : text;
}

/// What the PLC was found to hold; empty where nobody knows.
QString heldText(const Tag &one, const WriteResult &result)
{
    if (!result.now || !result.now->isGood()) {
        return {};
    }
    const Item &item = result.now->item;
    if (item.reg.name != one.item.reg.name || item.start != one.item.start) {
        return valuesText(result.now->values, item.reg.isBit()); // a bit of the tag's word
    }
    const auto values = readTag(one, result.now->values, result.now->known, Quality::Good);
    return values.isEmpty() ? QString() : shownText(one, values.first().value);
}

QString withHeld(const QString &text, const QString &held)
{
    return held.isEmpty() ? text : ValueWriter::tr("%1; it holds %2").arg(text, held);
}

WriteNote noteOf(const Tag &one, const WriteResult &result)
{
    const QString held = heldText(one, result);
    switch (result.outcome) {
    case WriteOutcome::Written:
        return {WriteStage::Taken, held.isEmpty() ? ValueWriter::tr("taken, not read back")
                                                  : ValueWriter::tr("taken, reads %1").arg(held)};
    case WriteOutcome::Refused:
        return {WriteStage::Refused, withHeld(result.failure.text(), held)};
    case WriteOutcome::NotSent:
        return {WriteStage::NotSent, ValueWriter::tr("not sent: %1").arg(result.failure.text())};
    case WriteOutcome::Mismatch:
        return {WriteStage::Differs, ValueWriter::tr("confirmed, but the PLC holds %1").arg(held)};
    case WriteOutcome::NotConfirmed:
        break;
    case WriteOutcome::Open:
        return {WriteStage::NotConfirmed, ValueWriter::tr("not confirmed")};
    }
    if (result.failure.kind == Failure::NoAnswer) {
        const QString text = ValueWriter::tr("no answer, the PLC may have taken it");
        return {WriteStage::NoAnswer, withHeld(text, held)};
    }
    const QString text = ValueWriter::tr("not confirmed: %1").arg(result.failure.text());
    return {WriteStage::NotConfirmed, withHeld(text, held)};
}

} // namespace

Tone toneOf(WriteStage stage)
{
    switch (stage) {
    case WriteStage::None:
        return Tone::Idle;
    case WriteStage::Waiting:
        return Tone::Waiting;
    case WriteStage::Taken:
        return Tone::Good;
    case WriteStage::NotConfirmed:
    case WriteStage::Differs:
        return Tone::Doubtful;
    case WriteStage::Refused:
    case WriteStage::NotSent:
    case WriteStage::NoAnswer:
        break;
    }
    return Tone::Bad;
}

ValueWriter::ValueWriter(WatchedTags &tags, QObject *parent)
    : QObject(parent)
    , m_tags(tags)
{}

std::optional<QVector<Assignment>> ValueWriter::planned(const Tag &one, const QString &text,
                                                        QString &error) const
{
    const auto value = parseTyped(one, withoutUnit(one, text), error);
    if (!value) {
        return std::nullopt;
    }
    Line &line = m_tags.line();
    const auto parts = assignmentsOf(one, {*value}, line.registers(), kHighestWriteWords, error);
    if (!parts) {
        return std::nullopt;
    }
    for (const Assignment &part : *parts) {
        if (!line.driver().check(part.item, Access::Write, error)) {
            return std::nullopt;
        }
    }
    return parts;
}

void ValueWriter::write(const QString &key, const Tag &one, const QString &text)
{
    QString error;
    const auto parts = planned(one, text, error);
    if (!parts) {
        m_open.remove(key);
        Q_EMIT noted(key, {WriteStage::NotSent, tr("not sent: %1").arg(error)});
        return;
    }
    Line &line = m_tags.line();
    if (!line.isOpen()) {
        // Nothing is kept for later: a write that comes as a surprise moves a machine.
        m_open.remove(key);
        Q_EMIT noted(key, {WriteStage::NotSent, tr("not sent: %1").arg(line.stateText())});
        return;
    }
    follow(key, one, line.session()->write(*parts, ReadBack::Always));
    Q_EMIT noted(key, {WriteStage::Waiting, tr("waiting for the PLC: %1").arg(text.trimmed())});
}

void ValueWriter::follow(const QString &key, const Tag &one, WriteJob *job)
{
    m_open.insert(key, job);
    const auto end = [this, key](const QObject *ended, const WriteNote &note) {
        const auto open = m_open.constFind(key);
        if (open != m_open.cend() && *open == ended) {
            m_open.erase(open);
            Q_EMIT noted(key, note);
        }
    };
    connect(job, &Job::finished, this, [end, one, job] {
        // The worst part is what one has to know of.
        WriteNote note;
        for (const WriteResult &result : job->results()) {
            if (note.stage == WriteStage::None || note.stage == WriteStage::Taken) {
                note = noteOf(one, result);
            }
        }
        end(job, note);
    });
    connect(job, &QObject::destroyed, this, [end](const QObject *gone) {
        end(gone, {WriteStage::NotConfirmed, tr("not confirmed: the connection has ended")});
    });
}

} // namespace cnet::view
