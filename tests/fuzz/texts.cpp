// What is typed into a panel's editor: register names, addresses, series and properties. An input
// is a row of questions, each with its texts.
#include "fuzz/driver_rules.h"
#include "ls_master_k_cnet/address_text.h"
#include "serviceForProtocol/address/address_number.h"
#include "serviceForProtocol/address/address_series.h"
#include "serviceForProtocol/exchange/error_info.h"

#include <QList>
#include <QVector>

#include <cstring>

namespace {

using namespace fuzz;

/** A listed name in one byte; from 16 on any characters. */
QString nameOf(Input &input)
{
    const int choice = input.byte();
    if (choice < kRegisterCount) {
        return REG_LIST[choice];
    }
    const QByteArray text = input.bytes(12);
    return (choice & 1) != 0 ? QString::fromUtf8(text) : QString::fromLatin1(text);
}

QString textOf(Input &input)
{
    const QByteArray text = input.bytes(40);
    return input.below(4) == 1 ? QString::fromUtf8(text) : QString::fromLatin1(text);
}

bool isListed(const QString &name)
{
    return getIndexFromReg(name) >= 0;
}

/** The text that the series makes of a number is a right address, and has that number. */
void requireRoundTrip(QString name, int address, int dataType)
{
    QVector<QString> texts;
    QVector<int> numbers;
    require(intf_multiCopy(name, address, 1, 1, texts, numbers) == kSeriesComplete,
            "a valid address is copied");
    require(texts.size() == 1 && numbers.value(0) == address, "a copy keeps the address");
    int again = -7;
    require(intf_checkAddr(name, texts.value(0), again, dataType, 1, 0) == kAddressValid,
            "an address that was made is valid");
    require(again == address, "an address that was made has its number");
}

void checkAddress(Input &input)
{
    const QString name = nameOf(input);
    const QString text = textOf(input);
    const int before = input.number();
    const int count = input.number();
    const int kind = input.number();
    const int access = input.number();
    int address = before;
    const int code = intf_checkAddr(name, text, address, kind, count, access);
    require(code >= kAddressValid && code <= kAddressMalformed, "a documented code");
    require(isListed(name) == (code != kAddressUnknownName) || code == kAddressOutOfRange,
            "an unknown name is never valid");
    int number = before;
    const int plain = intf_checkAddrValidity(name, text, number, count, kind == -1 ? 0 : 1);
    require(plain == code, "both checks say the same where access does not matter");
    require(plain != kAddressValid || number == address, "both checks give the same number");
    if (code == kAddressValid && address >= 0 && count >= 1) {
        requireRoundTrip(name, address, kind);
    }
}

/** Few copies, or less than none: a million show no more, and take their time. */
int countOf(Input &input)
{
    const int first = input.byte();
    return first == 0xFE ? -input.byte() : first & 31;
}

void makeSeries(Input &input)
{
    QString name = nameOf(input);
    const int start = input.number();
    const int count = countOf(input);
    const int interval = input.number();
    QVector<QString> texts;
    QVector<int> numbers;
    const int result = intf_multiCopy(name, start, count, interval, texts, numbers);
    require(texts.size() == numbers.size(), "each number has its text");
    require(result == (isListed(name) ? result : static_cast<int>(kSeriesUnknownName)),
            "no series of an unknown register");
    require(result >= kSeriesUnknownName && result <= kSeriesClamped, "a documented result");
    require(numbers.size() <= std::max(0, std::min<int>(count, kMaxCopies)), "no copy too many");
    require(result != kSeriesComplete || numbers.size() == std::max(count, 0),
            "all made means all");
    for (int i = 1; i < numbers.size(); ++i) {
        require(numbers.at(i) >= numbers.at(i - 1), "a series ascends");
    }
}

void convert(Input &input)
{
    static const char *const kFormats[] = {"DDDD", "DDD.dd", "OOO",     "HHHH",
                                           "",     "D",      "DDDD.hh", "."};
    const int choice = input.byte();
    const QString format = choice < 8 ? QString::fromLatin1(kFormats[choice]) : textOf(input);
    const QString name = nameOf(input);
    const QString text = textOf(input);
    int value = 0;
    const int result = a2i(text, value, format, name);
    require(result == 1 || result == -1, "a text is a number or none");
    const int address = input.number();
    require(isWordBitFormat(format) || !plainAddressText(address, format).isEmpty(),
            "each number has a text");
    addressText(address, name, format);
    getRegAddressWeight(input.number(), name, address);
    const int bits = addr_str2int(addr_int2str(address, name), name);
    require(address < 0 || !name.contains(QLatin1String("_bit")) || bits == address,
            "a bit address survives its text");
    QVector<QString> texts;
    QVector<int> numbers;
    multiCp(name, format, address, input.below(20), input.number(), texts, numbers, input.number(),
            text);
    require(texts.size() == numbers.size(), "each number has its text");
}

/** As the host hands it over: with a zero at its end, and nothing behind. */
void setProperties(Input &input)
{
    const QByteArray text = input.bytes(60);
    const size_t size = static_cast<size_t>(text.size());
    const std::unique_ptr<char[]> exact(new char[size + 1]);
    std::memcpy(exact.get(), text.constData(), size);
    exact[size] = '\0';
    startCommunication(exact.get());
    startCommunication(nullptr);
    require(driver.cyclicReads.isEmpty(), "a start empties the lists");
}

/** Whatever the properties are, a panel can work with them. */
void work(Input &input)
{
    QString name = nameOf(input);
    unsigned char values[kValueAreaSize] = {1};
    intf_setData(1, name, input.number(), input.below(64), values, 0);
    KEY_ADDRESS key = KEY_ADDRESS();
    key.stationNo = 1;
    key.regName = nameOf(input);
    key.startAddr = input.number();
    key.count = input.byte();
    intf_addConditionRead(key, 0);
    QList<KEY_ADDRESS> keys;
    keys.append(key);
    keys.append(key);
    require(intf_addrMerge(keys) <= 2, "merging makes no more of the keys");
    FRAME_PRO frame = FRAME_PRO();
    if (intf_getSendFrame(frame) == 1) {
        requireRequest(frame, false);
    }
    QByteArray silence;
    QString description;
    const int result = intf_dealRcvFrame(silence, description);
    require(result == kAnswerUnexpected || result == kAnswerGivenUp || result == kAnswerResend,
            "silence is no good answer");
    requireBoundedLists();
}

void describe(Input &input)
{
    const QString name = nameOf(input);
    QList<QString> texts;
    require(intf_getRegDiscription(name, texts) == 0, "a description gives 0");
    require(texts.size() == (isListed(name) ? 5 : 0), "five texts, or none");
    const int type = input.number();
    require(intf_getRegListByType(type, texts) == (type == 0 || type == 1 ? 1 : 0),
            "only two types are known");
    QString text = textOf(input);
    intf_SetDriverPropertyPage(text);
    intf_getDriverPropertyPage(text);
    require(text == QLatin1String("0_0"), "the page is always the same");
    intf_getDriverParameter(text);
    require(text.count(QLatin1Char(',')) == 25, "26 items");
    int protocol = -1;
    intf_getProtocolType(&protocol);
    intf_getProtocolType(nullptr);
    require(protocol == 0 && intf_getVersion() == QLatin1String("2.0.0.0"), "constants");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    renewDriver();
    void (*const questions[])(Input &) = {checkAddress,  makeSeries, convert,
                                          setProperties, work,       describe};
    while (!input.atEnd()) {
        questions[input.below(6)](input);
    }
    return 0;
}
