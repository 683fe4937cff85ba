# SPDX-License-Identifier: MIT
"""The Settings application's server over real sockets: its WebSocket, frame by frame, and the server's end."""
import hmac
import json
import select
import socket
import struct

from loopback_client import BINARY, CLOSE, PATIENCE, PING, PONG, TEXT, WebSocket
from server_case import ServerTest, run


class EndlessMessages:
    """Sends the same message again and again, as far as the other end reads."""

    def __init__(self, page, text):
        self.page = page
        self.frame = memoryview(page.framed(text))
        self.offset = 0

    def send_until_stuck(self, most):
        """Gives how many bytes went out until no more did, or `most` had gone."""
        sent = 0
        while sent < most and self.can_go_on(1):
            count = self.page.connection.send(self.frame[self.offset:], socket.MSG_DONTWAIT)
            self.offset = (self.offset + count) % len(self.frame)
            sent += count
        return sent

    def can_go_on(self, patience=PATIENCE):
        return bool(select.select([], [self.page.connection], [], patience)[1])


class WebSockets(ServerTest):
    arguments = ('queuedBytes=2000000',)

    def open(self, server=None):
        page = WebSocket(server or self.server)
        self.addCleanup(page.__exit__)
        self.assertEqual((page.answer.status, page.agreed), (101, True))
        return page

    def test_text_comesBackWhole(self):
        page = self.open()
        for text in ('', 'a', 'é' * 100, 'x' * 125, 'x' * 126, 'x' * 65535, 'x' * 65536, 'x' * (1 << 20)):
            page.send(text)
            self.assertEqual(page.receive(), (TEXT, text.encode()))

    def test_fragmentsWithAPingBetween_areOneMessage(self):
        page = self.open()
        page.send('ab', final=False)
        page.send(b'ping', kind=PING)
        page.send('cd', kind=0)
        self.assertEqual(page.receive(), (PONG, b'ping'))
        self.assertEqual(page.receive(), (TEXT, b'abcd'))

    def test_connections_areTheirOwn(self):
        pages = [self.open() for _ in range(5)]
        for number, page in enumerate(pages):
            page.send(f'page {number}')
        for number, page in enumerate(pages):
            self.assertEqual(page.receive(), (TEXT, f'page {number}'.encode()))

    def test_openingAndClosing_areToldOnce(self):
        page = self.open()
        self.assertEqual(self.server.event(), 'opened 1')
        page.send(struct.pack('>H', 1000), kind=CLOSE)
        self.assertEqual(page.close_code(), 1000)
        self.assertEqual(self.server.event(), 'closed 1')
        with self.open():
            self.assertEqual(self.server.event(), 'opened 2')
        self.assertEqual(self.server.event(), 'closed 2')
        self.assertEqual(self.server.end(), (['ended'], 0))

    def test_handshake_needsOriginHostAndItsAddress(self):
        for status, target, changes in (
                (403, '/ws', {'Origin': None}), (403, '/ws', {'Origin': 'null'}),
                (403, '/ws', {'Origin': 'http://example.org'}),
                (421, '/ws', {'Host': 'example.org'}), (404, '/', {}), (404, '/ws/', {}), (404, '/other', {}),
                (400, '/ws', {'Sec_WebSocket_Key': None}), (400, '/ws', {'Sec_WebSocket_Key': 'x' * 100}),
                (426, '/ws', {'Sec_WebSocket_Version': '12'}), (426, '/ws', {'Upgrade': None})):
            with self.subTest(target=target, **changes), WebSocket(self.server, target, **changes) as page:
                self.assertEqual((page.answer.status, page.agreed), (status, False))
        self.assertEqual(self.server.end(), (['ended'], 0))

    def test_firstMessageThatIsNoSecretOrAWrongOne_isClosedWithItsCode(self):
        secret = self.server.secret
        for first in ('', 'nonsense', '[]', '{}', '"' + secret + '"', secret, 'null', '{"secret":null}', '{"secret":7}',
                      '{"secret":["' + secret + '"]}', '{"secret":""}', '{"secret":"' + '0' * 64 + '"}',
                      '{"secret":"' + secret + '0"}', '{"secret":"' + secret[:-1] + '"}',
                      '{"secret":"' + secret.upper() + '"}', '{"Secret":"' + secret + '"}', '{"do":"state"}',
                      '{"do":"state","id":1}', '{"secret":"' + secret + '"', '[' * 4000,
                      '{"secret":"' + secret + '","more":"' + 'x' * 5000 + '"}', 'x' * (1 << 20)):
            with self.subTest(first[:100]):
                page = WebSocket(self.server, first=first)
                self.addCleanup(page.__exit__)
                self.assertTrue(page.agreed)
                try:
                    page.send('{"secret":"' + secret + '"}')
                except OSError:
                    pass
                self.assertEqual(page.close_code(), 4401)
        # To the application none of them was ever there.
        self.assertEqual(self.server.end(), (['ended'], 0))

    def test_binaryFirstMessage_isNone(self):
        page = WebSocket(self.server, first=None)
        self.addCleanup(page.__exit__)
        page.send('{"secret":"' + self.server.secret + '"}', kind=BINARY)
        self.assertEqual(page.close_code(), 4401)

    def test_firstMessageInPieces_isOneAndHasNoAnswerOfItsOwn(self):
        page = WebSocket(self.server, first=None)
        self.addCleanup(page.__exit__)
        page.send('{"secret": "', final=False)
        page.send(b'ping', kind=PING)
        page.send(self.server.secret, kind=0, final=False)
        page.send('", "more": 1}', kind=0)
        page.send('a')
        self.assertEqual(page.receive(), (PONG, b'ping'))
        self.assertEqual(page.receive(), (TEXT, b'a'))

    def test_secretAgainOnceLetIn_isAMessageAsAnyOther(self):
        page = self.open()
        again = '{"secret":"' + '0' * 64 + '"}'
        page.send(again)
        self.assertEqual(page.receive(), (TEXT, again.encode()))

    def test_proof_showsThatTheServerKnowsTheSecretAndDoesNotTellIt(self):
        for nonce in ('', 'a nonce', 'é' * 100, 'f' * 64):
            page = WebSocket(self.server, first=json.dumps({'prove': nonce}))
            self.addCleanup(page.__exit__)
            kind, payload = page.receive()
            proof = hmac.new(self.server.secret.encode(), nonce.encode(), 'sha256').hexdigest()
            self.assertEqual((kind, json.loads(payload)), (TEXT, {'proof': proof}))
            page.send(json.dumps({'secret': self.server.secret}))
            page.send('a')
            self.assertEqual(page.receive(), (TEXT, b'a'))

    def test_proof_isNoWayIn(self):
        for following in ('{"prove":"again"}', '{"do":"state"}', '{"secret":"' + '0' * 64 + '"}'):
            page = WebSocket(self.server, first='{"prove":"nonce"}')
            self.addCleanup(page.__exit__)
            self.assertEqual(page.receive()[0], TEXT)
            page.send(following)
            self.assertEqual(page.close_code(), 4401)
        self.assertEqual(self.server.end(), (['ended'], 0))

    def test_whatIsAgainstTheRules_isClosedWithItsCode(self):
        for code, frames in ((1003, [(b'x', {'kind': BINARY})]),
                             (1009, [('x' * ((1 << 20) + 1), {})]),
                             (1009, [('x' * (20 << 20), {})]),
                             (1009, [('x' * (1 << 20), {'final': False}), ('x', {'kind': 0})]),
                             (1007, [(b'\xff\xfe', {})]),
                             (1002, [('x', {'masked': False})]),
                             (1002, [('x', {'reserved': 4})]),
                             (1002, [('x', {'kind': 0})]),
                             (1002, [('x', {'kind': 3})]),
                             (1002, [('x' * 126, {'kind': PING})])):
            with self.subTest(code=code, frames=[options for _, options in frames]):
                page = self.open()
                for payload, options in frames:
                    page.send(payload, **options)
                self.assertEqual(page.close_code(), code)
        page = self.open()
        page.send('still answering')
        self.assertEqual(page.receive(), (TEXT, b'still answering'))

    def test_hugeAnnouncedLength_isRefusedBeforeItsBytes(self):
        page = self.open()
        page.connection.sendall(struct.pack('>BBQ', 0x81, 0xff, 1 << 40) + bytes(4))
        self.assertEqual(page.close_code(), 1009)

    def test_serversClose_comesAfterWhatWasSentBefore(self):
        page = self.open()
        page.send('close')
        self.assertEqual(page.receive(), (TEXT, b'before the close'))
        self.assertEqual(page.receive(), (CLOSE, struct.pack('>H', 1000)))
        self.assertEqual(self.server.event(), 'opened 1')
        self.assertEqual(self.server.event(), 'closed 1')

    def test_clientThatReads_getsMoreThanTheQueueHolds(self):
        page = self.open()
        for _ in range(10):
            page.send('burst 10 100000')
            for _ in range(10):
                self.assertEqual(page.receive(), (TEXT, b'x' * 100000))

    def test_clientThatDoesNotRead_isCutOff(self):
        page = self.open()
        self.assertEqual(self.server.event(), 'opened 1')
        try:
            for _ in range(1000):
                page.send('burst 20 50000')
        except OSError:
            pass
        self.assertEqual(self.server.event(), 'closed 1')
        self.open().send('others go on')

    def test_senderThatGoesOn_isNotReadUntilItsMessagesAreTaken(self):
        sender, other = self.open(), self.open()
        stream = EndlessMessages(sender, 'hold ' + 'x' * 65000)
        # Some mebibytes fit into the sockets themselves.
        self.assertLess(stream.send_until_stuck(64 << 20), 64 << 20)
        other.send('others go on')
        self.assertEqual(other.receive(), (TEXT, b'others go on'))
        other.send('release')
        self.assertRegex(self.text_from(other), b'^released [1-9]')
        self.assertTrue(stream.can_go_on())

    def test_senderThatWasHeldUp_isNotTakenForASilentOne(self):
        server = self.start('idleTimeout=400', 'inboxBytes=1')
        sender, other = self.open(server), self.open(server)
        sender.send('hold')
        sender.send('after it')
        # The other one is pinged several times meanwhile, and answers.
        for _ in range(5):
            kind, payload = other.receive()
            self.assertEqual(kind, PING)
            other.send(payload, kind=PONG)
        other.send('release')
        self.assertEqual(self.text_from(other), b'released 1')
        self.assertEqual(self.text_from(sender), b'after it')

    def text_from(self, page):
        """The next message; pings before it are answered."""
        while (frame := page.receive())[0] == PING:
            page.send(frame[1], kind=PONG)
        self.assertEqual(frame[0], TEXT)
        return frame[1]

    def test_manySmallMessages_areCountedToo(self):
        server = self.start('inboxBytes=4096')
        sender, other = self.open(server), self.open(server)
        for _ in range(1000):
            sender.send('hold')
        # The server could read more of them meanwhile, if it would.
        for _ in range(100):
            other.send('a')
            self.assertEqual(other.receive(), (TEXT, b'a'))
        left = 1000
        while left > 0:
            other.send('release')
            released = int(other.receive()[1].split()[1])
            self.assertLess(released, 200)
            left -= released
        sender.send('last')
        self.assertEqual(sender.receive(), (TEXT, b'last'))

    def test_failingHandler_costsItsConnectionOnly(self):
        page, other = self.open(), self.open()
        page.send('throw')
        self.assertIsNone(page.close_code())
        other.send('still here')
        self.assertEqual(other.receive(), (TEXT, b'still here'))

    def test_vanishedClient_isToldAsClosed(self):
        page = self.open()
        self.assertEqual(self.server.event(), 'opened 1')
        page.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack('ii', 1, 0))
        page.__exit__()
        self.assertEqual(self.server.event(), 'closed 1')

    def test_silentClient_isPingedAndKeptAsLongAsItAnswers(self):
        # Half of it is the client's time to answer, which has to do on a slow machine.
        server = self.start('idleTimeout=3000')
        page = self.open(server)
        for _ in range(3):
            kind, payload = page.receive()
            self.assertEqual(kind, PING)
            page.send(payload, kind=PONG)
        page.send('still here')
        kind, payload = page.receive()
        while kind == PING:
            kind, payload = page.receive()
        self.assertEqual((kind, payload), (TEXT, b'still here'))
        self.assertIsNone(page.close_code())
        self.assertEqual([server.event(), server.event()], ['opened 1', 'closed 1'])

    def test_end_saysGoodByeToEveryPage(self):
        pages = [self.open() for _ in range(3)]
        for number in range(3):
            self.assertEqual(self.server.event(), f'opened {number + 1}')
        # The pages answer the close and leave, so that nobody has to be waited for.
        self.server.process.stdin.close()
        for page in pages:
            self.assertEqual(page.close_code(), 1001)
            page.send(struct.pack('>H', 1001), kind=CLOSE)
            page.__exit__()
        lines = self.server.process.stdout.read().splitlines()
        self.assertEqual(sorted(lines[:3]) + lines[3:], ['closed 1', 'closed 2', 'closed 3', 'ended'])
        self.assertEqual(self.server.process.wait(), 0)

    def test_endWithPagesThatDoNotAnswer_comesAllTheSame(self):
        with self.open(), self.open(), self.server.connect() as silent:
            self.assertEqual([self.server.event(), self.server.event()], ['opened 1', 'opened 2'])
            silent.sendall(b'GET / HTTP/1.1\r\n')
            lines, status = self.server.end()
        self.assertEqual((sorted(lines), status), (['closed 1', 'closed 2', 'ended'], 0))


if __name__ == '__main__':
    run()
