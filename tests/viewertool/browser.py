"""A headless browser and what somebody sees of the viewer's page in it."""

import shutil
import sys
import time

from programs import await_that

try:
    from selenium import webdriver
    from selenium.common.exceptions import StaleElementReferenceException
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.action_chains import ActionChains
except ImportError:
    print('skipped: python3-selenium is not installed')
    sys.exit(77)

LANE_HEIGHT = 34


def open_browser():
    browser = shutil.which('chromium')
    driver = shutil.which('chromedriver')
    if not browser or not driver:
        print('skipped: chromium and chromium-driver are not installed')
        sys.exit(77)
    options = webdriver.ChromeOptions()
    options.binary_location = browser
    # Who runs tests as root, in a container, has no sandbox and little shared memory.
    for option in ['--headless=new', '--no-sandbox', '--disable-dev-shm-usage', '--disable-gpu',
                   '--window-size=1500,950']:
        options.add_argument(option)
    options.set_capability('goog:loggingPrefs', {'browser': 'ALL'})
    chrome = webdriver.Chrome(service=Service(driver), options=options)
    chrome.set_page_load_timeout(20)
    chrome.set_script_timeout(20)
    return chrome


class Page:
    def __init__(self, chrome, address):
        self.chrome = chrome
        chrome.get(address)

    def run(self, script, *arguments):
        return self.chrome.execute_script(script, *arguments)

    def find(self, selector):
        return self.chrome.find_element('css selector', selector)

    def text(self, selector):
        return self.run('return document.querySelector(arguments[0])?.textContent ?? ""', selector)

    def expect(self, what, condition):
        def holds():
            try:
                return condition()
            except StaleElementReferenceException:  # drawn anew in between
                return False
        assert await_that(holds), f'{what}\n{self.text("body")[:600]}'

    def click(self, selector):
        self.expect(selector, lambda: self.find(selector).click() is None)

    def right_click(self, selector):
        ActionChains(self.chrome).context_click(self.find(selector)).perform()

    def swipe(self, selector, down):
        """A finger touches the middle of an element and scrolls it."""
        x, y = self.run('''const {x, y, width, height} =
            document.querySelector(arguments[0]).getBoundingClientRect();
            return [x + width / 2, y + height / 2];''', selector)

        def touch(kind, *points):
            self.chrome.execute_cdp_cmd('Input.dispatchTouchEvent',
                                        {'type': kind, 'touchPoints': list(points)})
            time.sleep(0.03)  # a finger takes its time, and what goes at once is no scrolling
        touch('touchStart', {'x': x, 'y': y})
        for step in range(1, 13):
            touch('touchMove', {'x': x, 'y': y + down * step / 12})
        touch('touchEnd')

    def order(self, selector, *words):
        """Some words of an element's text as they stand on the screen, from left to right."""
        return self.run('''
            const [root, words] = [document.querySelector(arguments[0]), arguments[1]];
            const walker = document.createTreeWalker(root, NodeFilter.SHOW_TEXT);
            const places = new Map();
            for (let node; (node = walker.nextNode());) {
                for (const word of words) {
                    const range = document.createRange();
                    const at = node.data.lastIndexOf(word);
                    if (at < 0) continue;
                    range.setStart(node, at);
                    range.setEnd(node, at + word.length);
                    places.set(word, range.getBoundingClientRect().left);
                }
            }
            return [...places.keys()].sort((a, b) => places.get(a) - places.get(b));''',
                        selector, words)

    def lane(self, name):
        return self.run('''return [...document.querySelectorAll('.names div')].findIndex(
            (div) => div.textContent === arguments[0]);''', name)

    def boxes(self, lane):
        """The tokens of a lane that are drawn, from left to right: text, left and right edge."""
        return self.run('''
            return [...document.querySelectorAll('.token')]
                .filter((token) => Math.floor(parseFloat(token.style.top) / arguments[1]) === arguments[0])
                .sort((a, b) => parseFloat(a.style.left) - parseFloat(b.style.left))
                .map((token) => {
                    const {left, right} = token.getBoundingClientRect();
                    return [token.textContent, Math.round(left), Math.round(right)];
                });''', self.lane(lane), LANE_HEIGHT)

    def tokens(self, lane):
        return [text for text, _, _ in self.boxes(lane)]

    def fields(self):
        """What the token panel shows: of every field its name, value, and whether it can be set."""
        return {name: (value, free) for name, value, free in self.run('''
            return [...document.querySelectorAll('#token form')].map((form) => {
                const input = form.querySelector('input, select');
                const shown = input.tagName === 'SELECT'
                    ? input.selectedOptions[0]?.textContent ?? '' : input.value;
                const free = !input.disabled && !form.querySelector('button').disabled;
                return [input.getAttribute('aria-label'), shown, free];
            });''')}

    def values(self):
        return {name: value for name, (value, _) in self.fields().items()}

    def log(self):
        """The messages that can be seen, the last one that is listed, and how far it is scrolled."""
        return self.run('''
            const root = document.querySelector('#log');
            const box = root.getBoundingClientRect();
            const seen = [...root.querySelectorAll('li')].filter((item) => {
                const {top, bottom} = item.getBoundingClientRect();
                return top >= box.top - 1 && bottom <= box.bottom + 1;
            }).map((item) => Number(item.dataset.number));
            const last = Number(root.querySelector('li:last-child')?.dataset.number);
            return {seen, last, top: root.scrollTop, overflows: root.scrollHeight > root.clientHeight + 40};''')
