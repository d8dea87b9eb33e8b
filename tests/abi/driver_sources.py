"""The driver's sources and how libclang reads them; see script/qt-names and script/rooms."""
import glob
import subprocess
import sys

from clang import cindex

FLAGS = ["-x", "c++", "-std=c++11", "-fPIC", "-Iinclude", "-Isrc", "-DQT_NO_CAST_FROM_ASCII",
         "-DQT_NO_CAST_TO_ASCII", "-DQT_NO_KEYWORDS"]
FLAGS += subprocess.check_output(["pkg-config", "--cflags", "Qt5Core"], text=True).split()
FLAGS += ["-I" + path for path in
          subprocess.check_output(["clang++", "-print-resource-dir"], text=True).split()]

SOURCES = sorted(glob.glob("src/**/*.cpp", recursive=True))
HEADERS = sorted(glob.glob("src/**/*.h", recursive=True) +
                 glob.glob("include/**/*.h", recursive=True))


def declarations(path, files):
    """What those of the files declare that make up the source or header."""
    unit = cindex.Index.create().parse(path, FLAGS)
    errors = [d for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
    if errors:
        sys.exit("%s: %s" % (path, errors[0].spelling))
    return [declaration for declaration in unit.cursor.get_children()
            if declaration.location.file is not None and declaration.location.file.name in files]
