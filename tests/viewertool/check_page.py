"""check_page.py VIEWER ENGINE [SCREENSHOT]: the page in a browser, as a rule writer uses it.

Ends with 77, for "skipped", where there is no Chromium or nothing that drives it.
"""

import os
import shutil
import sys

from programs import Engine, Viewer, await_that

try:
    from selenium import webdriver
    from selenium.common.exceptions import StaleElementReferenceException
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.keys import Keys
except ImportError:
    print('skipped: python3-selenium is not installed')
    sys.exit(77)

browser = shutil.which('chromium')
driver = shutil.which('chromedriver')
if not browser or not driver:
    print('skipped: chromium and chromium-driver are not installed')
    sys.exit(77)


def open_browser():
    options = webdriver.ChromeOptions()
    options.binary_location = browser
    # Who runs tests as root, in a container, has no sandbox and little shared memory.
    for option in ['--headless=new', '--no-sandbox', '--disable-dev-shm-usage', '--disable-gpu',
                   '--window-size=1500,950']:
        options.add_argument(option)
    options.set_capability('goog:loggingPrefs', {'browser': 'ALL'})
    return webdriver.Chrome(service=Service(driver), options=options)


class Page:
    def __init__(self, chrome, address):
        self.chrome = chrome
        chrome.get(address)

    def text(self, selector):
        return self.chrome.execute_script(
            'return document.querySelector(arguments[0])?.textContent ?? ""', selector)

    def tokens(self, lane):
        """The tokens of a lane that are in view, from left to right."""
        return self.chrome.execute_script('''
            const lane = [...document.querySelectorAll('.names div')].findIndex(
                (name) => name.textContent === arguments[0]);
            return [...document.querySelectorAll('.token')]
                .filter((token) => Math.floor(parseFloat(token.style.top) / 34) === lane)
                .sort((a, b) => parseFloat(a.style.left) - parseFloat(b.style.left))
                .map((token) => token.textContent);''', lane)

    def click(self, selector):
        self.expect(selector, lambda: self.chrome.find_element('css selector', selector).click()
                    is None)

    def expect(self, what, condition):
        def holds():
            try:
                return condition()
            except StaleElementReferenceException:  # drawn anew in between
                return False
        assert await_that(holds), f'{what}\n{self.text("body")[:600]}'


def check(page, viewer, engine, engine_program):
    page.expect('says that nobody is there',
                lambda: 'No engine is connected' in page.text('#banner'))

    assert engine.do('start') == 'ok'
    page.expect('shows the streams', lambda: page.tokens('tier1')[:3] == ['a', 'ei', 'kwa'])
    page.expect('says who is there', lambda: page.text('#status-text').startswith('engine 127.0.0.1:'))
    assert page.text('#banner') == ''
    page.expect('lists variables', lambda: 'here' in page.text('#variables')
                and 'of tier0' in page.text('#variables'))
    ends = page.chrome.execute_script('''
        const edges = (index, edge) => [...document.querySelectorAll('.token')]
            .filter((t) => Math.floor(parseFloat(t.style.top) / 34) === index)
            .map((t) => Math.round(t.getBoundingClientRect()[edge]));
        return [edges(0, 'right'), edges(1, 'right')];''')
    assert set(ends[1]) <= set(ends[0]), f'boundaries are aligned: {ends}'

    before = page.tokens('tier2')
    assert engine.do("insert tier2 'st' '<img src=x>'") == 'ok'
    page.expect('shows what is inserted', lambda: page.tokens('tier2') == before + [
        'st', '<img src=x>'])
    page.expect('highlights it', lambda: 'st' in [
        e.text for e in page.chrome.find_elements('css selector', '.token.changed')])
    assert not page.chrome.find_elements('css selector', '#tiers img, #log img'), 'names are text'

    page.click('.token')
    page.expect('shows fields', lambda: 'tone' in page.text('#token'))
    stress = page.chrome.find_element('css selector', '#token input[aria-label=stress]')
    stress.clear()
    stress.send_keys('7', Keys.ENTER)
    page.expect('sends an edit', lambda: engine.do('poll') and engine.do('value tier0 stress') == '7')
    page.expect('hears of it', lambda: 'stress 0 -> 7' in page.text('#log'))
    page.expect('shows it', lambda: page.chrome.find_element(
        'css selector', '#token input[aria-label=stress]').get_attribute('value') == '7')
    page.chrome.find_element('css selector', '#token input[aria-label=stress]').send_keys('12')
    page.chrome.find_element('css selector', '#token select[aria-label=tone]').send_keys('low')
    page.click('#token form.field:nth-of-type(2) button')
    page.expect('sets a choice', lambda: engine.do('poll') and engine.do('value tier0 tone') == 'low')
    page.expect('hears of that', lambda: 'tone high -> low' in page.text('#log'))
    assert page.chrome.find_element('css selector', '#token input[aria-label=stress]').get_attribute(
        'value') == '712', 'what is being typed stays'
    stress = page.chrome.find_element('css selector', '#token input[aria-label=stress]')
    stress.clear()
    stress.send_keys('x', Keys.ENTER)
    page.expect('refuses nonsense', lambda: 'whole numbers' in page.text('#token-message'))

    after = page.tokens('tier2')
    for _ in range(60):
        if page.tokens('tier2') == before:
            break
        now = page.text('#step-text')
        page.click('#step-back')
        page.expect('steps back', lambda: page.text('#step-text') not in ('', now))
    assert page.tokens('tier2') == before, 'what was not there yet is gone'
    assert 'after message' in page.text('#step-text')
    page.expect('edits nothing in the past', lambda: 'Live' in page.text('#token-message'))
    engine.do('insert tier1 o')
    page.click('#step-on')
    page.click('#step-live')
    page.expect('is live again', lambda: page.tokens('tier2') == after
                and page.tokens('tier1')[-1] == 'o')

    page.click('#disconnect')
    page.expect('asks to disconnect', lambda: engine.do('poll')
                and 'No engine is connected' in page.text('#banner'))
    assert page.tokens('tier2') == after, 'what it left stays to be seen'
    other = Engine(engine_program, viewer, 2, 4)
    assert other.do('start') == 'ok'
    page.expect('shows the next engine', lambda: len(page.tokens('tier0')) == 4
                and page.text('#banner') == '')
    page.expect('which has other tokens', lambda: 'Click a token' in page.text('#token'))
    assert not page.chrome.find_elements('css selector', '.changed, .selected')
    other.end()


def take_picture(page, viewer, engine_program, file):
    engine = Engine(engine_program, viewer, 8, 200)
    engine.do('start')
    page.expect('shows a large structure', lambda: len(page.tokens('tier7')) > 3)
    engine.do('insert tier0 o')
    page.click('.token')
    page.chrome.save_screenshot(file)
    engine.end()


def main(viewer_program, engine_program, picture=None):
    viewer = Viewer(viewer_program, '--quiet')
    engine = Engine(engine_program, viewer)
    chrome = open_browser()
    try:
        page = Page(chrome, viewer.page)
        check(page, viewer, engine, engine_program)
        if picture:
            take_picture(page, viewer, engine_program, picture)
        viewer.quit()
        page.expect('says that the viewer is gone', lambda: 'does not answer' in page.text('#banner'))
        # Not the edit that was refused, nor the viewer that is gone.
        faults = [entry['message'] for entry in chrome.get_log('browser')
                  if '409' not in entry['message'] and 'ERR_' not in entry['message']]
        assert not faults, faults
    finally:
        chrome.quit()
    assert engine.end() == 0
    print('ok')


main(*sys.argv[1:])
