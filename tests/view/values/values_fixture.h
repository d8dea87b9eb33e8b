#pragma once

#include "view/tags/watched_tags.h"

#include "host/tag/typed_item.h"
#include "host/tagfile/tag_file.h"
#include "plc/stations/bus.h"

#include <QtTest>

#include <memory>

namespace cnet::view {

constexpr int kPatienceMs = 60000;

/// Tags in words that the simulated press leaves alone.
constexpr const char *kTags =
    "name,register,address,type,count,scale,unit,min,max,access,texts,description,group\n"
    "oil.speed,D_W,1000,u16,1,0.1,1/min,0,120,read-write,,strokes wanted,oil/pump\n"
    "oil.level,D_W,1001,i16,1,,mm,,,read,,height in the tank,oil\n"
    "oil.mode,D_W,1002,enum,1,,,,,read-write,0=off;1=slow;2=fast,how it runs,oil\n"
    "zones,D_W,1010,u16,12,,,,,read-write,,temperatures,mould\n"
    "lamp,M_bit,200.0,bool,1,,,,,read-write,,a lamp,oilcan\n"
    "name,D_W,1030,string4,1,,,,,read-write,,what is made,\n";

/// A line that may be opened, and the tags that are watched on it.
class ValuesFixture
{
public:
    ValuesFixture()
    {
        const QString error = m_line.prepare();
        if (!error.isEmpty()) {
            qFatal("%s", qPrintable(error));
        }
        m_tags = std::make_unique<WatchedTags>(m_line);
    }

    Line &line() { return m_line; }
    WatchedTags &tags() { return *m_tags; }

    /// Of the tags that are watched, in their order.
    QStringList names() const
    {
        QStringList names;
        for (const Tag &tag : m_tags->tags().all()) {
            names.append(tagText(tag));
        }
        return names;
    }

    TagSet read(const QByteArray &content)
    {
        const TagFile file = TagFile::parse(content, m_tags->reading());
        if (!file.isGood()) {
            qFatal("%s", qPrintable(file.mistakes().first().first().placed()));
        }
        return TagSet(file.tags());
    }

    /// @param intervalMs between two rounds of reads: with a long one they come when it opens
    void open(int intervalMs = 1, int timeoutMs = 0)
    {
        Connection fast;
        fast.address.line.baud = 0;
        fast.intervalMs = intervalMs;
        fast.timeoutMs = timeoutMs;
        m_line.open(fast);
    }

    /// All of the tags were read well.
    bool isRead()
    {
        for (int i = 0; i < m_tags->tags().all().size(); ++i) {
            if (m_tags->quality(i) != Quality::Good) {
                return false;
            }
        }
        return true;
    }

    plc::Unit &plc() { return *m_line.simulator()->find(1); }
    void setWord(int address, quint16 value)
    {
        plc().station.memory().setWord('D', address, value);
    }
    int word(int address) { return plc().station.memory().word('D', address).value_or(0); }

private:
    Line m_line;
    std::unique_ptr<WatchedTags> m_tags;
};

} // namespace cnet::view
