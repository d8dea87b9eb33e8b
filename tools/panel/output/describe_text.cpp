#include "panel/output/describe_text.h"

#include <QStringList>

namespace cnet::panel {

namespace {

// Places in the driver's parameter text, which is a list with commas.
enum ParameterPlace {
    kTypePlace = 0,
    kSerialPlace = 1,
    kSerialFields = 4,
    kHostPlace = 7,
    kPortPlace = 8,
    kNamePlace = 9,
};

QString widthText(const RegisterInfo &reg)
{
    switch (reg.widthCode) {
    case kWidthBit:
        return reg.isContact() ? QLatin1String("contact") : QLatin1String("bit");
    case kWidthDoubleWord:
        return QLatin1String("double word");
    default:
        return QLatin1String("word");
    }
}

QString accessText(int code)
{
    switch (code) {
    case kAccessRead:
        return QLatin1String("read");
    case kAccessWrite:
        return QLatin1String("write");
    default:
        return QLatin1String("read, write");
    }
}

QString row(const QString &name, const QString &kind, const QString &format, const QString &lowest,
            const QString &highest, const QString &access)
{
    const auto cell = [](const QString &text, int width) { return text.leftJustified(width); };
    return QLatin1String("  ") + cell(name, 10) + cell(kind, 13) + cell(format, 10) +
           cell(lowest, 9) + cell(highest, 9) + access + QLatin1Char('\n');
}

QString field(const char *title, const QString &value)
{
    return QString::fromLatin1(title).leftJustified(16) + value + QLatin1Char('\n');
}

} // namespace

QString describeText(const DriverFunctions &driver, const RegisterCatalog &registers)
{
    QString parameters;
    driver.getDriverParameter(parameters);
    const QStringList items = parameters.split(QLatin1Char(','));
    QString page;
    driver.getDriverPropertyPage(page);

    QString text = field("driver", items.value(kNamePlace));
    text += field("version", driver.getVersion());
    text += field("protocol type", items.value(kTypePlace));
    text += field("property page", page);
    text += field("serial default", items.mid(kSerialPlace, kSerialFields).join(QLatin1Char(',')));
    text += field("network default", QString::fromLatin1("%1:%2").arg(items.value(kHostPlace),
                                                                      items.value(kPortPlace)));
    text += QLatin1String("registers\n");
    text += row(QLatin1String("NAME"), QLatin1String("KIND"), QLatin1String("ADDRESS"),
                QLatin1String("LOWEST"), QLatin1String("HIGHEST"), QLatin1String("ACCESS"));
    for (const RegisterInfo &reg : registers.all()) {
        text += row(reg.name, widthText(reg), reg.pattern, reg.lowestText, reg.highestText,
                    accessText(reg.accessCode));
    }
    return text;
}

} // namespace cnet::panel
