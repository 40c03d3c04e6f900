#!/usr/bin/env python3
"""check_messages.py SOURCE: the page of messages has what libs/rules says, and nothing else.

A message in the sources is a text of several words; what C++ puts between the parts of one are words
in capitals on the page. Every part has to stand in an item of the page's lists, as code, and every item
has to have such a part."""
import glob
import os
import re
import sys

PAGE = 'docs/rules-messages.md'
SOURCES = 'libs/rules/src'
# Folders and files whose texts are no messages about rules, lexicons or texts.
OTHERS = ('trace/', 'host/tierscheck.cpp', 'diagnostics.cpp')
LITERAL = r'"(?:[^"\\\n]|\\.)*"'


def texts_of(path):
    """The string literals of a source; those that C++ joins are one."""
    with open(path, encoding='utf-8') as file:
        code = file.read()
    code = re.sub(r'R"\((.*?)\)"', lambda raw: '"%s"' % re.sub(r'(["\\])', r'\\\1', raw.group(1)), code)
    # What is left of '"' would begin a text, and so would a quote in a comment.
    code = re.sub(r"(%s)|'(?:\\.|[^'\\\n])'|//[^\n]*" % LITERAL, lambda m: m.group(1) or ' ', code)
    for joined in re.findall(r'%s(?:\s*%s)*' % (LITERAL, LITERAL), code):
        text = ''.join(part[1:-1] for part in re.findall(LITERAL, joined))
        text = re.sub(r'\\x([0-9A-F]{2})', lambda m: chr(int(m.group(1), 16)), text)
        text = re.sub(r'\\(["\\])', r'\1', text)
        text = text.encode('latin-1').decode() if '\xc3' in text else text
        yield from re.split('%[0-9]+X', text)


def is_message(text):
    return re.search(r"[a-z'\")*:;,] [a-z0-9'\"(]", text.strip()) is not None and re.search(
        '[a-z]{2}', text) is not None


def messages(source):
    found = {}
    root = os.path.join(source, SOURCES)
    for path in sorted(glob.glob(root + '/**/*.cpp', recursive=True)):
        name = os.path.relpath(path, root)
        if not name.startswith(OTHERS):
            for text in texts_of(path):
                if is_message(text):
                    found.setdefault(text.strip(), name)
    return found


def main():
    source = sys.argv[1]
    with open(os.path.join(source, PAGE), encoding='utf-8') as file:
        items = re.findall(r'^- .*\n(?:  .*\n)*', file.read(), re.MULTILINE)
    entries = ['\n'.join(code for _, code in re.findall(r'(`+) ?(.+?) ?\1', item)) for item in items]
    found = messages(source)
    faults = ['%s says "%s", which has no entry' % (name, text) for text, name in found.items()
              if not any(text in entry for entry in entries)]
    faults += ['nothing in %s says "%s"' % (SOURCES, entry) for entry in entries
               if not any(text in entry for text in found)]
    for fault in faults:
        print('%s: %s' % (PAGE, fault))
    print('%d entries, %d parts of messages, %d faults' % (len(entries), len(found), len(faults)))
    return 1 if faults or len(found) < 100 else 0


if __name__ == '__main__':
    sys.exit(main())
