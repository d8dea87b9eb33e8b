#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <cstring>

namespace cnet::gateway {

/** Writes bytes of which a whole number takes as few as it needs. */
class PackedOutput
{
public:
    void addNumber(quint64 number)
    {
        std::array<char, 10> bytes;
        int count = 0;
        for (; number >= 0x80; number >>= 7) {
            bytes[static_cast<size_t>(count++)] = static_cast<char>(number | 0x80);
        }
        bytes[static_cast<size_t>(count++)] = static_cast<char>(number);
        m_bytes.append(bytes.data(), count);
    }

    /** A negative one takes few bytes as well. */
    void addSigned(qint64 number)
    {
        addNumber((static_cast<quint64>(number) << 1) ^ static_cast<quint64>(number >> 63));
    }

    void addReal(double number)
    {
        quint64 bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        std::array<char, sizeof bits> bytes;
        for (char &byte : bytes) {
            byte = static_cast<char>(bits);
            bits >>= 8;
        }
        m_bytes.append(bytes.data(), static_cast<int>(bytes.size()));
    }

    void addText(const QString &text) { addBytes(text.toUtf8()); }

    void addBytes(const QByteArray &bytes)
    {
        addNumber(static_cast<quint64>(bytes.size()));
        m_bytes.append(bytes);
    }

    /** As they are, without their number. */
    void append(const QByteArray &bytes) { m_bytes.append(bytes); }

    int size() const { return static_cast<int>(m_bytes.size()); }
    const QByteArray &bytes() const { return m_bytes; }

    /** Begins anew, and keeps the room for as much. */
    void clear() { m_bytes.resize(0); }
    void reserve(int bytes) { m_bytes.reserve(bytes); }

private:
    QByteArray m_bytes;
};

/** Reads them again. Behind what is damaged it gives zeros, and is not good any more. */
class PackedInput
{
public:
    /** @param bytes must stay as they are while this object and what bytes() gave live */
    explicit PackedInput(const QByteArray &bytes)
        : m_next(bytes.constData())
        , m_end(m_next + bytes.size())
    {}

    quint64 number()
    {
        quint64 number = 0;
        for (int shift = 0; shift < 64 && m_next != m_end; shift += 7) {
            const auto byte = static_cast<quint8>(*m_next++);
            number |= static_cast<quint64>(byte & 0x7f) << shift;
            if (byte < 0x80) {
                return number;
            }
        }
        return spoil();
    }

    qint64 signedNumber()
    {
        const quint64 both = number();
        return static_cast<qint64>((both >> 1) ^ (~(both & 1) + 1));
    }

    double real()
    {
        quint64 bits = 0;
        if (m_end - m_next < static_cast<qint64>(sizeof bits)) {
            bits = spoil();
        } else {
            for (int shift = 0; shift < 64; shift += 8) {
                bits |= static_cast<quint64>(static_cast<quint8>(*m_next++)) << shift;
            }
        }
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    QString text() { return QString::fromUtf8(bytes()); }

    /** Not a copy. */
    QByteArray bytes()
    {
        quint64 size = number();
        if (size > static_cast<quint64>(m_end - m_next)) {
            size = spoil();
        }
        QByteArray found = QByteArray::fromRawData(m_next, static_cast<int>(size));
        m_next += size;
        return found;
    }

    /** How many follow, of which each takes a byte at least. */
    int count()
    {
        const quint64 count = number();
        return static_cast<int>(count > static_cast<quint64>(m_end - m_next) ? spoil() : count);
    }

    bool isGood() const { return m_isGood; }
    bool isAtEnd() const { return m_next == m_end; }

    /** @return 0 */
    quint64 spoil()
    {
        m_isGood = false;
        m_next = m_end;
        return 0;
    }

private:
    const char *m_next;
    const char *m_end;
    bool m_isGood = true;
};

} // namespace cnet::gateway
