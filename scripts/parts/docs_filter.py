#!/usr/bin/env python3
"""Prepares a page of docs/ for doxygen: gives headings the anchors that Markdown links use, turns such links into
those of doxygen, and replaces a comment "picture: NAME" by the picture.

usage: scripts/parts/docs_filter.py PAGE
"""
import pathlib
import re
import sys

page = pathlib.Path(sys.argv[1])


def label(name, anchor=''):
    return f'guide-{name}' + (f'-{anchor}' if anchor else '')


def heading(match):
    marks, text = match.groups()
    anchor = '' if marks == '#' else re.sub(r'[^\w\- ]', '', text.lower()).replace(' ', '-')
    return f'{marks} {text} {{#{label(page.stem, anchor)}}}'


def link(match):
    text, name, anchor = match.groups()
    return f'@ref {label(pathlib.Path(name).stem if name else page.stem, anchor)} "{text}"'


def code(match):
    """Code with a backslash or a quote, which doxygen would change."""
    return '<tt>' + re.sub(r'([\\<>&@"#%])', r'\\\1', match[1]) + '</tt>'


# Blocks of code do not change, but those in a language unknown to doxygen become plain text.
for part in re.split(r'(^```.*?^```\n)', page.read_text(), flags=re.M | re.S):
    if part.startswith('```'):
        part = re.sub(r'^```(?!cpp|cmake).*\n', '```{.txt}\n', part)
    elif page.parent.name == 'docs':
        part = re.sub(r'^(#+) +(.*)', heading, part, flags=re.M)
        part = re.sub(r'\[([^]]+)\]\(([\w./]+\.md)?#?([\w-]*)\)', link, part)
        part = re.sub(r'`([^`\n]*[\\"][^`\n]*)`', code, part)
        part = re.sub(r'<!-- picture: (\w+) -->', r'@dotfile \1.dot', part)
    sys.stdout.write(part)
