#include "support/random.h"
#include "support/rows.h"
#include "view/project/project_file.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace cnet::view {

namespace {

Project example()
{
    Project project;
    project.connection = {{QLatin1String("link"), QLatin1String("tcp:10.0.0.7:8000")},
                          {QLatin1String("station"), 3}};
    project.pages.insert(QLatin1String("recipes"),
                         {{QLatin1String("file"), QString::fromUtf8("/tmp/W\xC3\xA4rme.csv")}});
    project.pages.insert(QLatin1String("trend"),
                         {{QLatin1String("panes"), QJsonArray{1, 2.5, QLatin1String("x\n\"y\"")}}});
    project.window = {{QLatin1String("maximized"), true}};
    return project;
}

struct Wrong
{
    const char *what;
    const char *bytes;
    const char *error; ///< the beginning
};

const Wrong kWrong[] = {
    {"nothing", "", "the file is empty"},
    {"blanks", " \n\t\n", "the file is empty"},
    {"no JSON", "\n station,register", "line 2, column 2: expected an object"},
    {"cut off", "{\n  \"format\": \"cnet-view project\",\n  \"version\"", "line 3, column "},
    {"a comma too few", "{\n \"format\": \"cnet-view project\"\n \"version\": 1\n}",
     "line 3, column "},
    {"an umlaut counts once", "{\"\xC3\xA4\xC3\xA4\": ?}", "line 1, column 8: "},
    {"behind the end", "{} x", "line 1, column "},
    {"an array", "[1]", "line 1, column 1: expected an object"},
    {"no format", "{\"version\": 1}", "this is no project of cnet-view"},
    {"another format", "{\"format\": \"plot\", \"version\": 1}", "this is no project of cnet-view"},
    {"a format that is no text", "{\"format\": 7}", "this is no project of cnet-view"},
    {"newer", "{\"format\": \"cnet-view project\", \"version\": 2}",
     "it was made by a newer cnet-view: its version is 2"},
    {"much newer", "{\"format\": \"cnet-view project\", \"version\": 1e300}",
     "it was made by a newer cnet-view"},
    {"no version", "{\"format\": \"cnet-view project\"}", "its version is missing"},
    {"version 0", "{\"format\": \"cnet-view project\", \"version\": 0}", "its version is missing"},
    {"half a version", "{\"format\": \"cnet-view project\", \"version\": 0.5}",
     "its version is missing"},
    {"a version in words", "{\"format\": \"cnet-view project\", \"version\": \"1\"}",
     "its version is missing"},
    {"a connection that is none",
     "{\"format\": \"cnet-view project\", \"version\": 1, \"connection\": 5}",
     "\"connection\" is not what a project has there"},
    {"a window that is none", "{\"format\": \"cnet-view project\", \"version\": 1, \"window\": []}",
     "\"window\" is not what"},
    {"pages that are none", "{\"format\": \"cnet-view project\", \"version\": 1, \"pages\": null}",
     "\"pages\" is not what"},
    {"a page that is none",
     "{\"format\": \"cnet-view project\", \"version\": 1, \"pages\": {\"trend\": 1}}",
     "\"pages.trend\" is not what"},
};

} // namespace

class TestProjectFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesBack()
    {
        QString error;
        const auto again = parseProject(toBytes(example()), error);
        QVERIFY2(again, qPrintable(error));
        QVERIFY(*again == example());
        QCOMPARE(toBytes(*again), toBytes(example()));
    }

    // People look into it, and keep it in version control.
    void isReadable()
    {
        const QByteArray bytes = toBytes(example());
        QVERIFY(bytes.contains("\n    \"format\": \"cnet-view project\",\n"));
        QVERIFY(bytes.contains("\n    \"version\": 1,\n"));
        QVERIFY(bytes.contains("\n        \"station\": 3\n"));
        QVERIFY(bytes.endsWith("}\n"));
    }

    void takesWhatEditorsAdd()
    {
        QString error;
        QByteArray bytes = "\xEF\xBB\xBF" + toBytes(example()) + "\n\n";
        bytes.replace("\n", "\r\n");
        const auto project = parseProject(bytes, error);
        QVERIFY2(project, qPrintable(error));
        QVERIFY(*project == example());
    }

    void lacksWhatItLacks()
    {
        QString error;
        const auto project =
            parseProject("{\"format\": \"cnet-view project\", \"version\": 1}", error);
        QVERIFY2(project, qPrintable(error));
        QVERIFY(*project == Project());
    }

    void keepsWhatItDoesNotKnow()
    {
        QJsonObject object = objectOf(example());
        object.insert(QLatin1String("reports"), QJsonArray{1, QJsonObject{}});
        QString error;
        const auto project = parseProject(QJsonDocument(object).toJson(), error);
        QVERIFY2(project, qPrintable(error));
        QCOMPARE(project->others.size(), 1);
        QCOMPARE(objectOf(*project), object);
    }

    void saysWhatIsWrong_data() { addRows(kWrong); }
    void saysWhatIsWrong()
    {
        const auto &row = currentRow(kWrong);
        QString error;
        QVERIFY(!parseProject(row.bytes, error));
        QVERIFY2(error.startsWith(QLatin1String(row.error)), qPrintable(error));
        QVERIFY2(!error.endsWith(QLatin1Char(' ')), qPrintable(error));
    }

    void hasBounds()
    {
        QString error;
        QByteArray deep = "{\"format\": \"cnet-view project\", \"version\": 1, \"x\": ";
        deep += QByteArray(100000, '[') + QByteArray(100000, ']') + "}";
        QVERIFY(!parseProject(deep, error));
        QVERIFY2(error.contains(QLatin1String("nested too deeply")), qPrintable(error));
        QVERIFY(!parseProject(QByteArray(static_cast<int>(kMostProjectBytes) + 1, ' '), error));
        QVERIFY2(error.contains(QLatin1String("longer than 67108864 bytes")), qPrintable(error));
    }

    // Whatever is left of a file: it is a project or there is a reason, and what was read can be
    // written.
    void standsCutFiles()
    {
        const QByteArray whole = toBytes(example());
        for (int size = 0; size < whole.size() - 2; ++size) {
            QString error;
            QVERIFY2(!parseProject(whole.left(size), error), qPrintable(QString::number(size)));
            QVERIFY(!error.isEmpty());
        }
    }

    void standsFlippedBytes()
    {
        const QByteArray whole = toBytes(example());
        Random random(20);
        int read = 0;
        for (int round = 0; round < 4000; ++round) {
            QByteArray bytes = whole;
            const int flips = random.between(1, 4);
            for (int i = 0; i < flips; ++i) {
                bytes[random.below(static_cast<int>(bytes.size()))] =
                    static_cast<char>(random.below(256));
            }
            QString error;
            const auto project = parseProject(bytes, error);
            QCOMPARE(project.has_value(), error.isEmpty());
            if (project) {
                ++read;
                const auto again = parseProject(toBytes(*project), error);
                QVERIFY(again && *again == *project);
            }
        }
        QVERIFY(read > 100); // letters within a text may be any
    }
};

} // namespace cnet::view

QTEST_MAIN(cnet::view::TestProjectFile)
#include "test_project_file.moc"
