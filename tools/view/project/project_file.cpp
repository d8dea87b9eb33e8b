#include "view/project/project_file.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <algorithm>

namespace cnet::view {

namespace {

const QLatin1String kFormat("cnet-view project");
const QLatin1String kFormatKey("format");
const QLatin1String kVersionKey("version");
const QLatin1String kConnectionKey("connection");
const QLatin1String kPagesKey("pages");
const QLatin1String kWindowKey("window");

// Of a place in a file, as editors count: from 1, the column in characters.
QString placeText(const QByteArray &bytes, qint64 offset)
{
    const QByteArray before = bytes.left(
        static_cast<int>(std::clamp<qint64>(offset, 0, static_cast<qint64>(bytes.size()))));
    const auto line = before.count('\n') + 1;
    const auto column = QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1)).size() + 1;
    return QCoreApplication::translate("ProjectFile", "line %1, column %2").arg(line).arg(column);
}

QString troubleText(QJsonParseError::ParseError trouble)
{
    switch (trouble) {
    case QJsonParseError::UnterminatedObject:
    case QJsonParseError::UnterminatedArray:
    case QJsonParseError::UnterminatedString:
        return QCoreApplication::translate(
            "ProjectFile", "something is not closed; the file may have been cut off");
    case QJsonParseError::MissingNameSeparator:
        return QCoreApplication::translate("ProjectFile", "expected ':' behind a name");
    case QJsonParseError::MissingValueSeparator:
        return QCoreApplication::translate("ProjectFile", "expected ',' or a closing bracket");
    case QJsonParseError::IllegalNumber:
        return QCoreApplication::translate("ProjectFile", "expected a number");
    case QJsonParseError::IllegalUTF8String:
        return QCoreApplication::translate("ProjectFile", "expected text in UTF-8");
    case QJsonParseError::IllegalEscapeSequence:
        return QCoreApplication::translate("ProjectFile",
                                           "a backslash is followed by something unknown");
    case QJsonParseError::DeepNesting:
        return QCoreApplication::translate("ProjectFile", "brackets are nested too deeply");
    case QJsonParseError::GarbageAtEnd:
        return QCoreApplication::translate("ProjectFile", "there is something behind the end");
    default:
        break;
    }
    return QCoreApplication::translate("ProjectFile", "expected a value");
}

std::optional<QJsonObject> objectAt(const QJsonObject &object, const QString &key,
                                    const QString &name, QString &error)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isObject()) {
        return value.toObject();
    }
    error = QCoreApplication::translate("ProjectFile",
                                        "\"%1\" is not what a project has there; expected { ... }")
                .arg(name);
    return std::nullopt;
}

bool readVersion(const QJsonObject &object, int &version, QString &error)
{
    if (object.value(kFormatKey).toString() != kFormat) {
        error = QCoreApplication::translate(
                    "ProjectFile", "this is no project of cnet-view; expected \"%1\": \"%2\"")
                    .arg(kFormatKey, kFormat);
        return false;
    }
    const double number = object.value(kVersionKey).toDouble(0);
    if (number > kProjectVersion) {
        error = QCoreApplication::translate(
                    "ProjectFile",
                    "it was made by a newer cnet-view: its version is %1, this one reads "
                    "up to %2")
                    .arg(number)
                    .arg(kProjectVersion);
        return false;
    }
    version = object.value(kVersionKey).toInt(0);
    if (version < 1) {
        error = QCoreApplication::translate("ProjectFile",
                                            "its version is missing; expected \"%1\": %2")
                    .arg(kVersionKey)
                    .arg(kProjectVersion);
        return false;
    }
    return true;
}

bool readPages(const QJsonObject &object, Project &project, QString &error)
{
    const auto pages = objectAt(object, kPagesKey, kPagesKey, error);
    if (!pages) {
        return false;
    }
    for (auto page = pages->begin(); page != pages->end(); ++page) {
        const auto state = objectAt(*pages, page.key(),
                                    QString::fromLatin1("%1.%2").arg(kPagesKey, page.key()), error);
        if (!state) {
            return false;
        }
        project.pages.insert(page.key(), *state);
    }
    return true;
}

} // namespace

bool operator==(const Project &left, const Project &right)
{
    return left.version == right.version && left.connection == right.connection &&
           left.pages == right.pages && left.window == right.window && left.others == right.others;
}

QJsonObject objectOf(const Project &project)
{
    QJsonObject pages;
    for (auto page = project.pages.begin(); page != project.pages.end(); ++page) {
        pages.insert(page.key(), page.value());
    }
    QJsonObject object = project.others;
    object.insert(kFormatKey, kFormat);
    object.insert(kVersionKey, kProjectVersion);
    object.insert(kConnectionKey, project.connection);
    object.insert(kPagesKey, pages);
    object.insert(kWindowKey, project.window);
    return object;
}

QByteArray toBytes(const Project &project)
{
    return QJsonDocument(objectOf(project)).toJson(QJsonDocument::Indented);
}

std::optional<QJsonObject> parseObject(const QByteArray &bytes, QString &error)
{
    // Some editors put a mark in front.
    const QByteArray mark("\xEF\xBB\xBF");
    const QByteArray text = bytes.startsWith(mark) ? bytes.mid(mark.size()) : bytes;
    const auto first = std::find_if(text.cbegin(), text.cend(), [](char letter) {
        return letter != ' ' && letter != '\t' && letter != '\r' && letter != '\n';
    });
    if (first == text.cend()) {
        error = QCoreApplication::translate("ProjectFile", "the file is empty");
        return std::nullopt;
    }
    QJsonParseError trouble{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &trouble);
    if (*first == '{' && trouble.error == QJsonParseError::NoError) {
        return document.object();
    }
    const bool isOther = *first != '{';
    error = QString::fromLatin1("%1: %2").arg(
        placeText(text, isOther ? first - text.cbegin() : trouble.offset),
        isOther ? QCoreApplication::translate("ProjectFile", "expected an object, { ... }")
                : troubleText(trouble.error));
    return std::nullopt;
}

std::optional<Project> projectOfObject(const QJsonObject &object, QString &error)
{
    Project project;
    if (!readVersion(object, project.version, error)) {
        return std::nullopt;
    }
    const auto connection = objectAt(object, kConnectionKey, kConnectionKey, error);
    const auto window = objectAt(object, kWindowKey, kWindowKey, error);
    if (!connection || !window || !readPages(object, project, error)) {
        return std::nullopt;
    }
    project.connection = *connection;
    project.window = *window;
    project.others = object;
    for (const QLatin1String key :
         {kFormatKey, kVersionKey, kConnectionKey, kPagesKey, kWindowKey}) {
        project.others.remove(key);
    }
    return project;
}

std::optional<Project> parseProject(const QByteArray &bytes, QString &error)
{
    if (bytes.size() > kMostProjectBytes) {
        error = QCoreApplication::translate("ProjectFile", "it is longer than %1 bytes")
                    .arg(kMostProjectBytes);
        return std::nullopt;
    }
    const auto object = parseObject(bytes, error);
    return object ? projectOfObject(*object, error) : std::nullopt;
}

} // namespace cnet::view
