// What a master sends to the simulated PLC, in any division, right and wrong, with the faults and
// motions that a command line may ask for. The same bytes in one piece must get the same answers.
#include "fuzz/input.h"
#include "plc/setup/apply.h"
#include "plc/stations/exchange_text.h"
#include "plc/stations/line.h"
#include "plc/wire/frame_finder.h"
#include "plc/wire/wire.h"

#include <QByteArray>
#include <QList>

#include <optional>
#include <variant>
#include <vector>

namespace {

using namespace fuzz;
using plc::kAck;
using plc::kEnq;
using plc::kEot;
using plc::kEtx;
using plc::kNak;

/// With every fault: the longest answer and its copies, noise around them and the echo.
const int kMostAnswerBytes = (1 + plc::kMaxCopies) * 4096 + 2 * 1000 + 2 * plc::kMaxFrameBytes;

/** A digit of a number, most often a right one. */
QByteArray number(Input &input, int digits)
{
    const int value = input.number();
    return plc::hex(static_cast<quint32>(value), digits);
}

QByteArray deviceName(Input &input)
{
    static const char *const kNames[] = {"%DW", "%MW", "%MX", "%TX", "%TW", "%CX", "%PX", "%FW",
                                         "%DX", "%KW", "%LX", "%ZZ", "DW",  "%FX", "%CW", "%"};
    const int choice = input.byte();
    const int digits = 1 + (choice >> 4 & 7);
    const QByteArray address = QByteArray::number(input.number()).rightJustified(digits, '0');
    return kNames[choice & 15] + address;
}

/** The part of a request between its type and EOT, with its fields in the right order. */
QByteArray requestBody(Input &input, bool block, bool writes)
{
    QByteArray body;
    const int blocks = block ? 1 : input.below(20);
    body += block ? QByteArray() : plc::hex(static_cast<quint32>(blocks), 2);
    for (int i = 0; i < blocks; ++i) {
        const QByteArray name = deviceName(input);
        body += plc::hex(static_cast<quint32>(name.size()), 2) + name;
        if (block) {
            const int words = input.below(70);
            body += plc::hex(static_cast<quint32>(words), 2);
            body += writes ? QByteArray(words * 4, '7') : QByteArray();
        } else if (writes) {
            body += number(input, name.contains('X') ? 2 : 4);
        }
    }
    return body;
}

QByteArray request(Input &input)
{
    static const char *const kCommands[] = {"rSS", "rSB", "wSS", "wSB", "RSS", "RSB", "WSS", "WSB"};
    const int choice = input.byte();
    const QByteArray command = kCommands[choice & 7];
    QByteArray frame = kEnq + plc::hex(static_cast<quint32>(input.byte()), 2) + command;
    frame += (choice & 8) != 0 ? input.bytes(200)
                               : requestBody(input, (choice & 1) != 0, (choice & 2) != 0);
    frame += (choice & 16) != 0 ? input.bytes(4) : QByteArray();
    frame += kEot;
    return plc::wantsBlockCheck(command.at(0)) ? frame + plc::blockCheck(frame) : frame;
}

bool isHexadecimal(const QByteArray &text)
{
    return text == QByteArray::fromHex(text).toHex().toUpper();
}

void requireRefusal(const QByteArray &code)
{
    static const QList<QByteArray> kCodes{"0003", "0004", "0007", "0011", "1132",
                                          "1232", "1234", "1332", "1432"};
    require(kCodes.contains(code), "a refusal has a documented code");
}

void requireData(QByteArray text)
{
    bool ok = false;
    const int blocks = text.left(2).toInt(&ok, 16);
    require(ok && blocks >= 1 && blocks <= plc::kMaxBlocks, "an answer counts its blocks");
    text = text.mid(2);
    for (int i = 0; i < blocks; ++i) {
        const int bytes = text.left(2).toInt(&ok, 16);
        require(ok && text.size() >= 2 + 2 * bytes, "a block has all its data");
        require(isHexadecimal(text.mid(2, 2 * bytes)), "data are hexadecimal");
        text = text.mid(2 + 2 * bytes);
    }
    require(text.isEmpty(), "nothing lies behind the blocks");
}

/** An answer is a whole frame that repeats station, command and type. */
void requireAnswer(const plc::Exchange &exchange)
{
    require(!plc::exchangeText(exchange).isEmpty(), "an exchange has a text");
    require(plc::joined(exchange.sent).size() <= kMostAnswerBytes, "an answer is bounded");
    const QByteArray &answer = exchange.answer;
    if (answer.isEmpty()) {
        return;
    }
    require(answer.size() <= plc::kMaxFrameBytes, "an answer fits into a frame");
    require(answer.mid(1, 2) == exchange.request.mid(1, 2).toUpper(), "the station is repeated");
    require(answer.mid(3, 3) == exchange.request.mid(3, 3), "command and type are repeated");
    const bool checked = plc::wantsBlockCheck(answer.at(3));
    const int tail = static_cast<int>(answer.size()) - (checked ? 3 : 1);
    require(tail >= 6 && answer.at(tail) == kEtx, "an answer ends with ETX");
    require(!checked || answer.mid(tail + 1) == plc::blockCheck(answer.left(tail + 1)),
            "the block check is right");
    const QByteArray text = answer.mid(6, tail - 6);
    if (answer.at(0) == kNak) {
        require(text.size() == 4 && isHexadecimal(text), "a refusal has four digits");
        if (!plc::Faults::find(exchange.fired, plc::FaultKind::Refuse)) {
            requireRefusal(text);
        }
        return;
    }
    require(answer.at(0) == kAck, "an answer begins with ACK or NAK");
    if (answer.at(3) == 'r' || answer.at(3) == 'R') {
        requireData(text);
    } else {
        require(text.isEmpty(), "a write is only acknowledged");
    }
}

/** Two stations and their line. */
struct Plcs
{
    Plcs()
        : line(bus)
    {
        bus.add(1);
        bus.add(31, plc::Model::K120s);
        line.setObserver(&requireAnswer);
    }

    /** @param text behind its first letter as the options of the program take it */
    void setUp(const QByteArray &text)
    {
        const QString rest = QString::fromUtf8(text.mid(1));
        switch (text.isEmpty() ? '\0' : text.at(0)) {
        case 's':
            applyIfGood(plc::parseSetting(rest));
            break;
        case 'r':
            applyIfGood(plc::parseMotion(plc::MotionKind::Ramp, rest));
            break;
        case 'f':
            applyIfGood(plc::parseFault(rest));
            break;
        case 'm':
            applyIfGood(plc::parseMotion(plc::MotionKind(rest.size() % plc::kMotionKinds), rest));
            break;
        default:
            plc::parsePoint(rest);
            break;
        }
    }

    plc::Bus bus;
    plc::Line line;

private:
    template <typename Setting>
    void applyIfGood(const plc::Parsed<Setting> &parsed)
    {
        if (const auto *error = std::get_if<plc::TextError>(&parsed)) {
            require(!error->message.isEmpty(), "a wrong text is explained");
            return;
        }
        const auto problem = plc::apply(std::get<Setting>(parsed), bus);
        require(!problem || !problem->message.isEmpty(), "a missing place is explained");
    }
};

/** Any chunks keep within one frame. */
void requireBoundedFinder(const QList<QByteArray> &pieces)
{
    plc::FrameFinder finder;
    for (const QByteArray &piece : pieces) {
        for (const QByteArray &frame : finder.take(piece)) {
            require(frame.size() <= plc::kMaxFrameBytes && frame.at(0) == kEnq, "a frame is one");
            plc::frameInWords(frame);
        }
        require(finder.pending() <= plc::kMaxFrameBytes, "never more than one frame is held");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    static const int kBauds[] = {0, 38400, 1, 4000000};
    const int setup = input.byte();
    const qint64 nowMs = (setup >> 4) * 777;
    Plcs divided;
    Plcs whole;
    divided.line.setBaud(kBauds[setup >> 2 & 3]);
    for (int texts = setup & 3; texts > 0; --texts) {
        const QByteArray text = input.bytes(60);
        divided.setUp(text);
        whole.setUp(text);
    }
    QList<QByteArray> pieces;
    while (!input.atEnd()) {
        QByteArray bytes = input.below(4) == 0 ? input.bytes() : request(input);
        const int cut = input.byte();
        if (cut < bytes.size()) {
            pieces.append(bytes.left(cut));
            bytes = bytes.mid(cut);
        }
        pieces.append(bytes);
    }
    QByteArray answers;
    QByteArray all;
    for (const QByteArray &piece : pieces) {
        answers += plc::joined(divided.line.receive(piece, nowMs));
        all += piece;
    }
    require(answers == plc::joined(whole.line.receive(all, nowMs)),
            "neither division nor pace matters");
    requireBoundedFinder(pieces);
    return 0;
}
