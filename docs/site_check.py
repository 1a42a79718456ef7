#!/usr/bin/python3
"""The site shows every function of the header: site_check.py HEADER HTML_FOLDER

Each declaration has a section on a family's page, and each that returns a status has a table of
statuses there, of its own or of the overload that it refers to.
"""
import glob
import re
import sys


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        declared = re.findall(r"^VOREL_API [\w ]+[*& ]+(\w+)\(", file.read(), re.MULTILINE)
    sections = {}
    for path in glob.glob(f"{sys.argv[2]}/group__*.html"):
        with open(path, encoding="utf-8") as file:
            for section in file.read().split('<h2 class="memtitle">')[1:]:
                name = re.search(r"</a></span>(\w+)\(\)", section)
                if name:
                    sections.setdefault(name[1], []).append(section)
    wrong = []
    if len(declared) != 55:
        wrong.append(f"the header declares {len(declared)} functions, not 55")
    for name in sorted(set(declared)):
        shown = sections.get(name, [])
        if len(shown) != declared.count(name):
            wrong.append(f"{name}: {declared.count(name)} declared, {len(shown)} on the site")
        for section in shown:
            if not ('class="status"' in section or re.search(r"<p>As above", section)):
                if name != "version":
                    wrong.append(f"{name}: an overload without statuses")
    print("\n".join(wrong) or f"all {len(declared)} functions are shown")
    sys.exit(bool(wrong))


if __name__ == "__main__":
    main()
