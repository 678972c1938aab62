#!/usr/bin/env python3
"""branches.py ROOT BUILD: which branches of src/ and platform/ no test has taken.

Reads the counters of a build with --coverage. A branch of a template counts once, and as taken if
any of its instances took it: an instance for a class without variants can't take what one for a
class with variants does. Branches that throw are left out. The status isn't 0 if a branch is
missing on a line without a mark, or if all are taken on a marked line.
"""

import collections
import json
import pathlib
import re
import subprocess
import sys

COUNTED = re.compile(r'src/|platform/\w+/(src|include)/')
# The comment above a line of which some branches can't be taken, and why.
MARK = re.compile(r'// Branches that no test takes: (.*)\.')


def branches_of(line, functions):
    """Whether each branch of a line was taken, for each instance that the line stands for."""
    taken = [branch['count'] > 0 for branch in line['branches'] if not branch['throw']]
    if 'function_name' in line:
        return [taken]
    # Those of all instances of a template, in order.
    starts = [function['start_line'] for function in functions
              if function['start_line'] <= line['line_number'] <= function['end_line']]
    size = len(taken) // (starts.count(max(starts)) if starts else 1)
    return [taken[begin:begin + size] for begin in range(0, len(taken), size)] if size else []


def counters(root, build):
    """Name, number and branches of each line that gcov knows of, once for each instance."""
    for data in sorted(build.rglob('*.gcda')):
        output = subprocess.run(['gcov', '--branch-probabilities', '--json-format', '--stdout',
                                 str(data)], cwd=build, capture_output=True, check=True).stdout
        for text in output.splitlines():
            report = json.loads(text)
            for file in report['files']:
                path = pathlib.Path(report['current_working_directory'], file['file']).resolve()
                name = str(path.relative_to(root)) if path.is_relative_to(root) else ''
                if COUNTED.match(name):
                    for line in file['lines']:
                        for branches in branches_of(line, file['functions']):
                            yield name, line['line_number'], branches


def marked(root):
    """The reason of each marked line, by file and number."""
    marks = {}
    for folder in ('src', 'platform'):
        for path in sorted((root / folder).rglob('*')):
            if path.suffix in ('.h', '.cpp', '.inc'):
                for number, line in enumerate(path.read_text().splitlines(), 1):
                    if match := MARK.search(line):
                        marks[str(path.relative_to(root)), number + 1] = match[1]
    return marks


def main():
    root, build = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    # Whether it was taken, by file, line and number of branches, in which instances may differ.
    taken = collections.defaultdict(list)
    for name, number, branches in counters(root, build):
        known = taken[name, number, len(branches)]
        known.extend([False] * (len(branches) - len(known)))
        for place, one in enumerate(branches):
            known[place] |= one
    marks = marked(root)
    unused = set(marks)
    files = collections.defaultdict(collections.Counter)
    missed = []
    for (name, number, _), branches in sorted(taken.items()):
        source = (root / name).read_text().splitlines()[number - 1].strip()
        files[name]['all'] += len(branches)
        files[name]['taken'] += sum(branches)
        if not all(branches):
            why = marks.get((name, number))
            unused.discard((name, number))
            files[name]['known'] += len(branches) - sum(branches) if why else 0
            missed.append('%s:%d: %d of %d branches: %s%s' %
                          (name, number, sum(branches), len(branches), source,
                           ' (known: %s)' % why if why else ''))
    total = collections.Counter()
    for name, count in sorted(files.items()):
        total += count
        print('%-50s %4d of %4d' % (name, count['taken'], count['all']))
    print('branches: %.1f%% (%d out of %d), and %d of the others are known not to be takeable' %
          (100 * total['taken'] / total['all'], total['taken'], total['all'], total['known']))
    print('\n'.join(missed))
    for name, number in sorted(unused):
        print('%s:%d: marked, but every branch is taken' % (name, number))
    sys.exit(bool(unused) or total['taken'] + total['known'] < total['all'])


if __name__ == '__main__':
    main()
