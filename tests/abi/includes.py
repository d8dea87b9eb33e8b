"""Who includes whom, checked against an order of rooms; see script/rooms."""
import os
import re


def room_of(path):
    return os.path.dirname(path)


def included_by(path, roots):
    """Yields line and file of each include that is found below one of the roots or beside the file."""
    with open(path, encoding="ascii") as file:
        for number, line in enumerate(file, 1):
            match = re.match(r'\s*#\s*include\s*(?:"(.*)"|<(.*)>)', line)
            if match is None:
                continue
            name = match.group(1) or match.group(2)
            places = [os.path.normpath(os.path.join(root, name)) for root in roots + [room_of(path)]]
            found = [place for place in places if os.path.isfile(place)]
            if found:
                yield number, found[0]
            elif match.group(1):
                yield number, name


def levels(order):
    """Of each room; `order` has lists of rooms, the lowest first."""
    return {room: level for level, rooms in enumerate(order) for room in rooms}


def wrong_includes(graph, order, name_of):
    """A file includes from its own room and from those below it."""
    level = levels(order)
    for path, includes in graph.items():
        room = room_of(path)
        if room not in level:
            yield "%s: is in no room" % path
            continue
        for number, other in includes:
            where = room_of(other)
            if where not in level:
                yield "%s:%d: %s is in no room" % (path, number, other)
            elif where != room and level[where] >= level[room]:
                yield "%s:%d: %s may not include from %s" % (path, number, name_of(room),
                                                             name_of(where))


def circles(graph):
    """A header and its source file count as one: neither may lead back to it."""
    edges = {}
    for path, includes in graph.items():
        others = edges.setdefault(os.path.splitext(path)[0], set())
        others.update(os.path.splitext(other)[0] for _, other in includes)
    finished = set()

    def visit(subject, way):
        if subject in way:
            yield "includes itself: " + " -> ".join(way[way.index(subject):] + [subject])
        elif subject not in finished:
            for other in sorted(edges.get(subject, set()) - {subject}):
                yield from visit(other, way + [subject])
            finished.add(subject)

    for subject in sorted(edges):
        yield from visit(subject, [])
