#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>

/** One packet of a file, with what the file says of it. */
struct PcapngPacket
{
    QByteArray interfaceName;
    int linkType = 0;
    qint64 timeNs = 0;
    int direction = 0; ///< 1: in, 2: out
    QByteArray data;
    QByteArray comment;
    quint64 lost = 0;
};

/**
 * What a pcapng file holds. It is read by the published layout of its blocks, which knows nothing
 * of how the project writes one.
 */
struct PcapngFile
{
    QByteArray program;
    QList<QByteArray> interfaces;
    QList<PcapngPacket> packets;
    QByteArray error; ///< empty: all of its blocks are sound
};

namespace pcapng {

inline quint64 number(const QByteArray &bytes, int at, int size)
{
    quint64 value = 0;
    for (int i = size - 1; i >= 0; --i) {
        value = value << 8 | static_cast<quint8>(bytes.at(at + i));
    }
    return value;
}

inline int padded(int size)
{
    return (size + 3) / 4 * 4;
}

struct Option
{
    int code;
    QByteArray value;
};

/** @param rest what follows the fixed fields of a block */
inline QList<Option> options(const QByteArray &rest, QByteArray &error)
{
    QList<Option> found;
    int at = 0;
    while (at + 4 <= rest.size()) {
        const int code = static_cast<int>(number(rest, at, 2));
        const int size = static_cast<int>(number(rest, at + 2, 2));
        at += 4;
        if (at + padded(size) > rest.size()) {
            break;
        }
        found.append({code, rest.mid(at, size)});
        const QByteArray padding = rest.mid(at + size, padded(size) - size);
        if (padding.count('\0') != padding.size()) {
            error = "padding that is not zero";
        }
        at += padded(size);
        if (code == 0) {
            break;
        }
    }
    if (at != rest.size() || found.isEmpty() || found.last().code != 0) {
        error = "options that do not end with their block";
    }
    return found;
}

class Reader
{
public:
    PcapngFile file;

    void read(const QByteArray &bytes)
    {
        int at = 0;
        while (at < bytes.size() && file.error.isEmpty()) {
            const int left = static_cast<int>(bytes.size()) - at;
            const int size = left >= 12 ? static_cast<int>(number(bytes, at + 4, 4)) : 0;
            if (size < 12 || size % 4 != 0 || size > left ||
                static_cast<int>(number(bytes, at + size - 4, 4)) != size) {
                file.error = "a block of a wrong length at " + QByteArray::number(at);
                return;
            }
            readBlock(static_cast<quint32>(number(bytes, at, 4)), bytes.mid(at + 8, size - 12),
                      at == 0);
            at += size;
        }
    }

private:
    void readBlock(quint32 type, const QByteArray &body, bool first)
    {
        if (first != (type == 0x0A0D0D0A)) {
            file.error = "one section, at the beginning";
        } else if (first) {
            readSection(body);
        } else if (type == 1 && body.size() >= 8) {
            readInterface(body);
        } else if (type == 6 && body.size() >= 20) {
            readPacket(body);
        } else {
            file.error = "a block of type " + QByteArray::number(type);
        }
    }

    void readSection(const QByteArray &body)
    {
        if (body.size() < 16 || number(body, 0, 4) != 0x1A2B3C4D || number(body, 4, 4) != 1 ||
            number(body, 8, 8) != ~0ULL) {
            file.error = "a section header that is none";
            return;
        }
        for (const Option &option : options(body.mid(16), file.error)) {
            file.program = option.code == 4 ? option.value : file.program;
        }
    }

    void readInterface(const QByteArray &body)
    {
        QByteArray name;
        QByteArray resolution;
        for (const Option &option : options(body.mid(8), file.error)) {
            name = option.code == 2 ? option.value : name;
            resolution = option.code == 9 ? option.value : resolution;
        }
        if (resolution != QByteArray(1, 9) || number(body, 4, 4) != 0) {
            file.error = "an interface without nanoseconds, or which cuts packets";
        }
        file.interfaces.append(name);
        m_linkTypes.append(static_cast<int>(number(body, 0, 2)));
    }

    void readPacket(const QByteArray &body)
    {
        const int interfaceNumber = static_cast<int>(number(body, 0, 4));
        const int size = static_cast<int>(number(body, 12, 4));
        if (interfaceNumber >= file.interfaces.size() ||
            number(body, 16, 4) != number(body, 12, 4) || 20 + padded(size) > body.size()) {
            file.error = "a packet of no interface, or of a wrong length";
            return;
        }
        PcapngPacket packet;
        packet.interfaceName = file.interfaces.at(interfaceNumber);
        packet.linkType = m_linkTypes.at(interfaceNumber);
        packet.timeNs = static_cast<qint64>(number(body, 4, 4) << 32 | number(body, 8, 4));
        packet.data = body.mid(20, size);
        for (const Option &option : options(body.mid(20 + padded(size)), file.error)) {
            if (option.code == 1) {
                packet.comment = option.value;
            } else if (option.code == 2 && option.value.size() == 4) {
                packet.direction = static_cast<int>(number(option.value, 0, 4) & 3);
            } else if (option.code == 4 && option.value.size() == 8) {
                packet.lost = number(option.value, 0, 8);
            }
        }
        if (!file.packets.isEmpty() && packet.timeNs < file.packets.last().timeNs) {
            file.error = "time that goes backwards";
        }
        file.packets.append(packet);
    }

    QList<int> m_linkTypes;
};

} // namespace pcapng

inline PcapngFile readPcapng(const QByteArray &bytes)
{
    pcapng::Reader reader;
    reader.read(bytes);
    return reader.file;
}

inline PcapngFile readPcapngFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        PcapngFile none;
        none.error = "no file " + path.toLocal8Bit();
        return none;
    }
    return readPcapng(file.readAll());
}
