"""Checks who includes whom and who writes which member of `driver`; see script/rooms."""
import re
import sys

from clang import cindex

from driver_sources import HEADERS, SOURCES, declarations
from includes import circles, included_by, levels, room_of, wrong_includes

DOCUMENT = "doc/architecture.md"
HEADING = ["room", "writes", "only reads"]

SERVICE = "src/serviceForProtocol"
# A file includes from its own room and from those of the lines above it.
ORDER = [
    ["include/ls_master_k_cnet"],
    ["src/shared"],
    ["src/ls_master_k_cnet"],
    [SERVICE + "/address"],
    [SERVICE + "/cache"],
    [SERVICE + "/request", SERVICE + "/recipe"],
    [SERVICE + "/exchange"],
    [SERVICE],
]
LEVEL = levels(ORDER)

KINDS = cindex.CursorKind
POINTER = cindex.TypeKind.POINTER


def name_of(room):
    """As the table has it."""
    return room.replace(SERVICE + "/", "... ") + "/"


# Writes

def is_pointer(type_):
    return type_.get_canonical().kind == POINTER


def is_writable_pointer(type_):
    return is_pointer(type_) and not type_.get_canonical().get_pointee().is_const_qualified()


def is_handed_on(value, braces):
    """Whether a value of a list in braces, which has no wrapping, becomes a reference or a pointer."""
    type_ = braces.type.get_canonical()
    if type_.kind == cindex.TypeKind.RECORD:
        place = list(braces.get_children()).index(value)
        type_ = [field.type for field in type_.get_fields()][place].get_canonical()
    elif type_.kind == cindex.TypeKind.CONSTANTARRAY:
        type_ = type_.element_type
    else:
        return True
    return type_.kind == cindex.TypeKind.LVALUEREFERENCE or is_writable_pointer(type_)


def is_write(way):
    """Whether an expression that means a member of `driver` lets it be changed.

    The compiler wraps whatever is only looked at: into the load of a value or the step to a constant
    type, both of which are unexposed cursors. What arrives at an assignment, a step, a function or a
    reference without one of these is written there. A pointer is followed to what it points at, for
    as long as that is not constant, and counts as written where it is handed on.

    way -- the member's cursor and those around it, the innermost last
    """
    pointer = False
    for inner, outer in zip(reversed(way), reversed(way[:-1])):
        kind, type_ = outer.kind, outer.type
        if kind == KINDS.UNEXPOSED_EXPR:
            if type_.is_const_qualified():
                return False
            if is_pointer(type_):
                if not is_writable_pointer(type_):
                    return False
                pointer = True
            elif pointer or type_.get_canonical().kind != cindex.TypeKind.RECORD:
                return False
        elif kind == KINDS.MEMBER_REF_EXPR:
            if outer.referenced.kind != KINDS.FIELD_DECL:
                return not outer.referenced.is_static_method()
            pointer = False
        elif kind == KINDS.ARRAY_SUBSCRIPT_EXPR:
            pointer = False
        elif kind == KINDS.UNARY_OPERATOR:
            operator = next(outer.get_tokens()).spelling
            if operator not in ("*", "&"):
                return True
            pointer = operator == "&"
        elif kind == KINDS.BINARY_OPERATOR and pointer:
            if not is_pointer(type_):
                return False
        elif kind == KINDS.INIT_LIST_EXPR:
            return is_handed_on(inner, outer)
        elif kind == KINDS.CXX_UNARY_EXPR:  # sizeof
            return False
        elif kind not in (KINDS.PAREN_EXPR, KINDS.CONDITIONAL_OPERATOR):
            return True
    return True


def driver_uses(cursor, way):
    """Yields each mention of `driver` with the cursors around it, the innermost last."""
    way = way + [cursor]
    if cursor.kind == KINDS.DECL_REF_EXPR and cursor.spelling == "driver" \
            and cursor.referenced.semantic_parent.kind == KINDS.TRANSLATION_UNIT:
        yield way
    for child in cursor.get_children():
        yield from driver_uses(child, way)


def accesses(path):
    """Yields the line, the member and whether it is written, for each use of `driver` in a file."""
    with open(path, encoding="ascii") as file:
        if re.search(r"\bdriver\b", re.sub("//.*", "", file.read())) is None:
            return
    for declaration in declarations(path, {path}):
        for way in driver_uses(declaration, []):
            line = way[-1].location.line
            if way[-2].kind == KINDS.MEMBER_REF_EXPR:
                yield line, way[-2].spelling, is_write(way[:-1])
            else:
                yield line, "driver itself", True


def rooms_accesses():
    """For each room the members that it writes, with the places, and those that it touches."""
    written = {room: {} for room in LEVEL}
    touched = {room: set() for room in LEVEL}
    for path in SOURCES + HEADERS:
        for line, member, writes in accesses(path):
            touched[room_of(path)].add(member)
            if writes:
                written[room_of(path)].setdefault(member, []).append("%s:%d" % (path, line))
    return written, touched


# The table

def row(room, written, touched):
    cells = [set(written[room]), touched[room] - set(written[room])]
    names = [", ".join("`%s`" % member for member in sorted(cell)) for cell in cells]
    return "| `%s` | %s | %s |" % (name_of(room), names[0], names[1])


def table_of_document():
    """For each room's name what it may write and what it only reads."""
    table = {}
    inside = False
    with open(DOCUMENT, encoding="ascii") as file:
        for line in file:
            cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
            if cells == HEADING:
                inside = True
            elif inside and not line.startswith("|"):
                inside = False
            elif inside and not cells[0].startswith("-"):
                writes, reads = (set(re.findall(r"`(\w+)`", cell)) for cell in cells[1:])
                table[cells[0].strip("`")] = writes, reads
    return table


def wrong_accesses(written, touched):
    table = table_of_document()
    for name in sorted(set(table) - {name_of(room) for room in LEVEL}):
        yield "%s: no room is called %s" % (DOCUMENT, name)
    for room in LEVEL:
        writes, reads = table.get(name_of(room), (set(), set()))
        for member, places in sorted(written[room].items()):
            if member not in writes:
                for place in places:
                    yield "%s: %s may not write %s" % (place, name_of(room), member)
        for member in sorted(writes - set(written[room])):
            yield "%s: %s may write %s and never does" % (DOCUMENT, name_of(room), member)
        only_read = touched[room] - set(written[room])
        for member in sorted(only_read - reads - writes):
            yield "%s: %s reads %s, which is not said" % (DOCUMENT, name_of(room), member)
        for member in sorted(reads - only_read):
            yield "%s: %s is said to only read %s, and does not" % (DOCUMENT, name_of(room), member)


def main():
    graph = {path: list(included_by(path, ["include", "src"])) for path in SOURCES + HEADERS}
    wrong = list(wrong_includes(graph, ORDER, name_of)) + list(circles(graph))
    if not wrong:
        written, touched = rooms_accesses()
        if "--list" in sys.argv:
            for room in LEVEL:
                if touched[room]:
                    print(row(room, written, touched))
            return
        wrong = list(wrong_accesses(written, touched))
    if wrong:
        sys.exit("\n".join(wrong))
    print("rooms: includes run one way, and each member of driver is written where the table says")


main()
