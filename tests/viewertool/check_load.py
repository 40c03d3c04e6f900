"""check_load.py VIEWER ENGINE: nobody is kept waiting by long texts, by the past, or by the idle."""

import http.client
import json
import os
import random
import socket
import sys
import threading
import time
import unittest
from urllib.parse import urlparse

from programs import Engine, Viewer

viewer_program, engine_program = sys.argv[1:3]


class Load(unittest.TestCase):
    def start(self, *size):
        # A sanitizer keeps what was freed for a while, which is no memory of the viewer's.
        options = os.environ.get('ASAN_OPTIONS', '') + ':quarantine_size_mb=1'
        self.viewer = Viewer(viewer_program, '--quiet', env={**os.environ, 'ASAN_OPTIONS': options})
        self.addCleanup(self.viewer.quit)
        self.host = urlparse(self.viewer.page).netloc
        self.engine = Engine(engine_program, self.viewer, *size)
        self.addCleanup(self.engine.end)
        self.assertEqual(self.engine.do('start'), 'ok')

    def get(self, path):
        connection = http.client.HTTPConnection(self.host, timeout=30)
        connection.request('GET', path)
        text = connection.getresponse().read()
        connection.close()
        return text

    def memory(self):
        with open(f'/proc/{self.viewer.process.pid}/status') as file:
            line = next(line for line in file if line.startswith('VmRSS'))
        return int(line.split()[1]) // 1024  # MB

    def test_long_texts(self):
        self.start()
        before = self.memory()
        for _ in range(300):
            self.engine.do('say x 1000000')
        entries = self.get('/entries?from=1')
        self.assertTrue('xxx\u2026'.encode() in entries)
        self.assertLess(len(entries), 1000 * 1000)
        self.assertLess(self.memory() - before, 250)
        name = 'y' * 5000
        self.assertEqual(self.engine.do(f'set tier0 name {name}'), 'ok')
        lane = json.loads(self.get('/structure'))['lanes'][0]
        self.assertEqual(lane['cells'][1][0]['values'][0], name[:999] + '\u2026')
        self.assertLess(max(len(entry['words']) for entry in json.loads(self.get('/entries'))), 400)

    def test_readers_of_the_past(self):
        self.start(8, 6000)
        newest = json.loads(self.get('/status'))['last']
        stopped = threading.Event()
        answers = []

        def read(seed):
            numbers = random.Random(seed)
            while not stopped.is_set():
                answers.append(len(self.get(f'/structure?at={numbers.randrange(1, newest)}')))

        readers = [threading.Thread(target=read, args=[seed]) for seed in range(6)]
        for reader in readers:
            reader.start()
        time.sleep(0.5)
        begin = time.monotonic()
        for _ in range(20):
            self.assertEqual(self.engine.do("insert tier0 'a'"), 'ok')
        took = time.monotonic() - begin
        stopped.set()
        for reader in readers:
            reader.join(60)
        self.assertGreaterEqual(len(answers), 6)
        self.assertLess(took, 2, 'the engine waits for readers')

    def test_idle_connections(self):
        self.start()
        host, port = self.host.split(':')
        requests = {'silent': b'', 'half': b'GET / HTTP/1.1\r\nHost: ' + host.encode(),
                    'without its body': b'POST /field HTTP/1.1\r\nContent-Length: 9\r\n\r\n',
                    'listening': f'GET /events HTTP/1.1\r\nHost: {self.host}\r\n\r\n'.encode()}
        for kind, request in requests.items():
            with self.subTest(kind):
                idle = [socket.create_connection((host, int(port)), 20) for _ in range(200)]
                for connection in idle:
                    connection.sendall(request)
                time.sleep(0.3)
                begin = time.monotonic()
                self.assertIn(b'main.js', self.get('/'))
                self.assertIn(b'"connected":true', self.get('/status'))
                self.assertLess(time.monotonic() - begin, 2, 'others wait for the idle')
                for connection in idle:
                    connection.close()

    def test_slow_requests_end(self):
        self.start()
        host, port = self.host.split(':')
        slow = socket.create_connection((host, int(port)), 20)
        begin = time.monotonic()
        slow.setblocking(False)
        ended = False
        while not ended and time.monotonic() - begin < 15:
            try:
                slow.send(b'x')
                ended = slow.recv(1) == b''
            except BlockingIOError:
                time.sleep(0.2)
            except OSError:
                ended = True
        slow.close()
        self.assertTrue(ended, 'a request that comes byte by byte for ever')


if __name__ == '__main__':
    unittest.main(argv=sys.argv[:1], verbosity=1)
