#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace cnet::panel {

/** How long to wait for the next byte of a pipe. */
constexpr int kInputPatienceMs = 10000;

/**
 * Reads a file as a whole; a pipe too, as `<(command)` of a shell gives one.
 *
 * Returns whatever the path names: a device without end, a pipe that nobody writes to.
 *
 * @param longest bytes that the file may have
 * @param patienceMs milliseconds to wait for the next byte
 * @param error receives one sentence when the result is empty
 */
std::optional<QByteArray> readInputFile(const QString &path, int longest, QString &error,
                                        int patienceMs = kInputPatienceMs);

/** The same of standard input, to its end. */
std::optional<QByteArray> readStandardInput(int longest, QString &error,
                                            int patienceMs = kInputPatienceMs);

} // namespace cnet::panel
