#!/usr/bin/env python3
"""Prints the binary interface of a library as text: its exported symbols, and the layouts of its public types with a
column of sizes and offsets for each architecture. The columns of the other architectures are those of RECORD.

Fails if the library exports a symbol that no header marks with ORVCORE_EXPORT, or lacks one that a header marks.
usage: scripts/parts/describe_abi.py ABIDW_XML FOLDER_OF_HEADERS RECORD ARCHITECTURE
"""
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

xml, folder, record, architecture = sys.argv[1:]
tree = ElementTree.parse(xml)
types = {node.get('id'): node for node in tree.iter() if node.get('id')}
parents = {child: parent for parent in tree.iter() for child in parent}
headers = [path for path in pathlib.Path(folder).resolve().rglob('*.h*') if not path.name.endswith('_p.h')]


def scoped_name(node):
    names = [node.get('name', node.tag)]
    while (node := parents[node]) in parents:
        if node.tag in ('class-decl', 'union-decl', 'enum-decl', 'namespace-decl'):
            names.insert(0, node.get('name'))
    return '::'.join(names)


def type_of(node):
    """The name of the type that a node refers to."""
    of = types[node.get('type-id')]
    if of.tag == 'pointer-type-def':
        return type_of(of) + '*'
    if of.tag == 'reference-type-def':
        return type_of(of) + ('&' if of.get('kind') == 'lvalue' else '&&')
    if of.tag == 'qualified-type-def':
        return ''.join(f'{word} ' for word in ('const', 'volatile') if of.get(word) == 'yes') + type_of(of)
    if of.tag == 'array-type-def':
        return type_of(of) + ''.join(f'[{dimension.get("length")}]' for dimension in of)
    return scoped_name(of)


# Signatures with types as declared: "size_t" is a different type on each architecture. Constructors and destructors keep
# their demangled names, because some calling conventions give them a result.
mangled = [symbol.get('name') for symbol in tree.iter('elf-symbol') if symbol.get('is-defined') == 'yes']
demangled = subprocess.run(['c++filt', *mangled], capture_output=True, text=True, check=True).stdout.splitlines()
functions = {node.get('mangled-name', ''): node for node in tree.iter('function-decl')}
symbols = set()
for name, text in zip(mangled, demangled):
    function = functions.get(name)
    if function is not None and not re.search('[CD][0-3]E', name):
        parameters = ', '.join(type_of(each) for each in function.findall('parameter') if not each.get('is-artificial'))
        text = f'{text[:text.index("(")]}({parameters}{text[text.rindex(")"):]} -> {type_of(function.find("return"))}'
    symbols.add(text)

# The name in an exported declaration is the word before the parameters, ";" or "{".
declared = {re.search(r'(operator\S+|\w+)\s*$', declaration)[1] for header in headers for declaration in
            re.findall(r'ORVCORE_EXPORT\s+((?:[^;{(:]|::)*)', re.sub('//.*', '', header.read_text()))}
paths = {text: re.sub('^(?:vtable|typeinfo|typeinfo name) for ', '', text).split('(')[0].split('::') for text in demangled}
faults = [f'exported, but marked in no header: {text}' for text, path in sorted(paths.items())
          if declared.isdisjoint(path) or re.match('std$|Q[A-Z]', path[0])]
faults += [f'marked, but not exported: {name}' for name in sorted(declared.difference(*paths.values()))]
if faults:
    sys.exit('\n'.join(faults))
print('\nSymbols', *sorted(symbols), sep='\n')


def lines_of(node, name):
    """A type and its parts, each with a size or an offset in bytes."""
    if node.tag == 'enum-decl':
        yield types[node.find('underlying-type').get('type-id')].get('size-in-bits'), f'enum {name}'
        yield from ((None, f'    {each.get("name")} = {each.get("value")}') for each in node.findall('enumerator'))
        return
    yield node.get('size-in-bits'), name
    parts = [(each.get('layout-offset-in-bits'), f'base {type_of(each)}') for each in node.findall('base-class')]
    for member in node.findall('data-member'):
        if member.get('static') != 'yes':
            variable = member.find('var-decl')
            parts.append((member.get('layout-offset-in-bits'), f'{type_of(variable)} {variable.get("name")}'))
    yield from ((offset, f'    {text}') for offset, text in sorted(parts, key=lambda part: int(part[0])))
    virtual = {(int(each.get('vtable-offset')), each.find('function-decl').get('name'))
               for each in node.findall('member-function') if each.get('vtable-offset')}
    yield from ((None, f'    virtual {function}') for _, function in sorted(virtual))


described = {}
for node in [*tree.iter('class-decl'), *tree.iter('enum-decl')]:
    is_public = pathlib.Path(node.get('filepath', '/')).resolve() in headers and not node.get('is-declaration-only')
    if is_public and '<' not in node.get('name'):
        described[scoped_name(node)] = node

# The columns of the record, by the type and the text of a line.
title = 'Types; sizes and offsets in bytes on '
header, *rows = pathlib.Path(record).read_text().partition(title)[2].splitlines()
architectures = header.split()
width = 5 * len(architectures)
columns = {}
owner = ''
for row in rows:
    text = row[width:]
    owner = owner if text.startswith(' ') else text
    columns[owner, text] = dict(zip(architectures, row[:width].split()))
architectures = [*dict.fromkeys([*architectures, architecture])]

print(f'\n{title}{" ".join(architectures)}')
for name, node in sorted(described.items()):
    for bits, text in lines_of(node, name):
        owner = owner if text.startswith(' ') else text
        cells = {**columns.get((owner, text), {}), architecture: bits and int(bits) // 8}
        print(*(f'{"" if bits is None else cells.get(each, "?"):>4}' for each in architectures), text)
