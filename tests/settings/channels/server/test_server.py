# SPDX-License-Identifier: MIT
"""The Settings application's server over real sockets: who is let in, what is served, what is refused."""
import os
import resource
import socket
import threading
import time

import server_case
from loopback_client import PATIENCE, TEXT, Answer, EchoServer, WebSocket, everything_from
from server_case import ServerTest, run

PNG = b'\x89PNG\r\n\x1a\n' + bytes(range(256))
SECURITY_FIELDS = {
    'content-security-policy': "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob:; "
                               "font-src 'self'; connect-src 'self'; media-src blob:; base-uri 'none'; "
                               "form-action 'none'; frame-ancestors 'none'",
    'x-content-type-options': 'nosniff',
    'referrer-policy': 'no-referrer',
    'cross-origin-opener-policy': 'same-origin',
    'cross-origin-resource-policy': 'same-origin',
}


class Admission(ServerTest):
    def setUp(self):
        super().setUp()
        self.server = self.start(f'image:A={self.write("a.png", PNG)}', 'sound:A=audio/wav')

    def test_address_holdsLoopbackPortAndTheSecretInItsFragment(self):
        self.assertRegex(self.server.url, r'^http://127\.0\.0\.1:\d+/#secret=[0-9a-f]{64}$')

    def test_otherStart_hasAnotherSecret(self):
        self.assertNotEqual(self.start().secret, self.server.secret)

    def test_otherAddressesOfTheMachine_areNotListenedOn(self):
        for family, address in ((socket.AF_INET, '127.0.0.2'), (socket.AF_INET6, '::1')):
            with self.subTest(address), socket.socket(family) as other:
                with self.assertRaises(OSError):
                    other.connect((address, self.server.port))

    def test_page_isServedToAnybodyAndTellsNoSecret(self):
        for target in ('/', '/index.html', '/missing', f'/?secret={self.server.secret}'):
            with self.subTest(target):
                answer = self.server.get(target, Authorization=None)
                self.assertEqual(answer.status, 404 if target == '/missing' else 200)
                self.assertNotIn(self.server.secret.encode(), answer.body)
                self.assertNotIn(self.server.secret, str(answer.fields))

    def test_noAnswer_setsACookie(self):
        for target in ('/', f'/?secret={self.server.secret}', '/image/A', '/sounds/A', '/ws', '/missing'):
            self.assertNotIn('set-cookie', [name for name, _ in self.server.get(target).fields], target)

    def test_bearer_getsWhatShowsThePhone(self):
        for value in (self.server.bearer, f'bearer  {self.server.secret}', f'BEARER {self.server.secret} '):
            with self.subTest(value):
                self.assertEqual(self.server.get('/image/A', Authorization=value).body, PNG)
                self.assertEqual(self.server.get('/sounds/A', Authorization=value).status, 200)

    def test_missingOrForeignSecret_isRefusedWithOneLineWhateverIsAskedFor(self):
        secret = self.server.secret
        for target in ('/image/A', '/image/missing', '/sounds/A', '/sounds/missing', f'/image/A?secret={secret}'):
            for changes in ({'Authorization': None}, {'Authorization': 'Bearer ' + '0' * 64},
                            {'Authorization': f'Bearer {secret}0'}, {'Authorization': f'Bearer {secret[:-1]}'},
                            {'Authorization': 'Bearer'}, {'Authorization': 'Bearer '}, {'Authorization': secret},
                            {'Authorization': f'Basic {secret}'}, {'Authorization': f'Bearer {secret} {secret}'},
                            {'Authorization': None, 'Cookie': f'quietrix-settings-{self.server.port}={secret}'}):
                with self.subTest(target=target, **changes):
                    answer = self.server.get(target, **changes)
                    self.assertEqual((answer.status, answer.field('www-authenticate')), (401, 'Bearer'))
                    self.assertRegex(answer.body, rb'^[^\n]+\n$')
                    self.assertNotIn(secret.encode(), answer.body)

    def test_secretTwice_isNone(self):
        fields = f'Authorization: {self.server.bearer}\r\n' + self.server.fields()
        self.assertEqual(self.raw_status(f'GET /image/A HTTP/1.1\r\n{fields}\r\n'.encode()), 401)

    def test_foreignHost_isRefusedEvenWithTheSecret(self):
        port = self.server.port
        for host in (None, '', '127.0.0.1', f'example.org:{port}', f'127.0.0.1:{port + 1}', f'[::1]:{port}',
                     f'127.0.0.1.example.org:{port}', f'localhost.:{port}'):
            for target in ('/', '/image/A'):
                with self.subTest(host=host, target=target):
                    self.assertEqual(self.server.get(target, Host=host).status, 421)
        self.assertEqual(self.server.get('/', Host=f'localhost:{port}').status, 200)

    def test_foreignOrigin_isRefusedEvenWithTheSecret(self):
        for origin in ('null', 'http://example.org', f'https://{self.server.host}', self.server.origin + '0',
                       f'http://localhost:{self.server.port}'):
            with self.subTest(origin):
                self.assertEqual(self.server.get('/', Origin=origin).status, 403)
        self.assertEqual(self.server.get('/', Origin=self.server.origin).status, 200)

    def test_takenPort_isOneSentenceThatNamesIt(self):
        with self.assertRaisesRegex(RuntimeError, rf'^exit 1: Port {self.server.port} [^\n]* in use [^\n]*\.$'):
            EchoServer(server_case.program, f'port={self.server.port}')

    def test_portOfAnEndedServer_canBeTakenAgainAtOnce(self):
        with WebSocket(self.server) as page:
            self.assertTrue(page.agreed)
            self.assertEqual(self.server.event(), 'opened 1')
            self.server.end()
        self.assertEqual(self.start(f'port={self.server.port}').port, self.server.port)


class Files(ServerTest):
    def test_everyKind_hasItsContentType(self):
        for name, kind in (('index.html', 'text/html; charset=utf-8'), ('app.js', 'text/javascript; charset=utf-8'),
                           ('app.css', 'text/css; charset=utf-8'), ('fonts/a.woff2', 'font/woff2'),
                           ('a.svg', 'image/svg+xml'), ('a.png', 'image/png'), ('a.json', 'application/json'),
                           ('app.js.map', 'application/json'), ('a b.unknown', 'application/octet-stream')):
            with self.subTest(name):
                content = os.urandom(100)
                self.write('page/' + name, content)
                answer = self.server.get('/' + name.replace(' ', '%20') + '?v=1')
                self.assertEqual((answer.status, answer.body), (200, content))
                self.assertEqual(answer.field('content-type'), kind)

    def test_everyAnswer_carriesTheSecurityHeaders(self):
        for target, changes in (('/', {}), ('/missing', {}), ('/image/A', {'Authorization': None}), ('/ws', {}),
                                ('/', {'Host': 'x'}), ('/', {'method': 'POST'})):
            with self.subTest(target=target, **changes):
                answer = self.server.get(target, **changes)
                self.assertEqual({name: answer.field(name) for name in SECURITY_FIELDS}, SECURITY_FIELDS)
                self.assertIsNotNone(answer.field('cache-control'))

    def test_rebuiltFile_isSentAnew(self):
        first = self.server.get('/')
        self.assertEqual(first.field('cache-control'), 'no-cache')
        self.assertEqual(self.server.get('/', If_None_Match=first.field('etag')).status, 304)
        self.write('page/index.html', b'<!doctype html><title>Rebuilt </title>')
        again = self.server.get('/', If_None_Match=first.field('etag'))
        self.assertEqual((again.status, again.body), (200, b'<!doctype html><title>Rebuilt </title>'))

    def test_head_isTheSameWithoutABody(self):
        for target in ('/', '/missing'):
            get, head = self.server.get(target), self.server.get(target, method='HEAD')
            self.assertEqual((get.status, get.fields), (head.status, head.fields))

    def test_headOnAKeptConnection_leavesNoBodyBehind(self):
        with self.server.connect() as connection, connection.makefile('rb') as stream:
            for method in ('HEAD', 'GET', 'HEAD', 'GET'):
                connection.sendall(f'{method} / HTTP/1.1\r\n{self.server.fields()}\r\n'.encode())
                self.assertEqual(Answer(stream, method).status, 200)

    def test_otherMethods_areRefused(self):
        for method in ('POST', 'PUT', 'DELETE', 'OPTIONS', 'TRACE', 'PATCH', 'BREW'):
            answer = self.server.get('/', method=method)
            self.assertEqual((answer.status, answer.field('allow')), (405, 'GET, HEAD'))

    def test_pathsOutsideThePage_areNotFound(self):
        page = os.path.join(self.directory, 'page')
        os.symlink('../outside.txt', os.path.join(page, 'file-link'))
        os.symlink('..', os.path.join(page, 'folder-link'))
        os.mkfifo(os.path.join(page, 'pipe'))
        os.mkdir(os.path.join(page, 'folder'))
        for target in ('/missing', '/folder', '/folder/', '/pipe', '/file-link', '/folder-link/outside.txt',
                       '/../outside.txt', '/%2e%2e/outside.txt', '/%2E%2E%2Foutside.txt', '/folder/../../outside.txt',
                       '/..%5coutside.txt', '/..\\outside.txt', '/../page-beside/file.txt', '/%252e%252e/outside.txt',
                       f'/{self.directory}/outside.txt', '//etc/passwd', '/index.html%00.png', '/index.html/',
                       '/./index.html', '/%', '/%zz', '/index.html%', '/' + 'a' * 8000, '/' + 'a/' * 4000 + 'a'):
            with self.subTest(target[:60]):
                answer = self.server.get(target)
                self.assertEqual(answer.status, 404)
                self.assertNotIn(b'outside', answer.body)

    def test_missingPage_isNotFoundUntilItIsBuilt(self):
        os.remove(os.path.join(self.directory, 'page/index.html'))
        os.rmdir(os.path.join(self.directory, 'page'))
        self.assertEqual(self.server.get('/').status, 404)
        self.write('page/index.html', b'built')
        self.assertEqual(self.server.get('/').body, b'built')


class Images(ServerTest):
    def setUp(self):
        super().setUp()
        self.server = self.start(f'image:Speaker Mute@2x={self.write("speaker.png", PNG)}',
                                 f'image:long={self.write("long.png", PNG + bytes(8 << 20))}',
                                 f'image:text={self.write("text.png", b"no image")}',
                                 f'image:folder={self.directory}')

    def test_knownName_isSentWhateverTheQuery(self):
        for target in ('/image/Speaker%20Mute@2x', '/image/Speaker%20Mute%402x?device=3'):
            answer = self.server.get(target)
            self.assertEqual((answer.status, answer.field('content-type'), answer.body), (200, 'image/png', PNG))

    def test_whatIsNoImageOrTooLong_isNotFound(self):
        for name in ('long', 'text', 'folder', 'unknown', '', '..', '%2e%2e%2fspeaker.png', '%00', '%ff'):
            with self.subTest(name):
                self.assertEqual(self.server.get('/image/' + name).status, 404)


class Bounds(ServerTest):
    def test_malformedRequests_areAnswered400AndClosed(self):
        host = f'Host: {self.server.host}\r\n'.encode()
        for data in (b'\r\n\r\nGET\r\n\r\n', b'nonsense\r\n\r\n', b'GET / HTTP/9.9\r\n\r\n', b'GET  HTTP/1.1\r\n\r\n',
                     b'GET / HTTP/1.1\r\nno colon\r\n\r\n', b'GET / HTTP/1.1\r\nA\x00: b\r\n\r\n',
                     b'\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03\r\n\r\n', b'GET / HTTP/1.1\n\n',
                     b'GET / HTTP/1.1\r\nContent-Length: -1\r\n\r\n', b'GET * HTTP/1.1\r\n' + host + b'\r\n',
                     b'GET http://example.org/ HTTP/1.1\r\n' + host + b'\r\n'):
            with self.subTest(data):
                self.assertEqual(self.raw_status(data), 400)
        self.assertEqual(self.server.get('/').status, 200)

    def test_randomBytes_neverEndTheServer(self):
        for length in range(0, 4000, 97):
            with self.server.connect() as connection:
                try:
                    connection.sendall(os.urandom(length) + b'\r\n\r\n')
                    everything_from(connection)
                except ConnectionError:
                    pass
        self.assertEqual(self.server.get('/').status, 200)

    def test_longHeaders_areAnswered431(self):
        fields = self.server.fields().encode()
        self.assertEqual(self.server.get('/', A='a' * 15000).status, 200)
        self.assertEqual(self.raw_status(b'GET / HTTP/1.1\r\n' + fields + b'A: ' + b'a' * 17000 + b'\r\n\r\n'), 431)
        self.assertEqual(self.raw_status(b'GET / HTTP/1.1\r\n' + fields + b'A: b\r\n' * 4000 + b'\r\n'), 431)
        self.assertEqual(self.raw_status(b'GET /' + b'a' * 17000 + b' HTTP/1.1\r\n' + fields + b'\r\n'), 431)

    def test_body_isRefused(self):
        head = b'GET / HTTP/1.1\r\n' + self.server.fields().encode()
        self.assertEqual(self.raw_status(head + b'Content-Length: 5\r\n\r\nhello'), 413)
        self.assertEqual(self.raw_status(head + b'Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n'), 413)
        self.assertEqual(self.raw_status(head + b'Content-Length: 18446744073709551615\r\n\r\n'), 413)

    def test_pipelinedRequests_areAnsweredInOrder(self):
        fields = self.server.fields()
        request = ''.join(f'GET {path} HTTP/1.1\r\n{fields}\r\n' for path in ('/', '/missing', '/index.html'))
        with self.server.connect() as connection, connection.makefile('rb') as stream:
            connection.sendall(request.encode())
            self.assertEqual([Answer(stream).status for _ in range(3)], [200, 404, 200])


class SlowRequests(ServerTest):
    arguments = ('strangerTimeout=500', 'requestTimeout=600000')

    def test_slowRequest_isCutOff(self):
        for data in (b'', b'GET / HTTP/1.1\r\nHost: '):
            with self.subTest(data):
                self.assertEqual(self.server.raw(data), b'')

    def test_secretShown_leavesMoreTimeForTheNextRequest(self):
        server = self.start(f'image:A={self.write("a.png", PNG)}', *self.arguments)
        with server.connect() as known, known.makefile('rb') as stream:
            known.sendall(f'GET /image/A HTTP/1.1\r\n{server.fields()}\r\n'.encode())
            self.assertEqual(Answer(stream).status, 200)
            # A stranger that comes now has to go; whoever came before it would have gone earlier.
            self.assertEqual(server.raw(b''), b'')
            known.sendall(f'GET /image/A HTTP/1.1\r\n{server.fields()}\r\n'.encode())
            self.assertEqual(Answer(stream).status, 200)

    def test_silentWebSocket_isClosedButNotAsRefused(self):
        with WebSocket(self.server, first=None) as page:
            self.assertTrue(page.agreed)
            self.assertEqual(page.close_code(), 1008)
        with WebSocket(self.server, first=None) as page:
            page.send('{"secret":', final=False)
            self.assertEqual(page.close_code(), 1008)
        self.assertEqual(self.server.end(), (['ended'], 0))

    def test_requestThatNeverEnds_isCutOffWhileItTrickles(self):
        with self.server.connect() as connection:
            connection.sendall(b'GET / HTTP/1.1\r\nA: ')
            connection.settimeout(0.02)
            end = time.monotonic() + PATIENCE
            while time.monotonic() < end:
                try:
                    connection.sendall(b'a')
                    self.assertEqual(connection.recv(1), b'')
                    return
                except TimeoutError:
                    continue
                except ConnectionError:
                    return
            self.fail('the request was never cut off')


class ManyConnections(ServerTest):
    # Nobody leaves because of the time.
    arguments = ('strangerTimeout=600000', 'requestTimeout=600000', 'strangers=8', 'connections=4')

    def setUp(self):
        super().setUp()
        self.server = self.start(f'image:A={self.write("a.png", PNG)}', *self.arguments)

    def connected(self, count=1):
        """Connections that say nothing; kept until the test ends."""
        made = [self.server.connect() for _ in range(count)]
        for connection in made:
            self.addCleanup(connection.close)
        return made

    def ask(self, connection, target='/', **changes):
        connection.sendall(f'GET {target} HTTP/1.1\r\n{self.server.fields(**changes)}\r\n'.encode())
        return Answer(connection.makefile('rb')).status

    def page(self):
        page = WebSocket(self.server)
        self.addCleanup(page.__exit__)
        page.send('hello')
        self.assertEqual(page.receive(), (TEXT, b'hello'))
        return page

    def hasGone(self, connection):
        try:
            return connection.recv(1) == b''
        except ConnectionError:
            return True

    def test_newcomer_takesThePlaceOfTheStrangerThatHasBeenIdleLongest(self):
        asking, *silent = self.connected(8)
        self.assertEqual(self.ask(asking, Authorization=None), 200)
        newcomer, = self.connected()
        self.assertEqual(self.ask(newcomer, Authorization=None), 200)
        # The one that has asked was idle last.
        self.assertTrue(self.hasGone(silent[0]))
        for staying in (asking, *silent[1:]):
            self.assertEqual(self.ask(staying, Authorization=None), 200)

    def test_silentWebSocket_makesRoomToo(self):
        silent = WebSocket(self.server, first=None)
        self.addCleanup(silent.__exit__)
        self.connected(8)
        self.assertIsNone(silent.close_code())

    def test_whoHasShownTheSecret_isNotCountedAmongTheStrangers(self):
        page = self.page()
        asking, = self.connected()
        self.assertEqual(self.ask(asking, '/image/A'), 200)
        self.connected(50)
        self.assertEqual(self.server.get('/').status, 200)
        page.send('still here')
        self.assertEqual(page.receive(), (TEXT, b'still here'))
        self.assertEqual(self.ask(asking, '/image/A'), 200)

    def test_page_takesThePlaceOfAKnownConnectionThatOnlyMightAsk(self):
        asking, other = self.connected(2)
        self.assertEqual([self.ask(each, '/image/A') for each in (asking, other)], [200, 200])
        pages = [self.page() for _ in range(3)]
        self.assertTrue(self.hasGone(asking))
        self.assertEqual(self.ask(other, '/image/A'), 200)
        pages.append(self.page())
        self.assertTrue(self.hasGone(other))

    def test_pageBeyondTheBound_isToldToComeAgainAndSoItIs(self):
        pages = [self.page() for _ in range(4)]
        with WebSocket(self.server) as further:
            self.assertEqual(further.close_code(), 1013)
        # What shows the phone can still be had, and nobody else had to go.
        self.assertEqual(self.server.get('/image/A').status, 200)
        for page in pages:
            page.send('still here')
            self.assertEqual(page.receive(), (TEXT, b'still here'))
        pages.pop().__exit__()
        while True:
            with WebSocket(self.server) as again:
                again.send('hello')
                kind, payload = again.receive()
                if kind == TEXT:
                    break
                self.assertEqual(payload[:2], (1013).to_bytes(2, 'big'))

    def test_pageWhoseMessagesWereNotTaken_keepsItsPlace(self):
        pages = [self.page() for _ in range(4)]
        pages[0].send('hold it')
        pages[0].__exit__()
        while (event := self.server.event()) != 'closed 1':
            self.assertRegex(event, '^opened')
        with WebSocket(self.server) as further:
            self.assertEqual(further.close_code(), 1013)
        pages[1].send('release')
        self.assertEqual(pages[1].receive(), (TEXT, b'released 1'))
        self.page()


class Floods(ServerTest):
    """What another program of this machine can do without the secret, at full speed."""

    def flood(self, comeAndGo):
        """Runs `comeAndGo` again and again beside the test, until the test ends."""
        over = threading.Event()
        counted = [0]

        def go():
            while not over.is_set():
                try:
                    comeAndGo()
                    counted[0] += 1
                except OSError:
                    continue
        threads = [threading.Thread(target=go) for _ in range(4)]
        for thread in threads:
            thread.start()

        def end():
            over.set()
            for thread in threads:
                thread.join()
        self.addCleanup(end)
        return counted

    def assertPageIsServed(self):
        self.assertEqual(self.server.get('/').status, 200)
        with WebSocket(self.server) as page:
            page.send('hello')
            self.assertEqual(page.receive(), (TEXT, b'hello'))

    def test_twoHundredThatComeAndGo_doNotKeepAPageOut(self):
        with WebSocket(self.server) as page:
            counted = self.flood(lambda: self.server.connect().close())
            while counted[0] < 200:
                page.send('still here')
                self.assertEqual(page.receive(), (TEXT, b'still here'))
            self.assertPageIsServed()

    def test_webSocketsWithWrongSecrets_doNotKeepAPageOut(self):
        def guess():
            with WebSocket(self.server, first='{"secret":"0"}') as page:
                if page.close_code() not in (4401, None):
                    raise AssertionError('a wrong secret was let in')
        counted = self.flood(guess)
        for _ in range(20):
            self.assertPageIsServed()
        while counted[0] < 200:
            self.assertPageIsServed()

    def test_twoThousandSilentOnes_doNotKeepAPageOut(self):
        server_case.allow_descriptors(2100)
        with WebSocket(self.server) as page:
            silent = []
            try:
                for _ in range(2000):
                    silent.append(self.server.connect())
                self.assertPageIsServed()
                page.send('still here')
                self.assertEqual(page.receive(), (TEXT, b'still here'))
            finally:
                for each in silent:
                    each.close()


class FewDescriptors(ServerTest):
    def start_with(self, soft, hard, *arguments):
        def limit():
            resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
        return self.start(*arguments, preexec_fn=limit)

    def test_whoeverComesWhenNoneAreLeft_getsThatOfTheOldestIdleOne(self):
        server = self.start_with(24, 24, 'strangerTimeout=600000')
        with WebSocket(server) as page:
            silent = [server.connect() for _ in range(100)]
            self.assertEqual(server.get('/').status, 200)
            page.send('still here')
            self.assertEqual(page.receive(), (TEXT, b'still here'))
            for each in silent:
                each.close()

    def test_lowerLimitOfTwo_isRaisedAsFarAsItMay(self):
        server = self.start_with(24, 200, 'strangerTimeout=600000', 'connections=64')
        pages = [WebSocket(server) for _ in range(50)]
        for page in pages:
            page.send('still here')
            self.assertEqual(page.receive(), (TEXT, b'still here'))
            page.__exit__()


class Sounds(ServerTest):
    arguments = ('sound:texttone:Calendar Alert=audio/wav', 'sound:markup=text/html', 'sound:late=never',
                 'soundTimeout=600000')

    def test_sound_comesFromTheHandler(self):
        answer = self.server.get('/sounds/texttone%3ACalendar%20Alert')
        self.assertEqual((answer.status, answer.body), (200, b'texttone:Calendar Alert'))
        self.assertEqual(answer.field('content-type'), 'audio/wav')
        self.assertEqual({name: answer.field(name) for name in SECURITY_FIELDS}, SECURITY_FIELDS)
        again = self.server.get('/sounds/texttone%3ACalendar%20Alert', If_None_Match=answer.field('etag'))
        self.assertEqual(again.status, 304)

    def test_head_saysWhatGetWouldSend(self):
        answer = self.server.get('/sounds/texttone:Calendar%20Alert', method='HEAD')
        self.assertEqual((answer.status, answer.field('content-length')), (200, '23'))

    def test_unknownSoundOrNoSound_isNotFoundForAReason(self):
        self.assertEqual(self.server.get('/sounds/texttone:No').body, b'There is no "texttone:No".\n')
        for name in ('texttone:No', 'markup', '', '..', '..%2f..%2fetc%2fpasswd', '%00', 'a%5cb', 'x' * 8000):
            with self.subTest(name):
                self.assertEqual(self.server.get('/sounds/' + name).status, 404)

    def test_stranger_hearsNothing(self):
        self.assertEqual(self.server.get('/sounds/texttone:Calendar%20Alert', Authorization=None).status, 401)
        self.assertEqual(self.server.get('/sounds/texttone:Calendar%20Alert', Host='example.org').status, 421)
        self.assertEqual(self.server.get('/sounds/texttone:Calendar%20Alert', Origin='null').status, 403)
        self.assertEqual(self.server.get('/sounds/texttone:Calendar%20Alert', method='POST').status, 405)

    def test_soundThatNeverComes_keepsNobodyElseWaitingAndIsGivenUp(self):
        server = self.start('sound:late=never', 'soundTimeout=200')
        with server.connect() as waiting:
            waiting.sendall(f'GET /sounds/late HTTP/1.1\r\n{server.fields()}\r\n'.encode())
            self.assertEqual(server.get('/').status, 200)
            answer = Answer(waiting.makefile('rb'))
        self.assertEqual((answer.status, answer.field('retry-after')), (503, '1'))

    def test_handlerThatFails_costsOnlyThatConnection(self):
        self.assertIsNone(self.server.get('/sounds/throw').status)
        self.assertEqual(self.server.get('/').status, 200)

    def test_ending_doesNotWaitForASound(self):
        with self.server.connect() as waiting:
            waiting.sendall(f'GET /sounds/late HTTP/1.1\r\n{self.server.fields()}\r\n'.encode())
            self.assertEqual(self.server.get('/').status, 200)
            self.assertEqual(self.server.end()[1], 0)


if __name__ == '__main__':
    run()
