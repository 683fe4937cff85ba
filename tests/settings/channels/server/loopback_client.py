# SPDX-License-Identifier: MIT
"""What the server's tests speak with: a server process of their own, and a client that can say anything."""
import base64
import hashlib
import json
import os
import socket
import struct
import subprocess

PATIENCE = 180  # Seconds after which a test that waits for something has failed.

TEXT, BINARY, CLOSE, PING, PONG = 1, 2, 8, 9, 10


class EchoServer:
    """A running settings-echo-server; ended by closing its input, or by its process id."""

    def __init__(self, program, *arguments, **options):
        self.process = subprocess.Popen([program, *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, **options)
        self.url = self.process.stdout.readline().strip()
        if not self.url:
            error = self.process.communicate()[1].strip()
            raise RuntimeError(f'exit {self.process.returncode}: {error}')
        self.port = int(self.url.split(':')[2].split('/')[0])
        self.secret = self.url.split('secret=')[1]
        self.host = f'127.0.0.1:{self.port}'
        self.origin = f'http://{self.host}'
        self.bearer = f'Bearer {self.secret}'

    def clean(self):
        """Ends the server if it still runs, and leaves no pipe open."""
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        for pipe in (self.process.stdin, self.process.stdout, self.process.stderr):
            pipe.close()

    def event(self):
        """The next line that the server printed."""
        return self.process.stdout.readline().strip()

    def end(self):
        """Ends the server as its user would; gives the lines it printed since the last event() and its status."""
        output = self.process.communicate(timeout=PATIENCE)[0]
        return output.splitlines(), self.process.returncode

    def errors(self):
        """What the server has written to standard error, once it has ended."""
        return self.process.stderr.read()

    def connect(self):
        return socket.create_connection(('127.0.0.1', self.port), timeout=PATIENCE)

    def fields(self, **changes):
        """The headers of a page's request; a change to None leaves one out."""
        fields = {'Host': self.host, 'Authorization': self.bearer}
        fields.update({name.replace('_', '-'): value for name, value in changes.items()})
        return ''.join(f'{name}: {value}\r\n' for name, value in fields.items() if value is not None)

    def get(self, target, method='GET', **changes):
        with self.connect() as connection:
            connection.sendall(f'{method} {target} HTTP/1.1\r\n{self.fields(**changes)}\r\n'.encode('latin-1'))
            return Answer(connection.makefile('rb'), method)

    def raw(self, data):
        """Sends bytes as they are; gives all that came back until the server ended the connection."""
        with self.connect() as connection:
            connection.sendall(data)
            return everything_from(connection)


def everything_from(connection):
    received = b''
    while piece := connection.recv(65536):
        received += piece
    return received


class Answer:
    """One HTTP answer read from a stream."""

    def __init__(self, stream, method='GET'):
        line = stream.readline()
        self.status = int(line.split()[1]) if line else None
        self.fields = []
        while (field := stream.readline().strip()):
            name, _, value = field.decode('latin-1').partition(':')
            self.fields.append((name.lower(), value.strip()))
        has_body = method != 'HEAD' and self.status not in (None, 101, 304)
        self.body = stream.read(int(self.field('content-length'))) if has_body else b''

    def field(self, name):
        values = [value for field, value in self.fields if field == name]
        return values[0] if len(values) == 1 else None


class WebSocket:
    """A client's end of a WebSocket, frame by frame. It says `first` as soon as it may: the secret, unless told
    otherwise; None to say nothing. Like a browser's it has no header for the secret."""

    def __init__(self, server, target='/ws', first='the secret', **changes):
        self.connection = server.connect()
        key = base64.b64encode(os.urandom(16)).decode()
        wanted = {'Authorization': None, 'Origin': server.origin, 'Connection': 'Upgrade', 'Upgrade': 'websocket',
                  'Sec_WebSocket_Key': key, 'Sec_WebSocket_Version': '13'} | changes
        self.connection.sendall(f'GET {target} HTTP/1.1\r\n{server.fields(**wanted)}\r\n'.encode())
        self.stream = self.connection.makefile('rb')
        self.answer = Answer(self.stream)
        digest = hashlib.sha1((key + '258EAFA5-E914-47DA-95CA-C5AB0DC85B11').encode()).digest()
        self.agreed = self.answer.field('sec-websocket-accept') == base64.b64encode(digest).decode()
        if self.agreed and first is not None:
            self.send(json.dumps({'secret': server.secret}) if first == 'the secret' else first)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stream.close()
        self.connection.close()

    def send(self, payload, **options):
        self.connection.sendall(self.framed(payload, **options))

    @staticmethod
    def framed(payload, kind=TEXT, final=True, masked=True, reserved=0):
        """The bytes of one frame."""
        payload = payload.encode() if isinstance(payload, str) else payload
        first = (0x80 if final else 0) | reserved << 4 | kind
        bit = 0x80 if masked else 0
        if len(payload) < 126:
            head = struct.pack('>BB', first, bit | len(payload))
        elif len(payload) < 65536:
            head = struct.pack('>BBH', first, bit | 126, len(payload))
        else:
            head = struct.pack('>BBQ', first, bit | 127, len(payload))
        # A mask of zeros changes nothing, and is a mask.
        return head + (b'\0\0\0\0' if masked else b'') + payload

    def receive(self):
        """The next frame as (kind, payload); (None, b'') once the connection has ended."""
        try:
            head = self.stream.read(2)
            if len(head) < 2:
                return None, b''
            length = head[1] & 0x7f
            if length == 126:
                length, = struct.unpack('>H', self.stream.read(2))
            elif length == 127:
                length, = struct.unpack('>Q', self.stream.read(8))
            return head[0] & 0x0f, self.stream.read(length)
        except ConnectionError:
            return None, b''

    def close_code(self):
        """Reads on until the server closes; None when it ended the connection without saying why."""
        while True:
            kind, payload = self.receive()
            if kind is None:
                return None
            if kind == CLOSE:
                return struct.unpack('>H', payload[:2])[0]
