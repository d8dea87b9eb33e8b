#pragma once

#include "plc/options/options.h"

#include <QString>

#include <cstdio>

namespace plc {

/** @return false, with the reason in errno, if the bytes cannot be written. */
bool print(std::FILE *file, const QByteArray &bytes);

/** Says on standard error what is wrong, in one line. @return the exit code it was given. */
int fail(ExitCode code, const QString &message);

/** Prints what the user has asked for. @return the exit code. */
int say(const QString &text);

} // namespace plc
