#!/usr/bin/env python3
"""check_program.py PROGRAM VERSION: runs the program mlds as people do, and compares what it says."""
import json
import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import time
import xml.dom.minidom

PROGRAM, VERSION = os.path.abspath(sys.argv[1]), sys.argv[2]
LIMIT = 60  # seconds that one run may take

TIMED = """\
tier letters from text : a b ñ 日
  ignore "."
tier word spans letters
  word = [letter]+
tier phone : a b J n
tier time ms
block sounds : letters -> phone within word first
  a -> a , b -> b , ñ -> J , 日 -> n
block last : phone -> time first
  a -> 80 , b -> 75 , J -> 65 , n -> 60
assert "ab" => a b
assert "ba" => a b
"""


class Ran:
    def __init__(self, status, out, err):
        self.status, self.out, self.err = status, out, err


def mlds(*arguments, text="", status=0, environment=None):
    """Runs the program; its exit status has to be the given one."""
    done = subprocess.run([PROGRAM, *arguments], input=text.encode(), capture_output=True,
                          timeout=LIMIT, env={**os.environ, **(environment or {})}, check=False)
    ran = Ran(done.returncode, done.stdout.decode(), done.stderr.decode())
    assert ran.status == status, f"{arguments}: status {ran.status}\n{ran.out}{ran.err}"
    return ran


def equal(found, wanted):
    assert found == wanted, f"found:\n{found}\nwanted:\n{wanted}"


def write(name, text):
    with open(name, "w", encoding="utf-8", newline="") as file:
        file.write(text)


def check_command_line():
    equal(mlds("--version").out, f"mlds {VERSION}\n")
    for command in ("run", "check", "test", "trace", "view", "list", "new"):
        assert command in mlds("--help").out
        assert "Usage: mlds " + command in mlds(command, "--help").out
    for wrong in ([], ["walk"], ["run"], ["run", "sw.mlr", "--format", "song"],
                  ["run", "sw.mlr", "--format", "tsv"], ["run", "sw.mlr", "--format", "json"],
                  ["run", "sw.mlr", "--rate", "24"], ["run", "sw.mlr", "--rate", "fast"],
                  ["run", "sw.mlr", "--jobs", "0"], ["run", "sw.mlr", "--unknown=sing"],
                  ["run", "sw.mlr", "--text", "a", "t.txt"], ["run", "sw.mlr", "--out", "."],
                  ["run", "timed.mlr", "--format", "svg"],
                  ["run", "timed.mlr", "--format", "svg", "--out", "none"],
                  ["run", "timed.mlr", "--format", "svg", "--out", ".", "--per", "file"],
                  ["run", "sw.mlr", "--format", "textgrid", "--out", "."],
                  ["run", "missing.mlr"], ["run", "./sw"], ["check"], ["list", "sw.mlr", "1"],
                  ["list", "sw.mlr", "noblock"]):
        ran = mlds(*wrong, text="jambo\n", status=2)
        assert ran.err.startswith("mlds: "), (wrong, ran.err)
    assert "xx.mlr in " in mlds("run", "xx", status=2).err


def check_rules_by_name():
    os.makedirs("languages", exist_ok=True)
    os.replace("sw.mlr", "languages/sw.mlr")
    here = {"MLDS_LANGUAGES": "nowhere::languages"}
    equal(mlds("run", "sw", "--format", "phones", "--text", "jambo", environment=here).out,
          "dZ 'a m b o\n")
    mlds("run", "sw", status=2, environment={"MLDS_LANGUAGES": "nowhere"})
    os.replace("languages/sw.mlr", "sw.mlr")


def check_new():
    ran = mlds("new", "sw.mlr")
    assert "mlds test sw.mlr" in ran.out
    equal(mlds("check", "sw.mlr").out, "sw.mlr: 0 errors, 0 warnings\n")
    out = mlds("test", "sw.mlr").out.splitlines()
    equal(out[0], "sw.mlr: 4 asserts, 0 failed")
    equal(out[1], "19 of 29 rules held; these never did:")
    with open("sw.mlr", encoding="utf-8") as file:
        before = file.read()
    assert "is there already" in mlds("new", "sw.mlr", status=2).err
    with open("sw.mlr", encoding="utf-8") as file:
        equal(file.read(), before)
    mlds("new", "none/sw.mlr", status=1)


def check_tiers():
    write("t.txt", "\ufeffjambo, la\r\n \t\r\n\n\u3000\nchai")
    ran = mlds("run", "sw.mlr", "t.txt", "-", text="nchi\n")
    equal(ran.out,
          "t.txt:1\n"
          "text     |j |a |m|b|o|,| |l|a |\n"
          "letters  |j |a |m|b|o| | |l|a |\n"
          "word     |word       |   |word|\n"
          "phone    |dZ|'a|m|b|o|   |l|'a|\n"
          "\n"
          "t.txt:5\n"
          "text     |c|h|a |i|\n"
          "letters  |c|h|a |i|\n"
          "word     |word    |\n"
          "phone    |tS |'a|i|\n"
          "\n"
          "<stdin>:1\n"
          "text     |n|c|h|i |\n"
          "letters  |n|c|h|i |\n"
          "word     |word    |\n"
          "phone    |n|tS |'i|\n")
    equal(ran.err, "")
    equal(mlds("run", "sw.mlr", "--text", "jambo la\n\nchai?", "--format", "phones").out,
          "dZ 'a m b o  l 'a\ntS 'a i\n")
    equal(mlds("run", "sw.mlr", "--format", "phones", text="...\n").out, "\n")
    equal(mlds("run", "sw.mlr", text="").out, "")
    # A wide letter takes two columns.
    equal(mlds("run", "timed.mlr", "--text", "日a").out.splitlines()[1:3],
          ["text     |日|a |", "letters  |日|a |"])


def check_faults():
    text = "jambo ñ\nñ é í ó ú ya\n"
    ran = mlds("run", "sw.mlr", "--format", "phones", text=text)
    equal(ran.out.count("\n"), 2)
    lines = ran.err.splitlines()
    assert lines[0].startswith("<stdin>:1:7: warning: "), lines
    assert lines[1].startswith("<stdin>:2:1: warning: "), lines
    assert lines[3].startswith("<stdin>:2:5: warning: "), lines
    equal(lines[4:], ["<stdin>:2: warning: and 2 more"])
    for option in ("--strict", "--unknown=error"):
        ran = mlds("run", "sw.mlr", option, "--format", "phones", text=text + "la\n", status=1)
        equal(ran.out, "l 'a\n")
        assert "<stdin>:1:7: error: " in ran.err
    mlds("run", "sw.mlr", "--unknown=keep", text=text)

    ran = mlds("run", "sw.mlr", "missing.txt", ".", "t.txt", "--format", "phones", status=1)
    equal(ran.out.count("\n"), 2)
    assert "missing.txt" in ran.err and "cannot read .:" in ran.err, ran.err


def check_long_lines():
    # Cut behind spaces, nothing lost, under one heading; columns count on.
    write("letters.mlr", "tier letters from text : a b j m o\n")
    ran = mlds("run", "letters.mlr", "--format", "phones",
               text=" ".join(["jambo"] * 10000 + ["ñ"]) + "\na\n")
    parts = ran.out.splitlines()
    equal(len(parts), 5)
    equal("".join(parts[:4]).replace(" ", ""), "jambo" * 10000)
    assert all(part.replace(" ", "").endswith("jambo") for part in parts[:4])
    assert ran.err.startswith("<stdin>:1:60001: warning: "), ran.err
    # Where there is no space, anywhere, but not between a letter and its accent.
    ran = mlds("run", "letters.mlr", "--unknown=keep", text="a" * 19999 + "e\u0301" + "a" * 25000 + "\na")
    equal([line for line in ran.out.splitlines() if ":" in line and "warning" not in line],
          ["<stdin>:1", "<stdin>:2"])
    equal(sum(line.count("a") for line in ran.out.splitlines() if line.startswith("letters")), 45000)
    equal(ran.err.count("\n"), 1)


def check_jobs():
    text = "".join(f"jambo {'ñ' if i % 50 == 0 else 'la'} {'chai ' * (i % 7)}\n" for i in range(1500))
    write("many.txt", text)
    for form in ("tiers", "phones"):
        one = mlds("run", "sw.mlr", "many.txt", "--format", form)
        for jobs in ("2", "5"):
            many = mlds("run", "sw.mlr", "many.txt", "--format", form, "--jobs", jobs)
            equal(many.out, one.out)
            equal(many.err, one.err)
    strict = mlds("run", "sw.mlr", "many.txt", "--strict", "--jobs", "3", "--format", "phones", status=1)
    equal(strict.out.count("\n"), 1470)


def closed_pipe():
    """A pipe whose reader has gone."""
    reader, writer = os.pipe()
    os.close(reader)
    return writer


def check_outputs_that_fail():
    outputs = {"full": lambda: os.open("/dev/full", os.O_WRONLY), "gone": closed_pipe}
    for what in ("run sw.mlr many.txt", "run sw.mlr many.txt --jobs 2", "check sw.mlr",
                 "check sw.mlr --json", "test sw.mlr", "list sw.mlr", "--help", "--version"):
        for name, make in outputs.items():
            output = make()
            done = subprocess.run([PROGRAM, *what.split()], stdout=output, stderr=subprocess.PIPE,
                                  timeout=LIMIT, check=False)
            os.close(output)
            assert done.returncode == 1, (what, name, done.returncode, done.stderr)
            assert b"mlds: cannot write to standard output: " in done.stderr, (what, name)
    # A standard output that is closed is not replaced by the next file that is opened.
    for what in ("run sw.mlr many.txt", "run timed.mlr n.txt --format textgrid --out ."):
        write("n.txt", "ab\n")
        done = subprocess.run(["sh", "-c", f"'{PROGRAM}' {what} >&-"], stderr=subprocess.PIPE,
                              timeout=LIMIT, check=False)
        equal(done.returncode, 0 if "textgrid" in what else 1)
    with open("n-1.TextGrid", encoding="utf-8") as file:
        assert file.read().startswith('File type = "ooTextFile"\n')


def check_files():
    write("n.txt", "ab ba\n.\nba\n")
    os.makedirs("grids", exist_ok=True)
    ran = mlds("run", "timed.mlr", "n.txt", "n.txt", "--format", "textgrid", "--out", "grids")
    equal(sorted(os.listdir("grids")),
          ["n-1-2.TextGrid", "n-1.TextGrid", "n-3-2.TextGrid", "n-3.TextGrid"])
    assert "n.txt:2: warning: nothing lasts" in ran.err
    with open("grids/n-3.TextGrid", encoding="utf-8") as file:
        grid = file.read()
    assert re.search(r'name = "phone"\n\s+xmin = 0\n\s+xmax = 0.155\n\s+intervals: size = 2\n', grid)

    mlds("run", "timed.mlr", "n.txt", "--format", "textgrid", "--out", "grids", "--per", "file",
         "--jobs", "2")
    with open("grids/n.TextGrid", encoding="utf-8") as file:
        assert "\nxmax = 0.465\n" in file.read()
    mlds("run", "timed.mlr", "n.txt", "--format", "textgrid", "--out", "grids", "--rate", "50")
    with open("grids/n-3.TextGrid", encoding="utf-8") as file:
        assert "\nxmax = 0.31\n" in file.read()

    mlds("run", "timed.mlr", "n.txt", "--format", "svg", "--out", "grids")
    drawing = xml.dom.minidom.parse("grids/n-1.svg")
    texts = [node.firstChild.data for node in drawing.getElementsByTagName("text")]
    equal(texts[0], "ab ba")

    os.makedirs("blocked/n-1.TextGrid", exist_ok=True)
    ran = mlds("run", "timed.mlr", "n.txt", "--format", "textgrid", "--out", "blocked", status=1)
    assert "n-1.TextGrid: " in ran.err


def check_check():
    write("wrong.mlr", TIMED.replace("ñ -> J", "ñ -> X").replace("-> 75", "-> [") )
    ran = mlds("check", "wrong.mlr", status=2)
    assert re.fullmatch(r"wrong\.mlr: \d+ errors?, \d+ warnings?\n", ran.out), ran.out
    assert re.match(r"wrong\.mlr:\d+:\d+: error: ", ran.err), ran.err
    messages = json.loads(mlds("check", "--json", "wrong.mlr", status=2).out)
    equal(list(messages[0]), ["file", "line", "column", "length", "severity", "message"])
    equal(messages[0]["file"], "wrong.mlr")
    assert messages[0]["line"] in (8, 10) and messages[0]["severity"] == "error", messages
    equal(json.loads(mlds("check", "--json", "sw.mlr").out), [])
    with open("bytes.mlr", "wb") as file:
        file.write(b"tier a from text : \xff\xfe\x00\ntier \xc3\n")
    json.loads(mlds("check", "--json", "bytes.mlr", status=2).out)
    mlds("run", "wrong.mlr", status=2)


def check_test():
    ran = mlds("test", "timed.mlr", status=1)
    assert ran.out.startswith("timed.mlr: 2 asserts, 1 failed\n"), ran.out
    equal(ran.err, 'timed.mlr:12:8: assert failed: "ba" => a b, found b a\n')

    write("cases.tsv", "; a comment\njambo\tdZ  'a m b o\r\n\nla\tl a\nno tab\n")
    ran = mlds("test", "sw.mlr", "cases.tsv", status=1)
    assert ran.out.startswith("sw.mlr: 4 asserts, 0 failed\ncases.tsv: 3 cases, 2 failed\n"), ran.out
    assert "cases.tsv:4: failed: \"la\" => l a, found l 'a\n" in ran.err
    assert "cases.tsv:5: no TAB" in ran.err
    write("cases.tsv", "la\tl 'a\n" + "la\tx\n" * 30)
    assert "and 10 more" in mlds("test", "sw.mlr", "cases.tsv", status=1).err
    equal(mlds("test", "--all", "sw.mlr", "cases.tsv", status=1).err.count("\n"), 30)
    mlds("test", "sw.mlr", "missing.tsv", status=1)


def check_list():
    everything = mlds("list", "sw.mlr").out
    assert everything.count(": block ") == 29, everything.count(": block ")
    stress = mlds("list", "sw.mlr", "stress").out
    assert stress.startswith("sw.mlr:30: block stress: ") and stress in everything
    equal(mlds("list", "sw.mlr", "30").out, stress)
    some = mlds("list", "sw.mlr", "22-23").out
    equal(sorted(set(re.findall(r"^sw\.mlr:(\d+)", some, re.M))), ["22", "23"])


def check_conversation():
    """Who types a line gets its result before the next; progress is shown after a second."""
    terminal, end = pty.openpty()
    with subprocess.Popen([PROGRAM, "run", "sw.mlr", "--format", "phones"], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE, stderr=end) as process:
        os.close(end)
        for _ in range(8):
            process.stdin.write(b"jambo\n")
            process.stdin.flush()
            ready, _, _ = select.select([process.stdout], [], [], LIMIT)
            assert ready, "no result of a line"
            equal(process.stdout.readline(), b"dZ 'a m b o\n")
            time.sleep(0.2)
        process.stdin.close()
        equal(process.wait(timeout=LIMIT), 0)
    seen = b""
    while select.select([terminal], [], [], 0.2)[0]:
        try:
            block = os.read(terminal, 4096)
        except OSError:
            break
        if not block:
            break
        seen += block
    os.close(terminal)
    assert b"\r<stdin>:" in seen and seen.endswith(b"\r\x1b[K"), seen


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        os.environ.pop("MLDS_LANGUAGES", None)
        write("timed.mlr", TIMED)
        for check in (check_new, check_tiers, check_faults, check_long_lines, check_jobs,
                      check_command_line, check_rules_by_name, check_outputs_that_fail, check_files,
                      check_check, check_test, check_list, check_conversation):
            started = time.monotonic()
            try:
                check()
            except AssertionError as error:
                print(f"{check.__name__}: {error}", file=sys.stderr)
                if "--all" not in sys.argv:
                    sys.exit(1)
            else:
                print(f"{check.__name__}: {time.monotonic() - started:.1f} s")
        os.chdir("/")


main()
