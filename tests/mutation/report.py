"""Known survivors, and what a run says at its end."""

import csv
from collections import Counter
from dataclasses import dataclass

FIELDS = ("file", "in", "line", "fault", "reason")


@dataclass(frozen=True)
class Key:
    """What a fault is, whatever the numbers of the lines before it."""
    file: str
    function: str
    source: str
    what: str


def keys(faults):
    """The key of each fault; the second of the same kind in a function has a number."""
    seen, result = Counter(), {}
    for fault in faults:
        key = Key(fault.file, fault.function, fault.source, fault.what)
        seen[key] += 1
        number = f" #{seen[key]}" if seen[key] > 1 else ""
        result[fault] = Key(fault.file, fault.function, fault.source, fault.what + number)
    return result


def read_survivors(path):
    """Reasons by key, from records of "field: value" lines between empty lines. A record may name
    several faults of its line."""
    known = {}
    for number, block in enumerate(path.read_text().split("\n\n"), 1):
        lines = [line for line in block.split("\n") if line and not line.startswith("#")]
        if not lines:
            continue
        values = {}
        for line in lines:
            field, separator, value = line.partition(":")
            if field not in FIELDS or not separator:
                raise SystemExit(f"mutate: {path.name}, record {number}: {line!r} is no field")
            values.setdefault(field, []).append(value.strip())
        if set(values) != set(FIELDS) or not all(values["reason"]):
            raise SystemExit(f"mutate: {path.name}, record {number}: a field is missing")
        for what in values["fault"]:
            key = Key(values["file"][0], values["in"][0], values["line"][0], what)
            known[key] = " ".join(values["reason"])
    return known


class Results:
    """The machine-readable list, complete as far as the run has come."""

    def __init__(self, path):
        self.path = path
        self.replace(())

    def replace(self, rows):
        self.file = self.path.open("w", newline="")
        self.out = csv.writer(self.file)
        self.write("id", "file", "line", "column", "kind", "before", "after", "function", "verdict",
                   "by", "seconds", "source")
        for row in rows:
            self.add(*row)

    def write(self, *values):
        self.out.writerow(values)
        self.file.flush()

    def add(self, fault, verdict, by, seconds):
        self.write(fault.id, fault.file, fault.line, fault.column, fault.kind, fault.before,
                   fault.after, fault.function, verdict, by, f"{seconds:.2f}", fault.source)


def percent(killed, survived):
    counted = killed + survived
    return f"{100 * killed / counted:6.1f} %" if counted else "     - "


def table(rows):
    """Faults by file. The score counts what was killed and what survived, nothing else."""
    columns = ("killed", "survived", "known", "equivalent", "stillborn")
    by_file = {}
    for fault, verdict, *_ in rows:
        by_file.setdefault(fault.file, Counter())[verdict] += 1
    by_file["all"] = sum(by_file.values(), Counter())
    lines = [f"{'file':48}" + "".join(f"{c:>11}" for c in ("faults", *columns)) + "     score"]
    for file, count in by_file.items():
        numbers = (count.total(), *(count[c] for c in columns))
        lines.append(f"{file:48}" + "".join(f"{n:>11}" for n in numbers) +
                     "  " + percent(count["killed"], count["survived"]))
    return "\n".join(lines)


def record(key, reason):
    return (f"file: {key.file}\nin: {key.function}\nline: {key.source}\nfault: {key.what}\n"
            f"reason: {reason}\n")


def report(rows, key_of, known, complete):
    def chosen(verdict):
        return [row[0] for row in rows if row[1] == verdict]

    print(table(rows))
    if chosen("known"):
        print("\nKnown survivors, which the score leaves out:")
        for fault in chosen("known"):
            print(f"  {fault.id}\n      {known[key_of[fault]]}")
    killers = Counter(row[2].split(":")[0] for row in rows if row[1] == "killed")
    print("\nKilled by:")
    for name, count in killers.most_common():
        print(f"  {count:5} {name}")
    if chosen("survived"):
        print("\nSurvivors:")
        for fault in chosen("survived"):
            print(f"  {fault.id}\n      {fault.source}")
    killed = [fault for fault in chosen("killed") if key_of[fault] in known]
    if killed:
        print("\nListed as survivors, but killed:")
        for fault in killed:
            print(f"  {fault.id}")
    missing = known.keys() - set(key_of.values()) if complete else ()
    if missing:
        print("\nListed as survivors, but not in the sources:")
        for key in sorted(missing, key=lambda k: (k.file, k.source, k.what)):
            print(f"  {key.file}: {key.source}: {key.what}")
