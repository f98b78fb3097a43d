# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT
"""Plants faults into a source: each stands beside the original, behind a switch of its own.

A fault is an operator, a bound, a constant, a condition, a call or an assignment that is left out,
or two statements in the other order. What is worked out by the compiler stays as it is: a switch
can be thrown only at run time. So does room that is set aside beforehand, which changes no result.
"""
import dataclasses
import re

from clang.cindex import Config, CursorKind, Index, TypeKind

RELATIONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "/", "&": "|", "|": "&",
              "<<": ">>", ">>": "<<"}
LOGIC = {"&&": "||", "||": "&&"}
NUMBERS = {getattr(TypeKind, name) for name in (
    "CHAR_S", "SCHAR", "UCHAR", "SHORT", "USHORT", "INT", "UINT", "LONG", "ULONG", "LONGLONG",
    "ULONGLONG", "FLOAT", "DOUBLE", "WCHAR", "CHAR16", "CHAR32")}
FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
             CursorKind.DESTRUCTOR, CursorKind.FUNCTION_TEMPLATE, CursorKind.CONVERSION_FUNCTION}
CONSTANT = {CursorKind.STATIC_ASSERT, CursorKind.ENUM_CONSTANT_DECL, CursorKind.TYPE_ALIAS_DECL,
            CursorKind.TYPEDEF_DECL, CursorKind.TEMPLATE_NON_TYPE_PARAMETER}


def in_one_line(text):
    """The text without line ends, and without the comments that end with them."""
    plain = re.sub(r"""("(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])*')|//[^\n]*""",
                   lambda match: match.group(1) or "", text)
    return plain.replace("\n", " ")


@dataclasses.dataclass
class Fault:
    number: int
    file: str
    line: int
    was: str
    now: str
    text: str  # the line of the source

    def key(self):
        return (self.file, self.text, self.was, self.now)


class Planter:
    """The faults of one file. `banned` are lines that get none."""

    def __init__(self, file, path, arguments, first, banned=()):
        self.file, self.next, self.banned = file, first, set(banned)
        self.source = open(path, "rb").read()
        self.lines = self.source.decode().split("\n")
        self.faults = []
        self.path = path
        self.unit = Index.create().parse(path, args=arguments)

    def planted(self):
        edits = []
        for cursor in self.unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == self.path:
                self.find_functions(cursor, edits)
        return self.apply(0, len(self.source), edits)

    # An edit is (begin, end, make): make(text of the stretch with inner edits done) -> new text.
    def apply(self, begin, end, edits):
        """Edits lie apart or inside of one another; outer ones come first."""
        out, at = [], begin
        edits = sorted((e for e in edits if begin <= e[0] and e[1] <= end),
                       key=lambda e: (e[0], -e[1]))
        while edits:
            outer = edits[0]
            inner = [e for e in edits[1:] if e[1] <= outer[1]]
            edits = [e for e in edits[1:] if e[0] >= outer[1]]
            out.append(self.source[at:outer[0]].decode())
            out.append(outer[2](self, outer, inner))
            at = outer[1]
        out.append(self.source[at:end].decode())
        return "".join(out)

    def text(self, cursor):
        return self.source[cursor.extent.start.offset:cursor.extent.end.offset].decode()

    def new(self, cursor, was, now):
        line = cursor.extent.start.line
        fault = Fault(self.next, self.file, line, was, now, self.lines[line - 1].strip())
        self.next += 1
        self.faults.append(fault)
        return fault.number

    def find_functions(self, cursor, edits):
        if cursor.kind in FUNCTIONS:
            body = [c for c in cursor.get_children() if c.kind == CursorKind.COMPOUND_STMT]
            head = self.source[cursor.extent.start.offset:
                               body[0].extent.start.offset if body else 0].decode()
            if body and "constexpr" not in head:
                self.visit(body[0], edits)
            return
        if cursor.kind in (CursorKind.NAMESPACE, CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL,
                           CursorKind.UNEXPOSED_DECL, CursorKind.LINKAGE_SPEC):
            for child in cursor.get_children():
                self.find_functions(child, edits)

    def is_ours(self, cursor):
        start, end = cursor.extent.start, cursor.extent.end
        return (start.file is not None and start.file.name == self.path and
                end.offset > start.offset and start.line not in self.banned)

    def visit(self, cursor, edits):
        kind = cursor.kind
        if kind in CONSTANT or kind in FUNCTIONS or self.is_reserve(cursor):
            return
        if kind == CursorKind.DECL_STMT and "constexpr" in self.text(cursor).split("=")[0]:
            return
        children = list(cursor.get_children())
        if kind == CursorKind.CASE_STMT:
            children = children[1:]
        if kind == CursorKind.VAR_DECL:
            if cursor.type.kind == TypeKind.CONSTANTARRAY:
                return
            # What stands before the name belongs to the type.
            name = cursor.location.offset
            children = [c for c in children if c.extent.start.offset > name]
        if kind == CursorKind.COMPOUND_STMT:
            self.visit_block(children, edits)
        if kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT) and children:
            self.condition(children, edits)
        if self.is_ours(cursor):
            self.expression(cursor, children, edits)
        for child in children:
            self.visit(child, edits)

    def expression(self, cursor, children, edits):
        kind = cursor.kind
        if kind == CursorKind.BINARY_OPERATOR and len(children) == 2:
            self.operator(cursor, children[0], children[1], edits)
        elif kind == CursorKind.CALL_EXPR and cursor.spelling in ("operator==", "operator!="):
            self.negate(cursor, edits)
        elif kind == CursorKind.INTEGER_LITERAL and cursor.type.kind in NUMBERS:
            text = self.text(cursor)
            if text and text[0].isdigit():
                self.replace(cursor, text, f"{text} + 1", edits)
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            text = self.text(cursor)
            if text in ("true", "false"):
                self.replace(cursor, text, "false" if text == "true" else "true", edits)
        elif kind == CursorKind.UNARY_OPERATOR and self.text(cursor).startswith("!"):
            self.negate(cursor, edits)

    def operator(self, cursor, left, right, edits):
        begin, end = left.extent.end.offset, right.extent.start.offset
        sign = self.source[begin:end].decode().strip()
        numbers = all(c.type.get_canonical().kind in NUMBERS for c in (left, right))
        if sign in ("==", "!="):
            self.negate(cursor, edits)
        elif sign in LOGIC or (numbers and sign in RELATIONS) or (numbers and sign in ARITHMETIC):
            other = LOGIC.get(sign) or RELATIONS.get(sign) or ARITHMETIC[sign]
            number = self.new(cursor, self.text(cursor), f"[{other}]")
            spot = (left.extent.start.offset, begin, end, right.extent.end.offset)

            def make(planter, edit, inner, spot=spot):
                first = planter.apply(spot[0], spot[1], inner)
                second = planter.apply(spot[2], spot[3], inner)
                between = planter.source[spot[1]:spot[2]].decode()
                return (in_one_line(f"(MUTANT({number}) ? ({first}) {other} ({second}) : "
                                    f"{first}{between}{second})") +
                        "\n" * planter.source[spot[0]:spot[3]].count(b"\n"))
            edits.append((spot[0], spot[3], make))

    def negate(self, cursor, edits):
        number = self.new(cursor, self.text(cursor), "[not]")

        def make(planter, edit, inner):
            text = planter.apply(edit[0], edit[1], inner)
            return self.on_lines(f"(MUTANT({number}) != ({text}))", text)
        edits.append((cursor.extent.start.offset, cursor.extent.end.offset, make))

    def replace(self, cursor, was, now, edits):
        number = self.new(cursor, was, now)
        edits.append((cursor.extent.start.offset, cursor.extent.end.offset,
                      lambda planter, edit, inner: f"(MUTANT({number}) ? {now} : {was})"))

    @staticmethod
    def on_lines(new, old):
        """A text of as many lines as the old one, so that the compiler's lines are the source's."""
        return in_one_line(new) + "\n" * old.count("\n")

    # A condition that is a call or a variable; operators have faults of their own.
    def condition(self, children, edits):
        condition = children[0]
        if not self.is_ours(condition) or condition.kind in (
                CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR, CursorKind.DECL_STMT,
                CursorKind.VAR_DECL, CursorKind.CXX_BOOL_LITERAL_EXPR, CursorKind.COMPOUND_STMT):
            return
        if condition.spelling in ("operator==", "operator!="):
            return
        if condition.type.get_canonical().kind != TypeKind.BOOL and \
                condition.kind != CursorKind.UNEXPOSED_EXPR:
            return
        text = self.text(condition)
        number = self.new(condition, text, "[not]")

        def make(planter, edit, inner):
            text = planter.apply(edit[0], edit[1], inner)
            return self.on_lines(f"(MUTANT({number}) != static_cast<bool>({text}))", text)
        edits.append((condition.extent.start.offset, condition.extent.end.offset, make))

    def visit_block(self, statements, edits):
        droppable = [s for s in statements if self.is_ours(s) and self.is_droppable(s)]
        for statement in droppable:
            self.drop(statement, edits)
        pairs = list(zip(statements, statements[1:]))
        while pairs:
            first, second = pairs.pop(0)
            if first in droppable and second in droppable:
                self.swap(first, second, edits)
                if pairs:
                    pairs.pop(0)

    @staticmethod
    def is_reserve(cursor):
        return cursor.kind == CursorKind.CALL_EXPR and cursor.spelling == "reserve"

    @staticmethod
    def is_droppable(statement):
        kind = statement.kind
        if Planter.is_reserve(statement):
            return False
        if kind == CursorKind.UNEXPOSED_EXPR:
            inner = list(statement.get_children())
            return len(inner) == 1 and Planter.is_droppable(inner[0])
        if kind == CursorKind.CALL_EXPR:
            return True
        if kind == CursorKind.UNARY_OPERATOR:
            return True
        if kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR):
            return True
        return False

    def drop(self, statement, edits):
        number = self.new(statement, self.text(statement), "[left out]")

        def make(planter, edit, inner):
            text = planter.apply(edit[0], edit[1], inner)
            return self.on_lines(f"(MUTANT({number}) ? (void)0 : (void)({text}))", text)
        edits.append((statement.extent.start.offset, statement.extent.end.offset, make))

    def swap(self, first, second, edits):
        number = self.new(first, self.text(first) + "; " + self.text(second), "[other order]")
        spot = (first.extent.start.offset, first.extent.end.offset,
                second.extent.start.offset, second.extent.end.offset)

        def make(planter, edit, inner, spot=spot):
            one = planter.apply(spot[0], spot[1], inner)
            two = planter.apply(spot[2], spot[3], inner)
            old = planter.source[spot[0]:spot[3]].decode()
            return self.on_lines(f"if (MUTANT({number})) {{ {two}; {one}; }} else "
                                 f"{{ {one}; {two}; }}", old).rstrip("\n") + \
                "\n" * old.count("\n")
        # Takes the statement's own semicolon along, which stands behind the second one.
        edits.append((spot[0], spot[3], make))


Config.set_library_file("libclang-14.so.1")
