// The same read with another library, for comparison: Qt SerialBus's Modbus classes serialise the
// request and parse the answer. They have no checksum (nor has Modbus over TCP), no cache, no
// look-up and no change detection.

#include "cases.h"

#include <QDataStream>
#include <QModbusRequest>
#include <QModbusResponse>
#include <QVector>

namespace bench {

namespace {

QByteArray codecAnswer(int registers)
{
    QByteArray answer;
    answer.append(static_cast<char>(QModbusPdu::ReadHoldingRegisters));
    answer.append(static_cast<char>(2 * registers));
    for (int i = 0; i < registers; ++i) {
        answer.append(static_cast<char>(i)).append(static_cast<char>(7 * i));
    }
    return answer;
}

QByteArray encodedRequest(int registers)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << QModbusRequest(QModbusPdu::ReadHoldingRegisters, quint16(0),
                             static_cast<quint16>(registers));
    return bytes;
}

bool decodeAnswer(const QByteArray &bytes, QVector<quint16> &registers)
{
    QModbusResponse response;
    QDataStream stream(bytes);
    stream >> response;
    if (!response.isValid() || response.isException()) {
        return false;
    }
    const QByteArray data = response.data();
    QDataStream values(data);
    quint8 byteCount = 0;
    values >> byteCount;
    registers.resize(byteCount / 2);
    for (quint16 &value : registers) {
        values >> value;
    }
    return true;
}

void runCodec(benchmark::State &state, int count)
{
    const QByteArray answer = codecAnswer(count);
    QVector<quint16> registers;
    while (state.KeepRunning()) {
        QByteArray request = encodedRequest(count);
        benchmark::DoNotOptimize(request);
        if (!decodeAnswer(answer, registers)) {
            state.SkipWithError("the answer was not taken");
            break;
        }
        benchmark::DoNotOptimize(registers.data());
    }
}

} // namespace

void addCodecCases()
{
    for (const int count : {1, 8, 16, 32, 60}) {
        addCase(QStringLiteral("codec/%1").arg(count),
                [count](benchmark::State &state) { runCodec(state, count); });
    }
}

} // namespace bench
