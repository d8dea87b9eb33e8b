#include "panel/captured_output.h"

#include "panel/system/standard_output.h"

#include <QSignalSpy>
#include <QtTest>

#include <fcntl.h>

using namespace cnet;
using namespace cnet::panel;

class TestStandardOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { resetStandardOutput(); }
    void writesAll();
    void failsOnce();
    void nothingMoreAfterAFailure();
};

namespace {

// Standard output is a device that is full, while it lives.
class FullOutput
{
public:
    FullOutput()
        : m_before(dup(STDOUT_FILENO))
    {
        const int full = open("/dev/full", O_WRONLY);
        dup2(full, STDOUT_FILENO);
        close(full);
    }
    ~FullOutput()
    {
        dup2(m_before, STDOUT_FILENO);
        close(m_before);
    }
    FullOutput(const FullOutput &) = delete;
    FullOutput &operator=(const FullOutput &) = delete;

private:
    int m_before;
};

} // namespace

void TestStandardOutput::writesAll()
{
    const QByteArray text(100000, 'x');
    CapturedOutput captured;
    const bool written = writeToStandardOutput(text);
    StandardOutput device;
    device.write("end");
    const QByteArray all = captured.end();
    QVERIFY(written);
    QCOMPARE(all, text + "end");
    QString reason;
    QCOMPARE(standardOutputState(reason), OutputState::Fine);
}

void TestStandardOutput::failsOnce()
{
    StandardOutput device;
    QSignalSpy failed(&device, &StandardOutput::failed);
    {
        const FullOutput full;
        device.write("a");
        device.write("b");
    }
    QCOMPARE(failed.count(), 1);
    QString reason;
    QCOMPARE(standardOutputState(reason), OutputState::Failed);
    QCOMPARE(reason, qt_error_string(ENOSPC));
}

void TestStandardOutput::nothingMoreAfterAFailure()
{
    {
        const FullOutput full;
        writeToStandardOutput("a");
    }
    CapturedOutput captured;
    const bool written = writeToStandardOutput("b");
    QCOMPARE(captured.end(), QByteArray());
    QVERIFY(!written);
}

QTEST_GUILESS_MAIN(TestStandardOutput)
#include "test_standard_output.moc"
