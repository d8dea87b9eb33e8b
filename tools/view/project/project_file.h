#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

namespace cnet::view {

/** What a project file is written as, and the newest one that is read. */
constexpr int kProjectVersion = 1;

/** The longest project file, in bytes. */
constexpr qint64 kMostProjectBytes = 64 * 1024 * 1024;

/** What somebody has set up in a window: the line, its pages, how it is arranged. */
struct Project
{
    int version = kProjectVersion;    ///< of the file it came from, 1 or more
    QJsonObject connection;           ///< as Connection::saved() gives it; empty: none
    QMap<QString, QJsonObject> pages; ///< of each page by its name, as Page::saved() gives it
    QJsonObject window;               ///< where it stood and what was shown
    QJsonObject others;               ///< what this version does not know; kept for who does
};

bool operator==(const Project &left, const Project &right);

/** A project as a file: indented JSON, the same bytes for the same project. */
QByteArray toBytes(const Project &project);

/**
 * Reads a file.
 * @param bytes whatever the file holds
 * @param error receives one sentence, with line and column where the file is no JSON, when the
 * result is empty
 */
std::optional<Project> parseProject(const QByteArray &bytes, QString &error);

/**
 * Reads a file that is one JSON object.
 * @param error receives one sentence with line and column when the result is empty
 */
std::optional<QJsonObject> parseObject(const QByteArray &bytes, QString &error);

/** The project of an object that a file holds, as parseProject(). */
std::optional<Project> projectOfObject(const QJsonObject &object, QString &error);

/** The object that toBytes() writes. */
QJsonObject objectOf(const Project &project);

} // namespace cnet::view
