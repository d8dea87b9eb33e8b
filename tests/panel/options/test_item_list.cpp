#include "panel/options/item_list.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

using namespace cnet::panel;

class TestItemList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void leavesItemsAlone();
    void readsFiles();
    void readsStandardInput();
    void saysWhyNot();

private:
    QString m_path;
    QTemporaryDir m_directory;
};

namespace {

// A mark of a byte order, as editors of other systems put it there, and their line ends.
const char kContent[] = "\xEF\xBB\xBF"
                        "# press\r\n\r\n  D_W:1@u32 high-first \r\nD_W:2@string4=\"#\"";

QString textOf(const QVector<ListedItem> &items)
{
    QStringList texts;
    for (const ListedItem &item : items) {
        texts.append(item.place + item.text);
    }
    return texts.join(QLatin1Char('|'));
}

} // namespace

void TestItemList::initTestCase()
{
    m_path = m_directory.filePath(QStringLiteral("list"));
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(kContent) > 0);
}

void TestItemList::leavesItemsAlone()
{
    QVector<ListedItem> items;
    QString error;
    QVERIFY(readLists({QStringLiteral("D_W:1@f32"), QStringLiteral("@")}, items, error));
    QCOMPARE(textOf(items), QStringLiteral("D_W:1@f32|@"));
}

void TestItemList::readsFiles()
{
    QVector<ListedItem> items;
    QString error;
    QVERIFY(readLists({QStringLiteral("TX:1"), QLatin1Char('@') + m_path, QStringLiteral("TX:2")},
                      items, error));
    QCOMPARE(textOf(items),
             QStringLiteral("TX:1|%1:3: D_W:1@u32 high-first|%1:4: D_W:2@string4=\"#\"|TX:2")
                 .arg(m_path));
}

void TestItemList::readsStandardInput()
{
    const int before = dup(STDIN_FILENO);
    QVERIFY(freopen(QFile::encodeName(m_path).constData(), "r", stdin) != nullptr);
    QVector<ListedItem> items;
    QString error;
    const bool ok = readLists({QStringLiteral("-")}, items, error);
    QVERIFY(dup2(before, STDIN_FILENO) >= 0);
    close(before);
    QVERIFY2(ok, qPrintable(error));
    QCOMPARE(textOf(items), QStringLiteral("standard input:3: D_W:1@u32 high-first|"
                                           "standard input:4: D_W:2@string4=\"#\""));
}

void TestItemList::saysWhyNot()
{
    QVector<ListedItem> items;
    QString error;
    QVERIFY(!readLists({QStringLiteral("@/no/such/list")}, items, error));
    QCOMPARE(error, QStringLiteral("cannot read /no/such/list: No such file or directory"));
    // What stands behind it must not be left out without a word.
    const QString path = m_directory.filePath(QStringLiteral("zero"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("D_W:1=1\nD_W:2\0=2\nD_W:3=3\n", 25), 25);
    file.close();
    QVERIFY(!readLists({QLatin1Char('@') + path}, items, error));
    QCOMPARE(error, path + QStringLiteral(":2: a zero byte; expected text in UTF-8"));
}

QTEST_APPLESS_MAIN(TestItemList)
#include "test_item_list.moc"
