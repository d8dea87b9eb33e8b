#include "host/scan/probe_frame.h"

#include "host/wire/block_check.h"

namespace cnet {

namespace {

const int kAddressDigits = 5;
// Head, station (2), command (3), blocks (2), bytes (2), a word (4), tail and block check (2)
const int kAnswerLength = 1 + 2 + 3 + 2 + 2 + 4 + 1 + 2;

QByteArray hex(int value)
{
    return QByteArray::number(value, 16).toUpper().rightJustified(2, '0');
}

} // namespace

Question probeQuestion(int station, const RegisterInfo &reg, int address, ProbeForm form)
{
    const QByteArray name = "%" + reg.letter().toLatin1() + "W" +
                            QByteArray::number(address).rightJustified(kAddressDigits, '0');
    const QByteArray named = hex(static_cast<int>(name.size())) + name;
    Question question;
    question.station = station;
    question.request = completedRequest(
        hex(station) + (form == ProbeForm::Single ? "rSS01" + named : "rSB" + named + "01"));
    question.answerLength = kAnswerLength;
    return question;
}

} // namespace cnet
