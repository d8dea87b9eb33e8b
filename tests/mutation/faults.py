"""Finds the places of a C++ file where a small fault can be made, by libclang's syntax tree."""

import re
from dataclasses import dataclass

from clang.cindex import CursorKind, Index, TokenKind, TranslationUnit, TypeKind

COMPARISON = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
OPPOSITE = {"<": ">=", "<=": ">", ">": "<=", ">=": "<"}
ORDERED = {"==": ("<=", ">="), "!=": ("<", ">")}
ARITHMETIC = {
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "<<": ">>", ">>": "<<", "&": "|", "|": "&",
    "^": "&", "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "%=": "*=", "<<=": ">>=",
    ">>=": "<<=", "&=": "|=", "|=": "&=", "^=": "|=",
}
LOGICAL = {"&&": "||", "||": "&&"}
STEP = {"++": "--", "--": "++"}

INTEGER = re.compile(r"(0[xX])?([0-9a-fA-F]+)([uUlL]*)")
NUMBERS = {
    TypeKind.CHAR_S, TypeKind.SCHAR, TypeKind.UCHAR, TypeKind.SHORT, TypeKind.USHORT, TypeKind.INT,
    TypeKind.UINT, TypeKind.LONG, TypeKind.ULONG, TypeKind.LONGLONG, TypeKind.ULONGLONG,
    TypeKind.FLOAT, TypeKind.DOUBLE,
}
FUNCTIONS = {
    CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
    CursorKind.FUNCTION_TEMPLATE,
}
OPERATIONS = {CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR}


@dataclass(frozen=True)
class Fault:
    file: str  # from the project's root
    start: int
    end: int
    replacement: str
    kind: str
    before: str
    after: str
    line: int
    column: int
    function: str
    source: str  # the line, without its indentation

    @property
    def what(self):
        return f"{self.kind} {self.before} -> {self.after}"

    @property
    def id(self):
        return f"{self.file}:{self.line}:{self.column} {self.what}"


class Finder:
    def __init__(self, root, file, arguments):
        self.file = file
        self.path = str(root / file)
        self.text = (root / file).read_bytes().decode()
        if not self.text.isascii():
            raise SystemExit(f"mutate: {file} is not plain ASCII: positions would be wrong")
        self.unit = Index.create(excludeDecls=True).parse(
            self.path, args=arguments, options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        errors = [str(d) for d in self.unit.diagnostics if d.severity >= d.Error]
        if errors:
            raise SystemExit(f"mutate: {file} cannot be parsed: {errors[0]}")
        self.lines = self.text.split("\n")
        self.functions = []  # start, end, name
        self.macros = []  # where the syntax tree knows no positions
        self.closed = []  # where nothing is changed
        self.faults = {}

    def find(self):
        for cursor in self.unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == self.path:
                if cursor.kind == CursorKind.MACRO_INSTANTIATION:
                    start, end = self.range(cursor)
                    if "(" in self.text[start:end]:
                        self.macros.append((start, end))
                elif cursor.kind not in (CursorKind.MACRO_DEFINITION,
                                         CursorKind.INCLUSION_DIRECTIVE):
                    self.visit(cursor)
        self.literals()
        return sorted(self.faults.values(), key=lambda f: (f.start, f.end, f.kind, f.after))

    # Positions

    @staticmethod
    def range(cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def add(self, kind, start, end, replacement, after=None):
        closed = self.closed if kind in ("constant", "text") else self.closed + self.macros
        if any(start < stop and begin < end for begin, stop in closed):
            return
        function = next((name for begin, stop, name in self.functions if begin <= start < stop), "-")
        line = self.text.count("\n", 0, start)
        before = " ".join(self.text[start:end].split())
        after = " ".join((after or replacement).split())
        fault = Fault(self.file, start, end, replacement, kind, before, after,
                      line + 1, start - self.text.rfind("\n", 0, start), function,
                      self.lines[line].strip())
        self.faults.setdefault((start, end, replacement), fault)

    def between(self, left, right):
        """The operator token between two operands: its text and place."""
        match = re.compile(r"[\s)]*([-+*/%<>=!&|^]+)[\s(]*").match(
            self.text, left.extent.end.offset, right.extent.start.offset)
        return (match.group(1), match.start(1), match.end(1)) if match else (None, 0, 0)

    # Syntax tree

    def visit(self, cursor):
        kind = cursor.kind
        if kind == CursorKind.STATIC_ASSERT:
            self.closed.append(self.range(cursor))
            return
        children = list(cursor.get_children())
        if kind in FUNCTIONS and cursor.is_definition():
            self.functions.append((*self.range(cursor), cursor.spelling))
            self.removals(cursor, children)
        elif kind == CursorKind.COMPOUND_STMT:
            for child in children:
                self.removal(child)
        elif kind in (CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT):
            self.removal(children[-1])
        elif kind in OPERATIONS and len(children) == 2:
            self.operation(children)
        elif kind == CursorKind.CALL_EXPR and cursor.spelling.startswith("operator"):
            self.overloaded(cursor, children)
        elif kind == CursorKind.UNARY_OPERATOR:
            self.unary(cursor, children[0])
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            start, end = self.range(cursor)
            other = {"true": "false", "false": "true"}.get(self.text[start:end])
            if other:
                self.add("boolean", start, end, other)
        else:
            self.condition(cursor, children)
        for child in children:
            self.visit(child)

    def condition(self, cursor, children):
        if cursor.kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT,
                           CursorKind.CONDITIONAL_OPERATOR):
            condition = children[0]
        elif cursor.kind == CursorKind.DO_STMT:
            condition = children[1]
        elif cursor.kind == CursorKind.FOR_STMT:
            start, end = self.range(cursor)
            first = self.text.find(";", start, end)
            second = self.text.find(";", first + 1, end)
            inside = [c for c in children if first < self.range(c)[0] < second]
            if not inside:
                return
            condition = inside[0]
        else:
            return
        start, end = self.range(condition)
        # A removed "!" and an inverted comparison say the same as a negated condition.
        if re.match(r"!(?!=)", self.text[start:end]) and not self.comparison(condition):
            return
        compared = self.comparison(condition)
        if compared and compared[0] in ("==", "!="):
            return
        if compared:
            self.add("compare", compared[1], compared[2], OPPOSITE[compared[0]])
            return
        self.add("negate", start, end, f"!({self.text[start:end]})")

    def comparison(self, cursor):
        """The operator of a comparison and its place; None for any other expression."""
        while cursor.kind in (CursorKind.UNEXPOSED_EXPR, CursorKind.PAREN_EXPR):
            children = list(cursor.get_children())
            if len(children) != 1:
                return None
            cursor = children[0]
        operands = [c for c in cursor.get_children() if not c.spelling.startswith("operator")
                    or c.kind == CursorKind.CALL_EXPR]
        if cursor.kind not in (CursorKind.BINARY_OPERATOR, CursorKind.CALL_EXPR) \
                or len(operands) != 2:
            return None
        found = self.between(*operands)
        return found if found[0] in COMPARISON else None

    def operation(self, operands):
        operator, start, end = self.between(*operands)
        kinds = [c.type.get_canonical().kind for c in operands]
        if operator in COMPARISON:
            self.add("compare", start, end, COMPARISON[operator])
            if all(kind in NUMBERS for kind in kinds):
                for other in ORDERED.get(operator, ()):
                    self.add("compare", start, end, other)
        elif operator in LOGICAL:
            self.add("logical", start, end, LOGICAL[operator])
        elif operator in ARITHMETIC:
            self.add("arithmetic", start, end, ARITHMETIC[operator])

    def overloaded(self, cursor, children):
        operator = cursor.spelling[len("operator"):]
        for child in children:
            start, end = self.range(child)
            if self.text[start:end] == operator:
                if operator in COMPARISON:
                    self.add("compare", start, end, COMPARISON[operator])
                elif operator in STEP:
                    self.add("step", start, end, STEP[operator])
                elif operator == "!":
                    self.add("not", start, end, "", after="nothing")
                return

    def unary(self, cursor, operand):
        start, end = self.range(cursor)
        if self.text[start:start + 2] in STEP:
            self.add("step", start, start + 2, STEP[self.text[start:start + 2]])
        elif self.text[end - 2:end] in STEP:
            self.add("step", end - 2, end, STEP[self.text[end - 2:end]])
        elif self.text[start] in "!~-":
            kind = "not" if self.text[start] == "!" else "arithmetic"
            self.add(kind, start, self.range(operand)[0], "", after="nothing")

    def removals(self, function, children):
        """The returns of a function that returns nothing; a last one changes nothing."""
        if function.result_type.kind != TypeKind.VOID or not children:
            return
        body = children[-1]
        last = list(body.get_children())[-1:]
        for cursor in body.walk_preorder():
            start, end = self.range(cursor)
            if self.text[start:end] == "return" and cursor not in last:
                self.add("remove", start, end, "", after="nothing")

    def removal(self, statement):
        start, end = self.range(statement)
        text = self.text[start:end]
        removable = statement.kind.is_expression() or statement.kind in (
            CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT)
        if removable and not text.startswith(("static_cast<void>", "(void)")):
            self.add("remove", start, end, "", after="nothing")

    # Literals, which have a place of their own only as tokens

    def literals(self):
        extent = self.unit.get_extent(self.path, (0, len(self.text)))
        for token in self.unit.get_tokens(extent=extent):
            start, end = token.extent.start.offset, token.extent.end.offset
            if token.kind != TokenKind.LITERAL or self.in_directive(start):
                continue
            self.literal(token.spelling, start, end)

    def in_directive(self, offset):
        line = self.text.count("\n", 0, offset)
        while line > 0 and self.lines[line - 1].endswith("\\"):
            line -= 1
        return self.lines[line].lstrip().startswith("#")

    def literal(self, text, start, end):
        number = INTEGER.fullmatch(text)
        if number:
            prefix, digits, suffix = number.groups()
            value = int(digits, 16 if prefix else 10)
            for other in (value + 1, value - 1):
                shown = f"{prefix}{other:0{len(digits)}X}" if prefix else str(other)
                self.add("constant", start, end, "(-1)" if other < 0 else shown + suffix)
        elif text[-1] in "\"'" and text[0] in "\"'":
            self.text_literal(text, start, end)

    def text_literal(self, text, start, end):
        """Another last character; the tables hold numbers as text."""
        inner = text[1:-1]
        if not inner:
            self.add("text", start, end, '"!"')
        elif "\\" not in inner:
            other = chr(ord(inner[-1]) ^ 1)
            other = "?" if other in "\\\"'" else other
            self.add("text", start, end, f"{text[:-2]}{other}{text[-1]}")
