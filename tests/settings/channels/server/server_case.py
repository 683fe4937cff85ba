# SPDX-License-Identifier: MIT
"""What every test file of the server begins with, run as FILE PROGRAM, the built settings-echo-server."""
import os
import resource
import sys
import tempfile
import unittest

from loopback_client import EchoServer

program = None


class ServerTest(unittest.TestCase):
    arguments = ()

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = directory.name
        self.write('page/index.html', b'<!doctype html><title>Settings</title>')
        self.write('outside.txt', b'outside')
        self.write('page-beside/file.txt', b'beside')
        self.server = self.start(*self.arguments)

    def start(self, *arguments, **options):
        server = EchoServer(program, f'page={self.directory}/page', *arguments, **options)
        self.addCleanup(server.clean)
        return server

    def write(self, name, content):
        path = os.path.join(self.directory, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, 'wb') as file:
            file.write(content)
        return path

    def raw_status(self, data):
        answer = self.server.raw(data)
        self.assertRegex(answer, rb'^HTTP/1\.[01] \d{3} ')
        return int(answer.split()[1])


def allow_descriptors(wanted):
    """Lets this process hold so many connections; a machine that forbids it skips the test."""
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    if soft >= wanted or soft == resource.RLIM_INFINITY:
        return
    if hard != resource.RLIM_INFINITY and hard < wanted:
        raise unittest.SkipTest(f'this machine allows only {hard} descriptors, not {wanted}')
    resource.setrlimit(resource.RLIMIT_NOFILE, (wanted, hard))


def run():
    """Runs the tests of the file that was started, and ends with whether there were any and all of them held."""
    global program
    if len(sys.argv) < 2:
        sys.exit(f'usage: {sys.argv[0]} PROGRAM [unittest arguments]')
    program = sys.argv.pop(1)
    result = unittest.main('__main__', exit=False).result
    # unittest is content with a run that found nothing to test.
    sys.exit(0 if result.wasSuccessful() and result.testsRun > 0 else 1)
