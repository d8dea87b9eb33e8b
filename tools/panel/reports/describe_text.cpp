#include "panel/reports/describe_text.h"

namespace cnet::panel {

namespace {

QString widthText(const RegisterInfo &reg)
{
    switch (reg.width) {
    case RegisterWidth::Bit:
        return reg.isContact() ? QLatin1String("contact") : QLatin1String("bit");
    case RegisterWidth::DoubleWord:
        return QLatin1String("double word");
    case RegisterWidth::Word:
        break;
    }
    return QLatin1String("word");
}

QString accessText(RegisterAccess access)
{
    switch (access) {
    case RegisterAccess::Read:
        return QLatin1String("read");
    case RegisterAccess::Write:
        return QLatin1String("write");
    case RegisterAccess::ReadWrite:
        break;
    }
    return QLatin1String("read, write");
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

QString describeText(const Driver &driver)
{
    const DriverDescription description = driver.description();
    QString text = field("driver", description.name);
    text += field("version", description.version);
    text += field("protocol type", description.protocolType);
    text += field("property page", description.propertyPage);
    text += field("serial default", description.serialDefault);
    text += field("network default", description.networkDefault);
    text += QLatin1String("registers\n");
    text += row(QLatin1String("NAME"), QLatin1String("KIND"), QLatin1String("ADDRESS"),
                QLatin1String("LOWEST"), QLatin1String("HIGHEST"), QLatin1String("ACCESS"));
    for (const RegisterInfo &reg : driver.registers().all()) {
        text += row(reg.name, widthText(reg), reg.pattern, reg.lowestText, reg.highestText,
                    accessText(reg.access));
    }
    return text;
}

} // namespace cnet::panel
