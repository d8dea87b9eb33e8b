#include "panel/terminal/terminal.h"

#include <QtTest>

#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utmp.h>

#include <csignal>

using namespace cnet::panel;

/** Keys come from a terminal without waiting for them. */
class TestTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void handsKeysOver();
    void doesNotWaitForKeysThatCtrlCTook();
    void saysThatItIsGone();
    void isAsBeforeAtTheEnd();

private:
    bool type(const QByteArray &keys) const
    {
        return write(m_user, keys.constData(), static_cast<size_t>(keys.size())) == keys.size();
    }

    int m_user = -1;
    int m_program = -1;
};

// A terminal belongs to a session; this one's own has no other.
void TestTerminal::initTestCase()
{
    std::signal(SIGHUP, SIG_IGN);
    std::signal(SIGINT, SIG_IGN);
    if (setsid() < 0) {
        QSKIP("the test leads a group of processes: start it by ctest");
    }
}

void TestTerminal::init()
{
    QVERIFY(openpty(&m_user, &m_program, nullptr, nullptr, nullptr) == 0);
    QVERIFY(ioctl(m_program, TIOCSCTTY, 0) == 0);
}

void TestTerminal::cleanup()
{
    ioctl(m_program, TIOCNOTTY);
    close(m_program);
    close(m_user);
}

void TestTerminal::handsKeysOver()
{
    const RawTerminal raw(m_program);
    QVERIFY(raw.isActive());
    QVERIFY(type("m\x1b[A"));
    QVERIFY(typedKeys(m_program) == QByteArray("m\x1b[A"));
}

void TestTerminal::doesNotWaitForKeysThatCtrlCTook()
{
    const RawTerminal raw(m_program);
    QVERIFY(type("m\x03"));
    QVERIFY(typedKeys(m_program) == QByteArray());
    QVERIFY(type("v"));
    QVERIFY(typedKeys(m_program) == QByteArray("v"));
}

void TestTerminal::saysThatItIsGone()
{
    const RawTerminal raw(m_program);
    close(m_user);
    QVERIFY(!typedKeys(m_program));
}

void TestTerminal::isAsBeforeAtTheEnd()
{
    termios before{};
    QVERIFY(tcgetattr(m_program, &before) == 0);
    {
        const RawTerminal raw(m_program);
    }
    termios after{};
    QVERIFY(tcgetattr(m_program, &after) == 0);
    QCOMPARE(after.c_lflag, before.c_lflag);
    QCOMPARE(int(after.c_cc[VMIN]), int(before.c_cc[VMIN]));
}

QTEST_APPLESS_MAIN(TestTerminal)
#include "test_terminal.moc"
