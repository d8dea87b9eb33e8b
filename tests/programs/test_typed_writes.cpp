#include <QByteArray>
#include <QElapsedTimer>
#include <QtTest>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace {

const int kPatienceMs = 30000;

// The monitor on a terminal of its own, and the user before it.
class Terminal
{
public:
    Terminal() = default;
    ~Terminal()
    {
        if (m_child > 0) {
            kill(m_child, SIGKILL);
            waitpid(m_child, nullptr, 0);
        }
        if (m_master >= 0) {
            close(m_master);
        }
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    bool start()
    {
        winsize size{};
        size.ws_col = 100;
        size.ws_row = 24;
        m_child = forkpty(&m_master, nullptr, nullptr, &size);
        if (m_child == 0) {
            setenv("TERM", "xterm", 1);
            execl(CNET_PANEL, CNET_PANEL, "monitor", "D_W:5000", "F_W:100", nullptr);
            _exit(127);
        }
        return m_child > 0;
    }

    /** Waits until the program has shown this, after all that was waited for before. */
    bool shows(const QByteArray &text)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < kPatienceMs) {
            const auto at = m_shown.indexOf(text, m_seen);
            if (at >= 0) {
                m_seen = static_cast<int>(at + text.size());
                return true;
            }
            if (!readMore()) {
                break;
            }
        }
        return false;
    }

    void type(const QByteArray &keys)
    {
        QCOMPARE(write(m_master, keys.constData(), static_cast<size_t>(keys.size())),
                 static_cast<ssize_t>(keys.size()));
    }

    void signal(int number) { kill(m_child, number); }

    /** Ctrl-C, Enter and so on work as before, and what is typed is echoed. */
    bool isAsUsual() const
    {
        termios settings{};
        return tcgetattr(m_master, &settings) == 0 && (settings.c_lflag & ICANON) != 0 &&
               (settings.c_lflag & ECHO) != 0;
    }

    /** @return exit code, -1 where it did not end in order */
    int wait()
    {
        while (readMore()) {
        }
        int status = -1;
        waitpid(m_child, &status, 0);
        m_child = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    const QByteArray &shown() const { return m_shown; }

private:
    bool readMore()
    {
        pollfd end{m_master, POLLIN, 0};
        std::array<char, 4096> bytes{};
        if (poll(&end, 1, kPatienceMs) != 1) {
            return false;
        }
        // At the end of the program reading fails.
        const ssize_t count = read(m_master, bytes.data(), bytes.size());
        if (count > 0) {
            m_shown.append(bytes.data(), static_cast<int>(count));
        }
        return count > 0;
    }

    int m_master = -1;
    pid_t m_child = -1;
    QByteArray m_shown;
    int m_seen = 0;
};

} // namespace

/** Writes that a user types into the monitor's terminal. */
class TestTypedWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesWhatIsTyped();
    void restoresTheTerminal_data();
    void restoresTheTerminal();
};

void TestTypedWrites::writesWhatIsTyped()
{
    Terminal terminal;
    QVERIFY(terminal.start());
    QVERIFY2(terminal.shows("w: write a value"), terminal.shown().constData());
    QVERIFY(!terminal.isAsUsual());
    terminal.type("w");
    QVERIFY(terminal.shows("write ITEM=VALUE (Esc leaves): _"));
    terminal.type("D_W:10000=1\r");
    QVERIFY(terminal.shows("an address of D_W is a number from 0 to 9999"));
    terminal.type("\x15"
                  "D_W:5000=0x1234\r");
    QVERIFY(terminal.shows("1/D_W:5000=4660: written"));
    QVERIFY(terminal.shows("4660 0x1234"));
    terminal.type("wF_W:100=1\r");
    QVERIFY(terminal.shows("1/F_W:100=1: not written (refused: 1132"));
    QVERIFY(terminal.shows("1/F_W:100   0 0x0000"));
    terminal.type("\x03");
    QCOMPARE(terminal.wait(), 0);
}

void TestTypedWrites::restoresTheTerminal_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QByteArray>("keys"); // typed before
    QTest::newRow("SIGINT") << SIGINT << QByteArray();
    QTest::newRow("SIGTERM") << SIGTERM << QByteArray();
    QTest::newRow("SIGTERM in the middle of a line") << SIGTERM << QByteArray("wD_W:");
    QTest::newRow("Ctrl-C in the middle of a line") << 0 << QByteArray("wD_W:\x03");
}

void TestTypedWrites::restoresTheTerminal()
{
    QFETCH(int, signal);
    QFETCH(QByteArray, keys);
    Terminal terminal;
    QVERIFY(terminal.start());
    QVERIFY2(terminal.shows("w: write a value"), terminal.shown().constData());
    QVERIFY(terminal.shows("0 0x0000"));
    if (!keys.isEmpty()) {
        terminal.type(keys);
    }
    if (signal != 0) {
        QVERIFY(keys.isEmpty() || terminal.shows("D_W:_"));
        terminal.signal(signal);
    }
    QVERIFY(terminal.shows("\x1b[?25h")); // the cursor is back
    QCOMPARE(terminal.wait(), 0);
    QVERIFY(terminal.isAsUsual());
}

QTEST_GUILESS_MAIN(TestTypedWrites)
#include "test_typed_writes.moc"
