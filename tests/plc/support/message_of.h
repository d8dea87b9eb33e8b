#pragma once

#include "plc/setup/text_error.h"

/** What is said of a text that is wrong; empty where it was taken. */
template <typename T>
QString messageOf(const plc::Parsed<T> &parsed)
{
    const plc::TextError *const error = std::get_if<plc::TextError>(&parsed);
    return error ? error->message : QString();
}
