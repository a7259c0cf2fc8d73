#!/usr/bin/env python3
"""Adds the headings of the guides and the names of the glossary to the search index; doxygen adds only titles of pages.

usage: scripts/parts/docs_search.py, in the root of the tree
"""
import json
import pathlib
import re

search = pathlib.Path('build/docs/html/search')
# The letters with entries in the first category, which contains all entries.
letters = json.loads(re.search(r'indexSectionsWithContent =\s*\{\s*0: ("[^"]*")', (search / 'searchdata.js').read_text())[1])

for page in sorted(pathlib.Path('build/docs/html').glob('guide-*.html')):
    html = page.read_text()
    title = re.search(r'<div class="title">(.*?)</div>', html)[1]
    headings = re.findall(r'<a class="anchor" id="(guide-[\w-]+)"></a>\s*(.*?)</h[1-6]>', html)
    if page.stem == 'guide-glossary':
        headings += [('', name) for names in re.findall(r'<td[^>]*>(.*?) *</td><td', html) for name in names.split(', ')]
    for anchor, heading in headings:
        heading = re.sub(r'<.*?>', '', heading)
        letter = letters.find(heading[0].lower())
        if letter < 0:
            raise SystemExit(f'docs: the search box has no place for "{heading}"')
        file = search / f'all_{letter:x}.js'
        entries = file.read_text()
        key = re.sub(r'[^a-z0-9]', lambda m: f'_{ord(m[0]):02x}', heading.lower())
        row = f"  ['{key}_{entries.count('../')}',['{heading}',['../{page.name}#{anchor}',1,'{title}']]]"
        file.write_text(entries.replace('\n];', f',\n{row}\n];'))
