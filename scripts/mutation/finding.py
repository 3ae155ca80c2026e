"""Finds the mutants of C++ files: one small change of behaviour each.

Positions are byte offsets in the unmodified file. A mutant changes one place,
or, for a named constant, every place of the mutated folder that uses it."""

import collections
import ctypes

from clang import cindex

Kind = cindex.CursorKind

# Where a mutant takes effect. As an EXPRESSION `mutated` stands in for the text
# from start to end, as a CONDITION for its truth (the text may be a pointer);
# as a STATEMENT it runs instead of the statement.
Site = collections.namedtuple("Site", "file start end form mutated")
STATEMENT, CONDITION, EXPRESSION = range(3)  # outer ones of a place first

# What the author sees: `original` at file:line becomes `mutated`.
Mutant = collections.namedtuple("Mutant", "file line column kind original mutated sites")

COMPARISONS = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
    "==": ("!=",), "!=": ("==",),
}
LOGIC = {"&&": ("||",), "||": ("&&",)}
ARITHMETIC = {
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",), "&": ("|",), "|": ("&",),
    "^": ("&",), "<<": (">>",), ">>": ("<<",),
}
COMPOUND = {f"{old}=": tuple(f"{new}=" for new in news) for old, news in ARITHMETIC.items()}

# Calls that nobody can observe.
UNOBSERVABLE = {"reserve", "squeeze"}
LOCKS = {"QMutexLocker"}
CHECKS = ("FATAL_CHECK(",)  # macros that are statements
LOGS = ("qDebug(",)
INTEGERS = {
    cindex.TypeKind.BOOL: False, cindex.TypeKind.ENUM: True, cindex.TypeKind.CHAR_S: True,
    cindex.TypeKind.UCHAR: True, cindex.TypeKind.SCHAR: True, cindex.TypeKind.SHORT: True,
    cindex.TypeKind.USHORT: True, cindex.TypeKind.INT: True, cindex.TypeKind.UINT: True,
    cindex.TypeKind.LONG: True, cindex.TypeKind.ULONG: True, cindex.TypeKind.LONGLONG: True,
    cindex.TypeKind.ULONGLONG: True,
}
SCOPES = {
    Kind.TRANSLATION_UNIT, Kind.NAMESPACE, Kind.CLASS_DECL, Kind.STRUCT_DECL,
}
FUNCTIONS = {
    Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.CONVERSION_FUNCTION,
    Kind.FUNCTION_TEMPLATE,
}
LOOPS = {Kind.FOR_STMT, Kind.WHILE_STMT, Kind.CXX_FOR_RANGE_STMT}


def _spelled(location):
    """File name and offset where the text of a place stands, also inside the
    arguments of a macro."""
    function = cindex.conf.lib.clang_getSpellingLocation
    pointers = [ctypes.POINTER(ctypes.c_uint)] * 3
    function.argtypes = [cindex.SourceLocation, ctypes.POINTER(cindex.c_object_p), *pointers]
    file, line, column, offset = cindex.c_object_p(), *(ctypes.c_uint() for _ in range(3))
    function(location, ctypes.byref(file), *map(ctypes.byref, (line, column, offset)))
    return (cindex.File(file).name if file else None), offset.value


def _bare(cursor):
    """The expression below implicit conversions and parentheses."""
    while cursor.kind in (Kind.UNEXPOSED_EXPR, Kind.PAREN_EXPR):
        children = list(cursor.get_children())
        if len(children) != 1:
            break
        cursor = children[0]
    return cursor


def _is_bool(cursor):
    return cursor.type.get_canonical().kind == cindex.TypeKind.BOOL


def is_named_constant(declaration):
    """An enumerator with a value of its own, or a const integer outside functions."""
    if declaration is None or not list(declaration.get_children()):
        return False
    if declaration.kind == Kind.ENUM_CONSTANT_DECL:
        return True
    kind = declaration.type.get_canonical()
    return (declaration.kind == Kind.VAR_DECL and kind.is_const_qualified()
            and INTEGERS.get(kind.kind, False)
            and declaration.semantic_parent.kind in SCOPES)


class Finder:
    """Collects the mutants of one translation unit in files that `name_of` knows:
    it turns a path into a file's name, or None for files of others."""

    def __init__(self, name_of):
        self._name_of = name_of
        self._texts = {}
        self._found = {}
        self._macros = set()  # places of macros that are used

    def find(self, unit):
        ours = [top for top in unit.cursor.get_children()
                if top.location.file and self._name_of(top.location.file.name)]
        for top in ours:
            if top.kind == Kind.MACRO_INSTANTIATION:
                self._macros.add(self._range(top))
        for top in ours:
            self._visit(top, "")
        return list(self._found.values())

    # Text and places.

    def _text(self, path):
        if path not in self._texts:
            with open(path, "rb") as file:
                self._texts[path] = file.read()
        return self._texts[path]

    def _range(self, cursor):
        """(path, start, end) of a node in one of our files, or None."""
        path, start = _spelled(cursor.extent.start)
        end_path, end = _spelled(cursor.extent.end)
        file = cursor.location.file
        if path is None or path != end_path or end <= start or file is None or file.name != path:
            return None
        return (path, start, end) if self._name_of(path) else None

    def _place(self, cursor):
        """The node's range if it is written out there, and not by a macro."""
        place = self._range(cursor)
        return None if place in self._macros else place

    def _source(self, place):
        path, start, end = place
        return self._text(path)[start:end].decode()

    def _operator(self, left, right):
        """The text between two operands."""
        a, b = self._place(left), self._place(right)
        if not a or not b or a[0] != b[0] or a[2] >= b[1]:
            return ""
        return self._source((a[0], a[2], b[1])).strip()

    def _line_and_column(self, path, offset):
        text = self._text(path)
        return text.count(b"\n", 0, offset) + 1, offset - text.rfind(b"\n", 0, offset)

    # Recording.

    def _add(self, kind, place, mutated, form=EXPRESSION, shown=None):
        path, start, end = place
        name = self._name_of(path)
        site = Site(name, start, end, form, mutated)
        key = (name, start, end, form, mutated)
        self._found[key] = Mutant(name, *self._line_and_column(path, start), kind,
                                  self._source(place), mutated if shown is None else shown, [site])

    def _add_use(self, declaration, place):
        """One more use of a named constant."""
        declared = self._place(declaration)
        if not declared:
            return
        path, start, _ = declared
        name = self._name_of(path)
        original = self._source(declared)
        for step in (1, -1):
            mutated = f"movedConstant({self._source(place)}, {step})"
            site = Site(self._name_of(place[0]), place[1], place[2], EXPRESSION, mutated)
            mutant = self._found.setdefault(
                (name, start, "constant", step),
                Mutant(name, *self._line_and_column(path, start), "constant", original,
                       f"{original} {'+' if step > 0 else '-'} 1", []))
            if site not in mutant.sites:
                mutant.sites.append(site)

    # The walk. `returns` is the result type of the function around, or "".

    def _visit(self, cursor, returns):
        kind = cursor.kind
        if kind in FUNCTIONS:
            returns = cursor.result_type.spelling
        elif kind == Kind.LAMBDA_EXPR:
            returns = ""
        handler = self._HANDLERS.get(kind)
        if handler:
            handler(self, cursor, returns)
        for child in self._mutable_children(cursor):
            self._visit(child, returns)

    def _mutable_children(self, cursor):
        """Without those that the language wants to be constant."""
        children = list(cursor.get_children())
        if cursor.kind == Kind.CASE_STMT:
            return children[1:]
        if cursor.kind in (Kind.ENUM_DECL, Kind.STATIC_ASSERT, Kind.DECL_REF_EXPR):
            return []
        if cursor.kind in (Kind.VAR_DECL, Kind.FIELD_DECL):
            if is_named_constant(cursor):
                return []
            kind = cursor.type.get_canonical().kind
            if kind == cindex.TypeKind.RECORD:  # without arguments of its template
                return [c for c in children if not _bare(c).kind.name.endswith("_LITERAL")]
            if kind == cindex.TypeKind.CONSTANTARRAY:
                return [c for c in children if _bare(c).kind in (Kind.INIT_LIST_EXPR, Kind.CALL_EXPR)]
        return children

    def _binary(self, cursor, _):
        left, right = list(cursor.get_children())
        self._operands(cursor, left, right, {**COMPARISONS, **LOGIC, **ARITHMETIC})
        if self._operator(left, right) in LOGIC:
            self._condition(left)
            self._condition(right)

    def _compound(self, cursor, _):
        self._operands(cursor, *cursor.get_children(), COMPOUND)

    def _operands(self, cursor, left, right, table):
        place, old = self._place(cursor), self._operator(left, right)
        if not place:
            return
        kinds = {**dict.fromkeys(COMPARISONS, "comparison"), **dict.fromkeys(LOGIC, "logic")}
        for new in table.get(old, ()):
            a, b = self._source(self._place(left)), self._source(self._place(right))
            self._add(kinds.get(old, "arithmetic"), place, f"{a} {new} {b}")

    def _condition(self, cursor):
        """Negates what is neither a comparison nor made of conditions: those have
        mutants of their own."""
        bare = _bare(cursor)
        place = self._place(cursor)
        if not place or not cursor.kind.is_expression():
            return
        if bare.kind in (Kind.BINARY_OPERATOR, Kind.CXX_BOOL_LITERAL_EXPR):
            return
        if bare.kind == Kind.UNARY_OPERATOR and self._source(self._place(bare) or place)[0] == "!":
            return
        if bare.kind == Kind.CALL_EXPR and bare.spelling.removeprefix("operator") in COMPARISONS:
            return
        self._add("negation", place, f"!({self._source(place)})", CONDITION)

    def _unary(self, cursor, _):
        place = self._place(cursor)
        operand = next(cursor.get_children())
        inside = self._place(operand)
        if not place or not inside:
            return
        text = self._source(place)
        if text[0] == "!":
            self._add("negation", place, self._source(inside), CONDITION)
        elif text[0] in "-~" and text[1] != "-" and operand.kind != Kind.INTEGER_LITERAL:
            self._add("arithmetic", place, self._source(inside))

    def _call(self, cursor, _):
        arguments = list(cursor.get_arguments())
        operator = cursor.spelling.removeprefix("operator")
        if operator in COMPARISONS and len(arguments) == 2:
            if self._operator(*arguments) == operator:
                self._operands(cursor, *arguments, COMPARISONS)

    def _conditional(self, cursor, _):
        self._condition(next(cursor.get_children()))

    def _if(self, cursor, returns):
        children = list(cursor.get_children())
        self._condition(children[0])
        for body in children[1:]:
            self._statement(body, returns)

    def _loop(self, cursor, returns):
        *head, body = cursor.get_children()
        for part in head:
            if cursor.kind != Kind.CXX_FOR_RANGE_STMT and _is_bool(part):
                self._condition(part)
        self._statement(body, returns)

    def _do(self, cursor, returns):
        body, condition = cursor.get_children()
        self._condition(condition)
        self._statement(body, returns)

    def _compound_statement(self, cursor, returns):
        for child in cursor.get_children():
            self._statement(child, returns)

    def _labelled(self, cursor, returns):
        self._statement(list(cursor.get_children())[-1], returns)

    def _statement(self, cursor, returns):
        bare = _bare(cursor)
        place = self._place(cursor)
        if not place:
            place = self._range(cursor)
            if place and self._source(place).startswith(CHECKS):
                self._add("removed check", place, "", STATEMENT)
            return
        if bare.kind == Kind.RETURN_STMT:
            self._return(bare, place, returns)
        elif bare.kind == Kind.CONTINUE_STMT:
            self._add("removed jump", place, "", STATEMENT)
        elif bare.spelling in UNOBSERVABLE or self._source(place).startswith(LOGS):
            pass
        elif bare.kind == Kind.CALL_EXPR:
            assigns = bare.spelling == "operator="
            self._add("removed assignment" if assigns else "removed call", place, "", STATEMENT)
        elif bare.kind in (Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR,
                           Kind.UNARY_OPERATOR):
            self._add("removed assignment", place, "", STATEMENT)

    def _return(self, cursor, place, returns):
        values = list(cursor.get_children())
        if not values:
            self._add("removed jump", place, "", STATEMENT)
            return
        value = _bare(values[0])
        if returns == "bool":
            self._condition(values[0])
        elif returns and not returns.endswith("&") and not self._is_empty(value):
            self._add("return value", place, "return {};", STATEMENT, "return {}")

    def _is_empty(self, value):
        """A value that `return {}` gives as well, or that has mutants of its own."""
        if value.kind in (Kind.INTEGER_LITERAL, Kind.CXX_NULL_PTR_LITERAL_EXPR):
            return True
        place = self._place(value)
        return place is not None and self._source(place) == f"{value.type.spelling}()"

    def _integer(self, cursor, _):
        place = self._place(cursor)
        if place:
            text = self._source(place)
            self._add("constant", place, f"{text} + 1")
            self._add("constant", place, f"{text} - 1")

    def _character(self, cursor, _):
        place = self._place(cursor)
        if place:
            self._add("constant", place, f"{cursor.type.spelling}({self._source(place)} + 1)")

    def _floating(self, cursor, _):
        place = self._place(cursor)
        if place:
            self._add("constant", place, f"{self._source(place)} + 1")

    def _bool(self, cursor, _):
        place = self._place(cursor)
        if place:
            self._add("bool", place, "false" if self._source(place) == "true" else "true")

    def _reference(self, cursor, _):
        place = self._place(cursor)
        if place and is_named_constant(cursor.referenced):
            self._add_use(cursor.referenced, place)

    def _variable(self, cursor, _):
        """A lock: without its mutex it locks nothing."""
        if cursor.type.spelling not in LOCKS:
            return
        for call in cursor.get_children():
            arguments = list(call.get_arguments()) if call.kind == Kind.CALL_EXPR else []
            place = self._place(arguments[0]) if arguments else None
            if place:
                self._add("removed lock", place, "nullptr")

    _HANDLERS = {
        Kind.BINARY_OPERATOR: _binary,
        Kind.COMPOUND_ASSIGNMENT_OPERATOR: _compound,
        Kind.UNARY_OPERATOR: _unary,
        Kind.CALL_EXPR: _call,
        Kind.CONDITIONAL_OPERATOR: _conditional,
        Kind.IF_STMT: _if,
        Kind.DO_STMT: _do,
        **dict.fromkeys(LOOPS, _loop),
        Kind.COMPOUND_STMT: _compound_statement,
        Kind.CASE_STMT: _labelled,
        Kind.DEFAULT_STMT: _labelled,
        Kind.INTEGER_LITERAL: _integer,
        Kind.CHARACTER_LITERAL: _character,
        Kind.FLOATING_LITERAL: _floating,
        Kind.CXX_BOOL_LITERAL_EXPR: _bool,
        Kind.DECL_REF_EXPR: _reference,
        Kind.VAR_DECL: _variable,
    }
