// What the panel writes and sees, and what the PLCs hold.

#include "exchange/host_loop.h"

#include <algorithm>

namespace exchange {

namespace {

bool isWordName(const QString &regName)
{
    return regName.endsWith(QLatin1String("_W"));
}

int byteOf(Recipe direction)
{
    return direction == Recipe::Write ? kRecipeWriteByte : kRecipeReadByte;
}

/** Words low byte first, as the driver and the recipe buffer have them. */
QByteArray wordBytes(const Values &values)
{
    QByteArray bytes;
    for (const int value : values) {
        bytes += static_cast<char>(value & 0xFF);
        bytes += static_cast<char>(value >> 8 & 0xFF);
    }
    return bytes;
}

Values wordsOf(const QByteArray &bytes, int count)
{
    Values values;
    for (int i = 0; i < count; ++i) {
        values += static_cast<quint8>(bytes.at(2 * i)) | static_cast<quint8>(bytes.at(2 * i + 1))
                                                             << 8;
    }
    return values;
}

} // namespace

void HostLoop::setPlc(const char *regName, int address, const Values &values, int station)
{
    for (const int value : values) {
        const plc::Point point = pointOf(QString::fromLatin1(regName), address++);
        if (!memory(station).setValue(point, static_cast<quint16>(value))) {
            qFatal("no %s %d", regName, address - 1);
        }
        m_set.at(station).setValue(point, static_cast<quint16>(value));
    }
}

Values HostLoop::inPlc(const char *regName, int address, int count, int station)
{
    Values values;
    for (int i = 0; i < count; ++i) {
        const auto value =
            memory(station).value(pointOf(QString::fromLatin1(regName), address + i));
        values += value ? *value : -1;
    }
    return values;
}

QStringList HostLoop::plcChanges(int station)
{
    QStringList changes;
    const plc::Memory &set = m_set.at(station);
    const plc::Memory &held = memory(station);
    const auto compare = [&](const QString &name, int count) {
        for (int address = 0; address < count; ++address) {
            const auto value = held.value(pointOf(name, address));
            if (set.value(pointOf(name, address)) != value) {
                changes +=
                    QString::fromLatin1("%1 %2=%3").arg(name).arg(address).arg(value.value_or(0));
            }
        }
    };
    for (const char device : {'P', 'M', 'K', 'L', 'F', 'T', 'C', 'D'}) {
        const QString letter(QLatin1Char{device});
        compare(letter + QLatin1String("_W"), held.wordCount(device));
        compare(letter + QLatin1Char('X'), held.contactCount(device));
    }
    return changes;
}

int HostLoop::monitor(const Keys &keys)
{
    for (const KEY_ADDRESS &key : keys) {
        remember({key.stationNo, key.regName, key.startAddr, key.count});
    }
    Keys copy = keys;
    return intf_addrMerge(copy);
}

void HostLoop::write(const char *regName, int address, const Values &values, int station)
{
    QString name = QString::fromLatin1(regName);
    QByteArray bytes = wordBytes(values);
    if (!isWordName(name)) {
        bytes.clear();
        for (const int value : values) {
            bytes += static_cast<char>(value);
        }
    }
    const int count = static_cast<int>(values.size());
    remember({station, name, address, count});
    intf_setData(station, name, address, count, DriverFixture::bytes(bytes), 2);
}

void HostLoop::readOnce(const char *regName, int address, int count, int station)
{
    KEY_ADDRESS wanted = key(regName, address, count, station);
    intf_addConditionRead(wanted, 3);
}

Values HostLoop::inPanel(const char *regName, int address, int count, int station) const
{
    return inPanel({station, QString::fromLatin1(regName), address, count});
}

Values HostLoop::inPanel(const Place &place)
{
    QByteArray bytes(kValueAreaSize, '\0');
    QString name = place.regName;
    intf_getData(place.station, name, place.address, place.count, DriverFixture::bytes(bytes));
    if (isWordName(name)) {
        return wordsOf(bytes, place.count);
    }
    Values values;
    for (int i = 0; i < place.count; ++i) {
        values += static_cast<quint8>(bytes.at(i));
    }
    return values;
}

int HostLoop::setRecipe(const QVector<_RCP_VAR_PRO> &items)
{
    QVector<_RCP_VAR_PRO> copy = items;
    return intf_setRcpAddress(copy);
}

void HostLoop::request(Recipe direction, bool on)
{
    QMutexLocker lock(&m_fixture.shmLock);
    DriverFixture::bytes(m_fixture.shm)[byteOf(direction)] = on ? 1 : 0;
}

bool HostLoop::isRequested(Recipe direction)
{
    QMutexLocker lock(&m_fixture.shmLock);
    return m_fixture.shm.at(byteOf(direction)) != 0;
}

void HostLoop::setRecipeWords(int offset, const Values &values)
{
    const QByteArray bytes = wordBytes(values);
    std::copy(bytes.begin(), bytes.end(), m_fixture.recipe.data() + 2 * offset);
}

Values HostLoop::recipeWords(int offset, int count) const
{
    return wordsOf(m_fixture.recipe.mid(2 * offset, 2 * count), count);
}

bool HostLoop::Place::operator==(const Place &other) const
{
    return station == other.station && address == other.address && count == other.count &&
           regName == other.regName;
}

void HostLoop::remember(const Place &place)
{
    if (!m_places.contains(place)) {
        m_places += place;
    }
}

QStringList HostLoop::differences()
{
    QStringList list;
    for (const Place &place : m_places) {
        if (m_line.bus().find(place.station) == nullptr) {
            continue;
        }
        const Values seen = inPanel(place);
        for (int i = 0; i < place.count; ++i) {
            const auto held =
                memory(place.station).value(pointOf(place.regName, place.address + i));
            if (held && *held != seen.at(i)) {
                list += QString::fromLatin1("%1 %2 %3: panel %4, PLC %5")
                            .arg(QString::number(place.station), place.regName,
                                 QString::number(place.address + i), QString::number(seen.at(i)),
                                 QString::number(*held));
            }
        }
    }
    return list;
}

QStringList HostLoop::differencesAtRest()
{
    return settle() ? differences() : QStringList(QString::fromLatin1("jobs go on waiting"));
}

plc::Point pointOf(const QString &regName, int address)
{
    plc::Point point;
    point.device = regName.isEmpty() ? '\0' : regName.at(0).toLatin1();
    point.address = address;
    if (regName.endsWith(QLatin1String("_bit"))) {
        point.kind = plc::PointKind::Bit;
    } else if (regName.endsWith(QLatin1Char('X'))) {
        point.kind = plc::PointKind::Contact;
    }
    return point;
}

KEY_ADDRESS key(const char *regName, int address, int count, int station)
{
    const bool isWord = isWordName(QString::fromLatin1(regName));
    return makeKey(station, regName, address, count, isWord ? 0 : -1);
}

_RCP_VAR_PRO recipeItem(const char *regName, int address, int count, int offset, int station)
{
    _RCP_VAR_PRO item = _RCP_VAR_PRO();
    item.deviceNo = 7;
    item.stationNo = station;
    item.regName = QString::fromLatin1(regName);
    item.startAddr = address;
    item.count = count;
    item.bufOffset = offset;
    return item;
}

QStringList texts(std::initializer_list<const char *> lines)
{
    QStringList list;
    for (const char *line : lines) {
        list += QString::fromLatin1(line);
    }
    return list;
}

} // namespace exchange
