#include "plc/setup/setting_text.h"

#include <QStringList>

namespace plc {

Parsed<Setting> parseSetting(const QString &text)
{
    const auto equals = text.indexOf(QLatin1Char('='));
    if (equals < 0) {
        return wrongText(text, QLatin1String("expected [STATION/]REGISTER:ADDRESS=VALUE[,VALUE...],"
                                             " for example M_W:3=0x1234"));
    }
    const Parsed<Range> range = parseRange(text.left(equals));
    if (const TextError *error = std::get_if<TextError>(&range)) {
        return *error;
    }
    Setting setting{std::get<Range>(range).station, std::get<Range>(range).first, {}};
    if (std::get<Range>(range).count != 1) {
        return wrongText(text, QLatin1String("expected one address; values separated by commas go "
                                             "to consecutive addresses"));
    }
    const bool word = setting.first.kind == PointKind::Word;
    const QStringList values = text.mid(equals + 1).split(QLatin1Char(','));
    for (const QString &value : values) {
        const std::optional<qint64> read = parseNumber(value);
        if (!read || *read < (word ? kLowestWord : 0) || *read > (word ? kHighestWord : 1)) {
            return wrongText(text, word ? QLatin1String("expected values from -32768 to 65535 or "
                                                        "0x0 to 0xFFFF, separated by commas")
                                        : QLatin1String("expected values 0 or 1, separated by "
                                                        "commas"));
        }
        setting.values.push_back(static_cast<quint16>(*read));
    }
    return setting;
}

std::optional<QString> cutBehind(QString &text, QLatin1Char mark)
{
    const auto place = text.lastIndexOf(mark);
    if (place < 0) {
        return std::nullopt;
    }
    const QString behind = text.mid(place + 1);
    text.truncate(place);
    return behind;
}

} // namespace plc
