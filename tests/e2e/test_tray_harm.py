"""The real page server under requests that mean harm: malformed, slow, many, mixed up by chance.

VEX_HARM_SECONDS (3) is how long requests of chance come, VEX_HARM_CONNECTIONS (2000) how many connections.
"""
import json
import os
import random
import resource
import socket
import threading
import time

from stage import wait_until
from test_tray import WithVexTray

SECONDS = float(os.environ.get("VEX_HARM_SECONDS", "3"))
CONNECTIONS = int(os.environ.get("VEX_HARM_CONNECTIONS", "2000"))
HOST = b"Host: 127.0.0.1\r\n"
GOOD = b"GET /healthz HTTP/1.1\r\n" + HOST + b"\r\n"
POST = b"POST /api/do HTTP/1.1\r\n" + HOST + b"Origin: http://127.0.0.1\r\nContent-Type: application/json\r\n"
REFUSED = {
    "no method": b" / HTTP/1.1\r\n" + HOST + b"\r\n",
    "no version": b"GET /\r\n" + HOST + b"\r\n",
    "another version": b"GET / HTTP/9.9\r\n" + HOST + b"\r\n",
    "a tunnel": b"CONNECT 127.0.0.1:22 HTTP/1.1\r\n" + HOST + b"\r\n",
    "an echo": b"TRACE / HTTP/1.1\r\n" + HOST + b"\r\n",
    "an upgrade by preface": b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n",
    "TLS": b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + bytes(200),
    "zero bytes": bytes(5000),
    "a header that goes on": b"GET / HTTP/1.1\r\n" + HOST + b"A: b\r\n\tc\r\n\r\n",
    "a header without a name": b"GET / HTTP/1.1\r\n" + HOST + b": b\r\n\r\n",
    "a huge header": b"GET / HTTP/1.1\r\n" + HOST + b"A: " + b"a" * 100000 + b"\r\n\r\n",
    "many headers": b"GET / HTTP/1.1\r\n" + HOST + b"".join(b"A%d: b\r\n" % i for i in range(500)) + b"\r\n",
    "two hosts": b"GET / HTTP/1.1\r\n" + HOST + b"Host: evil.example\r\n\r\n",
    "another host": b"GET /api/state HTTP/1.1\r\nHost: evil.example\r\n\r\n",
    "a body of pieces": POST + b"Transfer-Encoding: chunked\r\n\r\nffffffff\r\n" + b"a" * 1000,
    "pieces and a length": POST + b"Transfer-Encoding: chunked\r\nContent-Length: 3\r\n\r\n0\r\n\r\nGET /",
    "two lengths": POST + b"Content-Length: 2\r\nContent-Length: 200\r\n\r\n{}",
    "a length below zero": POST + b"Content-Length: -2\r\n\r\n{}",
    "a length without end": POST + b"Content-Length: 99999999999999999999\r\n\r\n{}",
    "a body too long": POST + b"Content-Length: 100000\r\n\r\n" + b"[" * 100000,
    "a packed body": POST + b"Content-Length: 2\r\nContent-Encoding: gzip\r\n\r\n{}",
    "no token": POST + b"Content-Length: 18\r\n\r\n" + b'{"action":"clear"}',
    "a path upwards": b"GET /../../../etc/passwd HTTP/1.1\r\n" + HOST + b"\r\n",
    "a path upwards in other words": b"GET /%2e%2e%2f%2e%2e%2fetc/passwd HTTP/1.1\r\n" + HOST + b"\r\n",
}


class TheServerUnderHarm(WithVexTray):
    def setUp(self):
        super().setUp()
        self.write_settings()
        self.start_vextray()

    def connect(self, timeout=10):
        return socket.create_connection(("127.0.0.1", self.page), timeout)

    def answer(self, data):
        """All that comes back; a connection that is reset gave what came before."""
        received = b""
        with self.connect() as connection:
            try:
                connection.sendall(data)
                connection.shutdown(socket.SHUT_WR)
                while some := connection.recv(65536):
                    received += some
            except (BrokenPipeError, ConnectionResetError):
                pass
        return received

    def memory(self):
        """Megabytes of memory that are vextray's own."""
        with open(f"/proc/{self.vextray.pid}/smaps_rollup", encoding="ascii") as rollup:
            return sum(int(line.split()[1]) for line in rollup if line.startswith("Private")) / 1024

    def assert_well(self):
        self.assertIsNone(self.vextray.poll(), "vextray has ended")
        self.assertTrue(wait_until(lambda: self.status_of(GOOD) == 503, 10), "it serves no more")  # no player runs
        self.assertEqual(json.loads(self.get("/api/state")[1])["light"], "off")
        self.assertLess(self.memory(), 60)

    def status_of(self, data):
        received = self.answer(data)
        return int(received[9:12]) if received.startswith(b"HTTP/1.1 ") else 0

    def test_what_is_no_request_of_the_page_is_refused(self):
        for name, data in REFUSED.items():
            status = self.status_of(data)
            self.assertTrue(400 <= status < 500, f"{name}: {status}")
        self.assert_well()

    def test_one_connection_carries_one_request(self):
        received = self.answer(GOOD * 200)
        self.assertEqual(received.count(b"HTTP/1.1 "), 1)
        smuggled = b"POST /api/login HTTP/1.1\r\n" + HOST + b"Content-Length: 0\r\n\r\n" + GOOD
        self.assertEqual(self.answer(smuggled).count(b"HTTP/1.1 "), 1)
        self.assert_well()

    def test_requests_of_chance_do_no_harm(self):
        chance = random.Random(20261224)
        seeds = [*REFUSED.values(), GOOD, POST + b"Content-Length: 18\r\n\r\n" + b'{"action":"clear"}',
                 b"GET /api/lines?most=99999999999999999999 HTTP/1.1\r\n" + HOST + b"\r\n",
                 b"GET / HTTP/1.1\r\n" + HOST + b"Cookie: vextray=\xff\xfe;;;=;\r\nAuthorization: Basic ////\r\n\r\n"]
        end = time.monotonic() + SECONDS
        asked = 0
        while time.monotonic() < end:
            data = bytearray(chance.choice(seeds)[:2000])
            for _ in range(chance.randrange(0, 6)):
                place = chance.randrange(len(data) + 1)
                kind = chance.randrange(4)
                if kind == 0:
                    data[place:place] = bytes(chance.randrange(256) for _ in range(chance.randrange(1, 9)))
                elif kind == 1:
                    del data[place:place + chance.randrange(1, 20)]
                elif kind == 2 and place < len(data):
                    data[place] = chance.randrange(256)
                else:
                    data[place:place] = chance.choice(seeds)[:chance.randrange(200)]
            received = self.answer(bytes(data))
            self.assertTrue(received == b"" or received.startswith(b"HTTP/1.1 "), bytes(data))
            asked += 1
        self.assertGreater(asked, 100 * SECONDS)
        self.assert_well()

    def test_slow_senders_do_not_keep_others_out(self):
        slow = [self.connect() for _ in range(200)]
        try:
            for connection in slow:
                connection.sendall(b"GET / HTTP/1.1\r\nHost: 127.")
            stop = threading.Event()

            def drip():
                while not stop.wait(0.2):
                    for connection in slow:
                        try:
                            connection.sendall(b"0")
                        except OSError:
                            pass

            dripping = threading.Thread(target=drip)
            dripping.start()
            try:
                # Where nobody waits a request may take five seconds, and here ours would be the third to have a thread.
                with self.connect(9) as connection:
                    connection.sendall(GOOD)
                    self.assertEqual(connection.recv(12), b"HTTP/1.1 503")
            finally:
                stop.set()
                dripping.join()
        finally:
            for connection in slow:
                connection.close()
        self.assert_well()

    def test_thousands_of_connections_take_neither_memory_nor_the_log(self):
        soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (min(hard, CONNECTIONS + 1000), hard))
        self.addCleanup(resource.setrlimit, resource.RLIMIT_NOFILE, (soft, hard))
        opened = []
        try:
            for number in range(CONNECTIONS):
                try:
                    opened.append(self.connect(1))
                    if number % 2:
                        opened[-1].sendall(b"GET /api/ev")
                except OSError:
                    time.sleep(0.01)  # no room at the door for now
            self.assertGreater(len(opened), CONNECTIONS / 2)
            self.assertLess(self.memory(), 60)
            self.start_player("/noschedule", settings=False)
            self.wait_text("A player has come")
        finally:
            for connection in opened:
                connection.close()
        self.wait_light("idle")

    def test_pages_that_do_not_read_cost_themselves_alone(self):
        idle = []
        for _ in range(70):
            connection = self.connect()
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 1024)
            connection.sendall(b"GET /api/events HTTP/1.1\r\n" + HOST + b"\r\n")
            idle.append(connection)
            self.addCleanup(connection.close)
        firsts = [connection.recv(12) for connection in idle]
        self.assertEqual(firsts.count(b"HTTP/1.1 200"), 64)
        self.assertEqual(firsts.count(b"HTTP/1.1 503"), 6)
        self.assertEqual(json.loads(self.get("/api/state")[1])["light"], "off")
        for connection in idle:
            connection.close()

        def serves_events():
            with self.connect() as connection:
                connection.sendall(b"GET /api/events HTTP/1.1\r\n" + HOST + b"\r\n")
                return connection.recv(12) == b"HTTP/1.1 200"

        self.assertTrue(wait_until(serves_events, 15, 0.5), "places of pages that have gone are not given to others")
        self.assert_well()
