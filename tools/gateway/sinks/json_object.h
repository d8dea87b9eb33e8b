#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace cnet::gateway {

/**
 * Reads an object that came from outside. One with a key twice is refused, at any depth: it is not
 * clear what it says, and the reader of Qt 5 never gives back the memory of what it passes over.
 *
 * @param error receives why, as in "is no JSON", when the result is empty
 */
std::optional<QJsonObject> readJsonObject(const QByteArray &json, QString &error);

} // namespace cnet::gateway
