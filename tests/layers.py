#!/usr/bin/env python3
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Checks that each folder keeps to its layer; prints FILE:LINE of each line that does not, and what to do."""
import re
import subprocess
import sys

# What each folder may include from, besides itself.
BELOW = {
    "qtsparql": [],
    "src": ["qtsparql"],
    "reader": ["qtsparql", "src"],
    "models": ["src", "reader"],
    "qml": ["src", "reader", "models"],
    "feeds": ["src", "reader"],
    "plugins": ["qtsparql", "src", "reader", "feeds"],
    "tools": ["qtsparql", "src", "reader", "models"],
    "tools/desktop": ["src", "reader", "models"],
    "examples": ["qtsparql", "src", "reader", "models"],
}
STATEMENT_FILES = ["src/storestatements.cpp", "reader/statements.cpp"]
# Its help shows queries of users.
HELP_FILE = "tools/tidel/query.cpp"
# SQL: what is left of a damaged database is read with it, and the index for searches is written with it.
SQL_FILES = ["reader/damagedtables.cpp", "reader/searchindex.cpp"]

SPARQL = re.compile(r"\bSELECT .*?(WHERE|\{)|\b(INSERT|DELETE) (DATA )?\{|\bVALUES \?|\bFILTER\b"
                    r"|\?:?\w+ (a|nie:\w+|mfo:\w+|nao:\w+) |(?<![:\w])tidel:[a-z]\w*")
SPARQL_HEADER = re.compile(r"QSparql\w*|qsparql\w*\.h")
NOT_FOR_READER = re.compile(
    r"#\s*include\s*[<\"](QNetwork\w*|QtNetwork\b.*|signal\.h|csignal|termios\.h|sys/ioctl\.h)[>\"]"
    r"|\b(isatty|stdout|stderr|v?f?printf|f?puts|qInfo|std::cout|std::cerr)\b")
WINDOW_NETWORK = re.compile(r"QNetwork|QtNetwork")
WINDOW_PICTURES = re.compile(r"/(article|icons)/")
INCLUDE = re.compile(r"^\s*#\s*include\s*[<\"]([^>\"]+)[>\"]", re.MULTILINE)
STRING = r'"(?:\\.|[^"\\\n])*"'
STRINGS = re.compile(rf"{STRING}(?:\s*{STRING})*")
COMMENT_OR_STRING = re.compile(rf"//[^\n]*|/\*.*?\*/|{STRING}|'(?:\\.|[^'\\\n])+'", re.DOTALL)

failed = False


def report(finding, advice):
    """Prints a finding and what to do about it."""
    global failed
    failed = True
    print(f"{finding}\n    {advice}")


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def without_comments(text):
    """Returns text with blanks in place of comments, so that lines keep their numbers."""
    def blank(match):
        comment = match[0].startswith("/")
        return re.sub(r"[^\n]", " ", match[0]) if comment else match[0]
    return COMMENT_OR_STRING.sub(blank, text)


def check_statements(path, text):
    for literal in STRINGS.finditer(text):
        if match := SPARQL.search(re.sub(r'"\s*"', "", literal[0])):
            report(f"{path}:{line_of(text, literal.start())}: SPARQL text \"{match[0]}\"",
                   f"Move the statement to {' or '.join(STATEMENT_FILES)} and call it from here.")


def layer_of(path):
    """Returns the innermost folder of BELOW that path is in."""
    return max((folder for folder in BELOW if path.startswith(f"{folder}/")), key=len)


def check_includes(path, text, owners):
    layer = layer_of(path)
    for match in INCLUDE.finditer(text):
        name = match[1]
        where = f"{path}:{line_of(text, match.start(1))}: includes <{name}>"
        if layer == "tools/desktop" and WINDOW_NETWORK.match(name) and not WINDOW_PICTURES.search(path):
            report(where, "Leave the network to the archive; the window fetches only pictures of articles and icons.")
            continue
        if layer in ("qml", "plugins", "tools", "tools/desktop") and SPARQL_HEADER.fullmatch(name):
            report(where, "Ask the store through src/ or reader/, which own every statement.")
            continue
        if layer in ("examples", "qml", "tools/desktop") and name.endswith("_p.h"):
            report(where, f"{layer}/ includes installed headers only.")
        folders = owners.get(name.split("/")[-1], set())
        if folders and not folders & {layer, *BELOW[layer]}:
            report(f"{where} of {' and '.join(sorted(folders))}/",
                   f"{layer}/ may include from {', '.join(BELOW[layer]) or 'no other folder'}: "
                   "move the code that both need to the lower folder.")


def check_reader(path, text):
    for match in NOT_FOR_READER.finditer(text):
        report(f"{path}:{line_of(text, match.start())}: \"{match[0]}\"",
               "reader/ knows no network, signals or terminal: return values from here, "
               "and leave this to plugins/ or tools/.")


def main():
    listed = subprocess.run(["git", "ls-files", *BELOW], check=True, capture_output=True, text=True).stdout
    paths = [path for path in listed.splitlines() if path.endswith((".h", ".cpp"))]
    owners = {}
    for path in paths:
        owners.setdefault(path.split("/")[-1], set()).add(layer_of(path))
    for path in paths:
        with open(path, encoding="utf-8") as source:
            text = without_comments(source.read())
        if not path.startswith("qtsparql/") and path not in [*STATEMENT_FILES, HELP_FILE] + SQL_FILES:
            check_statements(path, text)
        check_includes(path, text, owners)
        if path.startswith("reader/"):
            check_reader(path, text)
    return 1 if failed else 0


sys.exit(main())
