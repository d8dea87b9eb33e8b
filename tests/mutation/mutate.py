"""The command line of script/mutate."""

import argparse
import random
import sys
import time
from fnmatch import fnmatch
from pathlib import Path

from report import Results, keys, read_survivors, record, report
from workbench import Workbench, say

ROOT = Path(__file__).resolve().parents[2]
SURVIVORS = ROOT / "tests/mutation/survivors.txt"


def options():
    parser = argparse.ArgumentParser(
        prog="script/mutate",
        description="Makes small faults in src/, one at a time, and counts how many the driver's "
                    "tests catch.",
        epilog="The results are in build/mutate/results.csv, records for tests/mutation/"
               "survivors.txt in build/mutate/survivors.txt. Exit code 1: the score is below "
               "--fail-under.")
    parser.add_argument("--list", action="store_true",
                        help="only name the faults; exit code 1: a known survivor is none of them")
    parser.add_argument("--file", metavar="GLOB", action="append",
                        help="only files whose path from the project's root matches; repeatable")
    parser.add_argument("--sample", metavar="N", type=int, help="N faults, spread over the files")
    parser.add_argument("--seed", metavar="S", type=int, default=1, help="of the sample; default 1")
    parser.add_argument("--ids", metavar="FILE", type=Path,
                        help="only the faults that FILE names, one a line")
    parser.add_argument("--tests", metavar="GLOB", action="append",
                        help="only test programs whose name matches; repeatable")
    parser.add_argument("--jobs", metavar="N", type=int, default=1, help="faults at once; default 1")
    parser.add_argument("--timeout", metavar="SECONDS", type=int, default=2,
                        help="processor time that any test program may take at least; default 2")
    parser.add_argument("--sanitize", action="store_true",
                        help="try the survivors again with the address and undefined-behaviour "
                             "sanitizers")
    parser.add_argument("--fail-under", metavar="PERCENT", type=float, default=0)
    chosen = parser.parse_args()
    if chosen.jobs < 1 or chosen.timeout < 1 or (chosen.sample is not None and chosen.sample < 1):
        parser.error("--jobs, --timeout and --sample are 1 or more")
    return chosen


def sample(faults, size, seed):
    """Every n-th fault of the list, in which each file's faults are shuffled."""
    by_file = {}
    for fault in faults:
        by_file.setdefault(fault.file, []).append(fault)
    chance = random.Random(seed)
    mixed = []
    for group in by_file.values():
        chance.shuffle(group)
        mixed += group
    picked = {mixed[i * len(mixed) // size] for i in range(min(size, len(mixed)))}
    return [fault for fault in faults if fault in picked]


def select(faults, chosen):
    if chosen.ids:
        wanted = {line.strip() for line in chosen.ids.read_text().splitlines() if line.strip()}
        unknown = wanted - {fault.id for fault in faults}
        if unknown:
            raise SystemExit(f"mutate: no such fault: {min(unknown)}")
        faults = [fault for fault in faults if fault.id in wanted]
    return sample(faults, chosen.sample, chosen.seed) if chosen.sample else faults


def run(bench, faults, listed, results):
    """Rows of a fault, its verdict, who killed it and the seconds it took."""
    rows, started, shown = [], time.monotonic(), time.monotonic()
    try:
        for fault, verdict, by, seconds in bench.results(faults, listed):
            rows.append((fault, verdict, by, seconds))
            results.add(fault, verdict, by, seconds)
            if time.monotonic() - shown > 30:
                shown = time.monotonic()
                say(f"{len(rows)} of {len(faults)}, {sum(r[1] == 'survived' for r in rows)} survived")
    except KeyboardInterrupt:
        say("interrupted; this is what was done")
    say(f"{len(rows)} faults in {time.monotonic() - started:.0f} s")
    return rows


def run_again(bench, rows, results):
    """The same rows, with the survivors' new verdicts."""
    survivors = [row[0] for row in rows if row[1] == "survived"]
    again = {row[0]: row for row in run(bench, survivors, set(survivors), results)
             if row[1] == "killed"}
    return [again.get(row[0], row) for row in rows]


def main():
    chosen = options()
    directory = ROOT / "build/mutate"
    bench = Workbench(ROOT, directory, False, chosen.jobs, chosen.timeout)
    bench.copy()
    bench.prepare()
    files = [file for file in bench.files
             if not chosen.file or any(fnmatch(file, glob) for glob in chosen.file)]
    faults = bench.faults(files)
    key_of = keys(faults)
    selected = select(faults, chosen)
    if not selected:
        raise SystemExit("mutate: there is no such fault")
    known = read_survivors(SURVIVORS)
    if chosen.list:
        for fault in selected:
            print(fault.id)
        stale = known.keys() - set(key_of.values()) if files == bench.files else ()
        for key in stale:
            say(f"{SURVIVORS.name}: no such fault: {key.file}: {key.source}: {key.what}")
        return 1 if stale else 0

    listed = {fault for fault in selected if key_of[fault] in known}
    results = Results(directory / "results.csv")
    bench.build_all(chosen.tests)
    rows = run(bench, selected, listed, results)
    rows = [(fault, "known" if verdict == "survived" and fault in listed else verdict, *rest)
            for fault, verdict, *rest in rows]
    if chosen.sanitize and any(row[1] == "survived" for row in rows):
        second = Workbench(ROOT, directory, True, chosen.jobs, chosen.timeout)
        second.prepare()
        second.build_all(chosen.tests)
        rows = run_again(second, rows, results)
    results.replace(rows)
    survivors = [row[0] for row in rows if row[1] == "survived"]
    (directory / "survivors.txt").write_text("\n".join(record(key_of[f], "") for f in survivors))
    report(rows, key_of, known, complete=len(rows) == len(faults) and not chosen.file)
    killed = sum(row[1] == "killed" for row in rows)
    return 1 if 100 * killed < chosen.fail_under * (killed + len(survivors)) else 0


if __name__ == "__main__":
    sys.exit(main())
