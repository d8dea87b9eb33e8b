#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace plc {

/** How replies are written. */
enum class ReplyFormat {
    Text, ///< the lines, "ok" where there are none, or "error: ..."
    Json, ///< one line with one object: "ok", and "error" or the data
};

/** What became of one command. */
struct Reply
{
    QString error;     ///< what is wrong with the command; empty: it was carried out
    QStringList lines; ///< for people
    QJsonObject data;  ///< for programs

    bool isGood() const { return error.isEmpty(); }

    /** As it is sent, with the end of the line. */
    QByteArray bytes(ReplyFormat format) const;
};

/** The reply to a command that cannot be carried out. */
Reply failure(const QString &error);

} // namespace plc
