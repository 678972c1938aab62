#!/usr/bin/env python3
"""Changes one thing at a time in the sources and sees whether the tests notice.

A mutant is a copy of one source with one cell, bound, base, step, tag, identifier, operator or
message changed. It is killed if the compiler refuses it or a test fails; one that survives is a
hole in the tests, or changes nothing that can be observed.

The tests of a class are those of its own file, then those of the registry; those of the frame are
tests/frame, then those of registry and classes; a stand-in has its own.
"""

import argparse
import collections
import json
import math
import os
import pathlib
import random
import re
import shlex
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]

# How many of a hundred mutants are drawn from each place.
SHARES = {'classes': 66, 'frame': 20, 'platform': 9, 'registry': 5}

Mutant = collections.namedtuple('Mutant', 'file kind begin end text')


# --- Where something can be changed ---------------------------------------------------------------

def blanked(text):
    """The same text with comments and strings replaced by blanks, place for place."""
    def blank(match):
        return re.sub(r'[^\n]', ' ', match.group())
    return re.sub(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', blank, text,
                  flags=re.S)


def closing(text, opening):
    """The place of the bracket that closes the one at `opening`."""
    depth = 0
    for place in range(opening, len(text)):
        depth += {'(': 1, '{': 1, ')': -1, '}': -1}.get(text[place], 0)
        if depth == 0:
            return place
    raise ValueError('no closing bracket')


def numbers(text, begin, end):
    return [match for match in re.compile(r'\b(?:0x[0-9a-f]+|\d+)\b').finditer(text, begin, end)]


def changed_number(match, step):
    value = int(match.group(), 0) + step
    return hex(value) if match.group().startswith('0x') else str(value)


def one_more_or_less(rng, match, least=0):
    value = int(match.group(), 0)
    return changed_number(match, rng.choice([1, -1] if value > least else [1]))


# The numbers of a row, after its chip types and variants.
ROW_KINDS = {
    'dimensions': ['width', 'entries', 'array elements', 'instance count', 'max identifier',
                   'address stride'],
    'fieldCounts': ['field count'],
    'addresses': ['base', 'entry step', 'array step', 'access type', 'destination block',
                  'access type', 'destination block'],
}


def after_elements(text, place, count):
    """The place after the comma that ends the `count`-th element of a braced list."""
    while count:
        place += 1
        if text[place] in '({':
            place = closing(text, place)
        count -= text[place] == ','
    return place + 1


def description_sites(name, source, rng):
    """What a class's description says."""
    code = blanked(source)
    begin = code.index('describe(')
    end = closing(code, begin + len('describe'))
    for match in re.compile(r'at\( (\d+), (\d+) \)').finditer(code, begin, end):
        for kind, group in (('offset', 1), ('field width', 2)):
            number = re.compile(r'\d+').match(code, match.start(group))
            yield Mutant(name, kind, match.start(group), match.end(group),
                         one_more_or_less(rng, number, least=group - 1))
        yield Mutant(name, 'cell left out', match.start(), match.end(), 'absent')
    for match in re.compile(r'\babsent\b').finditer(code, begin, end):
        yield Mutant(name, 'cell added', match.start(), match.end(), 'at( 0, 1 )')
    for match in re.compile(r'\b(chips|variants)\(').finditer(code, 0, end):
        for number in numbers(code, match.end(), closing(code, match.end() - 1)):
            yield Mutant(name, match.group(1)[:-1] + ' set', number.start(), number.end(),
                         one_more_or_less(rng, number))
    for kind in ('chips', 'variants'):
        named = re.findall(r'^inline constexpr auto (\w+) = ' + kind + r'\(', code, re.M)
        for use in re.compile(r'\b(?:%s)\b' % '|'.join(named or ['(?!)'])).finditer(code, begin, end):
            others = [other for other in named if other != use.group()]
            if others:
                yield Mutant(name, 'named ' + kind, use.start(), use.end(), rng.choice(others))
    for section, kinds in ROW_KINDS.items():
        start = code.find(section + '( {', begin)
        if start < 0:
            continue
        opening = start + len(section) + 2
        for row in re.compile(r'(?<=\n      )\{').finditer(code, opening, closing(code, opening)):
            row_end = closing(code, row.start())
            stated = after_elements(code, row.start(), 2)
            for kind, number in zip(kinds, numbers(code, stated, row_end)):
                yield Mutant(name, kind, number.start(), number.end(),
                             one_more_or_less(rng, number))
    start = code.find('tags( {', begin)
    if start >= 0:
        for match in re.compile(r'\{ (\w+), (\d+) \}').finditer(code, start, end):
            number = re.compile(r'\d+').match(code, match.start(2))
            yield Mutant(name, 'tag value', match.start(2), match.end(2),
                         one_more_or_less(rng, number))
        for match in re.compile(r'(\{ \w+, \d+ \}), (\{ \w+, \d+ \})').finditer(code, start, end):
            yield Mutant(name, 'tag order', match.start(), match.end(),
                         match.group(2) + ', ' + match.group(1))


def field_list_sites(name, source, rng):
    """What a class's list of fields says: names in declared order, and types."""
    lines = list(re.compile(r'^HARDWARE_(FIELD|WIDE|TAG)\( (\w+), (\w+), \w+ \)\n',
                            re.M).finditer(source))
    for first, second in zip(lines, lines[1:]):
        yield Mutant(name, 'declared order', first.start(), second.end(),
                     second.group() + first.group())
    types = ['U8', 'U16', 'U32', 'U64', 'Raw128', 'Raw256', 'Raw512']
    for line in lines:
        place = types.index(line.group(2))
        near = [types[other] for other in (place - 1, place + 1) if 0 <= other < len(types)]
        yield Mutant(name, 'value type', line.start(2), line.end(2), rng.choice(near))


def catalogue_sites(name, source, rng):
    rows = re.compile(r'^HARDWARE_FIELD_ID\( (\d+), (\w+), (\w+) \)', re.M)
    for row in rows.finditer(source):
        number = re.compile(r'\d+').match(source, row.start(1))
        yield Mutant(name, 'identifier', row.start(1), row.end(1), one_more_or_less(rng, number))
        letter = rng.randrange(row.start(3), row.end(3))
        yield Mutant(name, 'hardware name', letter, letter + 1,
                     'X' if source[letter] != 'X' else 'Y')


OPERATORS = {
    '<': ['<=', '>='], '<=': ['<', '>'], '>': ['>=', '<='], '>=': ['>', '<'],
    '==': ['!='], '!=': ['=='], '&&': ['||'], '||': ['&&'],
    '+': ['-'], '-': ['+'], '*': ['+'], '/': ['*'], '%': ['/'],
    '<<': ['>>'], '>>': ['<<'], '&': ['|'], '|': ['&'], '|=': ['='], '+=': ['='], '&=': ['|='],
}
OPERATOR = re.compile(r'(?<=[\w)\]}] )(?:' + '|'.join(
    sorted(map(re.escape, OPERATORS), key=len, reverse=True)) + r')(?= [\w(~!"\'-])')
# Lines that don't run: the compiler's own checks, hints to it, and text for people.
NOT_CODE = re.compile(r'static_assert|#\s*(include|pragma|error)|template<|__attribute__|'
                      r'static_cast<void>|^\s*(friend|using|namespace|struct|class|enum)\b')


def code_sites(name, source, rng):
    """What the code of frame, registry and stand-ins does."""
    code = blanked(source)
    for match in re.compile(r'[^\n]+').finditer(code):
        line = match.group()
        if NOT_CODE.search(line):
            continue
        for found in OPERATOR.finditer(line):
            begin = match.start() + found.start()
            yield Mutant(name, 'operator', begin, begin + len(found.group()),
                         rng.choice(OPERATORS[found.group()]))
        for found in re.compile(r'(?<![\w.])(?:0x[0-9a-f]+|\d+)(?![\w.])').finditer(line):
            begin = match.start() + found.start()
            yield Mutant(name, 'constant', begin, begin + len(found.group()),
                         one_more_or_less(rng, found))
        for found in re.compile(r'\b(true|false)\b').finditer(line):
            begin = match.start() + found.start()
            yield Mutant(name, 'constant', begin, begin + len(found.group()),
                         {'true': 'false', 'false': 'true'}[found.group()])
        found = re.match(r'(\s*(?:if|while)\( )(.+)( \)(?: \[\[\w+\]\])? \{)$', line)
        if found and 'constexpr' not in line:
            yield Mutant(name, 'condition', match.start() + found.start(2),
                         match.start() + found.end(2), '!( ' +
                         source[match.start() + found.start(2):match.start() + found.end(2)] + ' )')
        if re.match(r'\s+[\w:.\->\[\]+*]+(\(.*\)| [|&+]?= .*|\+\+);$', line):
            yield Mutant(name, 'statement', match.start(), match.end(), '')
    for match in re.compile(r'"((?:\\.|[^"\\\n])+)"').finditer(source):
        line = source[source.rfind('\n', 0, match.start()) + 1:source.find('\n', match.end())]
        if NOT_CODE.search(line) or line.strip().startswith('//') or 'throw "' in line:
            continue
        letters = [place for place in range(match.start(1), match.end(1))
                   if source[place].isalpha() and source[place - 1] != '\\']
        if letters:
            letter = rng.choice(letters)
            yield Mutant(name, 'message', letter, letter + 1,
                         'q' if source[letter] != 'q' else 'k')


# --- Which are drawn ------------------------------------------------------------------------------

def drawn_from(sites, count, rng):
    """`count` of the sites. A kind has less than its share if it has many, so that none is drowned."""
    kinds = collections.Counter(site.kind for site in sites)
    keyed = [(rng.random() ** kinds[site.kind] ** 0.3, site) for site in sites]
    return [site for _, site in sorted(keyed, key=lambda pair: -pair[0])[:count]]


def class_of(name):
    return pathlib.Path(name).stem


def is_class(name):
    return name.startswith('include/Hardware/layouts/') or (
        name.startswith('include/Hardware/fields/') and class_of(name) != 'Catalogue')


def drawn(tree, count, seed):
    rng = random.Random(seed)

    def sites(pattern, find):
        for path in sorted(tree.glob(pattern)):
            name = str(path.relative_to(tree))
            yield from find(name, path.read_text(), rng)

    by_class = collections.defaultdict(list)
    for site in sites('include/Hardware/layouts/*.h', description_sites):
        by_class[class_of(site.file)].append(site)
    for site in sites('include/Hardware/fields/*.def', field_list_sites):
        by_class[class_of(site.file)].append(site)
    share = {area: round(count * part / 100) for area, part in SHARES.items()}
    chosen = []
    # A class counts by the root of its size, too.
    weight = sum(math.sqrt(len(sites)) for sites in by_class.values())
    for one in by_class.values():
        chosen += drawn_from(one, math.ceil(share['classes'] * math.sqrt(len(one)) / weight), rng)
    areas = {
        'frame': list(sites('src/frame/*', code_sites)) +
                 # Not the headers of At, which no program judged here uses.
                 list(sites('include/Hardware/detail/[!A]*.h', code_sites)) +
                 drawn_from(list(sites('include/Hardware/fields/Catalogue.def', catalogue_sites)),
                            40, rng),
        'platform': list(sites('platform/*/src/*', code_sites)) +
                    list(sites('platform/*/include/*/*.h', code_sites)),
        'registry': list(sites('src/registry/Registry.cpp', code_sites)),
    }
    for area, found in areas.items():
        chosen += drawn_from(found, share[area], rng)
    # A memory of one element has no array step, which is stated as 0: any would do.
    return [one for one in chosen if one.kind != 'array step' or one.text != '1']


# --- Building and testing -------------------------------------------------------------------------

# The tests concerned, and what they depend on.
TARGETS = ('src/libVornTunnelKelvar.so', 'platform/libKelvar.so', 'platform/libOru.so',
           'platform/libHwVornFennTypes.so', 'platform/kelvarTest', 'platform/oruTest',
           'platform/hwVornFennTypesTest', 'tests/frameTest', 'tests/registryTest',
           'tests/tablesTest')


class Killed(Exception):
    """How a mutant was noticed."""


class Bench:
    """A copy of the tree, built once; each mutant rebuilds there what the tests concerned need."""

    def __init__(self, work):
        self.tree = work / 'tree'
        self.build = work / 'build'
        self.made = work / 'made'
        self.libraries = self.made / 'libraries'
        if not self.tree.exists():
            shutil.copytree(ROOT, self.tree, ignore=shutil.ignore_patterns('.git', 'build'))

    def prepare(self):
        launcher = ['-DCMAKE_CXX_COMPILER_LAUNCHER=ccache'] if shutil.which('ccache') else []
        self.checked(['cmake', '-S', self.tree, '-B', self.build, '-G', 'Ninja',
                      '-DCMAKE_BUILD_TYPE=None', '-DCMAKE_CXX_FLAGS=-O1 -w',
                      '-DCMAKE_CXX_COMPILER=g++', '-DVORN_HARDENING=OFF', '-DVORN_BUILD_TOOLS=OFF',
                      '-DVORN_BUILD_EXAMPLES=OFF', *launcher])
        self.checked(['ninja', '-C', self.build, '-j', os.environ.get('JOBS', '1'), *TARGETS])
        self.load()

    def load(self):
        """What is built from what, and how."""
        commands = json.loads((self.build / 'compile_commands.json').read_text())
        self.compile = {}
        self.sources = {}
        for command in commands:
            words = shlex.split(command['command'])
            # A mutant is compiled once, so ccache needn't keep it.
            cache = [place for place, word in enumerate(words) if word.endswith('/ccache') or word == 'ccache']
            words = words[cache[0] + 1:] if cache else words
            name = words[words.index('-o') + 1]
            self.compile[name] = words
            self.sources[name] = command['file']
        self.needs = collections.defaultdict(set)
        current = None
        for line in self.checked(['ninja', '-C', self.build, '-t', 'deps']).splitlines():
            if line and not line.startswith(' '):
                current = line.split(':')[0]
            elif line and current in self.compile:
                self.needs[os.path.normpath(self.build / line.strip())].add(current)
        self.link = {}
        for target in TARGETS:
            lines = self.checked(['ninja', '-C', self.build, '-t', 'commands', target]).splitlines()
            link = next(line for line in reversed(lines) if ' -o ' in line and ' -c ' not in line)
            words = shlex.split(link.split('&&')[1])
            self.link[target] = [word for word in words if word != 'ccache']

    def checked(self, command):
        result = subprocess.run([str(word) for word in command], capture_output=True, text=True)
        if result.returncode != 0:
            sys.exit(result.stdout + result.stderr)
        return result.stdout

    def objects_of(self, *sources):
        return [name for name, source in self.sources.items()
                if pathlib.Path(source).name in sources]

    def affected(self, name, *targets):
        """The objects of some targets that a change of this file concerns."""
        return sorted(one for one in self.needs[str(self.tree / name)]
                      if any('/' + target + '.dir/' in one for target in targets))

    def compiled(self, names, flags=()):
        """Objects of the mutated tree in place of those of the build."""
        replaced = {}
        for name in names:
            out = self.made / name.replace('/', '_')
            words = list(self.compile[name])
            words[words.index('-o') + 1] = str(out)
            if subprocess.run([*words, *flags], cwd=self.build, capture_output=True).returncode:
                raise Killed('compiler: ' + pathlib.Path(self.sources[name]).name)
            replaced[name] = str(out)
        return replaced

    def linked(self, target, replaced):
        """A program, or a library that programs take instead of the one they were built with."""
        name = pathlib.Path(target).name
        out = self.libraries / (name + '.1') if name.endswith('.so') else self.made / name
        words = [replaced.get(word, word) for word in self.link[target]]
        words[words.index('-o') + 1] = str(out)
        if subprocess.run(words, cwd=self.build, capture_output=True).returncode:
            raise Killed('linker')
        return out

    def tested(self, program, only='*'):
        """Runs tests up to the first that fails."""
        folders = [str(folder) for folder in
                   (self.libraries, self.build / 'src', self.build / 'platform')]
        environment = dict(os.environ, LD_LIBRARY_PATH=':'.join(folders), GTEST_FAIL_FAST='1',
                           GTEST_FILTER=only)
        try:
            result = subprocess.run([str(program)], cwd=self.build, env=environment, timeout=120,
                                    capture_output=True, text=True, errors='replace')
        except subprocess.TimeoutExpired:
            raise Killed('test: without end')
        if result.returncode != 0:
            # The test that was running at a crash.
            failed = re.findall(r'^\[ +(?:RUN|FAILED) +\] ([\w./]+)', result.stdout, re.M)
            raise Killed('test: ' + (failed[-1] if failed else 'crash'))

    def refused(self):
        """Whether the compiler still refuses what it should."""
        result = subprocess.run(['ctest', '--test-dir', str(self.build), '-R', r'^Refused\.'],
                                capture_output=True, text=True)
        if result.returncode != 0:
            raise Killed('test: ' + re.search(r'(Refused\.\w+) \(', result.stdout).group(1))

    def suites(self, test):
        """A filter for the tests of one source file."""
        names = re.findall(r'^(?:CONTRACT_TESTS|TEST|TEST_F|TEST_P)\( (\w+),', test.read_text(),
                           re.M)
        return ':'.join(name + '.*' for name in dict.fromkeys(names))

    def judge(self, mutant):
        """Ends in Killed unless the mutant survives the tests concerned."""
        name = mutant.file
        quick = ['-O0']
        library = 'src/libVornTunnelKelvar.so'
        tables = self.build / 'tests/tablesTest'
        registry = self.build / 'tests/registryTest'
        if is_class(name):
            test = next(self.tree.glob('tests/tables/*/' + class_of(name) + 'Test.cpp'))
            self.linked(library, self.compiled(self.objects_of(class_of(name) + '.cpp'), quick))
            if mutant.kind == 'value type':
                tables = self.linked('tests/tablesTest',
                                     self.compiled(self.objects_of(test.name), quick))
            self.tested(tables, self.suites(test))
            self.tested(registry)
        elif 'Catalogue' in name:
            replaced = self.compiled(self.objects_of('Catalogue.cpp', 'CatalogueTest.cpp'), quick)
            self.linked(library, replaced)
            self.tested(self.linked('tests/registryTest', replaced), 'Catalogue.*')
            self.tested(tables, '*.DeclaresItsFields')
        elif name.startswith(('src/frame/', 'include/Hardware/detail/')):
            replaced = self.compiled(self.affected(name, 'VornFrame', 'frameTest'), quick)
            self.tested(self.linked('tests/frameTest', replaced))
            self.refused()
            replaced.update(self.compiled(self.affected(name, 'VornTunnelKelvar'), quick))
            self.linked(library, replaced)
            self.tested(registry)
            self.tested(tables)
        elif name.startswith('src/registry/'):
            self.linked(library, self.compiled(self.affected(name, 'VornTunnelKelvar'), quick))
            self.tested(registry)
        else:
            lib, test = {'kelvar': ('Kelvar', 'kelvarTest'), 'oru': ('Oru', 'oruTest'),
                         'hwvornfenntypes': ('HwVornFennTypes', 'hwVornFennTypesTest')}[
                             name.split('/')[1]]
            replaced = self.compiled(self.affected(name, lib, test))
            self.linked('platform/lib' + lib + '.so', replaced)
            self.tested(self.linked('platform/' + test, replaced))

    def fate(self, mutant):
        shutil.rmtree(self.made, ignore_errors=True)
        self.libraries.mkdir(parents=True)
        path = self.tree / mutant.file
        original = path.read_text()
        path.write_text(original[:mutant.begin] + mutant.text + original[mutant.end:])
        try:
            self.judge(mutant)
            return 'survived'
        except Killed as killed:
            return str(killed)
        finally:
            path.write_text(original)


# --- The report -----------------------------------------------------------------------------------

def shown(tree, mutant):
    source = (tree / mutant.file).read_text()
    line = source.count('\n', 0, mutant.begin) + 1
    column = mutant.begin - source.rfind('\n', 0, mutant.begin)
    old = source[mutant.begin:mutant.end].strip().replace('\n', ' ')
    row = source[source.rfind('\n', 0, mutant.begin) + 1:].partition('\n')[0].strip()
    return '%s:%d:%d: %s, "%s" becomes "%s" in: %s' % (
        mutant.file, line, column, mutant.kind, old, mutant.text.strip().replace('\n', ' '), row)


def area_of(name):
    if is_class(name):
        return class_of(name)
    if name.startswith('include/Hardware/detail/'):
        return 'frame'
    folders = name.split('/')
    return {'platform': 'platform', 'include': 'catalogue'}.get(folders[0], folders[1])


def report(mutants, fates):
    for title, key in (('area', lambda one: area_of(one.file)), ('kind', lambda one: one.kind)):
        rows = collections.defaultdict(collections.Counter)
        for mutant, fate in zip(mutants, fates):
            rows[key(mutant)][fate.split(':')[0]] += 1
            rows['all'][fate.split(':')[0]] += 1
        print('| %s | mutants | refused by the compiler | failed a test | survived |' % title)
        print('|---|---|---|---|---|')
        for name in sorted(rows, key=lambda name: (name == 'all', name)):
            row = rows[name]
            print('| %s | %d | %d | %d | %d |' % (name, sum(row.values()), row['compiler'] +
                                                  row['linker'], row['test'], row['survived']))
        print()


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('--count', type=int, default=340, help='how many mutants to draw')
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--work', type=pathlib.Path, required=True,
                        help='folder for the copy, its build and the results, kept')
    parser.add_argument('--seconds', type=float, default=math.inf,
                        help='stop after so long; the same command goes on from there')
    parser.add_argument('--areas', nargs='+', metavar='AREA',
                        help='only mutants of frame, registry, catalogue, platform, classes or '
                             'a class')
    parser.add_argument('--list', action='store_true', help='only say what would be changed')
    arguments = parser.parse_args()

    bench = Bench(arguments.work)
    mutants = drawn(bench.tree, arguments.count, arguments.seed)
    areas = {area_of(mutant.file) for mutant in mutants} | {'classes'}
    chosen = set(arguments.areas or areas)
    if chosen - areas:
        parser.error('no such area: %s; there are %s' % (', '.join(sorted(chosen - areas)),
                                                         ', '.join(sorted(areas))))
    mutants = [mutant for mutant in mutants if area_of(mutant.file) in chosen or
               is_class(mutant.file) and 'classes' in chosen]
    texts = [shown(bench.tree, mutant) for mutant in mutants]
    if arguments.list:
        print('\n'.join(texts))
        return
    begin = time.monotonic()
    bench.prepare()
    kept = arguments.work / 'results.json'
    fates = json.loads(kept.read_text()) if kept.exists() else {}
    for number, (mutant, text) in enumerate(zip(mutants, texts)):
        if text in fates:
            continue
        if time.monotonic() - begin > arguments.seconds:
            print('%d of %d done' % (number, len(mutants)))
            return
        started = time.monotonic()
        fates[text] = bench.fate(mutant)
        print('%d/%d %.1f s %s -> %s' % (number + 1, len(mutants), time.monotonic() - started, text,
                                         fates[text]), flush=True)
        kept.write_text(json.dumps(fates, indent=1))
    report(mutants, [fates[text] for text in texts])
    survivors = [text for text in texts if fates[text] == 'survived']
    print('\n'.join(survivors or ['none survived']))
    sys.exit(bool(survivors))


if __name__ == '__main__':
    main()
