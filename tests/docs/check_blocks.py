#!/usr/bin/env python3
"""Runs every code block of the pages that people read, and compares what it prints with what they say.

check_blocks.py --source DIR --build DIR --library FILE --compiler FILE [--flags FLAGS] [PAGE...]

The info string behind the fence says what a block is:

  cpp      a program if it has a main. An excerpt if it stands like that in a file of examples/.
           Otherwise a fragment: the fragments of a page continue one another, as one function behind
           the lines of all of them that begin with #include.
  sh       commands, run with the programs of the build at hand, in a folder that looks like the root
           of the project. Those in NOT_RUN are not.
  output   what the C++ or the commands before it print; a line "..." stands for any lines. Who prints
           something must have such a block.
  mta      a file of rule tests; the commands of the page find it as rules.mta
  listing  what mlds-testasm --list makes of the page's rules.mta
  schema   declarations that mlds-testasm has to accept
  mlr      rules, a whole file where the first line names it ("; fi.mlr"). Otherwise changes to the
           page's last file: a statement that it has (a tier or block of that name) is replaced, others
           are put at its end. Nothing may be wrong with the file, and its asserts have to hold; but where
           output follows, that is what mlds check says of it, and the changes are taken back
  lex      a lexicon; the first line names its file
  cmake    lines that stand in the program that tests/install builds, whatever the target is called
  tiers    rows that transcribe prints for the text in the row RawInput

Anything else is a failure, so that no block goes without a check."""
import argparse
import collections
import glob
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile

# Commands that are not run here, a block each, without comments; and why.
NOT_RUN = {
    './scripts/demo\n./scripts/test':
        'install packages, build the project and run this',
    'cmake -S . -B build && cmake --build build && cmake --install build':
        'builds and installs the project, as tests/install does',
    'cmake --preset release && cmake --build --preset release --target transcribe':
        'builds the project',
    'cmake --preset release && cmake --build --preset release\n'
    'bench/run build/release/bench/mlds_bench Append':
        'builds the project and measures for minutes',
    'mlds view sw.mlr --step saludo.txt':
        'waits for people',
    'mlds-viewer\ntranscribe --step text.txt':
        'wait for people; tests/viewertool and examples/check_view.sh run them',
}

KINDS = ('output', 'mta', 'listing', 'schema', 'cmake', 'tiers', 'lex')  # beside those that print

SECONDS = 20  # for one program or the commands of one block
COMPILE_SECONDS = 120
CPP_FLAGS = ['-std=c++11', '-Wall', '-Wextra', '-Wpedantic', '-Werror']
MARK = '@@ next block @@'
RULE_FILE = r'; (\S+\.mlr)\b'

Block = collections.namedtuple('Block', 'page line kind text')


class Failures:
    def __init__(self):
        self.count = 0

    def add(self, block, message):
        self.count += 1
        print('%s:%d: %s' % (block.page, block.line, message.rstrip()))


def read_blocks(source, page, failures):
    """The fenced blocks of a page. Indented ones, which nobody would look at, are faults."""
    blocks = []
    fence = None
    blank = True
    with open(os.path.join(source, page), encoding='utf-8') as file:
        lines = file.read().split('\n')
    for number, line in enumerate(lines, 1):
        if line.strip().startswith('```'):
            if fence is None:
                fence = Block(page, number, line.strip()[3:].strip(), [])
            else:
                blocks.append(fence._replace(text='\n'.join(fence.text) + '\n'))
                fence = None
        elif fence is not None:
            fence.text.append(line)
        elif blank and line.startswith('    '):
            failures.add(Block(page, number, '', ''), 'an indented block: fence it')
        blank = not line.strip()
    if fence is not None:
        failures.add(fence, 'the block is not closed')
    return blocks


def matches(shown, printed):
    """True if the texts are equal, apart from spaces at the ends of lines and lines left out."""
    def lines(text):
        return [line.rstrip() for line in text.rstrip('\n').split('\n')]
    pattern = ''.join('(?:.*\n)*?' if line == '...' else re.escape(line) + '\n'
                      for line in lines(shown))
    return re.fullmatch(pattern, '\n'.join(lines(printed)) + '\n') is not None


def statements(rules):
    """The statements of a rule file, each with the comments above it, by what they are about."""
    named = re.match(RULE_FILE + '.*\n', rules)
    found = {'': named.group()} if named else {}
    rules = rules[named.end():] if named else rules
    for text in re.findall(r'(?:(?:;.*)?\n)*\S.*\n(?:(?:[ \t]*\n)*[ \t]+\S.*\n)*', rules):
        head = re.search(r'^[^;\n].*', text, re.MULTILINE)
        words = head.group().split() if head else [text]
        by_name = words[0] in ('tier', 'block', 'class', 'pattern')
        found[' '.join(words[:2] if by_name else words)] = text
    return found


def difference(shown, printed):
    return 'shown is\n%sprinted was\n%s' % (shown, printed)


class Checker:
    def __init__(self, options, folder, failures):
        self.options = options
        self.folder = folder
        self.failures = failures
        self.used = set()  # of NOT_RUN
        self.environment = dict(os.environ, LC_ALL='C.UTF-8')
        programs = [os.path.join(options.build, name) for name in ('tools', 'examples')]
        self.environment['PATH'] = os.pathsep.join(programs + [os.environ['PATH']])

    def root(self, name):
        """A folder that looks like the root of the project, and in which nobody finds a viewer."""
        root = os.path.join(self.folder, name)
        os.makedirs(os.path.join(root, 'build'))
        for entry in os.listdir(self.options.source):
            if entry not in ('build', '.git'):
                os.symlink(os.path.join(self.options.source, entry), os.path.join(root, entry))
        os.symlink(self.options.build, os.path.join(root, 'build', 'release'))
        with socket.socket() as unused:
            unused.bind(('127.0.0.1', 0))
            port = unused.getsockname()[1]
        with open(os.path.join(root, 'plexaview.cfg'), 'w', encoding='utf-8') as file:
            file.write('host = 127.0.0.1\nport = %d\n' % port)
        return root

    def run(self, command, root, seconds=SECONDS):
        """What was printed, or None and a text that says why there is nothing."""
        with subprocess.Popen(command, cwd=root, env=self.environment, start_new_session=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as process:
            try:
                printed, errors = (text.decode('utf-8', 'replace')
                                   for text in process.communicate(timeout=seconds))
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)  # with whatever it started
                return None, 'still running after %d seconds' % seconds
        if process.returncode != 0:
            return None, 'ended with %d:\n%s%s' % (process.returncode, printed, errors)
        return printed, errors

    def compare(self, block, output, printed):
        """The block after the printing one, if it says what is printed."""
        if output is None:
            if printed.strip():
                self.failures.add(block, 'no output block shows what this prints:\n' + printed)
        elif not matches(output.text, printed):
            self.failures.add(output, difference(output.text, printed))

    # C++

    def compile(self, block, name, text, root):
        source = os.path.join(root, name + '.cpp')
        program = os.path.join(root, name)
        with open(source, 'w', encoding='utf-8') as file:
            file.write(text)
        library = os.path.dirname(self.options.library)
        command = [self.options.compiler, *CPP_FLAGS, *self.options.flags.split(),
                   '-I' + os.path.join(self.options.source, 'include'), source, '-o', program,
                   self.options.library, '-Wl,-rpath,' + library]
        printed, why = self.run(command, root, COMPILE_SECONDS)
        if printed is None:
            self.failures.add(block, 'does not compile: ' + why)
        return None if printed is None else program

    def fragments(self, blocks):
        """The source of one page's fragments: each one tells where its output begins."""
        includes = []
        body = []
        for block in blocks:
            body.append('std::puts("%s");\n#line %d "%s"' % (MARK, block.line + 1, block.page))
            for line in block.text.split('\n'):
                if line.startswith('#include'):
                    includes.append(line)
                    line = ''
                body.append(line)
        return '\n'.join(['#include <cstdio>', '#include <mlds/mlds.h>', *includes, 'int main() {',
                          *body, '}', ''])

    def check_cpp(self, page, blocks, following):
        programs = [block for block in blocks if re.search(r'\bint main\(', block.text)]
        fragments = [block for block in blocks
                     if block not in programs and not self.is_excerpt(block)]
        root = self.root(page.replace('/', '_') + '_cpp') if programs or fragments else None
        for i, block in enumerate(programs):
            program = self.compile(block, 'program%d' % i, block.text, root)
            printed, why = self.run([program], root) if program else ('', '')
            if printed is None:
                self.failures.add(block, why)
            elif program:
                self.compare(block, following.get(block), printed)
        if not fragments:
            return
        program = self.compile(fragments[0], 'fragments', self.fragments(fragments), root)
        if program is None:
            return
        printed, why = self.run([program], root)
        if printed is None:
            self.failures.add(fragments[0], 'this page\'s C++ ' + why)
            return
        for block, part in zip(fragments, printed.split(MARK + '\n')[1:]):
            self.compare(block, following.get(block), part)

    def is_excerpt(self, block):
        def bare(text):
            return [line.strip() for line in text.split('\n') if line.strip()]
        wanted = bare(block.text)
        for path in glob.glob(os.path.join(self.options.source, 'examples/*/*.cpp')):
            with open(path, encoding='utf-8') as file:
                lines = bare(file.read())
            if wanted and any(lines[i:i + len(wanted)] == wanted for i in range(len(lines))):
                return True
        return False

    # Commands and notations

    def check_commands(self, page, blocks, following):
        root = self.root(page.replace('/', '_'))
        for block in blocks:
            path = {'mta': 'rules.mta', 'schema': 'schema.txt'}.get(block.kind)
            if path:
                with open(os.path.join(root, path), 'w', encoding='utf-8') as file:
                    file.write(block.text)
        rules = None  # the page's last rule file
        for block in blocks:
            if block.kind == 'sh':
                commands = re.sub(r'\s*# .*$', '', block.text, flags=re.MULTILINE).strip()
                if commands in NOT_RUN:
                    self.used.add(commands)
                else:
                    self.check_command(block, following, root, block.text)
            elif block.kind == 'mta':
                with open(os.path.join(root, 'rules.mta'), 'w', encoding='utf-8') as file:
                    file.write(block.text)  # a page may have several
                self.check_command(block, following, root, 'mlds-testasm rules.mta --check')
            elif block.kind == 'mlr':
                rules = self.check_rules(block, following.get(block), root, rules)
            elif block.kind == 'lex':
                self.write(block, root, r'; (\S+\.lex)\n')
            elif block.kind == 'listing':
                self.check_command(block, {block: block}, root, 'mlds-testasm rules.mta --list')
            elif block.kind == 'schema':
                self.check_schema(block, root)
            elif block.kind == 'cmake':
                self.check_cmake(block)
            elif block.kind == 'tiers':
                self.check_tiers(block, root)

    def check_command(self, block, following, root, commands):
        printed, why = self.run(['bash', '-euo', 'pipefail', '-c', commands], root)
        if printed is None:
            self.failures.add(block, why)
        else:
            self.compare(block, following.get(block), printed)

    def write(self, block, root, naming):
        """Writes a block to the file that its first line names, and returns the name."""
        named = re.match(naming, block.text)
        if named is None:
            self.failures.add(block, 'the first line names no file')
            return None
        with open(os.path.join(root, named.group(1)), 'w', encoding='utf-8') as file:
            file.write(block.text)
        return named.group(1)

    def check_rules(self, block, output, root, last):
        """The name of the page's last rule file, which is then as the block has it."""
        before = None
        if last is not None and not re.match(RULE_FILE, block.text):
            with open(os.path.join(root, last), encoding='utf-8') as file:
                before = file.read()
            block = block._replace(text=''.join({**statements(before),
                                                 **statements(block.text)}.values()))
        name = self.write(block, root, RULE_FILE)
        if name is None:
            return last
        if output is None:
            printed, why = self.run(['mlds', 'test', name], root)
            if printed is None or why:
                self.failures.add(block, why)
            return name
        printed, why = self.run(['bash', '-c', 'mlds check "$0" 2>&1 || true', name], root)
        if not matches(output.text, printed or why):
            self.failures.add(output, difference(output.text, printed or why))
        if before is None:
            return last
        with open(os.path.join(root, last), 'w', encoding='utf-8') as file:
            file.write(before)
        return last

    def check_schema(self, block, root):
        """A test of the first stream assembles with these declarations."""
        stream = re.search(r'^stream (\S+)', block.text, re.MULTILINE).group(1)
        with open(os.path.join(root, 'trial.mta'), 'w', encoding='utf-8') as file:
            file.write('test t %%%s\nfocus f\nf: AngleBrkt\nend\n' % stream)
        printed, why = self.run(['mlds-testasm', 'trial.mta', '--schema', 'schema.txt', '--list'],
                                root)
        if printed is None or 'AngleBrkt' not in printed:
            self.failures.add(block, why)

    def check_cmake(self, block):
        def lines(text):
            text = re.sub(r'(target_link_libraries)\(\w+', r'\1(TARGET', re.sub('#.*', '', text))
            return [line.strip() for line in text.split('\n') if line.strip()]
        path = os.path.join(self.options.source, 'tests', 'install', 'consumer', 'CMakeLists.txt')
        with open(path, encoding='utf-8') as file:
            built = lines(file.read())
        for line in lines(block.text):
            if line not in built:
                self.failures.add(block, 'tests/install builds nothing with ' + line)

    def check_tiers(self, block, root):
        rows = block.text.rstrip('\n').split('\n')
        typed = [row for row in rows if row.startswith('RawInput ')]
        if len(typed) != 1:
            self.failures.add(block, 'expected one row RawInput')
            return
        # Cells are padded to the width of their column; an empty one is a space.
        cells = typed[0].split('|')[1:-1]
        with open(os.path.join(root, 'typed.txt'), 'w', encoding='utf-8') as file:
            file.write(''.join(cell.strip() or ' ' for cell in cells) + '\n')
        printed, why = self.run(['transcribe', 'typed.txt'], root)
        shown = [row.rstrip() for row in (printed or '').split('\n')]
        for row in rows:
            if row.rstrip() not in shown:
                self.failures.add(block, 'transcribe does not print the row\n%s\nbut\n%s%s'
                                  % (row, printed, why))


def check_page(checker, page, failures):
    blocks = read_blocks(checker.options.source, page, failures)
    printing = ('cpp', 'sh', 'mlr')
    following = {block: after for block, after in zip(blocks, blocks[1:])
                 if block.kind in printing and after.kind == 'output'}
    shown = set(following.values())
    for block in blocks:
        if block.kind == 'output' and block not in shown:
            failures.add(block, 'output of nothing')
        elif block.kind not in printing + KINDS:
            failures.add(block, 'nobody knows how to check a block of kind "%s"' % block.kind)
    checker.check_cpp(page, [block for block in blocks if block.kind == 'cpp'], following)
    checker.check_commands(page, [block for block in blocks if block.kind != 'cpp'], following)
    return len(blocks)


def main():
    parser = argparse.ArgumentParser()
    for name in ('source', 'build', 'library', 'compiler'):
        parser.add_argument('--' + name, required=True)
    parser.add_argument('--flags', default='')
    parser.add_argument('pages', nargs='*', help='only these, as in docs/rules.md')
    options = parser.parse_args()
    failures = Failures()
    folder = tempfile.mkdtemp(prefix='mlds_docs_')
    try:
        checker = Checker(options, folder, failures)
        pages = options.pages or ['README.md'] + sorted(
            os.path.relpath(path, options.source)
            for path in glob.glob(os.path.join(options.source, 'docs', '*.md')))
        number = sum(check_page(checker, page, failures) for page in pages)
        for commands in sorted(set() if options.pages else set(NOT_RUN) - checker.used):
            failures.add(Block('NOT_RUN', 0, '', ''), 'no page has these commands: ' + commands)
    finally:
        shutil.rmtree(folder)
    print('%d blocks on %d pages, %d faults' % (number, len(pages), failures.count))
    return 1 if failures.count or number == 0 else 0


if __name__ == '__main__':
    sys.exit(main())
