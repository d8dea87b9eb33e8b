#include "outages/audit.h"

#include <QSet>

#include <algorithm>

namespace {

const int kMostOfAKind = 5;

} // namespace

Audit::Audit(const QVector<Told> &reference)
    : m_reference(reference)
{
    findPlaces();
}

void Audit::findPlaces()
{
    m_places.clear();
    for (int i = 0; i < m_reference.size(); ++i) {
        m_places[m_reference.at(i).key()].append(i);
    }
}

void Audit::fault(const char *place, const char *what, const QByteArray &key)
{
    const QByteArray kind = QByteArray(place) + ": " + what;
    if (++m_count[kind] <= kMostOfAKind) {
        m_faults.append(QString::fromUtf8(kind + ": " + key));
    }
}

void Audit::leaveOut(const char *place, const QVector<Told> &told, qint64 dropped)
{
    if (dropped == 0) {
        return;
    }
    QSet<QByteArray> keys;
    for (const Told &own : told) {
        keys.insert(own.key());
    }
    const auto first =
        std::find_if(m_reference.begin(), m_reference.end(),
                     [&keys](const Told &taken) { return !keys.contains(taken.key()); });
    if (std::distance(first, m_reference.end()) < dropped) {
        fault(place, "has what was counted as dropped", QByteArray::number(dropped));
        return;
    }
    m_reference.erase(first, first + static_cast<int>(dropped));
    findPlaces();
}

void Audit::checkHistory(const char *place, const QVector<Told> &told)
{
    checkComplete(place, told);
    if (told.size() != m_reference.size()) {
        fault(place, "has another number of changes", QByteArray::number(int(told.size())));
        return;
    }
    for (int i = 0; i < told.size(); ++i) {
        if (told.at(i).key() != m_reference.at(i).key()) {
            fault(place, "has it elsewhere", told.at(i).key());
        }
    }
}

void Audit::checkStream(const char *place, const QVector<Told> &told)
{
    checkComplete(place, told);
    checkOrder(place, told, false);
    checkOrder(place, told, true);
}

void Audit::checkFirsts(const char *place, const QVector<Told> &told)
{
    QSet<QByteArray> seen;
    QVector<Told> firsts;
    for (const Told &own : told) {
        if (!seen.contains(own.key())) {
            seen.insert(own.key());
            firsts.append(own);
        }
    }
    checkStream(place, firsts);
}

void Audit::checkComplete(const char *place, const QVector<Told> &told)
{
    QSet<QByteArray> keys;
    for (const Told &own : told) {
        keys.insert(own.key());
        if (!m_places.contains(own.key())) {
            fault(place, "has what the ledger never took", own.key());
        }
    }
    for (const Told &taken : m_reference) {
        if (!keys.contains(taken.key())) {
            fault(place, "lacks what the ledger took", taken.key());
        }
    }
}

// Each is looked for behind the one before; the same change may have been taken more than once.
void Audit::checkOrder(const char *place, const QVector<Told> &told, bool isOld)
{
    QHash<QByteArray, int> last; // of a tag, or of a tag and a connection
    for (const Told &own : told) {
        if (own.isOld != isOld || !m_places.contains(own.key())) {
            continue;
        }
        const QByteArray stream =
            isOld ? own.tag + '|' + QByteArray::number(own.connection) : own.tag;
        const QVector<int> &all = m_places[own.key()];
        const auto next = std::upper_bound(all.begin(), all.end(), last.value(stream, -1));
        if (next == all.end()) {
            fault(place, isOld ? "has it late among the old" : "has it late among the live",
                  own.key());
        } else {
            last[stream] = *next;
        }
    }
}
