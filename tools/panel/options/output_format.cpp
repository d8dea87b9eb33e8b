#include "panel/options/output_format.h"

namespace cnet::panel {

void addFormatOption(QCommandLineParser &parser, const char *description)
{
    parser.addOption(
        {QLatin1String("format"), QLatin1String(description), QLatin1String("FORMAT")});
}

bool readFormatOption(const QCommandLineParser &parser, OutputFormat &format, QString &error)
{
    const QString text = parser.value(QLatin1String("format"));
    if (!parser.isSet(QLatin1String("format")) || text == QLatin1String("text")) {
        format = OutputFormat::Text;
    } else if (text == QLatin1String("json")) {
        format = OutputFormat::Json;
    } else if (text == QLatin1String("csv")) {
        format = OutputFormat::Csv;
    } else {
        error = QString::fromLatin1("--format '%1': expected text, json or csv").arg(text);
        return false;
    }
    return true;
}

bool readTextOrJsonOption(const QCommandLineParser &parser, OutputFormat &format, QString &error)
{
    if (!readFormatOption(parser, format, error) || format == OutputFormat::Csv) {
        error = QString::fromLatin1("--format '%1': expected text or json")
                    .arg(parser.value(QLatin1String("format")));
        return false;
    }
    return true;
}

} // namespace cnet::panel
