#!/usr/bin/env python3
"""Runs orvbench and prints tables of its results: a summary by operation, how times grow with the work, and each comparison.

usage: benchmarks/report.py [--brief] [--picture FILE] ORVBENCH [FILTER]
exit code: 1 if a target does not hold
"""
import argparse
import html
import itertools
import json
import math
import os
import pathlib
import platform
import statistics
import subprocess
import sys


class Comparison:
    """An operation with one input: our run, and those of the peers."""

    def __init__(self, name, runs):
        self.operation, self.series, self.input = name
        self.ours, *self.peers = runs

    def ratio(self, peer):
        return self.ours['real_time'] / peer['real_time']

    def holds(self, peer):
        """Whether our time and our heap use are within their limits."""
        return self.ratio(peer) <= peer['target'] and all(
            self.ours.get(number, 0) <= self.ours[f'{number}Limit'] for number in ('allocations', 'heap'))


class Ratios:
    """The ratios of our time to that of a peer, for all inputs of an operation."""

    def __init__(self, rows):
        first, peer = rows[0]
        ratios = [comparison.ratio(each) for comparison, each in rows]
        self.operation, self.peer, self.target, limit = first.operation, peer['peer'], peer['target'], peer['medianTarget']
        self.input = first.input if len(rows) == 1 else None
        self.count = len(rows)
        self.median, self.worst = statistics.median(ratios), max(ratios)
        self.accepted = f'{self.target:.2f}' + (f', median {limit:.2f}' if limit < math.inf else '')
        self.holds = all(comparison.holds(each) for comparison, each in rows) and self.median <= limit


class Growth:
    """The times for each unit of work (a character, a row), smallest size first, and how they grow compared with a peer's."""
    largest_ratio = 1.25

    def __init__(self, comparisons):
        first, last = comparisons[0], comparisons[-1]
        self.operation, self.series, self.peer = first.operation, first.series, first.peers[0]['peer']
        self.smallest, self.largest = first.input, last.input
        self.ours = [each.ours['real_time'] / each.ours['work'] for each in comparisons]
        self.peers = [each.peers[0]['real_time'] / each.ours['work'] for each in comparisons]
        self.ratio = self.ours[-1] / self.ours[0] / (self.peers[-1] / self.peers[0])
        self.holds = self.ratio <= self.largest_ratio


def duration(nanoseconds):
    """In a suitable unit."""
    for unit in ('ns', 'us', 'ms', 's'):
        if nanoseconds < 1000 or unit == 's':
            return f'{nanoseconds:.{2 if nanoseconds < 10 else 1 if nanoseconds < 100 else 0}f} {unit}'
        nanoseconds /= 1000


def print_table(titles, rows):
    lines = [f'| {" | ".join(cells)} |' for cells in [titles, *rows]]
    print('', lines[0], '|' + '---|' * len(titles), *lines[1:], sep='\n')


def verdict(holds):
    return 'yes' if holds else '**no**'


def print_machine(versions):
    lines = pathlib.Path('/proc/cpuinfo').read_text().splitlines()
    models = [line.partition(': ')[2] for line in lines if line.startswith('model name')]
    system = platform.uname()
    print(f'{[*models, "unknown processor"][0]}, {os.cpu_count()} cores, {system.system} {system.machine}; {versions}')


def print_ratios(rows):
    print_table(['Operation', 'Compared with', 'Inputs', "Our time / peer's: median", 'worst', 'Target', 'Holds'], [
        [row.operation, row.peer, row.input or str(row.count), f'{row.median:.2f}', f'{row.worst:.2f}', row.accepted,
         verdict(row.holds)] for row in rows])


def print_growth(growths):
    by_operation = itertools.groupby(growths, lambda growth: growth.operation)
    worst = [max(group, key=lambda growth: growth.ratio) for _, group in by_operation]
    print_table(['Operation', 'Compared with', 'Worst of', "Our growth / peer's", 'Target', 'Holds'], [
        [row.operation, row.peer, f'{row.series}, {row.smallest} to {row.largest}', f'{row.ratio:.2f}',
         f'{row.largest_ratio:.2f}', verdict(row.holds)] for row in worst])


def print_details(comparisons):
    def peer_cell(row, peer):
        ratio = f': {row.ratio(peer):.2f}' if peer['target'] < math.inf else ''
        return f'{peer["peer"]} {duration(peer["real_time"])}{ratio}'

    def heap_cells(ours):
        if 'heap' not in ours:
            return ['', '']
        heap = int(ours['heap'])
        return [f'{ours["allocations"]:.0f}', f'{heap} B' if heap < 10_000 else f'{heap // 1_000} kB']

    print_table(
        ['Operation', 'Input', 'Ours', 'Peers, and the ratio where it has a target', 'Allocations', 'Heap at most', 'Holds'], [
            [row.operation, f'{row.series} {row.input}'.lstrip(), duration(row.ours['real_time']),
             '; '.join(peer_cell(row, peer) for peer in row.peers), *heap_cells(row.ours),
             verdict(all(map(row.holds, row.peers)))] for row in comparisons])


BLUE, GREY, RED, BLACK = '#1f5fa8', '#8a8a8a', '#c0392b', '#222222'
WIDTH, MARGIN = 900, 20


class Svg:
    """The elements of a picture, in pixels from the top left."""

    def __init__(self):
        self.body = ''

    def text(self, x, y, text, anchor='start', colour=BLACK):
        self.body += f"<text x='{x:.1f}' y='{y:.1f}' fill='{colour}' text-anchor='{anchor}'>{html.escape(text, False)}</text>"

    def line(self, x1, y1, x2, y2, colour, thickness=1):
        self.body += (f"<line x1='{x1:.1f}' y1='{y1:.1f}' x2='{x2:.1f}' y2='{y2:.1f}' stroke='{colour}'"
                      f" stroke-width='{thickness:.1f}'/>")

    def dot(self, x, y, colour):
        self.body += f"<circle cx='{x:.1f}' cy='{y:.1f}' r='3.5' fill='{colour}'/>"

    def content(self, height):
        size = f"width='{WIDTH:.1f}' height='{height:.1f}'"
        return (f"<svg xmlns='http://www.w3.org/2000/svg' {size} font-family='sans-serif' font-size='12'>\n"
                f"<rect {size} fill='white'/>{self.body}</svg>\n")


def draw_ratios(svg, rows, top):
    """A row for each operation and peer, on a logarithmic scale. Returns the bottom."""
    left, right, least, most, height = 380, WIDTH - 90, 0.03, 5, 18
    axis = top + 40
    bottom = axis + height * len(rows) + 4

    def x_of(ratio):
        return left + (right - left) * math.log(min(max(ratio, least), most) / least) / math.log(most / least)

    svg.text(MARGIN, top, "Our time divided by the peer's. Dot: the median of the inputs; line: up to the worst;")
    svg.text(MARGIN, top + 15, 'grey stroke: the largest accepted ratio. Below 1 the library is faster.')
    for mark in (0.05, 0.1, 0.2, 0.5, 1, 2, 4):
        svg.line(x_of(mark), axis + 4, x_of(mark), bottom, BLACK if mark == 1 else '#dddddd')
        svg.text(x_of(mark), axis, f'{mark:g}', 'middle')
    for y, row in enumerate(rows, 1):
        y = axis + height * y
        colour = BLUE if row.holds else RED
        svg.text(left - 10, y, f'{row.operation}{f", {row.input}" if row.input else ""} / {row.peer}', 'end')
        svg.line(x_of(row.median), y - 4, x_of(row.worst), y - 4, colour, 2)
        svg.dot(x_of(row.median), y - 4, colour)
        svg.line(x_of(row.target), y - 10, x_of(row.target), y + 2, GREY, 2)
        svg.text(right + 10, y, f'{row.median:.2f}' + ('' if row.input else f' to {row.worst:.2f}'))
    return bottom


def draw_series(svg, growth, left, top, width, height):
    """A small chart of one series: the time for each unit of work, by size."""
    bottom = top + height
    svg.text(left, top - 6, f'{growth.operation}, {growth.series}', 'start', BLACK if growth.holds else RED)
    svg.line(left, bottom, left + width, bottom, GREY)
    svg.line(left, top, left, bottom, GREY)
    most = 1.25 * max(*growth.ours, *growth.peers)
    for times, colour in ((growth.peers, GREY), (growth.ours, BLUE)):
        step = width / len(times)
        points = [(left + step * (i + 0.5), bottom - height * time / most) for i, time in enumerate(times)]
        for i, point in enumerate(points):
            if i > 0:
                svg.line(*points[i - 1], *point, colour, 2)
            svg.dot(*point, colour)
    svg.text(left + 4, top + 10, duration(most))
    svg.line(left - 4, top, left, top, GREY)
    svg.text(left, bottom + 14, growth.smallest)
    svg.text(left + width, bottom + 14, growth.largest, 'end')


def draw_growths(svg, growths, top):
    """Returns the bottom."""
    in_row, height = 5, 145
    pitch = (WIDTH - 2 * MARGIN) / in_row
    svg.text(MARGIN, top, 'The time for each character or table row, by the size of the text. Blue: the library;')
    svg.text(MARGIN, top + 15, 'grey: the floor or the plain reader. A level line is linear growth.')
    for i, growth in enumerate(growths):
        draw_series(svg, growth, MARGIN + pitch * (i % in_row), top + 45 + height * (i // in_row), pitch - 24, height - 55)
    return top + 25 + height * math.ceil(len(growths) / in_row)


def write_picture(file, ratios, growths):
    svg = Svg()
    bottom = draw_ratios(svg, ratios, MARGIN + 5)
    if growths:
        bottom = draw_growths(svg, growths, bottom + 40)
    file.write_text(svg.content(bottom + MARGIN))


options = argparse.ArgumentParser()
options.add_argument('--brief', action='store_const', const=['--brief'], default=[])
options.add_argument('--picture', type=pathlib.Path)
options.add_argument('program')
options.add_argument('filter', nargs='?', default='')
options = options.parse_intermixed_args()
process = subprocess.run([options.program, *options.brief, options.filter], stdout=subprocess.PIPE)
if process.returncode:
    sys.exit(process.returncode)
result = json.loads(process.stdout)

by_name = {}
for run in sorted(result['benchmarks'], key=lambda run: run['family_index']):
    if run.get('aggregate_name', 'median') == 'median':
        *name, run['peer'], _ = run['run_name'].split('|')
        by_name.setdefault(tuple(name), []).append(run)
comparisons = [Comparison(name, runs) for name, runs in by_name.items()]
if options.brief:
    print(f'{len(comparisons)} comparisons ran once each')
    sys.exit()

by_peer = {}
by_series = {}
for comparison in comparisons:
    for peer in comparison.peers:
        if peer['target'] < math.inf:
            by_peer.setdefault((comparison.operation, peer['peer'], peer['target']), []).append((comparison, peer))
    if comparison.series:
        by_series.setdefault((comparison.operation, comparison.series), []).append(comparison)
ratios = [Ratios(rows) for rows in by_peer.values()]
growths = [Growth(rows) for rows in by_series.values()]

print_machine(result['context']['versions'])
print_ratios(ratios)
if growths:
    print_growth(growths)
print_details(comparisons)
if options.picture:
    write_picture(options.picture, ratios, growths)
sys.exit(not all(row.holds for row in ratios + growths))
