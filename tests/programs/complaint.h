#pragma once

#include <QByteArray>

/**
 * Looks at what a program says of bad input: it should be one line, not endless, without anything
 * that a terminal would act upon.
 *
 * @param errors all of standard error
 * @param program whose name stands before it
 * @param part what it should say, among others
 * @return what is wrong with it; empty: nothing
 */
inline QByteArray faultOfComplaint(const QByteArray &errors, const QByteArray &program,
                                   const QByteArray &part)
{
    constexpr int kLongest = 2000;
    if (errors.count('\n') != 1 || !errors.endsWith('\n')) {
        return "not one line: " + errors.left(kLongest);
    }
    if (errors.size() > kLongest) {
        return "too long: " + QByteArray::number(errors.size());
    }
    for (const char letter : errors.left(errors.size() - 1)) {
        const auto code = static_cast<unsigned char>(letter);
        if (code < ' ' || code == 0x7F) {
            return "a control character: " + errors.toPercentEncoding(" ");
        }
    }
    return errors.startsWith(program + ": ") && errors.contains(part) ? QByteArray()
                                                                      : "says: " + errors;
}
