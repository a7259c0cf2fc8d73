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

tree = ElementTree.parse(sys.argv[1])
folder = pathlib.Path(sys.argv[2]).resolve()
headers = [path for pattern in ('*.h', '*.h.in') for path in folder.rglob(pattern) if not path.name.endswith('_p.h')]
types = {node.get('id'): node for node in tree.iter() if node.get('id')}
scopes = {}


def note_scopes(node, scope):
    for child in node:
        named = child.tag in ('class-decl', 'union-decl', 'enum-decl', 'namespace-decl', 'typedef-decl')
        if child.get('id'):
            scopes[child.get('id')] = scope
        note_scopes(child, f'{scope}{child.get("name")}::' if named else scope)


def type_name(identifier):
    node = types[identifier]
    if node.tag in ('pointer-type-def', 'reference-type-def', 'qualified-type-def'):
        inner = type_name(node.get('type-id'))
        if node.tag == 'pointer-type-def':
            return inner + '*'
        if node.tag == 'reference-type-def':
            return inner + ('&' if node.get('kind') == 'lvalue' else '&&')
        return ' '.join([word for word in ('const', 'volatile') if node.get(word) == 'yes'] + [inner])
    if node.tag == 'array-type-def':
        return type_name(node.get('type-id')) + ''.join(f'[{range.get("length")}]' for range in node)
    return scopes[identifier] + node.get('name', node.tag)


def demangled(names):
    output = subprocess.run(['c++filt'], input='\n'.join(names), capture_output=True, text=True, check=True).stdout
    return dict(zip(names, output.splitlines()))


def is_public(node):
    path = node.get('filepath')
    return path is not None and pathlib.Path(path).resolve() in headers and not node.get('is-declaration-only')


def record(node, name):
    lines = []
    for base in node.findall('base-class'):
        lines.append((int(base.get('layout-offset-in-bits')), f'base {type_name(base.get("type-id"))}'))
    for member in node.findall('data-member'):
        if member.get('static') != 'yes':
            variable = member.find('var-decl')
            lines.append((int(member.get('layout-offset-in-bits')),
                          f'{type_name(variable.get("type-id"))} {variable.get("name")}'))
    yield int(node.get("size-in-bits")) // 8, name
    for offset, text in sorted(lines, key=lambda line: line[0]):
        yield offset // 8, f'    {text}'
    functions = [(int(function.get('vtable-offset')), function.find('function-decl').get('name'))
                 for function in node.findall('member-function') if function.get('vtable-offset')]
    for _, function in sorted(set(functions)):
        yield '', f'    virtual {function}'


def enumeration(node, name):
    underlying = types[node.find('underlying-type').get('type-id')]
    yield int(underlying.get("size-in-bits")) // 8, f'enum {name}'
    for enumerator in node.findall('enumerator'):
        yield '', f'    {enumerator.get("name")} = {enumerator.get("value")}'


note_scopes(tree.getroot(), '')
# Signatures with types as declared: "size_t" is a different type on each architecture. Constructors and destructors keep
# their demangled names, because some calling conventions give them a result.
signatures = {}
for function in tree.iter('function-decl'):
    if not re.search('[CD][0-3]E', function.get('mangled-name', 'C1E')):
        parameters = ', '.join(type_name(parameter.get('type-id')) for parameter in function.findall('parameter')
                               if not parameter.get('is-artificial'))
        result = type_name(function.find('return').get('type-id'))
        signatures[function.get('mangled-name')] = (parameters, result)
mangled = [symbol.get('name') for symbol in tree.iter('elf-symbol') if symbol.get('is-defined') == 'yes']
names = demangled(mangled)

# The name in an exported declaration is the word before the parameters, ";" or "{".
declared = set()
for header in headers:
    for declaration in re.findall(r'ORVCORE_EXPORT\s+((?:[^;{(:]|::)*)', re.sub(r'//.*', '', header.read_text())):
        declared.add(re.search(r'(operator\S+|\w+)\s*$', declaration).group(1))
exported = set()
faults = []
for name in sorted(names.values()):
    path = re.sub(r'^(?:vtable|typeinfo|typeinfo name) for ', '', name).split('(')[0].split('::')
    exported.update(path)
    if declared.isdisjoint(path) or path[0] == 'std' or re.match(r'Q[A-Z]', path[0]):
        faults.append(f'exported, but marked in no header: {name}')
faults += [f'marked, but not exported: {name}' for name in sorted(declared - exported)]
if faults:
    sys.exit('\n'.join(faults))

lines = set()
for name, text in names.items():
    if name in signatures:
        parameters, result = signatures[name]
        text = f'{text[:text.index("(")]}({parameters}{text[text.rindex(")"):]} -> {result}'
    lines.add(text)
print('\nSymbols', *sorted(lines), sep='\n')

described = {}
for node in tree.iter():
    if node.tag in ('class-decl', 'enum-decl') and is_public(node) and '<' not in node.get('name'):
        name = scopes[node.get('id')] + node.get('name')
        described[name] = record(node, name) if node.tag == 'class-decl' else enumeration(node, name)

# The columns of the record, by the type and the text of a line.
title = 'Types; sizes and offsets in bytes on '
header, *rows = pathlib.Path(sys.argv[3]).read_text().partition(title)[2].splitlines()
architectures = header.split()
width = 5 * len(architectures)
columns = {}
owner = ''
for row in rows:
    text = row[width:]
    owner = owner if text.startswith(' ') else text
    columns[owner, text] = dict(zip(architectures, row[:width].split()))
architecture = sys.argv[4]
architectures = [*dict.fromkeys([*architectures, architecture])]

print(f'\n{title}{" ".join(architectures)}')
for name in sorted(described):
    rows = [*described[name]]
    for number, text in rows:
        cells = {**columns.get((rows[0][1], text), {}), architecture: number}
        print(*(f'{cells.get(each, "?") if number != "" else "":>4}' for each in architectures), text)
