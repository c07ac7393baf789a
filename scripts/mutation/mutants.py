"""Finds the places of a source where one small change makes a mutant."""

import bisect
import re
import shlex
from dataclasses import dataclass, field
from pathlib import Path

import clang.cindex
from clang.cindex import CursorKind, TypeKind

HELPER_OF = {
    "<": ("less", "<="), "<=": ("lessEqual", "<"), ">": ("greater", ">="), ">=": ("greaterEqual", ">"),
    "==": ("equal", "!="), "!=": ("unequal", "=="),
    "+": ("plus", "-"), "-": ("minus", "+"), "*": ("times", "/"), "/": ("dividedBy", "*"), "%": ("remainder", "*"),
    "<<": ("shiftLeft", ">>"), ">>": ("shiftRight", "<<"), "&": ("bitAnd", "|"), "|": ("bitOr", "&"),
    "+=": ("plusAssign", "-="), "-=": ("minusAssign", "+="), "*=": ("timesAssign", "/="), "/=": ("divideAssign", "*="),
}
COMPARISONS = ("<", "<=", ">", ">=", "==", "!=")
CHOSEN = "::panelkitMutants::isChosen(@)"

FUNCTIONS = (CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
             CursorKind.CONVERSION_FUNCTION, CursorKind.FUNCTION_TEMPLATE)
SKIPPED = (CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL, CursorKind.PARM_DECL, CursorKind.TYPE_ALIAS_DECL,
           CursorKind.TYPEDEF_DECL, CursorKind.TYPE_ALIAS_TEMPLATE_DECL, CursorKind.CXX_UNARY_EXPR,
           CursorKind.TEMPLATE_NON_TYPE_PARAMETER, CursorKind.STRING_LITERAL)
LITERALS = (CursorKind.INTEGER_LITERAL, CursorKind.FLOATING_LITERAL, CursorKind.CHARACTER_LITERAL)
ARITHMETIC = {getattr(TypeKind, name) for name in (
    "CHAR_U UCHAR CHAR16 CHAR32 USHORT UINT ULONG ULONGLONG CHAR_S SCHAR WCHAR SHORT INT LONG LONGLONG FLOAT DOUBLE"
    " LONGDOUBLE").split()}


@dataclass
class Mutant:
    """One change: `before` and `after` go around the code from `start` to `end`, `middle` in place of its operator.
    "@" in them stands for the mutant's number."""
    file: str
    line: int
    function: str
    code: str    # what is changed, or for a literal what it stands in, as one line
    change: str
    start: int
    end: int
    before: str
    after: str
    middle: tuple = None     # start, end, text
    constant: int = None     # offset of the "constexpr" in front, which has to go
    depth: int = 0
    number: int = -1
    outcome: str = ""
    reason: str = ""

    last_line: int = 0

    @property
    def folder(self):
        return self.file.split("/")[0]

    @property
    def key(self):
        return (self.file, self.function, self.code, self.change)


def compile_arguments(entry):
    """The arguments of a compile command for libclang: without the compiler, the files and the warnings."""
    words = shlex.split(entry["command"])
    while words and not words[0].startswith("-"):
        words.pop(0)
    arguments, skip = [], False
    for word in words:
        if skip:
            skip = False
        elif word in ("-o", "-c"):
            skip = True
        elif not word.startswith("-W") and not word.endswith(entry["file"]):
            arguments.append(word)
    return arguments


class SourceFile:
    def __init__(self, name, data):
        self.name = name
        self.data = data
        self.line_starts = [0] + [match.end() for match in re.finditer(rb"\n", data)]
        self.macros = []

    def text(self, start, end):
        return self.data[start:end].decode()

    def line(self, offset):
        return bisect.bisect_right(self.line_starts, offset)

    def is_in_macro(self, start, end):
        """Whether the code is an expansion's own, or reaches into one."""
        return any((begin <= start and end <= stop) or (start < begin < end < stop) or (begin < start < stop < end)
                   for begin, stop in self.macros)


def one_line(text):
    text = re.sub(r"//[^\n]*", "", text)
    text = " ".join(text.split())
    return text if len(text) <= 160 else text[:157] + "..."


class Finder:
    """Walks through the syntax tree of one source, and of the headers of its folders that it includes."""

    def __init__(self, root, folders):
        self.root = root
        self.folders = folders
        self.index = clang.cindex.Index.create()
        self.files = {}
        self.found = {}

    def search(self, entry):
        unit = self.index.parse(entry["file"], args=compile_arguments(entry),
                                options=clang.cindex.TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        errors = [str(message) for message in unit.diagnostics if message.severity >= 3]
        if errors:
            raise SystemExit(f"mutants: {entry['file']} cannot be read: {errors[0]}")
        seen = dict(self.files)
        for cursor in unit.cursor.get_children():
            file = self.file_of(cursor)
            if file is None or file.name in seen:
                continue
            if cursor.kind == CursorKind.MACRO_INSTANTIATION:
                file.macros.append((cursor.extent.start.offset, cursor.extent.end.offset))
            elif not cursor.kind.is_preprocessing():
                self.walk(cursor, file, "", [])
        for mutant in self.found.values():
            yield mutant
        self.found = {}

    def file_of(self, cursor):
        if cursor.location.file is None:
            return None
        path = Path(cursor.location.file.name)
        try:
            name = str(path.resolve().relative_to(self.root))
        except ValueError:
            return None
        if name.split("/")[0] not in self.folders:
            return None
        if name not in self.files:
            self.files[name] = SourceFile(name, path.read_bytes())
        return self.files[name]

    # parents: the cursors around, innermost last.
    def walk(self, cursor, file, function, parents):
        if cursor.kind in SKIPPED:
            return
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        if cursor.kind.is_expression() or cursor.kind.is_statement():
            if file.is_in_macro(start, end):
                return
        children = list(cursor.get_children())
        inside = parents + [cursor]
        if cursor.kind in FUNCTIONS:
            if re.search(r"\bconstexpr\b", file.text(start, cursor.location.offset)):
                return
            function = self.name_of(cursor)
            children = self.body_of(cursor, children, file)
        elif cursor.kind in (CursorKind.VAR_DECL, CursorKind.FIELD_DECL):
            if cursor.is_bitfield():
                return
            function = function or self.name_of(cursor)
            children = self.initial_value_of(cursor, children, file)
        elif cursor.kind == CursorKind.CASE_STMT:
            children = children[1:]
        else:
            self.look_at(cursor, children, file, function, parents)
            if cursor.kind == CursorKind.IF_STMT and re.match(r"if\s+constexpr\b", file.text(start, end)):
                children = children[1:]
        for child in children:
            self.walk(child, file, function, inside)

    @staticmethod
    def name_of(cursor):
        names = [cursor.spelling]
        parent = cursor.semantic_parent
        while parent is not None and parent.kind in (CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL,
                                                     CursorKind.CLASS_TEMPLATE):
            names.insert(0, parent.spelling)
            parent = parent.semantic_parent
        return "::".join(names)

    @staticmethod
    def body_of(cursor, children, file):
        """The statements of a function and the initial values of a constructor, without the types."""
        if cursor.kind != CursorKind.CONSTRUCTOR:
            return [child for child in children if child.kind == CursorKind.COMPOUND_STMT]
        members = [place for place, child in enumerate(children) if child.kind == CursorKind.MEMBER_REF]
        bodies = [place for place, child in enumerate(children) if child.kind == CursorKind.COMPOUND_STMT]
        first = min(members + bodies, default=len(children))
        return [child for child in children[first:] if child.kind != CursorKind.MEMBER_REF]

    @staticmethod
    def initial_value_of(cursor, children, file):
        start = cursor.location.offset + len(cursor.spelling)
        while True: # sizes of an array
            match = re.match(rb"\s*\[[^\]]*\]", file.data[start:cursor.extent.end.offset])
            if not match:
                break
            start += match.end()
        return [child for child in children if child.extent.start.offset >= start]

    def look_at(self, cursor, children, file, function, parents):
        kind = cursor.kind
        if kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) and len(children) == 2:
            self.binary(cursor, children, file, function, parents)
        elif kind == CursorKind.CALL_EXPR and re.fullmatch(r"operator(<|<=|>|>=|==|!=)", cursor.spelling):
            arguments = list(cursor.get_arguments())
            if len(arguments) == 2:
                self.binary(cursor, arguments, file, function, parents)
        elif kind in LITERALS:
            self.literal(cursor, file, function, parents)
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            text = self.text_of(cursor, file)
            if text in ("true", "false"):
                other = "false" if text == "true" else "true"
                self.add(cursor, file, function, parents, self.around(cursor, file, parents), f"{text} becomes {other}",
                         "(", f" != {CHOSEN})")
        elif kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.CONDITIONAL_OPERATOR) and children:
            constant = re.match(r"if\s+constexpr\b", self.text_of(cursor, file))
            if children[0].kind.is_expression() and not constant and not file.is_in_macro(
                    children[0].extent.start.offset, children[0].extent.end.offset):
                self.negated(children[0], file, function, parents, "the condition is negated")
        elif kind == CursorKind.RETURN_STMT and children and children[0].type.get_canonical().kind == TypeKind.BOOL:
            self.negated(children[0], file, function, parents, "what is returned is negated")
        if parents and kind.is_expression():
            self.statement(cursor, file, function, parents)

    @staticmethod
    def text_of(cursor, file):
        return file.text(cursor.extent.start.offset, cursor.extent.end.offset)

    def around(self, cursor, file, parents):
        """The code that a literal stands in, as much of it as tells the place."""
        text = ""
        for parent in reversed(parents):
            if not (parent.kind.is_expression() or parent.kind in (
                    CursorKind.DECL_STMT, CursorKind.RETURN_STMT, CursorKind.VAR_DECL, CursorKind.FIELD_DECL)):
                break
            if parent.kind == CursorKind.LAMBDA_EXPR:
                break
            text = one_line(self.text_of(parent, file))
            if len(text) > len(self.text_of(cursor, file)) + 20:
                break
        return text or self.code_of(cursor, file)

    def binary(self, cursor, operands, file, function, parents):
        left, right = operands
        start, end = left.extent.end.offset, right.extent.start.offset
        if not cursor.extent.start.offset <= left.extent.start.offset <= start <= end <= cursor.extent.end.offset:
            return
        between = file.text(start, end)
        operator = re.sub(r"//[^\n]*", "", between).strip()
        lines = "\n" * between.count("\n") # what the compiler complains about keeps its line
        if operator in ("&&", "||"):
            same, default = ("!=", CHOSEN) if operator == "&&" else ("==", "!" + CHOSEN)
            self.add(cursor, file, function, parents, self.code_of(cursor, file),
                     f"{operator} becomes {'||' if operator == '&&' else '&&'}",
                     "((static_cast<bool>(", f") : {default})",
                     (start, end, f") {same} {CHOSEN}) ? {lines}static_cast<bool>("))
            return
        if operator not in HELPER_OF:
            return
        helper, other = HELPER_OF[operator]
        if operator not in COMPARISONS:
            kinds = [operand.type.get_canonical().kind for operand in operands]
            pointers = kinds.count(TypeKind.POINTER)
            if any(kind not in ARITHMETIC and kind not in (TypeKind.POINTER, TypeKind.BOOL) for kind in kinds):
                return
            if pointers and (operator not in ("+", "-", "+=", "-=") or kinds[1] == TypeKind.POINTER):
                return
            if operator in ("%", "<<", ">>", "&", "|") and any(
                    kind in (TypeKind.FLOAT, TypeKind.DOUBLE) for kind in kinds):
                return
        self.add(cursor, file, function, parents, self.code_of(cursor, file), f"{operator} becomes {other}",
                 f"::panelkitMutants::{helper}(@, ", ")", (start, end, f", {lines}"))

    def code_of(self, cursor, file):
        return one_line(self.text_of(cursor, file))

    def literal(self, cursor, file, function, parents):
        text = self.text_of(cursor, file)
        if not re.match(r"[0-9.']|[uUL]8?'", text):
            return
        value_type = cursor.type.get_canonical()
        for parent in reversed(parents): # the type that it is converted to
            if parent.extent.start.offset != cursor.extent.start.offset or \
                    parent.extent.end.offset != cursor.extent.end.offset or not parent.kind.is_expression():
                break
            value_type = parent.type.get_canonical()
        if value_type.kind not in ARITHMETIC:
            return
        name = value_type.spelling.replace("const ", "").replace("volatile ", "")
        self.add(cursor, file, function, parents, self.around(cursor, file, parents), f"{text} becomes one more",
                 f"::panelkitMutants::up<{name}>(@, ", ")")

    def negated(self, condition, file, function, parents, change):
        inner = condition
        while inner.kind in (CursorKind.UNEXPOSED_EXPR, CursorKind.PAREN_EXPR):
            children = list(inner.get_children())
            if len(children) != 1:
                break
            inner = children[0]
        if inner.kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            return
        # Turning "==" is the same change.
        if inner.kind in (CursorKind.BINARY_OPERATOR, CursorKind.CALL_EXPR):
            operands = list(inner.get_children()) if inner.kind == CursorKind.BINARY_OPERATOR \
                else list(inner.get_arguments())
            if len(operands) == 2 and (inner.kind == CursorKind.BINARY_OPERATOR or "operator" in inner.spelling):
                between = file.text(operands[0].extent.end.offset, operands[1].extent.start.offset).strip()
                if between in ("==", "!="):
                    return
        self.add(condition, file, function, parents, self.code_of(condition, file), change,
                 "(static_cast<bool>(", f") != {CHOSEN})", outer=True)

    def statement(self, cursor, file, function, parents):
        """A call that stands as a statement of its own is dropped."""
        parent = parents[-1]
        end = cursor.extent.end.offset
        rest = re.match(rb"\s*;", file.data[end:])
        inner = cursor
        while inner.kind == CursorKind.UNEXPOSED_EXPR:
            children = list(inner.get_children())
            if len(children) != 1:
                return
            inner = children[0]
        if inner.kind != CursorKind.CALL_EXPR or not rest:
            return
        if parent.kind == CursorKind.COMPOUND_STMT:
            pass
        elif parent.kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.FOR_STMT,
                             CursorKind.CXX_FOR_RANGE_STMT, CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT):
            # The condition is no statement; it is followed by ")" except between the ";" of a "for".
            before = file.data[:cursor.extent.start.offset].rstrip()
            if not (before.endswith((b")", b"else", b":"))):
                return
        else:
            return
        self.add(cursor, file, function, parents, self.code_of(cursor, file), "the call is dropped",
                 f"{{ if (!{CHOSEN}) ", " }", end=end + rest.end(), outer=True)

    def add(self, cursor, file, function, parents, code, change, before, after, middle=None, end=None, outer=False):
        start = cursor.extent.start.offset
        end = end or cursor.extent.end.offset
        if file.is_in_macro(start, cursor.extent.end.offset):
            return
        constant = None
        for parent in parents:
            if parent.kind in (CursorKind.VAR_DECL, CursorKind.FIELD_DECL):
                match = re.search(r"\bconstexpr\b", file.text(parent.extent.start.offset, parent.location.offset))
                if match:
                    constant = parent.extent.start.offset + match.start()
        mutant = Mutant(file.name, file.line(start), function or "-", code, change, start, end, before, after, middle,
                        constant, len(parents) - (0.5 if outer else 0),
                        last_line=file.line(end))
        place = (file.name, start, end, change)
        self.found.setdefault(place, mutant)


def number_repeated(mutants):
    """Changes that look alike within one function are told apart by their order."""
    seen = {}
    for mutant in sorted(mutants, key=lambda mutant: (mutant.file, mutant.start, mutant.depth, mutant.end)):
        count = seen[mutant.key] = seen.get(mutant.key, 0) + 1
        if count > 1:
            mutant.change += f" ({count})"
