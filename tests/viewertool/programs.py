"""The viewer program and engines for it, each in a folder of its own."""

import atexit
import os
import select
import subprocess
import tempfile
import time


def await_that(condition, seconds=10):
    """Waits until the condition holds; what it gave last."""
    end = time.time() + seconds
    while not (result := condition()) and time.time() < end:
        time.sleep(0.02)
    return result


class Program:
    def __init__(self, *command, **options):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        bufsize=0, **options)
        self.said = b''
        atexit.register(self.process.kill)  # a test that fails leaves nobody behind

    def line(self, seconds=20):
        """The next line of what it prints; '' behind the last one."""
        end = time.time() + seconds
        while b'\n' not in self.said:
            ready, _, _ = select.select([self.process.stdout], [], [], max(0, end - time.time()))
            assert ready, f'{self.process.args[0]} has said nothing for {seconds} s'
            more = self.process.stdout.read(65536)
            if not more:
                break
            self.said += more
        line, _, self.said = self.said.partition(b'\n')
        return line.decode()

    def say(self, text):
        self.process.stdin.write(text.encode() + b'\n')

    def end(self):
        self.process.stdin.close()
        self.process.stdout.close()
        return self.process.wait(20)


class Viewer(Program):
    """The viewer, with ports that it chose itself."""

    def __init__(self, program, *options, **more):
        super().__init__(program, '--port', '0', '--web-port', '0', *options, **more)
        self.port = int(self.line().rpartition(':')[2])
        self.page = self.line().partition(' ')[2]

    def quit(self):
        self.say('quit')
        return self.end()


class Engine(Program):
    def __init__(self, program, viewer, streams=3, tokens=12):
        folder = tempfile.mkdtemp()
        config = os.path.join(folder, 'plexaview.cfg')
        with open(config, 'w') as file:
            file.write(f'host = 127.0.0.1\nport = {viewer.port}\n')
        super().__init__(os.path.abspath(program), str(streams), str(tokens), cwd=folder)
        self.folder = folder

    def do(self, command):
        self.say(command)
        return self.line()

    def end(self):
        status = super().end()
        os.remove(os.path.join(self.folder, 'plexaview.cfg'))
        os.rmdir(self.folder)
        return status
