"""Lists the names of Qt that the driver's sources use; see script/qt-names."""
import re
import sys

from clang import cindex

from driver_sources import HEADERS, SOURCES, declarations

LIST = "tests/abi/qt_names.txt"
KINDS = cindex.CursorKind
# A class is known by its members; a parameter or a field within Qt's own headers says nothing.
OF_INTEREST = {KINDS.CXX_METHOD, KINDS.CONSTRUCTOR, KINDS.CONVERSION_FUNCTION, KINDS.FUNCTION_DECL,
               KINDS.FUNCTION_TEMPLATE, KINDS.CLASS_DECL, KINDS.STRUCT_DECL, KINDS.CLASS_TEMPLATE,
               KINDS.TYPEDEF_DECL, KINDS.TYPE_ALIAS_DECL, KINDS.ENUM_CONSTANT_DECL, KINDS.VAR_DECL}


def is_qt(cursor):
    file = cursor.location.file
    return file is not None and "/QtCore/" in file.name


def qualified(cursor):
    names = [cursor.displayname]
    parent = cursor.semantic_parent
    while parent is not None and parent.kind != KINDS.TRANSLATION_UNIT:
        if parent.spelling:
            names.insert(0, parent.spelling)
        parent = parent.semantic_parent
    return "::".join(names)


def names_of(path):
    found = set()
    for declaration in declarations(path, set(HEADERS) | {path}):
        for cursor in declaration.walk_preorder():
            used = cursor.referenced
            if used is not None and is_qt(used) and used.kind in OF_INTEREST:
                found.add(qualified(used))
    return found


def macros_of(path):
    with open(path, encoding="ascii") as file:
        return set(re.findall(r"\bQT?_[A-Z][A-Z0-9_]*\b", file.read()))


def main():
    found = set()
    for path in SOURCES:
        found |= names_of(path)
    for path in SOURCES + HEADERS:
        found |= macros_of(path)
    if "--list" in sys.argv:
        print("\n".join(sorted(found)))
        return
    with open(LIST, encoding="ascii") as file:
        known = {line.strip() for line in file if line.strip() and not line.startswith("#")}
    for name in sorted(found - known):
        print("new: %s" % name)
    for name in sorted(known - found):
        print("no longer used: %s" % name)
    if found != known:
        sys.exit(1)
    print("qt-names: the %d names that the driver uses are all in the list" % len(found))


main()
