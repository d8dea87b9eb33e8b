#pragma once

#include <QString>
#include <QVector>

namespace cnet {

/** Something that is wrong with a file, or looks so, and where. */
struct Finding
{
    int line = 0;   ///< from 1
    int column = 0; ///< in characters, from 1
    QString field;  ///< what the place is called; empty: it is about the line or the file
    QString text;   ///< what is wrong, why, and an example

    /** "7:12: scale: ...", to be put behind the name of the file. */
    QString placed() const;
};

/** The first ones of the findings in a file, and how many there are. */
class Findings
{
public:
    /** @param limit how many are kept, 0 or more; all are counted */
    explicit Findings(int limit)
        : m_limit(limit)
    {}

    void add(const Finding &finding);
    /** Takes others in. */
    void add(const Findings &others);

    /** Those that were kept, in the order of the file once sort() was called. */
    const QVector<Finding> &first() const { return m_first; }
    /** All of them. */
    int count() const { return m_count; }
    bool isEmpty() const { return m_count == 0; }

    /** Puts them into the order of the file, and keeps no more than the limit. */
    void sort();

private:
    int m_limit;
    int m_count = 0;
    QVector<Finding> m_first;
};

} // namespace cnet
