"""The results of script/bench, read from its files."""
import json
from collections import namedtuple
from pathlib import Path

# One line of the table. value is formatted with text, such as "{:.2f}"; a limit of None means that the
# figure has no goal.
Figure = namedtuple("Figure", "name value limit text")

UNITS = {1: (120, 1020, 10020, 99960), 8: (480, 960, 10080, 99840)}
CHANGES = ("unchanged", "words", "bits", "one-bit")
WORDS = (1, 8, 16, 32, 60)
KEYS = (100, 1000, 10000)
SPREADS = ("clustered", "scattered", "bits", "first")


class Results:
    """All results. The cost of a case is the lowest of its repetitions, because noise only adds to it."""

    def __init__(self, directory):
        self.directory = Path(directory)
        self.costs = {}  # nanoseconds of processor time per step
        self.callbacks = {}
        for name in ("driver", "load"):
            for run in self._load(name)["benchmarks"]:
                if run["run_type"] == "iteration":
                    self._take(run)
        self.memory = self._load("memory")
        self.stripped = self._load("size")["stripped"]  # size of the library on this machine, in bytes
        self.polls = self._load("polls")
        self.arm = self._load("arm") if (self.directory / "arm.json").exists() else None

    def _load(self, name):
        return json.loads((self.directory / f"{name}.json").read_text())

    def _take(self, run):
        # Cases that measure manually report their result as real time.
        by_hand = run["name"].endswith("/manual_time")
        name = run["name"].removesuffix("/manual_time")
        scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
        cost = scale * run["real_time" if by_hand else "cpu_time"]
        self.costs[name] = min(cost, self.costs.get(name, cost))
        self.callbacks[name] = run.get("callbacks", 0)

    def ratio(self, case, other):
        return self.costs[case] / self.costs[other]

    def poll_microseconds(self, client, cores, clock="processor"):
        """Returns the cost of one poll in the client's best run; `cores` is "one" or "each"."""
        runs = [run for run in self.polls if run["client"] == client and run["cores"] == cores]
        return min(1e6 * run[clock] / run["polls"] for run in runs)

    def exchange_figures(self):
        rows = []
        for words, change, limit in ((60, "unchanged", 0.2), (60, "words", 0.7), (60, "bits", None),
                                     (60, "one-bit", None), (16, "unchanged", None),
                                     (16, "words", None), (1, "unchanged", None), (1, "words", None)):
            case = f"exchange/{words}/{change}"
            name = f"exchange of {words} word{'s' if words > 1 else ''}, {describe(change, self.callbacks[case])} / codec of {words}"
            rows.append(Figure(name, self.ratio(case, f"codec/{words}"), limit, "{:.2f}"))
        return rows

    def growth_figures(self):
        rows = []
        for stations, units in UNITS.items():
            where = "one station" if stations == 1 else f"{stations} stations"
            for change in CHANGES[:3]:
                least, most = (f"area/{count}/{stations}/{change}" for count in (units[0], units[-1]))
                rows.append(Figure(f"exchange, {change if change == 'unchanged' else 'changed ' + change}, "
                                   f"{where}: 100 000 units / 100",
                                   self.ratio(most, least), 1.1, "{:.3f}"))
            least, most = (f"get-data/{count}/{stations}" for count in (units[0], units[-1]))
            rows.append(Figure(f"intf_getData, {where}: 100 000 units / 100",
                               self.ratio(most, least), 1.1, "{:.3f}"))
        return rows

    def merge_figures(self):
        return [Figure(f"intf_addrMerge, {spread}: 10 000 keys / 100",
                       self.ratio(f"merge/10000/{spread}", f"merge/100/{spread}"), 150, "{:.0f}")
                for spread in SPREADS]

    def poll_figures(self):
        rows = []
        for cores, text in (("one", "one core for both"), ("each", "a core each")):
            panel = self.poll_microseconds("panel", cores)
            for client, other, limit in (
                    ("libmodbus", "libmodbus", 1),
                    ("libmodbus-late", "libmodbus with a server as slow as cnet-plc", None),
                    ("serialbus", "Qt SerialBus", None)):
                rows.append(Figure(f"client's time per polled word, {text}: cnet-panel / {other}",
                                   panel / self.poll_microseconds(client, cores), limit, "{:.2f}"))
        return rows

    def size_figures(self):
        rows = [Figure("stripped library here, KB", self.stripped / 1024, None, "{:.0f}")]
        if self.arm:
            rows.append(Figure("stripped library on 32-bit ARM, KB", self.arm["stripped"] / 1024, 150,
                               "{:.0f}"))
        rows.append(Figure("bytes per monitored unit in addition to its record", self.memory["beside"], 100,
                           "{:.0f}"))
        return rows

    def arm_figures(self):
        if not self.arm:
            return []
        limits = {"exchange-60-unchanged": 6000, "exchange-60-words": 20000}
        return [Figure(f"instructions of {case.replace('-', ' ')} on 32-bit ARM", count, limits.get(case),
                       "{:.0f}")
                for case, count in self.arm["instructions"].items()]

    def table(self):
        return (self.exchange_figures() + self.arm_figures() + self.growth_figures() + self.merge_figures()
                + self.poll_figures() + self.size_figures())


def describe(change, callbacks):
    if change == "unchanged":
        return "unchanged"
    calls = f"{callbacks:.0f} callback" + ("s" if callbacks > 1 else "")
    return {"words": f"all changed ({calls})",
            "bits": f"all bits changed ({calls})",
            "one-bit": f"a bit of each changed ({calls})"}[change]
