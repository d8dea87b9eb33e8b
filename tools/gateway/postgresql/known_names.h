#pragma once

#include "gateway/change/change.h"

#include <QHash>
#include <QVector>

#include <utility>

namespace cnet::gateway {

/** The numbers that a database gave to tags, and to qualities with their causes. */
class KnownNames
{
public:
    /** All of them. */
    void clear();

    /** Begins with other changes: what look() was shown may go. */
    void beginLook();
    /** Looks for what some changes need. They must stay until beginLook(). */
    void look(const QVector<Change> &changes);

    /** What look() found no number for, each once. */
    const QVector<const ChangeSource *> &missingTags() const { return m_missingTags; }
    const QVector<const Change *> &missingStates() const { return m_missingStates; }

    void noteTag(const QString &line, int station, const QString &tag, qint64 number);
    void noteState(Quality quality, const QString &cause, qint64 number);

    /** @return 0: it was not noted */
    qint64 numberOf(const ChangeSource &source);
    qint64 numberOf(Quality quality, const QString &cause) const;

private:
    using TagKey = std::pair<std::pair<QString, QString>, int>;
    using StateKey = std::pair<int, QString>;

    struct Known
    {
        qint64 number = 0;
        QString unit;
        ValueType type;
        double scale = 1;
        double offset = 0;
    };

    static TagKey keyOf(const ChangeSource &source);

    QHash<TagKey, Known> m_tags;
    QHash<StateKey, qint64> m_states;
    QHash<const ChangeSource *, qint64> m_numbers; ///< since beginLook()
    QVector<const ChangeSource *> m_missingTags;
    QVector<const Change *> m_missingStates;
};

} // namespace cnet::gateway
