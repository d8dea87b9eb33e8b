#include <panel/terminal/key_reader.h>

#include <QtTest>

using namespace cnet::panel;

class TestKeyReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keys_data();
    void keys();
};

void TestKeyReader::keys_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("keys"); // a letter each: u d U D h e
    QTest::newRow("arrows") << QByteArray("\x1b[A\x1b[B") << "ud";
    QTest::newRow("arrows of application mode") << QByteArray("\x1bOA\x1bOB") << "ud";
    QTest::newRow("pages") << QByteArray("\x1b[5~\x1b[6~") << "UD";
    QTest::newRow("ends") << QByteArray("\x1b[H\x1b[F\x1b[1~\x1b[4~\x1bOH\x1bOF") << "hehehe";
    QTest::newRow("other keys") << QByteArray("\x1b[C\x1b[3~xA[") << "";
    QTest::newRow("one behind another key") << QByteArray("\x1b[3~\x1b[A") << "u";
    QTest::newRow("Esc before an arrow") << QByteArray("\x1b\x1b[A") << "u";
}

void TestKeyReader::keys()
{
    QFETCH(QByteArray, bytes);
    KeyReader reader;
    QString seen;
    for (const char byte : bytes) {
        switch (reader.feed(byte)) {
        case MoveKey::Up:
            seen += QLatin1Char('u');
            break;
        case MoveKey::Down:
            seen += QLatin1Char('d');
            break;
        case MoveKey::PageUp:
            seen += QLatin1Char('U');
            break;
        case MoveKey::PageDown:
            seen += QLatin1Char('D');
            break;
        case MoveKey::Home:
            seen += QLatin1Char('h');
            break;
        case MoveKey::End:
            seen += QLatin1Char('e');
            break;
        case MoveKey::None:
            break;
        }
    }
    QTEST(seen, "keys");
}

QTEST_APPLESS_MAIN(TestKeyReader)

#include "test_key_reader.moc"
