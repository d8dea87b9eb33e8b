// What the gateway itself looks at of a request over HTTP: the first byte of an input says whether
// the rest is a header, or method and path. All else of HTTP is the library's.
#include "gateway/status/pages.h"

#include "fuzz/input.h"
#include "gateway/support/snapshots.h"

using namespace cnet::gateway;

namespace {

// Whatever is around it, it is one of the names of this machine.
void readsAsHost(const QByteArray &host)
{
    if (!isForThisMachine(host, "127.0.0.2:9464")) {
        return;
    }
    const auto end = host.startsWith('[') ? host.indexOf(']') + 1 : host.indexOf(':');
    const QByteArray name = host.left(int(end < 0 ? host.size() : end)).toLower();
    fuzz::require(name == "localhost" || name == "127.0.0.1" || name == "127.0.0.2" ||
                      name == "[::1]",
                  "a request is for this machine");
    for (const char letter : host.mid(name.size())) {
        fuzz::require(letter == ':' || (letter >= '0' && letter <= '9'), "a port is a number");
    }
}

void readsAsRequest(fuzz::Input &input)
{
    static const Snapshot snapshot = someSnapshot();
    const QByteArray method = input.line();
    const QByteArray path = input.rest();
    const Page page = pageFor(method, path, &snapshot, 100000);
    fuzz::require(page.body.endsWith('\n') && page.body.size() < 100000, "an answer is bounded");
    const bool isRead = method == "GET" || method == "HEAD";
    fuzz::require(page.code == 404 || (isRead ? page.code == 200 : page.code == 405),
                  "it can only be read");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::Input input(data, size);
    switch (input.byte()) {
    case 'h':
        readsAsHost(input.rest());
        return 0;
    case 'r':
        readsAsRequest(input);
        return 0;
    default:
        return -1; // not worth keeping
    }
}
