#pragma once

#include "view/tags/watched_tags.h"

#include <QtTest/QtTest>

#include <memory>

namespace cnet::view {

constexpr int kLongMs = 60000;

/** A line that is not open yet, and the tags that are watched on it. */
class WatchedLine
{
protected:
    void begin()
    {
        m_tags.reset();
        m_line = std::make_unique<Line>();
        QCOMPARE(m_line->prepare(), QString());
        m_tags = std::make_unique<WatchedTags>(*m_line);
    }
    void open(const Connection &connection = Connection())
    {
        m_line->open(connection);
        QTRY_VERIFY_WITH_TIMEOUT(m_line->isOpen(), kLongMs);
    }
    /** This alone. */
    void watch(const char *item)
    {
        QString error;
        const auto tag = m_tags->parse(QString::fromLatin1(item), error);
        QVERIFY2(tag.has_value(), qPrintable(error));
        m_tags->setTags(TagSet({*tag}));
    }
    void watchUntilGood(const char *item)
    {
        watch(item);
        QTRY_VERIFY_WITH_TIMEOUT(m_tags->quality(0) == Quality::Good, kLongMs);
    }

    std::unique_ptr<Line> m_line;
    std::unique_ptr<WatchedTags> m_tags;
};

} // namespace cnet::view
