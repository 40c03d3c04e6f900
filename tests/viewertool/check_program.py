"""check_program.py VIEWER ENGINE: the viewer as somebody uses it from a terminal and by HTTP."""

import http.client
import json
import subprocess
import sys
import unittest
from urllib.parse import urlparse

from programs import Engine, Program, Viewer, await_that

viewer_program, engine_program = sys.argv[1:3]


class Terminal(unittest.TestCase):
    def setUp(self):
        self.viewer = Viewer(viewer_program)
        self.engine = Engine(engine_program, self.viewer)

    def tearDown(self):
        self.assertEqual(self.engine.end(), 0)
        self.assertEqual(self.viewer.quit(), 0)

    def lines_until(self, last):
        lines = []
        while not lines or last not in lines[-1]:
            lines.append(self.viewer.line())
        return lines

    def test_shows_and_asks(self):
        self.assertEqual(self.engine.do('start'), 'ok')
        self.assertIn('connected', self.viewer.line())
        self.lines_until('tier2 ||a')  # the third stream is drawn last
        self.assertEqual(self.viewer.line(), '')
        self.viewer.say('fields tier0 2')
        shown = self.lines_until('    stress')
        self.assertIn('token ei of tier0', shown[0])
        self.assertIn('    name    ei', shown)
        self.viewer.say('set 0 1 tone low')
        self.assertIn('asked', self.viewer.line())
        self.assertEqual(await_that(
            lambda: self.engine.do('poll') and self.engine.do('value tier0 tone') == 'low'), True)
        for command, answer in [('set tier0 1 stress x', 'whole numbers'),
                                ('set tier0 99 stress 1', 'no token 99'),
                                ('set tier9 1 stress 1', 'no stream tier9'),
                                ('set tier0 1 nosuch 1', 'no field nosuch'),
                                ('set tier0', 'usage: set STREAM NUMBER FIELD VALUE'),
                                ('dance', 'no command dance')]:
            self.viewer.say(command)
            self.assertIn(answer, self.viewer.line())
        self.viewer.say('disconnect')
        self.lines_until('asked')
        self.engine.do('poll')
        self.lines_until('gone: it closed the connection')


class CommandLine(unittest.TestCase):
    def expect(self, status, said, *options):
        done = subprocess.run([viewer_program, *options], stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=20)
        self.assertEqual(done.returncode, status, options)
        self.assertIn(said, done.stderr + done.stdout)

    def test_refuses_what_it_cannot_do(self):
        self.expect(2, 'other machines could reach 0.0.0.0', '--host', '0.0.0.0')
        self.expect(2, 'other machines could reach 8.8.8.8', '--web-host', '8.8.8.8')
        self.expect(2, 'is no IPv4 address', '--host', 'localhost')
        self.expect(2, 'is no port', '--port', '65536')
        self.expect(2, 'is not expected', 'file')
        self.expect(0, 'usage: mlds-viewer', '--help')
        viewer = Viewer(viewer_program)
        self.expect(1, 'cannot listen on', '--port', str(viewer.port), '--no-web')
        port = urlparse(viewer.page).port
        self.expect(1, 'cannot serve the page', '--port', '0', '--web-port', str(port))
        viewer.quit()

    def test_never_waits_for_a_reader(self):
        viewer = Viewer(viewer_program, '--log')
        engine = Engine(engine_program, viewer, 8, 200)
        for _ in range(4):  # more than a pipe holds
            self.assertEqual(engine.do('start'), 'ok')
            engine.do('stop')
        self.assertEqual(engine.end(), 0)
        viewer.say('quit')
        self.assertEqual(viewer.process.wait(10), 0)
        viewer.process.stdin.close()
        viewer.process.stdout.close()

    def test_works_without_standard_input(self):
        viewer = Program('sh', '-c', f'exec "{viewer_program}" --port 0 --web-port 0 -q <&-')
        viewer.port = int(viewer.line().rpartition(':')[2])
        engine = Engine(engine_program, viewer)
        self.assertEqual(engine.do('start'), 'ok')
        self.assertEqual(engine.do('insert tier0 a'), 'ok')
        self.assertEqual(engine.end(), 0)
        viewer.process.terminate()
        viewer.end()


class Web(unittest.TestCase):
    def setUp(self):
        self.viewer = Viewer(viewer_program, '--quiet')
        self.host = urlparse(self.viewer.page).netloc

    def tearDown(self):
        self.assertEqual(self.viewer.quit(), 0)

    def request(self, method, path, body=None, **headers):
        connection = http.client.HTTPConnection(self.host, timeout=10)
        headers = {key.replace('_', '-'): value for key, value in headers.items()}
        connection.request(method, path, body, headers)
        answer = connection.getresponse()
        text = answer.read().decode()
        connection.close()
        return answer.status, text, answer

    def test_serves_only_its_own_page(self):
        status, text, answer = self.request('GET', '/')
        self.assertEqual(status, 200)
        self.assertIn('main.js', text)
        self.assertIn("default-src 'none'", answer.headers['Content-Security-Policy'])
        port = self.host.rpartition(':')[2]
        self.assertEqual(self.request('GET', '/main.js', Host=f'localhost:{port}')[0], 200)
        for host in ['example.org', f'example.org:{port}', f'192.0.2.1:{port}', '127.0.0.1.example.org']:
            self.assertEqual(self.request('GET', '/structure', Host=host)[0], 403, host)
        wish = json.dumps({'token': 1, 'field': 0, 'value': 'a'})
        own = {'Origin': f'http://{self.host}', 'Content_Type': 'application/json'}
        self.assertEqual(self.request('POST', '/field', wish, **own)[0], 409)  # no engine
        for foreign in [{**own, 'Origin': 'http://example.org'}, {**own, 'Origin': 'null'},
                        {**own, 'Origin': 'http://127.0.0.1:1'}, {**own, 'Content_Type': 'text/plain'},
                        {'Content_Type': 'application/json'}]:
            self.assertEqual(self.request('POST', '/field', wish, **foreign)[0], 403, foreign)
            self.assertEqual(self.request('POST', '/disconnect', '{}', **foreign)[0], 403, foreign)
        self.assertEqual(self.request('GET', '/structure', Origin='http://example.org')[0], 403)
        self.assertEqual(self.request('GET', '/events', Sec_Fetch_Site='cross-site')[0], 403)
        answer = self.request('GET', '/structure', Accept_Encoding='gzip, br')[2]
        self.assertIsNone(answer.headers['Content-Encoding'])  # it takes longer than sending
        self.assertEqual(self.request('GET', '/../main.js')[0], 404)

    def test_understands_only_wishes(self):
        own = {'Origin': f'http://{self.host}', 'Content_Type': 'application/json'}
        for wish in ['', '[]', '{', '{"token": -1, "field": 0, "value": "a"}',
                     '{"token": 1, "field": 4294967296, "value": "a"}',
                     '{"token": 1, "field": 0, "value": 1}', '{"token": "1", "field": 0, "value": "a"}']:
            status, text, _ = self.request('POST', '/field', wish, **own)
            self.assertEqual((status, json.loads(text)['error']), (409, 'the request is not understood'))
        self.assertEqual(self.request('POST', '/field', 'x' * 100000, **own)[0], 413)
        pieces = (b'x' * 1000 for _ in range(100))  # sent as chunks, of no length known before
        self.assertEqual(self.request('POST', '/field', pieces, **own)[0], 413)
        pieces = (b'x' * 1000 for _ in range(100))
        self.assertEqual(self.request('POST', '/field', pieces, Host='example.org')[0], 403)

    def test_tells_what_changes(self):
        engine = Engine(engine_program, self.viewer)
        engine.do('start')
        self.assertTrue(await_that(lambda: json.loads(self.request('GET', '/structure')[1])['lanes']))
        before = json.loads(self.request('GET', '/structure')[1])
        engine.do('insert tier1 o')
        after = json.loads(self.request('GET', f'/structure?since={before["number"]}')[1])
        self.assertEqual([len(lane['cells']) for lane in before['lanes']], [14, 8, 6])
        self.assertEqual([len(lane['cells']) for lane in after['lanes']], [14, 9, 6])
        changed = set(after['changed'])
        fresh = [token for lane in after['lanes'] for cell in lane['cells'] for token in cell
                 if token['id'] in changed]
        self.assertEqual([token['values'] for token in fresh], [['o', 'high', '0']])
        again = json.loads(self.request('GET', f'/structure?at={before["number"]}')[1])
        self.assertEqual({**again, 'changed': []}, {**before, 'changed': []})
        entries = json.loads(self.request('GET', f'/entries?from={before["number"] + 1}')[1])
        self.assertIn('token o of tier1 inserted', ''.join(entry['words'] for entry in entries))
        self.assertEqual(engine.end(), 0)
        last = json.loads(self.request('GET', '/structure?at=999999999')[1])
        self.assertEqual(last['lanes'], after['lanes'])  # it stays to be seen


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=1)
