#pragma once

#include "host/value/typed_value.h"

#include <QByteArray>
#include <QJsonValue>

namespace cnet {

/**
 * A value for JSON: null where there is none. A whole number beyond 2^53, which most readers of
 * JSON would round, is a string of its digits.
 */
QJsonValue jsonValue(const Scalar &value);

/** Appends the same as text, for who writes very many. */
void appendJson(QByteArray &to, const Scalar &value);

/** Appends a whole number, however large. */
void appendNumber(QByteArray &to, qint64 number);

/** Appends a text in quotation marks; what no UTF-8 stands for becomes U+FFFD. */
void appendJson(QByteArray &to, const QString &text);

} // namespace cnet
