#pragma once

#include <QtCore/QStringList>

#include "support/area_helpers.h"

/// One turn after the other of the host's loop, against a PLC that takes everything.

/// A good answer to a frame: zeros to a read, an acknowledgement to a write.
inline QByteArray goodAnswer(const FRAME_PRO &frame)
{
    return frame.unitCount == 0 ? writeAnswer() : readAnswer(QByteArray(frame.recvLen - 13, '0'));
}

/// The job that is running, in short: "W D_W 5" is a write of "D_W" 5.
inline QString jobText()
{
    const QByteArray letters("-HWCRwr");
    return latin("%1 %2 %3")
        .arg(QChar::fromLatin1(letters.at(driver.sendState)), driver.curVar.regName,
             QString::number(driver.curVar.startAddr));
}

/// Asks for a frame and leaves it unanswered.
inline FRAME_PRO send()
{
    FRAME_PRO frame = FRAME_PRO();
    intf_getSendFrame(frame);
    return frame;
}

/// The panel writes one unit.
/// @param data  its bytes in hexadecimal
inline int panelWrite(const char *regName, int startAddr, const char *data)
{
    return panelWrite(regName, startAddr, 1, QByteArray::fromHex(data));
}

/// The host wants to know one unit once.
inline void askOnce(const char *regName, int startAddr)
{
    KEY_ADDRESS key = makeKey(1, regName, startAddr, 1);
    intf_addConditionRead(key, 0);
}

/// Asks for a frame and answers it well.
/// @return  the job, or "idle" when there is nothing to send
inline QString takeTurn()
{
    FRAME_PRO frame = FRAME_PRO();
    if (intf_getSendFrame(frame) == 0) {
        return latin("idle");
    }
    const QString job = jobText();
    QByteArray answer = goodAnswer(frame);
    QString errorText;
    const int result = intf_dealRcvFrame(answer, errorText);
    return result == kAnswerGood ? job : job + latin(" answered with %1").arg(result);
}

inline QString takeTurns(int turns)
{
    QStringList jobs;
    for (int i = 0; i < turns; ++i) {
        jobs.append(takeTurn());
    }
    return jobs.join(QLatin1String(", "));
}

/// Hands an answer over; `text` receives the description of the request.
inline int answerWith(QByteArray answer, QString *text = nullptr)
{
    QString errorText = latin("left over");
    const int result = intf_dealRcvFrame(answer, errorText);
    if (text != nullptr) {
        *text = errorText;
    }
    return result;
}

inline void queueWrites(int from, int count)
{
    for (int i = 0; i < count; ++i) {
        driver.pendingWrites.append(makeItem(1, "D_W", from + i, 1));
    }
}

inline void queueReads(QList<VARIABLE> &list, const char *regName, int from, int count)
{
    for (int i = 0; i < count; ++i) {
        list.append(makeItem(1, regName, from + i, 1));
    }
}
