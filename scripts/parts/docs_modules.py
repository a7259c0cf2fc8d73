#!/usr/bin/env python3
"""Prints the list of includes in docs/architecture.md as a graph for dot.

usage: scripts/parts/docs_modules.py, in the root of the tree
"""
import pathlib
import re

page = pathlib.Path('docs/architecture.md').read_text()
rows = [line.split() for line in re.search(r'^```includes\n(.*?)^```', page, re.M | re.S)[1].splitlines()]


def reference(name):
    """The page of the header or, if it has none, of its class."""
    header = pathlib.Path(f'src/core/{name}.h')
    if not header.exists():
        return ''
    text = header.read_text()
    target = header.name if '@file' in text else re.search(r'^class ORVCORE_EXPORT (\w+)', text, re.M)[1]
    return f', URL = "@ref {target}"'


print('''digraph modules {
    rankdir = LR
    bgcolor = transparent
    node [shape = box, style = "rounded,filled", fillcolor = "#eef3f8", color = "#5b7fa6", fontname = "sans-serif", fontsize = 10]
    edge [color = "#5b7fa6", arrowsize = 0.7]''')
for name in sorted({name for row in rows for name in row}):
    print(f'    "{name}" [label = "{name}"{reference(name)}]')
for module, *others in rows:
    for other in others:
        print(f'    "{module}" -> "{other}"')
print('}')
