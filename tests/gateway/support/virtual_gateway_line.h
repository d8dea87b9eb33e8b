#pragma once

#include "gateway/lines/gateway_line.h"
#include "host/support/virtual_line.h"

#include <QTemporaryDir>
#include <QtTest>

namespace cnet::gateway {

/** Lines of a gateway in virtual time, with tag files of their own, and what they tell. */
class VirtualGatewayLines
{
public:
    VirtualGatewayLines()
        : m_directory(std::make_unique<QTemporaryDir>())
    {}

    QString path(const char *file) const { return m_directory->filePath(QLatin1String(file)); }

    void store(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("cannot write %s", name);
        }
    }

    /** Of station 1, on a line of its own. */
    LineConfig config(const char *name, const char *tagFile) const
    {
        LineConfig line;
        line.name = QLatin1String(name);
        line.tagFile = path(tagFile);
        line.session.firstOpen = FirstOpen::Again;
        line.session.timeoutMs = 100;
        line.session.attempts = 2;
        return line;
    }

    /** A link to stations 1 and 2, kept in `links` under the line's name. */
    std::unique_ptr<Link> makeLink(const LineConfig &line)
    {
        auto link = std::make_unique<VirtualLine>(clock);
        link->bus.add(1);
        link->bus.add(2);
        link->keepsSent = true;
        links[line.name] = link.get();
        return link;
    }

    void run(qint64 ms)
    {
        clock.runFor(ms);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void note(const Change &change) { changes.append(change); }
    void note(const LineStatus &status) { statuses.append(status); }

    VirtualClock clock;
    QHash<QString, QPointer<VirtualLine>> links;
    QVector<Change> changes;
    QVector<LineStatus> statuses;
    QStringList said;

private:
    std::unique_ptr<QTemporaryDir> m_directory;
};

} // namespace cnet::gateway
