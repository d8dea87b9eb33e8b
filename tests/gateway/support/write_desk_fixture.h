#pragma once

#include "gateway/support/written_line.h"
#include "gateway/write/audit_line.h"
#include "gateway/write/write_desk.h"
#include "support/full_disk.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <utility>

namespace cnet::gateway {

/** A desk with its audit log in a folder of its own, and what it wanted and answered. */
class WriteDeskFixture : public QObject
{
protected:
    void begin()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_wanted.clear();
        m_answers.clear();
        m_said.clear();
        start();
    }
    AuditConfig config(const char *name = "writes.jsonl") const
    {
        return {m_directory->filePath(QLatin1String(name)), 1000000, 3};
    }
    void start()
    {
        m_desk = std::make_unique<WriteDesk>(config(), m_clock,
                                             [this](const QString &line) { m_said.append(line); });
        connect(m_desk.get(), &WriteDesk::wanted, this, [this](const WriteRequest &request) {
            m_wanted.append(request);
            m_seen = audit();
        });
        connect(m_desk.get(), &WriteDesk::answered, this,
                [this](const WriteAnswer &answer) { m_answers.append(answer); });
    }
    QList<QByteArray> audit(const char *name = "writes.jsonl") const
    {
        return AuditFile(config(name)).tail(1000000);
    }
    QStringList take()
    {
        QStringList texts;
        for (const WriteAnswer &answer : std::exchange(m_answers, {})) {
            texts.append(textOf(answer));
        }
        return texts;
    }
    void ask(const char *id, const char *value = "1") { m_desk->ask(requestOf(id, "a", value)); }
    /** The line has carried out what was wanted. */
    void carryOut()
    {
        m_clock.runFor(1);
        for (const WriteRequest &request : std::exchange(m_wanted, {})) {
            WriteAnswer answer = refusalOf(request, QString(), m_clock.wallMs());
            answer.outcome = WriteAnswer::Outcome::Taken;
            answer.isNow = request.value;
            m_desk->settle(answer);
        }
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    VirtualClock m_clock;
    std::unique_ptr<WriteDesk> m_desk;
    QVector<WriteRequest> m_wanted;
    QVector<WriteAnswer> m_answers;
    QList<QByteArray> m_seen; ///< of the audit log, when it was wanted last
    QStringList m_said;
};

} // namespace cnet::gateway
