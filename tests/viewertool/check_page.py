"""check_page.py VIEWER ENGINE [SCREENSHOT]: the page in a browser, as a rule writer uses it.

Ends with 77, for "skipped", where there is no Chromium or nothing that drives it.
"""

import re
import socket
import sys
import time
from urllib.parse import urlparse

from browser import Page, open_browser
from programs import Engine, Viewer
from selenium.webdriver.common.keys import Keys

FIELDS = ('name', 'tone', 'stress')


def last_message(page):
    """The newest message there is, by what is written beside the slider."""
    return int(re.search(r'(\d+)( messages$|:)', page.text('#step-text')).group(1))


def is_live(page):
    return page.text('#step-text').endswith(' messages')


def follows_log(page):
    return page.log()['seen'][-1:] == [last_message(page)]


def tell(page, engine, command):
    """Has the engine do something, and waits until all of it is on the page."""
    before = last_message(page)
    assert engine.do(command) == 'ok'
    page.expect(f'hears of {command}', lambda: last_message(page) > before
                and page.log()['last'] == last_message(page))


def check_streams(page, engine):
    page.expect('says that nobody is there',
                lambda: 'No engine is connected' in page.text('#banner'))
    assert engine.do('start') == 'ok'
    page.expect('shows the streams', lambda: page.tokens('tier1')[:3] == ['a', 'ei', 'kwa'])
    page.expect('says who is there', lambda: page.text('#status-text').startswith('engine 127.0.0.1:'))
    assert page.text('#banner') == ''
    page.expect('lists variables', lambda: 'here' in page.text('#variables')
                and 'of tier0' in page.text('#variables'))
    page.expect('follows the messages from the first engine on', lambda: follows_log(page))
    assert page.log()['overflows'], 'of which there are more than can be seen'
    edges = [{right for _, _, right in page.boxes(lane)} for lane in ('tier0', 'tier1')]
    assert edges[1] <= edges[0], f'boundaries are aligned: {edges}'

    before = page.tokens('tier2')
    assert engine.do("insert tier2 'st' '<img src=x>'") == 'ok'
    page.expect('shows what is inserted', lambda: page.tokens('tier2') == before + [
        'st', '<img src=x>'])
    page.expect('highlights it', lambda: 'st' in [
        e.text for e in page.chrome.find_elements('css selector', '.token.changed')])
    assert not page.chrome.find_elements('css selector', '#tiers img, #log img'), 'names are text'
    return before


def check_fields(page, engine):
    def held():
        return {field: engine.do(f'value tier0 {field}') for field in FIELDS}

    assert engine.do('set tier0 tone low') == 'ok'
    page.click('.token')
    page.expect('shows what a token holds', lambda: page.values() == held())
    assert held() == {'name': 'a', 'tone': 'low', 'stress': '0'}
    for field, value in [('tone', 'high'), ('stress', '3'), ('name', 'st')]:
        engine.do(f'set tier0 {field} {value}')
        page.expect(f'shows a new {field}', lambda: page.values() == held())
    assert held() == {'name': 'st', 'tone': 'high', 'stress': '3'}

    # Written from right to left, which the line around it is not.
    engine.do('set tier0 name \u05d0')
    engine.do('set tier0 name \u05d1')
    page.expect('shows any script', lambda: page.values() == held()
                and page.log()['last'] == last_message(page))
    assert page.order('#log li:last-child', '\u05d0', '->', '\u05d1') == ['\u05d0', '->', '\u05d1']
    engine.do('set tier0 name st')

    stress = page.find('#token input[aria-label=stress]')
    stress.clear()
    stress.send_keys('7', Keys.ENTER)
    page.expect('sends an edit', lambda: engine.do('poll') and engine.do('value tier0 stress') == '7')
    page.expect('hears of it', lambda: 'stress 3 -> 7' in page.text('#log'))
    page.expect('shows it', lambda: page.values() == held())
    stress.send_keys('12')
    page.find('#token select[aria-label=tone]').send_keys('low')
    page.click('#token form.field:nth-of-type(2) button')
    page.expect('sets a choice', lambda: engine.do('poll') and engine.do('value tier0 tone') == 'low')
    page.expect('hears of that', lambda: 'tone high -> low' in page.text('#log'))
    page.expect('keeps what is being typed', lambda: page.values() == {**held(), 'stress': '712'})
    stress.clear()
    stress.send_keys('x', Keys.ENTER)
    page.expect('refuses nonsense', lambda: 'whole numbers' in page.text('#token-message'))
    stress.clear()
    stress.send_keys('07', Keys.ENTER)
    page.expect('shows how the engine took it', lambda: engine.do('poll') and page.values() == held())


def check_past(page, engine, before):
    """Back to where the third stream was as `before`."""
    after = page.tokens('tier2')
    for _ in range(60):
        if page.tokens('tier2') == before:
            break
        now = page.text('#step-text')
        page.click('#step-back')
        page.expect('steps back', lambda: page.text('#step-text') not in ('', now))
    page.expect('takes away what was not there yet', lambda: page.tokens('tier2') == before)
    page.expect('shows the values of then', lambda: page.fields() == {
        'name': ('a', False), 'tone': ('high', False), 'stress': ('0', False)})
    page.expect('says why nothing can be set', lambda: 'Live' in page.text('#token-message'))
    page.run('document.querySelector("#token form:nth-of-type(3) input").value = 5;'
             'document.querySelector("#token form:nth-of-type(3)").dispatchEvent('
             '  new Event("submit", {cancelable: true}));')
    engine.do('poll')
    assert engine.do('value tier0 stress') == '7', 'and nothing is'

    shown, newest = re.match(r'after message (\d+) of (\d+): .', page.text('#step-text')).groups()
    engine.do('insert tier1 o')
    page.expect('counts what comes meanwhile', lambda: last_message(page) > int(newest))
    assert page.text('#step-text').startswith(f'after message {shown} of ')
    assert page.tokens('tier2') == before, 'which is not shown yet'
    assert int(shown) in page.log()['seen'], 'the message that was stepped to is in view'
    page.click('#step-on')
    page.expect('steps on', lambda: f'after message {int(shown) + 1} of' in page.text('#step-text'))
    page.click('#step-live')
    page.expect('is live again', lambda: page.tokens('tier2') == after
                and page.tokens('tier1')[-1] == 'o')
    page.expect('with the values of now', lambda: page.fields() == {
        'name': ('st', True), 'tone': ('low', True), 'stress': ('7', True)})
    page.expect('at the end of the messages', lambda: follows_log(page))


def check_log(page, engine):
    def scroll(to):
        page.run('document.querySelector("#log").scrollTop = arguments[0]', to)

    engine.do('insert tier1 a')
    page.expect('follows', lambda: follows_log(page))
    top = page.log()['top']
    page.expect('is scrolled by a finger', lambda: page.swipe('#log', 120)
                or page.log()['top'] < top - 50)
    assert is_live(page), 'which is no step into the past'
    page.right_click('#log li:nth-last-child(20)')
    scroll(0)
    seen = page.log()['seen']
    tell(page, engine, "insert tier1 'ei'")
    assert page.log()['seen'] == seen, 'and stays where somebody reads'
    assert is_live(page), 'which a right click does not end'
    scroll(1000000)
    tell(page, engine, "insert tier1 'kwa'")
    assert follows_log(page), 'follows again'
    size = page.chrome.get_window_size()
    page.chrome.set_window_size(size['width'], size['height'] - 150)
    page.expect('keeps the end in view', lambda: follows_log(page))
    page.chrome.set_window_size(size['width'], size['height'])
    scroll(0)
    number = page.log()['seen'][3]
    page.click(f'#log li[data-number="{number}"]')
    page.expect('steps to what is clicked',
                lambda: page.text('#step-text').startswith(f'after message {number} of '))
    page.click('#step-live')
    page.expect('returns to the end', lambda: is_live(page) and follows_log(page))
    page.click('#step-first')
    page.expect('brings the message into view', lambda: 1 in page.log()['seen'])
    page.click('#step-live')
    page.expect('returns again', lambda: is_live(page) and follows_log(page))


def check_long_texts(page, engine):
    for _ in range(20):
        engine.do('say x 1000000')
    page.expect('is not held up', lambda: page.log()['last'] == last_message(page) > 20
                and 'xxx\u2026' in page.text('#log li:last-child'))
    assert page.run('return document.body.textContent.length') < 100000


def check_crowd(page, viewer, engine):
    """More listen than there is room for."""
    place = urlparse(viewer.page)
    crowd = [socket.create_connection((place.hostname, place.port), 20) for _ in range(40)]
    for guest in crowd:
        guest.sendall(f'GET /events HTTP/1.1\r\nHost: {place.netloc}\r\n\r\n'.encode())
    page.chrome.refresh()
    page.expect('shows what there is', lambda: page.tokens('tier1')[:3] == ['a', 'ei', 'kwa'])
    tell(page, engine, 'set tier0 stress 8')
    assert page.text('#banner') == ''
    for guest in crowd:
        guest.close()


def check_lanes(page, engine):
    """A structure that is far wider than the window."""
    def scroll(to):
        page.run('document.querySelector(".scroller").scrollLeft = arguments[0]', to)

    def place():
        return page.run('return document.querySelector(".scroller").scrollLeft')

    page.click('#follow')
    scroll(900)
    page.expect('draws what is scrolled to', lambda: page.boxes('tier0')[0][1] > -450)
    seen = page.boxes('tier0')
    tell(page, engine, "insert tier0 'kwa'")
    assert abs(place() - 900) < 3 and page.boxes('tier0') == seen, 'lanes stay where they were'
    page.click('#follow')
    tell(page, engine, "insert tier0 'kwa'")
    page.expect('brings what has changed into view', lambda: place() > 2000
                and page.boxes('tier0')[-1][2] <= 1500)
    page.click('#follow')
    # Of more messages than are listed, those that somebody reads stay.
    page.run('document.querySelector("#log").scrollTop = 100')
    seen = page.log()['seen']
    assert last_message(page) - seen[0] > 150
    drawn = len(page.tokens('tier0'))
    engine.do("insert tier0 'kwa'")
    page.expect('draws it', lambda: len(page.tokens('tier0')) > drawn)
    time.sleep(0.5)  # in which nothing is to happen
    assert page.log()['seen'] == seen, 'the messages stay'


def check_leaving(page, viewer, engine, engine_program):
    left = page.tokens('tier2')
    page.click('#disconnect')
    page.expect('says that it asks', lambda: 'asked; the engine answers' in page.text('#notice'))
    page.expect('asks to disconnect', lambda: engine.do('poll')
                and 'No engine is connected' in page.text('#banner'))
    assert page.text('#notice') == '', 'which is answered'
    assert page.tokens('tier2') == left, 'what it left stays to be seen'
    assert not any(free for _, free in page.fields().values()), 'but not to be set'
    other = Engine(engine_program, viewer, 8, 200)
    assert other.do('start') == 'ok'
    page.expect('shows the next engine', lambda: len(page.tokens('tier7')) > 3
                and page.text('#banner') == '')
    page.expect('which has other tokens', lambda: 'Click a token' in page.text('#token'))
    assert not page.chrome.find_elements('css selector', '.changed, .selected')
    check_lanes(page, other)
    return other


def main(viewer_program, engine_program, picture=None):
    chrome = open_browser()
    viewer = Viewer(viewer_program, '--quiet')
    engine = Engine(engine_program, viewer)
    try:
        page = Page(chrome, viewer.page)
        before = check_streams(page, engine)
        check_fields(page, engine)
        check_past(page, engine, before)
        check_log(page, engine)
        check_long_texts(page, engine)
        check_crowd(page, viewer, engine)
        other = check_leaving(page, viewer, engine, engine_program)
        if picture:
            page.click('.token')
            chrome.save_screenshot(picture)
        other.end()
        viewer.quit()
        page.expect('says that the viewer is gone', lambda: 'does not answer' in page.text('#banner'))
        # Not the edit or the page that was refused, nor the viewer that is gone.
        faults = [entry['message'] for entry in chrome.get_log('browser')
                  if not re.search('ERR_|status of (409|503)', entry['message'])]
        assert not faults, faults
    finally:
        chrome.quit()
    assert engine.end() == 0
    print('ok')


main(*sys.argv[1:])
