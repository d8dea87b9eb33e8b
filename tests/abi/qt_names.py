"""Lists the names of Qt that the driver's sources use; see script/qt-names."""
import glob
import re
import subprocess
import sys

from clang import cindex

LIST = "tests/abi/qt_names.txt"
FLAGS = ["-x", "c++", "-std=c++11", "-fPIC", "-Iinclude", "-Isrc", "-DQT_NO_CAST_FROM_ASCII",
         "-DQT_NO_CAST_TO_ASCII", "-DQT_NO_KEYWORDS"]
FLAGS += subprocess.check_output(["pkg-config", "--cflags", "Qt5Core"], text=True).split()
FLAGS += ["-I" + path for path in
          subprocess.check_output(["clang++", "-print-resource-dir"], text=True).split()]

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


def names_of(path, own_files):
    unit = cindex.Index.create().parse(path, FLAGS)
    errors = [d for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        sys.exit("%s: %s" % (path, errors[0].spelling))
    found = set()
    for declaration in unit.cursor.get_children():
        file = declaration.location.file
        if file is None or file.name not in own_files:
            continue
        for cursor in declaration.walk_preorder():
            used = cursor.referenced
            if used is not None and is_qt(used) and used.kind in OF_INTEREST:
                found.add(qualified(used))
    return found


def macros_of(path):
    with open(path, encoding="ascii") as file:
        return set(re.findall(r"\bQT?_[A-Z][A-Z0-9_]*\b", file.read()))


def main():
    own = sorted(glob.glob("src/**/*.cpp", recursive=True))
    headers = glob.glob("src/**/*.h", recursive=True) + glob.glob("include/**/*.h", recursive=True)
    found = set()
    for path in own:
        found |= names_of(path, set(headers) | {path})
    for path in own + headers:
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
