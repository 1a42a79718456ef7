#!/usr/bin/python3
"""Turns the layout of the public headers' comments into what Doxygen makes tables of.

A comment in the headers reads, without any markup:

    /// Sum of the areas of all elements.
    ///
    /// coords   2 x N or 3 x N
    /// connect  3 x E, IDs
    ///          below N
    /// returns  0; -1 rows of `coords`; -2 rows or IDs of `connect`

A name, two spaces or more and a text begin an entry of a table; what stands further in continues
it. `returns` is a list of statuses in the order of the checks.
"""
import html
import re
import sys

# The families of the sections of tessalo2d.h; functions and files that belong to another one.
SECTIONS = {
    "frame": "foundation",
    "measures": "measures",
    "order conversion": "conversion",
    "splitting": "conversion",
    "extrusion": "extrusion",
    "structured grids": "structured",
    "connectivity": "structured",
    "interpolation of fields": "interpolation",
    "curvature and metric fields": "curvature",
}
FUNCTIONS = {"metrics_struct": "metrics", "minimum_metric": "metrics"}

SECTION = re.compile(r"// -{5,} (.+)")
ENTRY = re.compile(r"(\S+(?: \S+)*?) {2,}(\S.*)")
CODES = re.compile(r"((?:-?\d+)(?:, -?\d+)*)(?:$|[,.]? (?=\S))(.*)")


def cell(text):
    """Text for a cell of a table, in HTML."""
    parts = text.split("`")
    return "".join(
        f"<code>{html.escape(p, quote=False)}</code>" if i % 2 else html.escape(p, quote=False)
        for i, p in enumerate(parts)
    )


def statuses(text):
    """Rows (code, meaning) of what `returns` lists, and what stands before them."""
    # What a semicolon or a full stop separates; a new row begins with a number.
    rows = []
    for part in re.split(r"(?<=;) ", text):
        # What the head of the column says already.
        part = part.rstrip(";").replace("checked in this order: ", "")
        match = CODES.match(part)
        if match:
            rows.append([match[1], match[2].strip()])
        elif not rows:
            rows.append(["", part])
        else:
            rows[-1][1] += ("; " if rows[-1][1] else "") + part
    for row in rows:
        if not row[1]:
            row[1] = {"0": "success", "-199": "out of memory"}.get(row[0], "")
        elif row[0] == "-199" and not row[1].startswith("out of memory"):
            row[1] = "out of memory" + (" " if row[1].startswith("or ") else "; ") + row[1]
    return rows


def status_table(text):
    rows = "".join(
        f"<tr><td>{cell(code) or 'result'}</td><td>{cell(meaning)}</td></tr>"
        for code, meaning in statuses(text)
    )
    head = "<tr><th>Status</th><th>Meaning, in the order of the checks</th></tr>"
    return f'<table class="status">{head}{rows}</table>'


def table(lines):
    """The entries of a paragraph that is a table."""
    entries = []
    for line in lines:
        match = ENTRY.fullmatch(line)
        if match and not line.startswith(" "):
            entries.append([match[1], match[2]])
        else:
            entries[-1][1] += " " + line.strip()
    out = ""
    rows = ""
    for name, text in entries:
        if name == "returns" and CODES.search(text):
            out = status_table(text)
        else:
            rows += f"<tr><td>{cell(name)}</td><td>{cell(text)}</td></tr>"
    return (f'<table class="arguments">{rows}</table>' if rows else "") + out


def is_table(lines):
    """Every line is an entry or further in than the first, and the first is an entry."""
    return bool(ENTRY.fullmatch(lines[0])) and all(
        ENTRY.fullmatch(line) or line.startswith("  ") for line in lines
    )


def converted(lines):
    """The lines of a comment without its slashes, as text for Doxygen."""
    out = []
    paragraph = []

    def end():
        if not paragraph:
            return
        indent = min(len(line) - len(line.lstrip()) for line in paragraph)
        cut = [line[indent:] for line in paragraph]
        if is_table(cut):
            out.append(table(cut))
        else:
            # Prose may hold a comparison or a template argument.
            code = lambda m: f"<code>{html.escape(m[1], quote=False)}</code>"
            out.append(re.sub(r"`([^`]*)`", code, "\n".join(cut)))
        out.append("")
        paragraph.clear()

    for line in lines:
        if not line.strip():
            end()
        else:
            inner = line.startswith("  ")
            # A table may follow its sentence without a blank line between.
            if paragraph and is_table(paragraph[:1]) != is_table([line]) and not inner:
                end()
            paragraph.append(line)
    end()
    return "\n".join(out)


def take(lines, i, slashes):
    """The lines of a comment from i on, and the index behind it."""
    taken = []
    while i < len(lines) and re.match(slashes + r"(?!/)", lines[i].strip()):
        text = lines[i].strip()[len(slashes) :]
        if SECTION.match(lines[i]):
            break
        taken.append(text[1:] if text.startswith(" ") else text)
        i += 1
    return taken, i


def filtered(lines):
    family = "foundation"
    i = 0
    while i < len(lines):
        line = lines[i]
        section = SECTION.match(line)
        if section:
            family = SECTIONS[section[1]]
            body, i = take(lines, i + 1, "//")
            if any(body):
                yield f"/** \\addtogroup {family}\n\\details\n{converted(body)}*/"
        elif line.startswith("///"):
            body, i = take(lines, i, "///")
            declared = " ".join(lines[i : i + 2])
            name = re.search(r"(\w+)\(", declared)
            group = FUNCTIONS.get(name[1] if name else "", family)
            yield f"/**\n{converted(body)}\n\\ingroup {group}\n*/"
        elif line.strip().startswith("///") and not line.strip().startswith("///<"):
            body, i = take(lines, i, "///")
            yield f"/**\n{converted(body)}*/"
        else:
            yield line
            i += 1


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        print("\n".join(filtered(file.read().split("\n"))))


if __name__ == "__main__":
    main()
