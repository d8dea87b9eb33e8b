#pragma once

#include "host/driver/driver_library.h"

#include <QList>

#include <cstring>

namespace cnet {

/** Stands for a loaded driver: hands out the frames that a test queued and keeps what came back. */
struct FakeDriver
{
    QList<FRAME_PRO> frames; ///< the first is handed out until it is dealt with
    QList<int> results;      ///< what dealing with the next answers returns; empty: by the rules
    QList<QByteArray> dealt; ///< answers handed back
    int asked = 0;           ///< calls for a frame

    static FakeDriver &instance()
    {
        static FakeDriver driver;
        return driver;
    }

    static FRAME_PRO frame(const QByteArray &request, int answerLength, int opKind = 4)
    {
        FRAME_PRO frame{};
        frame.sendLen = static_cast<int>(request.size());
        std::memcpy(frame.sendBuf, request.constData(), static_cast<size_t>(request.size()));
        frame.recvLen = answerLength;
        frame.var.opKind = opKind;
        frame.var.stationNo = 1;
        frame.var.regName = QLatin1String("D_W");
        frame.var.count = 1;
        return frame;
    }

    static int getSendFrame(FRAME_PRO &out)
    {
        FakeDriver &self = instance();
        ++self.asked;
        if (self.frames.isEmpty()) {
            return 0;
        }
        out = self.frames.first();
        return 1;
    }

    // Takes an answer that begins with ACK and has the expected length, else asks for it again.
    static int dealRcvFrame(QByteArray &reply, QString &errorText)
    {
        FakeDriver &self = instance();
        errorText.clear();
        self.dealt.append(reply);
        const bool good = !self.frames.isEmpty() && reply.startsWith('\x06') &&
                          reply.size() == self.frames.first().recvLen;
        int result = good ? kAnswerGood : kAnswerResend;
        if (!self.results.isEmpty()) {
            result = self.results.takeFirst();
        }
        if (result != kAnswerResend && !self.frames.isEmpty()) {
            self.frames.removeFirst();
        }
        return result;
    }

    static DriverFunctions functions()
    {
        instance() = FakeDriver();
        DriverFunctions functions;
        functions.getSendFrame = &FakeDriver::getSendFrame;
        functions.dealRcvFrame = &FakeDriver::dealRcvFrame;
        return functions;
    }
};

} // namespace cnet
