#pragma once

#include <QFile>
#include <QSaveFile>
#include <QString>

namespace cnet::gateway {

/**
 * Counts the times that a node said CONNECT, from 0 to 255 and again from 0, also over restarts: a
 * host tells by it which birth a death belongs to.
 */
class BdSeq
{
public:
    /** @param path a file that keeps it; empty: it begins at 0 with each start */
    explicit BdSeq(QString path)
        : m_path(std::move(path))
    {
        QFile file(m_path);
        bool isNumber = false;
        const bool isThere = !m_path.isEmpty() && file.open(QIODevice::ReadOnly);
        const int kept = isThere ? file.read(kLongest).trimmed().toInt(&isNumber) : -1;
        m_number = isNumber && kept >= 0 && kept < kNumbers ? kept : kNumbers - 1;
    }

    /** The number of the next CONNECT, and keeps it. */
    int next()
    {
        m_number = (m_number + 1) % kNumbers;
        // On a disk that is full it goes on all the same: only a start after that repeats numbers.
        QSaveFile file(m_path);
        if (!m_path.isEmpty() && file.open(QIODevice::WriteOnly)) {
            file.write(QByteArray::number(m_number) + '\n');
            file.commit();
        }
        return m_number;
    }

    int now() const { return m_number; }

private:
    static constexpr int kNumbers = 256;
    static constexpr int kLongest = 10;

    QString m_path;
    int m_number = kNumbers - 1;
};

} // namespace cnet::gateway
