#include "plc/setup/memory_file.h"

#include "plc/setup/apply.h"

#include <QFile>
#include <QSaveFile>

#include <vector>

namespace plc {

namespace {

constexpr int kValuesPerLine = 16;

/** Adds lines for the values of one device, but for rows of zeros. */
void addValues(const Unit &unit, Point first, int count, QByteArray &text)
{
    const Memory &memory = unit.station.memory();
    for (; first.address < count; first.address += kValuesPerLine) {
        std::vector<quint16> values;
        bool zero = true;
        for (int i = 0; i < kValuesPerLine && first.address + i < count; ++i) {
            const Point point{first.device, first.kind, first.address + i};
            values.push_back(memory.value(point).value_or(0));
            zero = zero && values.back() == 0;
        }
        if (zero) {
            continue;
        }
        while (values.back() == 0) {
            values.pop_back();
        }
        text += rangeText({unit.station.number(), first, 1}).toLatin1() + '=';
        for (std::size_t i = 0; i < values.size(); ++i) {
            text += (i > 0 ? "," : "") + QByteArray::number(values[i]);
        }
        text += '\n';
    }
}

} // namespace

void Mistakes::add(int line, const QString &message)
{
    if (m_count < kMostMistakes) {
        m_told << QString::fromLatin1("%1:%2: %3").arg(m_path).arg(line).arg(message);
    }
    ++m_count;
}

QStringList Mistakes::told() const
{
    if (m_count <= kMostMistakes) {
        return m_told;
    }
    return m_told +
           QStringList(QString::fromLatin1("%1: %2 mistakes in all").arg(m_path).arg(m_count));
}

Parsed<QStringList> readLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return TextError{QString::fromLatin1("%1: %2").arg(path, file.errorString())};
    }
    const QByteArray content = file.read(kMostFileBytes + 1);
    if (file.error() != QFileDevice::NoError) {
        return TextError{QString::fromLatin1("%1: %2").arg(path, file.errorString())};
    }
    if (content.size() > kMostFileBytes) {
        return TextError{
            QString::fromLatin1("%1: longer than %2 bytes").arg(path).arg(kMostFileBytes)};
    }
    // What stands behind it would be lost, and nobody would notice.
    if (const auto zero = content.indexOf('\0'); zero >= 0) {
        return TextError{QString::fromLatin1("%1:%2: a zero byte; expected text in UTF-8")
                             .arg(path)
                             .arg(content.left(zero).count('\n') + 1)};
    }
    return QString::fromUtf8(content).split(QLatin1Char('\n'));
}

QStringList loadMemory(const QStringList &lines, const QString &path, Bus &bus)
{
    Mistakes mistakes(path);
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        const Parsed<Setting> setting = parseSetting(line);
        if (const TextError *error = std::get_if<TextError>(&setting)) {
            mistakes.add(i + 1, error->message);
        } else if (const auto problem = apply(std::get<Setting>(setting), bus)) {
            mistakes.add(i + 1, problem->message);
        }
    }
    return mistakes.told();
}

QByteArray memoryText(Bus &bus)
{
    QByteArray text =
        "# The memory of cnet-plc: STATION/REGISTER:ADDRESS=VALUE,... What is not here "
        "is 0.\n";
    for (const auto &[number, unit] : bus.units()) {
        for (const char device : {'P', 'M', 'K', 'L', 'F', 'T', 'C', 'D'}) {
            const Memory &memory = unit.station.memory();
            addValues(unit, {device, PointKind::Word, 0}, memory.wordCount(device), text);
            addValues(unit, {device, PointKind::Contact, 0}, memory.contactCount(device), text);
        }
    }
    return text;
}

std::optional<TextError> saveMemory(const QString &path, Bus &bus)
{
    QSaveFile file(path);
    const QByteArray text = memoryText(bus);
    // commit() would take what was left in Qt's buffer by a full disk for written.
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush() &&
        file.commit()) {
        return std::nullopt;
    }
    return TextError{
        QString::fromLatin1("cannot save the memory to %1: %2").arg(path, file.errorString())};
}

} // namespace plc
