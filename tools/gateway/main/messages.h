#pragma once

#include "gateway/delivery/say.h"

#include <QString>

namespace cnet::gateway {

/** One line to standard error, at once: from any thread, and whatever is in the text. */
void sayEvent(Weight weight, const QString &text);

/** The same for what is wrong. */
void say(const QString &text);

/** The same without the program's name in front: for a list of mistakes in a file. */
void sayPlain(const QString &text);

/** To standard output. @return false: nobody takes it any more */
bool print(const QString &text);

} // namespace cnet::gateway
