#include <panel/terminal/key_reader.h>

#include <QtTest>

using namespace cnet::panel;

class TestKeyReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keys_data();
    void keys();
    void tellsKeysFromSequences_data();
    void tellsKeysFromSequences();
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

void TestKeyReader::tellsKeysFromSequences_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("keys"); // that are keys by themselves
    QTest::addColumn<bool>("escape");     // at the end
    QTest::newRow("keys") << QByteArray("v3") << QByteArray("v3") << false;
    QTest::newRow("behind an arrow that nobody wants")
        << QByteArray("\x1b[Cm") << QByteArray("m") << false;
    QTest::newRow("behind a long one") << QByteArray("\x1b[1;5Cm") << QByteArray("m") << false;
    QTest::newRow("behind a key with Alt") << QByteArray("\x1b"
                                                         "vm")
                                           << QByteArray("m") << false;
    QTest::newRow("Esc") << QByteArray("m\x1b") << QByteArray("m") << true;
    QTest::newRow("half a sequence") << QByteArray("\x1b[") << QByteArray() << false;
}

void TestKeyReader::tellsKeysFromSequences()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, escape);
    KeyReader reader;
    QByteArray keys;
    for (const char byte : bytes) {
        const bool within = reader.isWithinSequence();
        if (reader.feed(byte) == MoveKey::None && !within && byte != '\x1b') {
            keys += byte;
        }
    }
    QTEST(keys, "keys");
    QCOMPARE(reader.endOfInput() == KeyReader::Rest::Escape, escape);
    QVERIFY(reader.endOfInput() == KeyReader::Rest::Nothing);
}

QTEST_APPLESS_MAIN(TestKeyReader)

#include "test_key_reader.moc"
