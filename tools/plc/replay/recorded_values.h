#pragma once

#include "plc/memory/point.h"

#include <QByteArray>

#include <vector>

namespace plc {

/** What a station held at some time. */
struct RecordedValue
{
    int station = 0;
    Point point;
    quint16 value = 0;
};

/**
 * What a request and its answer tell of a station's memory: the values of a read, and those of a
 * write that was acknowledged. It takes any bytes.
 *
 * @return nothing where the answer is not one to this request, or its block check is wrong
 */
std::vector<RecordedValue> recordedValues(const QByteArray &request, const QByteArray &answer);

/** Whether these bytes are a whole answer, good or bad, of the station that is asked. */
bool isAnswerTo(const QByteArray &request, const QByteArray &answer);

} // namespace plc
