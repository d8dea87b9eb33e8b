#!/usr/bin/env python3
"""Prints the table of script/bench, or writes it with the plots into the documentation.

    report.py RESULTS_DIRECTORY [DOCUMENT]

Everything between the two marks in DOCUMENT is replaced; the plots go into a directory with its name.
"""
import re
import sys
from pathlib import Path

import plot
from figures import CHANGES, KEYS, SPREADS, UNITS, WORDS, Results

BEGIN, END = "<!-- written by script/bench --report -->", "<!-- end -->"

# A read of 60 words at 38400 baud: 21 characters there, 253 back, ten bits each.
LINE_MS = (21 + 253) * 10 / 38400 * 1000


def thousands(value):
    return f"{value:,.0f}".replace(",", " ")


def verdict(figure):
    if figure.limit is None:
        return ""
    return "reached" if figure.value <= figure.limit else "MISSED"


def table_rows(results):
    for figure in results.table():
        goal = "" if figure.limit is None else f"at most {figure.limit:g}"
        yield figure.name, figure.text.format(figure.value), goal, verdict(figure)


def print_table(results):
    rows = [("figure", "value", "goal", ""), *table_rows(results)]
    widths = [max(len(row[i]) for row in rows) for i in range(4)]
    for name, value, goal, judged in rows:
        print(f"{name:{widths[0]}}  {value:>{widths[1]}}  {goal:{widths[2]}}  {judged}".rstrip())


def markdown(head, rows):
    right = "|".join("---" if i == 0 else "--:" for i in range(len(head)))
    return "\n".join(["| " + " | ".join(head) + " |", f"|{right}|",
                      *("| " + " | ".join(row) + " |" for row in rows)])


def costs_of_areas(results):
    rows = []
    for stations, units in UNITS.items():
        for count in units:
            costs = [results.costs[f"area/{count}/{stations}/{change}"] for change in CHANGES]
            costs.append(results.costs[f"get-data/{count}/{stations}"])
            rows.append([thousands(count), str(stations), *map(thousands, costs)])
    return markdown(["units", "stations", "unchanged", "all changed, words", "all bits", "a bit of each",
                     "100 `intf_getData`"], rows)


def costs_of_exchanges(results):
    kinds = [f"exchange/{{}}/{change}" for change in CHANGES] + ["codec/{}"]
    rows = [[str(words), *(thousands(results.costs[kind.format(words)]) for kind in kinds)]
            for words in WORDS]
    return markdown(["words", "unchanged", "all changed, words", "all bits", "a bit of each", "codec"], rows)


def costs_of_merges(results):
    rows = [[thousands(keys), *(thousands(results.costs[f"merge/{keys}/{spread}"] / 1000)
                                for spread in SPREADS)] for keys in KEYS]
    return markdown(["keys", *SPREADS], rows)


def other_costs(results):
    names = {
        "set-data/word": "a word written, with its exchange",
        "set-data/relay-bit": "a relay bit written, with its exchange",
        "set-data/data-bit": "a data register's bit written, with its two exchanges",
        "set-data/60-words": "60 words written, with their exchange",
        "recipe/to-station": "a recipe of 2 000 words to the station, 34 exchanges",
        "recipe/to-panel": "a recipe of 2 000 words to the panel, 34 exchanges",
        "load": "the library loaded and unloaded",
    }
    return markdown(["what", "ns"], [[text, thousands(results.costs[case])] for case, text in names.items()])


def polls(results):
    clients = {
        "panel": "`cnet-panel`'s session with `cnet-plc`",
        "panel-captured": "the same with `--capture`",
        "libmodbus": "libmodbus with its own server",
        "libmodbus-late": "libmodbus with Qt SerialBus's server",
        "serialbus": "Qt SerialBus with its own server",
    }
    rows = []
    for client, text in clients.items():
        row = [text]
        for cores in ("one", "each"):
            poll = results.poll_microseconds(client, cores)
            wall = results.poll_microseconds(client, cores, "wall")
            row += [thousands(1e6 / wall), f"{poll:.1f}", f"{1000 * poll / 60:.0f}"]
        rows.append(row)
    return markdown(["client and server", "one core for both: polls per second", "client's µs per poll",
                     "ns per word", "a core each: polls per second", "client's µs per poll", "ns per word"], rows)


def line_share(results):
    rows = []
    for change, text in zip(CHANGES, ("unchanged", "all changed, watched as words",
                                      "all bits changed and watched", "a bit of each changed")):
        cost = results.costs[f"exchange/60/{change}"]
        counts = results.arm["instructions"] if results.arm else {}
        instructions = counts.get(f"exchange-60-{change}")
        arm = thousands(instructions) if instructions else "not counted"
        rows.append([text, f"{cost / 1000:.1f}", f"{cost / 1e4 / LINE_MS:.4f} %", arm])
    return markdown(["60 words", "µs here", "of the line's time", "instructions on 32-bit ARM"], rows)


def machine():
    model = re.search(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    return model.group(1) if model else "unknown processor"


def section(results, folder):
    table = markdown(["figure", "value", "goal", ""],
                     [list(row) for row in table_rows(results)])
    image = lambda name, text: f"![{text}]({folder}/{name}.svg)"
    return "\n\n".join([
        BEGIN,
        f"## Ratios\n\nMeasured in one run on this processor: {machine()}. The figures for 32-bit ARM were "
        "counted under emulation by `script/bench --arm`.",
        table,
        "## Costs\n\nNanoseconds of processor time.\n\n### One exchange, by number of words",
        image("words", "Cost of an exchange by number of words"), costs_of_exchanges(results),
        "### One exchange of 60 words, by number of units in the data area",
        image("units", "Cost of an exchange by number of units in the data area"), costs_of_areas(results),
        "### `intf_addrMerge`, by number of keys\n\nIn microseconds.",
        image("keys", "Cost of intf_addrMerge by number of keys"), costs_of_merges(results),
        "### Other costs", other_costs(results),
        "## Whole polls over loopback TCP\n\n60 words per poll.", polls(results),
        "## Share of the time on a line of 38400 baud\n\n"
        f"A read of 60 words takes 21 + 253 characters of ten bits, {LINE_MS:.1f} ms. In this time "
        "the driver is busy for:", line_share(results),
        END])


def draw_plots(results, folder):
    folder.mkdir(exist_ok=True)
    names = {"unchanged": "unchanged", "words": "changed, words", "bits": "changed, all bits",
             "one-bit": "changed, a bit of each"}
    cost = lambda case: results.costs[case] / 1000
    by_words = [(names[change], [(n, cost(f"exchange/{n}/{change}")) for n in WORDS]) for change in CHANGES]
    by_words.append(("Qt SerialBus codec", [(n, cost(f"codec/{n}")) for n in WORDS]))
    plot.draw(folder / "words.svg", "One exchange", "words of the block", "µs", by_words)
    by_units = [(names[change], [(n, cost(f"area/{n}/1/{change}")) for n in UNITS[1]]) for change in CHANGES]
    by_units.append(("100 intf_getData", [(n, cost(f"get-data/{n}/1")) for n in UNITS[1]]))
    plot.draw(folder / "units.svg", "One exchange of 60 words", "units in the data area", "µs", by_units,
              log_x=True)
    by_keys = [(spread, [(n, cost(f"merge/{n}/{spread}")) for n in KEYS]) for spread in SPREADS]
    plot.draw(folder / "keys.svg", "intf_addrMerge", "keys", "µs", by_keys, log_x=True, log_y=True)


def write_document(results, document):
    text = document.read_text()
    begin, end = text.find(BEGIN), text.find(END)
    if begin < 0 or end < begin:
        sys.exit(f"report: {document} lacks its marks")
    document.write_text(text[:begin] + section(results, document.stem) + text[end + len(END):])
    draw_plots(results, document.parent / document.stem)


if __name__ == "__main__":
    measured = Results(sys.argv[1])
    print_table(measured)
    if len(sys.argv) > 2:
        write_document(measured, Path(sys.argv[2]))
