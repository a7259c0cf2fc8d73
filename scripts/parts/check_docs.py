#!/usr/bin/env python3
"""Compares the docs with the sources and the client: links, log lines, includes and commands.

usage: scripts/parts/check_docs.py, in the root of the tree
"""
import collections
import pathlib
import re
import subprocess
import sys

failures = []
pages = sorted([*pathlib.Path().glob('*.md'), *pathlib.Path('docs').glob('*.md')])
sources = [p for p in pathlib.Path('src/core').rglob('*') if p.suffix in ('.h', '.cpp')]


def anchors(page):
    """The anchors that common Markdown renderers give to headings."""
    prose = re.sub(r'^```.*?^```', '', page.read_text(), flags=re.M | re.S)
    for heading in re.findall(r'^#+ +(.*)', prose, re.M):
        yield re.sub(r'[^\w\- ]', '', heading.lower()).replace(' ', '-')


def check_links():
    for page in pages:
        for target in re.findall(r'\]\(([^)\s]+)\)', page.read_text()):
            name, _, anchor = target.partition('#')
            file = page.parent / name if name else page
            if re.match(r'[a-z]+:', target):
                continue
            if not file.exists() or (anchor and anchor not in anchors(file)):
                failures.append(f'{page}: broken link: {target}')
        for path in re.findall(r'`((?:benchmarks|cmake|docs|examples|fuzz|src|tests|tools)/[\w./-]*)`', page.read_text()):
            if not pathlib.Path(path).exists():
                failures.append(f'{page}: no such file: {path}')


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


def check_includes():
    block = re.search(r'^```includes\n(.*?)^```', pathlib.Path('docs/architecture.md').read_text(), re.M | re.S)[1]
    listed = {module: set(others) for module, *others in map(str.split, block.splitlines())}
    found = collections.defaultdict(set)
    for source in sources:
        module = re.sub(r'(_p)?\.\w+$', '', str(source.relative_to('src/core')))
        for other in re.findall(r'#include <core/(\S+?)(?:_p)?\.h>', source.read_text()):
            if other not in (module, 'log', 'orvcore_export') and module != 'orvcore':
                found[module].add(other)
    if listed != found:
        failures.append(f'docs/architecture.md lists {listed}, but the sources include {dict(found)}')


def check_rooms():
    """The layers of the client: each includes only layers below it, and the checks only the listed files."""
    block = re.search(r'^```rooms\n(.*?)^```', pathlib.Path('docs/architecture.md').read_text(), re.M | re.S)[1]
    told = {room: set(others) for room, *others in map(str.split, block.splitlines())}
    found = {room: set() for room in told}
    for source in pathlib.Path('tools/orv').rglob('*.[hc]*'):
        room = str(source.relative_to('tools/orv').with_suffix('')).split('/')[0]
        for other in re.findall(r'#include "(\S+)\.h"', source.read_text()):
            if other.split('/')[0] != room:
                found[room].add(other if room == 'checks' else other.split('/')[0])
    if told != found:
        failures.append(f'docs/architecture.md tells {told}, but the client includes {found}')
    order = [*told]
    for room, others in told.items():
        failures.extend(f'the room {room} includes {other}, which is not below it' for other in others
                        if order.index(other.split('/')[0]) <= order.index(room))


def check_html():
    """All links between the built pages, and to places in them."""
    folder = pathlib.Path('build/docs/html')
    html = {page.name: page.read_text() for page in folder.glob('*.html')}
    places = {name: set(re.findall(r'(?:id|name)="([^"]+)"', text)) for name, text in html.items()}
    links = 0
    for name, text in html.items():
        for target in re.findall(r'(?:href|src)="([^"]+)"', text):
            file, _, place = target.partition('#')
            if re.match(r'[a-z]+:', target):
                continue
            links += 1
            if not (folder / file).exists() or (place and place not in places.get(file or name, ())):
                failures.append(f'{folder / name}: broken link: {target}')
    return links


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


check_links()
links = check_html()
check_commands()
log_lines = check_log_lines()
check_includes()
check_rooms()
print(f'check-docs: {len(pages)} pages, {links} links between built ones, {log_lines} log lines')
for failure in failures:
    print(failure, file=sys.stderr)
sys.exit(bool(failures) or not log_lines or not links)
