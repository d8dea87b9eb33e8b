#include "gateway/sinks/json_object.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <vector>

namespace cnet::gateway {

namespace {

/// @return where the string that begins there ends, behind its quotation mark
int endOfString(const QByteArray &json, int begin)
{
    int at = begin + 1;
    while (at < json.size() && json.at(at) != '"') {
        at += json.at(at) == '\\' ? 2 : 1;
    }
    return std::min(at + 1, static_cast<int>(json.size()));
}

/// @param quoted as it is written
QString textOf(const QByteArray &quoted)
{
    return QJsonDocument::fromJson('[' + quoted + ']').array().at(0).toString();
}

// Only a key has a colon behind it. Whether all else is JSON is found out later.
bool hasAKeyTwice(const QByteArray &json)
{
    std::vector<QSet<QString>> open; ///< keys of the objects around; a list has none
    QByteArray last;
    for (int at = 0; at < json.size(); ++at) {
        const char letter = json.at(at);
        if (letter == '"') {
            const int end = endOfString(json, at);
            last = json.mid(at, end - at);
            at = end - 1;
        } else if (letter == '{' || letter == '[') {
            open.emplace_back();
        } else if ((letter == '}' || letter == ']') && !open.empty()) {
            open.pop_back();
        } else if (letter == ':' && !open.empty()) {
            const QString key = textOf(last);
            if (open.back().contains(key)) {
                return true;
            }
            open.back().insert(key);
        }
    }
    return false;
}

} // namespace

std::optional<QJsonObject> readJsonObject(const QByteArray &json, QString &error)
{
    if (hasAKeyTwice(json)) {
        error = QLatin1String("has a key twice");
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        error = QLatin1String("is no JSON");
        return std::nullopt;
    }
    return document.object();
}

} // namespace cnet::gateway
