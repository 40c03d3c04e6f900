#!/usr/bin/env python3
"""check_spanish.py PROGRAM SAMPLES: Spanish as people use it: texts, words, a TextGrid, the viewer."""
import glob
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.request

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(os.path.dirname(HERE), 'viewertool'))
from programs import Program, await_that  # noqa: E402

PROGRAM, SAMPLES = (os.path.abspath(path) for path in sys.argv[1:3])
LIMIT = 60  # seconds that one run may take
GREETING = 'saludo.txt'

READ_GRID = """\
form Grid
    sentence path
endform
Read from file: path$
tiers = Get number of tiers
for tier to tiers
    name$ = Get tier name: tier
    intervals = Get number of intervals: tier
    label$ = Get label of interval: tier, 2
    start = Get start time of interval: tier, 2
    finish = Get end time of interval: tier, 2
    appendInfoLine: name$, " ", intervals, " [", label$, "] ", fixed$(start, 3), " ", fixed$(finish, 3)
endfor
"""


def run(*command):
    done = subprocess.run(command, cwd=SAMPLES, capture_output=True, text=True, timeout=LIMIT,
                          check=False)
    assert (done.returncode, done.stderr) == (0, ''), f'{command}: {done.returncode}\n{done.stderr}'
    return done.stdout


def mlds(*arguments):
    return run(PROGRAM, *arguments)


class Texts(unittest.TestCase):
    maxDiff = None

    def test_asserts_and_words_hold(self):
        mlds('test', 'es', os.path.join(HERE, 'es.tsv'))

    def test_greeting_has_its_tiers(self):
        # Rows that only rules look at are theirs.
        rows = [row for row in mlds('run', 'es', GREETING).splitlines(keepends=True)
                if not re.match('(part|phrase) ', row)]
        with open(os.path.join(HERE, 'saludo.expected'), encoding='utf-8') as file:
            self.assertEqual(''.join(rows), file.read())

    def test_samples_are_spoken_whole(self):
        for path in glob.glob(os.path.join(SAMPLES, '*.txt')):
            with open(path, encoding='utf-8') as file:
                lines = [line for line in file if line.strip()]
            phones = mlds('run', 'es', '--strict', '--format', 'phones', path).splitlines()
            self.assertEqual(len(phones), len(lines), path)
            self.assertTrue(all(phones), path)

    @unittest.skipUnless(shutil.which('praat'), 'praat is not installed')
    def test_praat_opens_a_grid(self):
        with tempfile.TemporaryDirectory() as folder:
            mlds('run', 'es', GREETING, '--format', 'textgrid', '--out', folder)
            script = os.path.join(folder, 'read.praat')
            with open(script, 'w', encoding='utf-8') as file:
                file.write(READ_GRID)
            said = run('praat', '--run', script, os.path.join(folder, 'saludo-1.TextGrid'))
            tiers = said.splitlines()
        self.assertIn('phone 14 [l] 0.104 0.194', tiers)
        self.assertIn('syl 8 [la] 0.104 0.314', tiers)
        self.assertIn('time 14 [90] 0.104 0.194', tiers)


class View(unittest.TestCase):
    """A text that is watched comes out as without, and the page has its tiers."""

    def start(self, *options):
        # What people are told and what is printed come down one pipe, in their order.
        view = Program(PROGRAM, 'view', 'es', *options, GREETING, cwd=SAMPLES, stderr=subprocess.STDOUT)
        page = re.fullmatch(r'Open (http://\S+/) in a browser.*', view.line()).group(1)
        return view, page

    def ask(self, page, question):
        with urllib.request.urlopen(page + question, timeout=LIMIT) as answer:
            return json.load(answer)

    def lines_before(self, view, last):
        lines = [view.line()]
        while lines[-1] != last:
            self.assertNotEqual(lines[-1], '', f'{last} never came')
            lines.append(view.line())
        return lines[:-1]

    def check_end(self, view, page):
        lane = next(lane for lane in self.ask(page, 'structure')['lanes'] if lane['name'] == 'phone')
        names = [token['values'][0] for cell in lane['cells'] for token in cell]
        phones = mlds('run', 'es', '--format', 'phones', GREETING).splitlines()
        self.assertEqual(names, phones[-1].replace("'", '').split())
        view.say('')
        self.assertEqual(view.end(), 0)
        # The viewer goes with the program that started it.
        self.assertTrue(await_that(lambda: not self.answers(page)))
        return phones

    def answers(self, page):
        try:
            return bool(self.ask(page, 'status'))
        except OSError:
            return False

    def test_at_once(self):
        view, page = self.start()
        printed = self.lines_before(view, 'The page stays until you press Enter.')
        self.assertEqual(printed, self.check_end(view, page))

    def test_step_by_step(self):
        view, page = self.start('--step')
        view.say('')  # begin
        rule = r'\S*es\.mlr:\d+ .*  \[Enter: next, c: go on\]'
        for _ in range(3):
            self.assertRegex(view.line(), rule)
            view.say('')
        last = re.match(r'\S*es\.mlr:\d+ (.*)  \[', view.line()).group(1)
        time.sleep(0.1)  # a step that nobody asked for would be taken meanwhile
        self.assertIn(last, self.ask(page, 'entries?from=0')[-1]['words'])
        view.say('c')
        printed = self.lines_before(view, 'The page stays until you press Enter.')
        self.assertEqual(printed, self.check_end(view, page))


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=1)
