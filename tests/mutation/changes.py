"""Finds the places of a C++ source where one small change makes another program.

Works on the text, as laid out by the project's formatter: binary operators stand between spaces,
the brackets of templates do not, pointers and references stand with their type.
"""
import re
from dataclasses import dataclass

KINDS = ("comparison", "sign", "index", "constant", "statement", "status")


@dataclass(frozen=True)
class Change:
    path: str
    begin: int
    end: int
    replacement: str
    kind: str

    def applied(self, text):
        return text[:self.begin] + self.replacement + text[self.end:]

    def lines(self, text):
        """The changed lines before and after, each as one line with single spaces."""
        first = text.rfind("\n", 0, self.begin) + 1
        last = text.find("\n", self.end)
        before = text[first:last]
        after = text[first:self.begin] + self.replacement + text[self.end:last]
        return " ".join(before.split()), " ".join(after.split())

    def line_number(self, text):
        return text.count("\n", 0, self.begin) + 1


NOT_CODE = re.compile(
    r"""//[^\n]* | /\*.*?\*/ | ^[ ]*\#(?:[^\n]*\\\n)*[^\n]* | "(?:[^"\\\n]|\\.)*" |
        (?<![0-9a-fA-F])'(?:[^'\\\n]|\\.)+' | static_assert\([^;]*; | \btemplate\ <[^;{]*?>\n |
        ^[ ]*using\ [^;]*; | \bprefetch(?:_to_write)?\([^;]*; | \[\[\w+\]\] | \balignas\([^)]*\)""",
    re.VERBOSE | re.MULTILINE | re.DOTALL)


def code_only(text):
    """The text with everything that is not to be changed blanked out, position by position."""
    return NOT_CODE.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), text)


SWAPS = [
    ("comparison", r"(?<= )(?:<=|>=|==|!=|<|>)(?=\s)",
     {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",),
      "!=": ("==",)}),
    ("comparison", r"(?<= )(?:&&|\|\|)(?=\s)", {"&&": ("||",), "||": ("&&",)}),
    ("comparison", r"!(?=[\w(])", {"!": ("",)}),
    ("comparison", r"std::m(?:in|ax)\b(?!_)",
     {"std::min": ("std::max",), "std::max": ("std::min",)}),
    ("sign", r"(?<= )[-+*/](?=\s)", {"+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",)}),
    ("sign", r"(?<= )[-+*/]=(?=\s)",
     {"+=": ("-=", "="), "-=": ("+=", "="), "*=": ("/=", "="), "/=": ("*=", "=")}),
    ("sign", r"(?<=[\s(\[{])-(?=[\w(])", {"-": ("",)}),
    ("sign", r"(?<= )(?:&|\||\^|<<|>>)(?=\s)",
     {"&": ("|",), "|": ("&",), "^": ("&", "|"), "<<": (">>",), ">>": ("<<",)}),
    ("constant", r"\b(?:true|false)\b", {"true": ("false",), "false": ("true",)}),
    ("status", r"\b(?:success|out_of_memory)\b(?!\()",
     {"success": ("out_of_memory", "bad_argument(1)"), "out_of_memory": ("success",)}),
]

NUMBER = re.compile(
    r"(?<![\w.])(?:0x[0-9a-fA-F]+|\d+\.\d*(?:e[-+]?\d+)?|\d+(?:e[-+]?\d+)?)u?(?![\w.])")
STATUS = re.compile(r"\bbad_argument\((\d+)\)")
# A subscript of an array's declaration or of a parameter: the size of an array.
SIZE = re.compile(r"(?:[\w>*&] \w+|\))$")
KEYWORD_BEFORE = re.compile(r"\b(?:return|else|case) \w+$")


def numbers_beside(text):
    if text.startswith("0x"):
        return (f"({text} + 1)", f"({text} - 1)")
    if re.fullmatch(r"\d+u?", text):
        value, unsigned = int(text.rstrip("u")), text.endswith("u") * "u"
        beside = (value + 1, value - 1) if value > 0 else (value + 1,)
        return tuple(f"{v}{unsigned}" for v in beside)
    return ("1.0",) if float(text) == 0.0 else (f"(2.0 * {text})", f"(0.5 * {text})")


def subscripts(code):
    """Begin and end of what stands between the brackets of a subscript, and of a declared size."""
    used, sizes = [], []
    for opening in re.finditer(r"(?<=[\w)\]])\[", code):
        depth, end = 1, opening.end()
        while depth and end < len(code):
            depth += {"[": 1, "]": -1}.get(code[end], 0)
            end += 1
        inside = (opening.end(), end - 1)
        before = code[max(0, opening.start() - 60):opening.start()]
        declares = SIZE.search(before) and not KEYWORD_BEFORE.search(before)
        if code[inside[0]:inside[1]].strip():
            (sizes if declares else used).append(inside)
    return used, sizes


CONTROLLED = re.compile(r"(?:\b(?:if|for|while)\b(?: constexpr)? ?)$")
JUMP = re.compile(r"(?:return|continue|break)\b")
EFFECT = re.compile(r"(?:\(void\))?[\w:.*>\[\]()+-]+(?: [-+*/|&^%]?=|(?: <<| >>)=|\(| \?)|\+\+|--")
NOT_DROPPED = re.compile(r"(?:using|typedef|friend|static|extern|namespace|template|public|private|"
                         r"case|default|class|struct|enum|inline|constexpr|explicit)\b")


def statements(code):
    """Begin and end of statements with an effect, and of jumps behind a condition."""
    opened, begin, controlled = [], 0, False
    for at, sign in enumerate(code):
        if sign in "([":
            opened.append(at)
        elif sign in ")]" and opened:
            start = opened.pop()
            if not opened and sign == ")" and CONTROLLED.search(code[max(0, start - 16):start]):
                begin, controlled = at + 1, True
        elif sign in "{}":
            # The body of a lambda stands within an argument list: its statements are not taken.
            if not opened:
                begin, controlled = at + 1, False
        elif sign == ";" and not opened:
            body = code[begin:at]
            start = begin + len(body) - len(body.lstrip())
            if code.startswith("else", start) and not code.startswith("else if", start):
                start += 5
                controlled = True
            text = code[start:at].strip()
            jumps = controlled and JUMP.match(text)
            if jumps or EFFECT.match(text) and not NOT_DROPPED.match(text):
                yield start + len(code[start:at]) - len(code[start:at].lstrip()), at
            begin, controlled = at + 1, False


def changes(path, text):
    """All changes of a source, as lists of alternatives for one place."""
    code = code_only(text)
    places = []

    def place(kind, begin, end, replacements):
        places.append([Change(path, begin, end, r, kind) for r in replacements])

    for kind, pattern, swaps in SWAPS:
        for found in re.finditer(pattern, code):
            place(kind, found.start(), found.end(), swaps[found.group()])
    used, sizes = subscripts(code)
    for begin, end in used:
        inside = code[begin:end]
        if re.fullmatch(r"\d+u?", inside):
            place("index", begin, end, numbers_beside(inside))
        else:
            place("index", begin, end, (f"({text[begin:end]}) + 1", f"({text[begin:end]}) - 1"))
    for found in STATUS.finditer(code):
        number = int(found.group(1))
        beside = (number + 1, number - 1) if number > 1 else (number + 1,)
        place("status", found.start(1), found.end(1), tuple(map(str, beside)))
    taken = used + sizes + [found.span() for found in STATUS.finditer(code)]
    for found in NUMBER.finditer(code):
        if not any(begin <= found.start() < end for begin, end in taken):
            place("constant", found.start(), found.end(), numbers_beside(found.group()))
    for begin, end in statements(code):
        place("statement", begin, end, ("",))
    return places
