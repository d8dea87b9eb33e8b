#include "gateway/postgresql/known_names.h"

namespace cnet::gateway {

void KnownNames::clear()
{
    *this = KnownNames();
}

void KnownNames::beginLook()
{
    m_numbers.clear();
    m_missingTags.clear();
    m_missingStates.clear();
}

KnownNames::TagKey KnownNames::keyOf(const ChangeSource &source)
{
    return {{source.line, source.tag}, source.station};
}

void KnownNames::look(const QVector<Change> &changes)
{
    for (const Change &change : changes) {
        qint64 &state = m_states[{static_cast<int>(change.quality), change.cause}];
        if (state == 0) {
            state = -1; // so that it is missing once
            m_missingStates.append(&change);
        }
        const ChangeSource &source = *change.source;
        if (m_numbers.contains(&source)) {
            continue;
        }
        Known &known = m_tags[keyOf(source)];
        const Known now{-1, source.unit, source.type, source.scale, source.offset};
        const bool isSame = known.unit == now.unit && known.type == now.type &&
                            known.scale == now.scale && known.offset == now.offset;
        // A tag that has two units in the same changes keeps the first one for now.
        if (known.number == 0 || (known.number > 0 && !isSame)) {
            known = now;
            m_missingTags.append(&source);
        }
        m_numbers.insert(&source, known.number);
    }
}

void KnownNames::noteTag(const QString &line, int station, const QString &tag, qint64 number)
{
    m_tags[{{line, tag}, station}].number = number;
}

void KnownNames::noteState(Quality quality, const QString &cause, qint64 number)
{
    m_states[{static_cast<int>(quality), cause}] = number;
}

qint64 KnownNames::numberOf(const ChangeSource &source)
{
    qint64 &number = m_numbers[&source];
    if (number <= 0) {
        number = m_tags.value(keyOf(source)).number;
    }
    return number;
}

qint64 KnownNames::numberOf(Quality quality, const QString &cause) const
{
    return m_states.value({static_cast<int>(quality), cause});
}

} // namespace cnet::gateway
