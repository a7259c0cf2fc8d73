#!/usr/bin/env python3
"""Compares the docs with the sources and the client: links, log lines, includes and commands.

usage: scripts/parts/check_docs.py, in the root of the tree
"""
import collections
import os
import pathlib
import re
import subprocess
import sys

failures = []
sources = [p for p in pathlib.Path('src/core').rglob('*') if p.suffix in ('.h', '.cpp')]


def texts(folder, pattern):
    return {page: page.read_text() for page in sorted(pathlib.Path(folder).glob(pattern))}


def headings(text):
    """The anchors that common Markdown renderers give to headings."""
    prose = re.sub(r'^```.*?^```', '', text, flags=re.M | re.S)
    return {re.sub(r'[^\w\- ]', '', heading.lower()).replace(' ', '-') for heading in re.findall(r'^#+ +(.*)', prose, re.M)}


def check_links(pages, link, anchors_of):
    """Checks all links to files and to places in these pages. Returns their number."""
    anchors = {page: anchors_of(text) for page, text in pages.items()}
    links = [(page, target) for page, text in pages.items() for target in re.findall(link, text)
             if not re.match(r'[a-z]+:', target)]
    for page, target in links:
        name, _, anchor = target.partition('#')
        file = pathlib.Path(os.path.normpath(page.parent / name)) if name else page
        if not file.exists() or (anchor and anchor not in anchors.get(file, ())):
            failures.append(f'{page}: broken link: {target}')
    return len(links)


def check_log_lines():
    page = pathlib.Path('docs/logging.md').read_text()
    levels = collections.Counter()
    for source in sources:
        text = source.read_text()
        for call in re.findall(r'^(?! *[/*]).*\bq(?:Debug|Info|Warning|Critical|Fatal)\(.*', text, re.M):
            failures.append(f'{source}: not written with ORV_LOG: {call.strip()}')
        texts = re.findall(r'\bhere\[\] =\s*"(.*?)";', text)
        for statement in re.findall(r'(?:ORV_LOG(?:GER)?|qt_message_output)\(.*?;', text, re.S):
            level = re.search(r'ORV_LOG\((\w+),|\)\s*\.(\w+)\(|Qt(\w+)Msg', statement)
            levels[(level[1] or level[2] or level[3]).lower()] += 1
            texts += re.findall(r'"((?:[^"\\]|\\.)*)"', statement)
        for part in texts:
            words = [w.strip() for w in part.split('%s')]
            if not all(w in page for w in words):
                failures.append(f'{source}: not in docs/logging.md: {part}')
    rows = collections.Counter(re.findall(r'^\| (debug|warning|critical|fatal) ', page, re.M))
    if rows != levels:
        failures.append(f'docs/logging.md has {dict(rows)}, but the sources log {dict(levels)}')
    return sum(levels.values())


def listed(block, found):
    """The includes that a block of docs/architecture.md lists; fails if they are not those found."""
    lines = re.search(rf'^```{block}\n(.*?)^```', pathlib.Path('docs/architecture.md').read_text(), re.M | re.S)[1]
    told = {module: set(others) for module, *others in map(str.split, lines.splitlines())}
    if told != found:
        failures.append(f'docs/architecture.md lists {told}, but the sources include {found}')
    return told


def check_includes():
    found = {}
    for source in sources:
        module = re.sub(r'(_p)?\.\w+$', '', str(source.relative_to('src/core')))
        for other in re.findall(r'#include <core/(\S+?)(?:_p)?\.h>', source.read_text()):
            if other not in (module, 'log', 'orvcore_export') and module != 'orvcore':
                found.setdefault(module, set()).add(other)
    listed('includes', found)


def check_layers():
    """The layers of the client: each includes only layers below it, and the checks only the listed files."""
    found = {}
    for source in pathlib.Path('tools/orv').rglob('*.[hc]*'):
        layer = str(source.relative_to('tools/orv').with_suffix('')).split('/')[0]
        others = found.setdefault(layer, set())
        for other in re.findall(r'#include "(\S+)\.h"', source.read_text()):
            if other.split('/')[0] != layer:
                others.add(other if layer == 'checks' else other.split('/')[0])
    told = listed('layers', found)
    order = [*told]
    for layer, others in told.items():
        failures.extend(f'the layer {layer} includes {other}, which is not below it' for other in others
                        if order.index(other.split('/')[0]) <= order.index(layer))


def help_of(*words):
    return subprocess.run(['build/release/bin/orv', 'help', *words], check=True, capture_output=True, text=True).stdout


def check_commands():
    told = set(re.findall(r'^\| `orv (\w+)', pathlib.Path('README.md').read_text(), re.M))
    there = set(re.findall(r'^  (\w+) ', re.search(r'^Commands:\n(.*?)^$', help_of(), re.M | re.S)[1], re.M))
    failures.extend(f'README.md lacks: orv {command}' for command in sorted(there - told))
    failures.extend(f'orv --help lacks: {command}' for command in sorted(told - there))
    transcripts = pathlib.Path('tests/data/orv.txt').read_text()
    fields = pathlib.Path('docs/json.md').read_text()
    for command in sorted(there):
        if not re.search(rf'^\$ {command}\b', transcripts, re.M):
            failures.append(f'tests/data/orv.txt has no transcript of: orv {command}')
        if '--json' in help_of(command) and not re.search(rf'^## orv {command}\b', fields, re.M):
            failures.append(f'docs/json.md lacks: orv {command}')


pages = texts('.', '*.md') | texts('docs', '*.md')
check_links(pages, r'\]\(([^)\s]+)\)', headings)
links = check_links(texts('build/docs/html', '*.html'), r'(?:href|src)="([^"]+)"',
                    lambda html: set(re.findall(r'(?:id|name)="([^"]+)"', html)))
for page, text in pages.items():
    for path in re.findall(r'`((?:benchmarks|cmake|docs|examples|fuzz|src|tests|tools)/[\w./-]*)`', text):
        if not pathlib.Path(path).exists():
            failures.append(f'{page}: no such file: {path}')
check_commands()
log_lines = check_log_lines()
check_includes()
check_layers()
print(f'check-docs: {len(pages)} pages, {links} links between built ones, {log_lines} log lines')
for failure in failures:
    print(failure, file=sys.stderr)
sys.exit(bool(failures) or not log_lines or not links)
