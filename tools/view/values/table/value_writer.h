#pragma once

#include "view/look/colours.h"
#include "view/tags/watched_tags.h"

#include "host/jobs/write_job.h"

#include <QHash>
#include <QObject>

#include <optional>

namespace cnet::view {

/** How far a write has come. */
enum class WriteStage {
    None,         ///< nothing was written
    Waiting,      ///< for the PLC
    Taken,        ///< the PLC has it
    Refused,      ///< the PLC said no
    NotSent,      ///< nothing went out
    NotConfirmed, ///< it went out, and nobody knows whether the PLC has carried it out
    NoAnswer,     ///< the same, since the PLC says nothing
    Differs,      ///< the PLC confirmed it and holds something else
};

/** What there is to say of a write. */
struct WriteNote
{
    WriteStage stage = WriteStage::None;
    QString text; ///< for people, with the reason; empty for None
};

/** What colour and sign a stage has. */
Tone toneOf(WriteStage stage);

/** Writes single values, and tells what became of each, even where the session ends meanwhile. */
class ValueWriter : public QObject
{
    Q_OBJECT

public:
    /** @param tags must outlive this object */
    explicit ValueWriter(WatchedTags &tags, QObject *parent = nullptr);

    /**
     * What a write of a text would send; nothing is sent.
     * @param one tag of one value
     * @param text as people write values; the tag's unit may stand behind
     * @param error receives one sentence when the result is empty
     */
    std::optional<QVector<Assignment>> planned(const Tag &one, const QString &text,
                                               QString &error) const;

    /**
     * Writes, and reads back what the PLC holds then. noted() comes at once, and again when the
     * write has ended.
     * @param key what noted() is told with; of several writes with the same one the last is told of
     */
    void write(const QString &key, const Tag &one, const QString &text);

Q_SIGNALS:
    void noted(const QString &key, const cnet::view::WriteNote &note);

private:
    void follow(const QString &key, const Tag &one, WriteJob *job);

    WatchedTags &m_tags;
    QHash<QString, const QObject *> m_open; ///< the last job of each key that has not ended
};

} // namespace cnet::view
