"""Checks who includes whom in the host library and in the programs on it; see script/rooms."""
import glob
import re
import sys

from includes import circles, included_by, room_of, wrong_includes

# The library's rooms, the lowest first; the last one is its face.
ORDER = [["host/" + room] for room in
         ("time", "wire", "text", "capture", "recording", "link", "address", "value", "decode",
          "driver", "exchange", "scan", "statistics", "monitor", "tag", "tagfile", "jobs", "recipe",
          "schedule")] + [["host"]]
# Those of the simulated PLC, which shares nothing with any of the above.
PLC_ORDER = [["tools/plc/" + room] for room in
             ("memory", "wire", "motion", "scenario", "faults", "replay", "stations", "setup",
              "servers", "control", "options", "main")]
# Those of the command line.
PANEL_ORDER = [["tools/panel/" + room] for room in
               ("system", "terminal", "output", "reports", "options", "views", "runs", "replay",
                "commands", "main")]
# Those of the gateway.
GATEWAY_ORDER = [["tools/gateway/" + room] for room in
                 ("store", "change", "toml", "config", "sinks", "mqtt", "mosquitto", "sparkplug",
                  "postgresql", "delivery", "write", "lines", "status", "service", "main")]
# Those of the window.
VIEW_ORDER = [["tools/view/" + room] for room in
              ("look", "connect", "tags", "values/table", "values/list", "values",
               "trend/series", "trend/traces", "trend/plot", "trend/output", "trend",
               "frames/trace", "frames/detail", "frames", "stations/pictures", "stations/numbers",
               "stations/scan", "stations", "recipes/sheet", "recipes", "simulator", "project",
               "shell")]
MOST_FILES = 15  # of a room; a folder listing that is longer is not read
BOUNDARY = "include/ls_master_k_cnet/"
# The only room that knows the driver's functions by name; others ask it.
DRIVER_ROOM = "host/driver"
# Stand on nothing, since the simulated PLC has them, which shares nothing else with the driver's side.
CAPTURE_ROOMS = ["host/capture", "host/recording"]
LIST = "host/CMakeLists.txt"
ROOTS = [".", "include", "src", "tools"]


def graph_of(folder):
    paths = glob.glob(folder + "/**/*.cpp", recursive=True) + glob.glob(folder + "/**/*.h",
                                                                         recursive=True)
    return {path: list(included_by(path, ROOTS)) for path in sorted(paths)}


def includes_from(graph, places, spared=()):
    for path, includes in graph.items():
        for number, other in includes:
            if other.startswith(places) and room_of(path) not in spared:
                yield "%s:%d: may not include %s" % (path, number, other)


def crowded(graph):
    rooms = {}
    for path in graph:
        rooms.setdefault(room_of(path), []).append(path)
    for room, paths in sorted(rooms.items()):
        if len(paths) > MOST_FILES:
            yield "%s/: %d files, and a room has at most %d" % (room, len(paths), MOST_FILES)


def public_headers():
    with open(LIST, encoding="ascii") as file:
        names = re.search(r"set\(cnet_host_public_headers(.*?)\)", file.read(), re.DOTALL)
    return {"host/" + name for name in names.group(1).split()}


def wrong_public_headers(graph):
    """An installed header includes installed headers only, and each of them is there for a reason."""
    public = public_headers()
    reached = {"host/%s.h" % name for name in (
        "session", "link/link", "link/captured_link", "recipe/recipe_file", "decode/frame_comments",
        "decode/frame_decoder", "decode/frame_input", "decode/frame_text", "exchange/raw_exchange",
        "scan/likely_settings", "scan/scan", "tagfile/tag_monitor", "tag/plausible_readings",
        "tag/scaling", "tag/tag_values", "tag/tag_writing", "tag/typed_item",
        "tag/value_format", "value/value_codec")}
    for path in sorted(public):
        for number, other in graph.get(path, []):
            reached.add(other)
            if other not in public:
                yield "%s:%d: is installed, and %s is not" % (path, number, other)
    for path in sorted(public - reached):
        yield "%s: %s is installed, and no installed header includes it" % (LIST, path)


def main():
    host = graph_of("host")
    panel = graph_of("tools/panel")
    plc = graph_of("tools/plc")
    gateway = graph_of("tools/gateway")
    view = graph_of("tools/view")
    capture = {path: includes for path, includes in host.items() if room_of(path) in CAPTURE_ROOMS}
    own = {path: [(number, other) for number, other in includes
                  if not other.startswith((BOUNDARY, "src/", "tools/"))]
           for path, includes in host.items()}
    wrong = list(wrong_includes(own, ORDER, lambda room: room + "/")) + list(circles(own))
    wrong += includes_from(host, ("src/", "tools/"))
    wrong += includes_from(host, (BOUNDARY,), [DRIVER_ROOM])
    wrong += includes_from(panel, ("src/", BOUNDARY))
    wrong += includes_from(gateway, ("src/", BOUNDARY, "tools/panel/"))
    wrong += includes_from(gateway, ("tools/plc/", "tools/simulation/"), ["tools/gateway/main"])
    wrong += includes_from(view, ("src/", BOUNDARY, "tools/panel/", "tools/gateway/"))
    wrong += includes_from(view, ("tools/plc/", "tools/simulation/"),
                           ["tools/view/connect", "tools/view/simulator"])
    wrong += includes_from({path: [pair for pair in includes if room_of(pair[1]) not in CAPTURE_ROOMS]
                            for path, includes in {**plc, **capture}.items()},
                           ("src/", "include/", "host/", "tools/panel/", "tools/simulation/"))
    wrong += wrong_public_headers(host)
    plc = {path: [pair for pair in includes if pair[1].startswith("tools/")]
           for path, includes in plc.items()}
    wrong += list(wrong_includes(plc, PLC_ORDER, lambda room: room + "/")) + list(circles(plc))
    panel = {path: [pair for pair in includes if pair[1].startswith("tools/panel/")]
             for path, includes in panel.items()}
    wrong += list(wrong_includes(panel, PANEL_ORDER, lambda room: room + "/")) + list(circles(panel))
    gateway = {path: [pair for pair in includes if pair[1].startswith("tools/gateway/")]
               for path, includes in gateway.items()}
    wrong += list(wrong_includes(gateway, GATEWAY_ORDER, lambda room: room + "/"))
    wrong += list(circles(gateway))
    view = {path: [pair for pair in includes if pair[1].startswith("tools/view/")]
            for path, includes in view.items()}
    wrong += list(wrong_includes(view, VIEW_ORDER, lambda room: room + "/")) + list(circles(view))
    wrong += crowded({**host, **panel, **plc, **gateway, **view})
    if wrong:
        sys.exit("\n".join(wrong))
    print("rooms: includes run one way in the host library and the programs; cnet-panel, cnet-gateway "
          "and cnet-view leave the driver to the library, and cnet-plc has nothing of that but captures")


main()
