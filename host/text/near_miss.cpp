#include "host/text/near_miss.h"

#include <QVector>

#include <algorithm>

namespace cnet {

namespace {

const int kLongest = 60; ///< what is longer is no slip of the hand

// Steps from one text to the other; more than `most` are not counted to the end.
int distance(const QString &left, const QString &right, int most)
{
    const int width = static_cast<int>(right.size()) + 1;
    QVector<int> before(width);
    QVector<int> last(width);
    QVector<int> row(width);
    for (int i = 0; i < width; ++i) {
        row[i] = i;
    }
    for (int y = 1; y <= left.size(); ++y) {
        before.swap(last);
        last.swap(row);
        row[0] = y;
        for (int x = 1; x < width; ++x) {
            const bool same = left.at(y - 1) == right.at(x - 1);
            row[x] = std::min({last.at(x) + 1, row.at(x - 1) + 1, last.at(x - 1) + (same ? 0 : 1)});
            if (x > 1 && y > 1 && left.at(y - 1) == right.at(x - 2) &&
                left.at(y - 2) == right.at(x - 1)) {
                row[x] = std::min(row.at(x), before.at(x - 2) + 1);
            }
        }
        if (*std::min_element(row.cbegin(), row.cend()) > most) {
            return most + 1;
        }
    }
    return row.last();
}

} // namespace

QString nearMiss(const QString &text, const QStringList &candidates)
{
    if (text.isEmpty() || text.size() > kLongest) {
        return QString();
    }
    const QString wanted = text.toLower();
    int best = std::max(1, static_cast<int>(text.size()) / 3) + 1;
    QString nearest;
    for (const QString &candidate : candidates) {
        const bool farLonger = std::abs(static_cast<int>(candidate.size() - text.size())) >= best;
        const QString known = candidate.toLower();
        const int steps = known.startsWith(wanted) ? (known == wanted ? 0 : 1)
                          : farLonger              ? best
                                                   : distance(wanted, known, best);
        if (steps < best) {
            best = steps;
            nearest = candidate;
        }
    }
    return nearest;
}

QString nearMissHint(const QString &text, const QStringList &candidates)
{
    const QString nearest = nearMiss(text, candidates);
    return nearest.isEmpty() ? QString() : QString::fromLatin1("; did you mean %1?").arg(nearest);
}

} // namespace cnet
