#pragma once

#include "host/support/frames.h"
#include "host/support/virtual_line.h"

#include <host/address/assignment.h>
#include <host/session.h>

#include <QCoreApplication>
#include <QStringList>

namespace cnet {

/** A driver and a session on a virtual line, where each request and each answer takes 5 ms. */
class VirtualPlant
{
public:
    explicit VirtualPlant(const SessionOptions &options = SessionOptions(),
                          const QVector<int> &stations = {1})
    {
        QString error;
        if (!driver.load(QLatin1String(DRIVER_FILE), error)) {
            qFatal("%s", qPrintable(error));
        }
        auto owned = std::make_unique<VirtualLine>(clock);
        line = owned.get();
        line->keepsSent = true;
        for (const int station : stations) {
            line->bus.add(station);
        }
        session = std::make_unique<Session>(driver, std::move(owned), options, clock);
        QObject::connect(session.get(), &Session::noticed, session.get(),
                         [this](const QString &text) { notices.append(text); });
    }

    void run(qint64 ms)
    {
        clock.runFor(ms);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    /** Opens the line, and gives everybody time for a first reading. */
    void open(qint64 ms = 500)
    {
        session->open();
        run(ms);
    }

    bool finishes(const Job *job, qint64 ms = 60000)
    {
        return clock.runUntil([job] { return job->isFinished(); }, ms);
    }

    /** Takes a station off the line, or brings it back. */
    void silence(int station, bool silent = true)
    {
        line->mannersOf[station].lost = silent ? 100 : 0;
    }

    /** "1/D_W:5*3" */
    Item item(const QString &text) const
    {
        QString error;
        const auto item = parseItem(text, 1, driver.registers(), error);
        if (!item) {
            qFatal("%s", qPrintable(error));
        }
        return *item;
    }

    /** "1/D_W:5*3 D_W:7" */
    QVector<Item> items(const QString &texts) const
    {
        QVector<Item> items;
        for (const QString &text : texts.split(QLatin1Char(' '))) {
            items.append(item(text));
        }
        return items;
    }

    /** "1/D_W:5=1,2 D_W:7=3" */
    QVector<Assignment> assignments(const QString &texts) const
    {
        QVector<Assignment> assignments;
        for (const QString &text : texts.split(QLatin1Char(' '))) {
            QString error;
            const auto assignment = parseAssignment(text, 1, driver.registers(), error);
            if (!assignment) {
                qFatal("%s", qPrintable(error));
            }
            assignments.append(*assignment);
        }
        return assignments;
    }

    Monitor *monitor(const char *items)
    {
        return session->monitor(this->items(QLatin1String(items)));
    }
    ReadJob *read(const char *items) { return session->read(this->items(QLatin1String(items))); }
    WriteJob *write(const char *assignments, ReadBack readBack = ReadBack::OnFailure)
    {
        return session->write(this->assignments(QLatin1String(assignments)), readBack);
    }

    plc::Memory &memory(int station = 1) { return line->bus.find(station)->station.memory(); }
    int word(int address, int station = 1)
    {
        return memory(station).word('D', address).value_or(0);
    }
    void setWord(int address, int value, int station = 1)
    {
        memory(station).setWord('D', address, static_cast<quint16>(value));
    }

    /** The requests since the last call, without their frames: "01rSB08%DW0000001". */
    QStringList takeFrames(const char *containing = "")
    {
        QStringList frames;
        for (const QByteArray &frame : std::exchange(line->sent, {})) {
            if (frame.contains(containing)) {
                frames.append(QString::fromLatin1(textOf(frame)));
            }
        }
        return frames;
    }

    VirtualClock clock;
    Driver driver;
    VirtualLine *line = nullptr; ///< the session's
    std::unique_ptr<Session> session;
    QStringList notices;
};

} // namespace cnet
