#pragma once

#include "view/project/project_file.h"

namespace cnet::view {

/** Where save() keeps the file that it replaces: "press.cnet-view~". */
QString previousOf(const QString &path);

/**
 * Reads a whole file that is no pipe and no device.
 * @param most bytes that it may have
 * @param error receives one sentence when the result is empty
 */
std::optional<QByteArray> readWholeFile(const QString &path, qint64 most, QString &error);

/**
 * Writes a whole file, or leaves the one that is there as it is.
 * @param error receives one sentence when the result is false
 */
bool writeWholeFile(const QString &path, const QByteArray &bytes, QString &error);

/**
 * Opens a project.
 * @param error receives one sentence that names the file when the result is empty
 */
std::optional<Project> load(const QString &path, QString &error);

/**
 * Saves a project. The file that was there stays as previousOf(), unless it is the same; where
 * anything fails it stays in its place, whole.
 * @param error receives one sentence when the result is false
 */
bool save(const QString &path, const Project &project, QString &error);

} // namespace cnet::view
