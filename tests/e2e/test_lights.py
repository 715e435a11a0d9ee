"""The lights on the network: E1.31 packets as an independent decoder and a receiver see them."""
import json
import pathlib
import socket
import struct
import subprocess
import threading
import time

from stage import GRACEFUL, Stage, programs, wait_until
from test_shows import silence


class Packets:
    """Receives on a loopback address of its own; keeps every datagram with its moment."""

    def __init__(self, address, port=5568):
        self.port = port
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 1 << 20)
        self.socket.bind((address, port))
        self.socket.settimeout(0.1)
        self.received = []
        self.closed = False
        self.thread = threading.Thread(target=self._receive, daemon=True)
        self.thread.start()

    def _receive(self):
        while not self.closed:
            try:
                self.received.append((self.socket.recv(2000), time.monotonic()))
            except socket.timeout:
                continue

    def close(self):
        self.closed = True
        self.thread.join()
        self.socket.close()

    def data(self):
        return [packet for packet, _ in list(self.received) if packet[18:22] == b"\0\0\0\4"]

    def universe(self, number):
        return [packet for packet in self.data() if packet[113:115] == struct.pack(">H", number)]

    def levels(self, number, slot):
        """The levels of a slot one after another, repeats left out."""
        seen = []
        for packet in self.universe(number):
            if not seen or seen[-1] != packet[125 + slot]:
                seen.append(packet[125 + slot])
        return seen

    def write_pcap(self, path):
        with open(path, "wb") as out:
            out.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, 101))
            for packet, moment in list(self.received):
                udp = struct.pack(">4H", 40000, self.port, 8 + len(packet), 0) + packet
                ip = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 20 + len(udp), 0, 0, 64, 17, 0,
                                 bytes([127, 0, 0, 1]), bytes([127, 0, 0, 1])) + udp
                out.write(struct.pack("<IIII", int(moment), int(moment % 1 * 1e6), len(ip), len(ip)) + ip)


class LightStage(Stage):
    def setUp(self):
        super().setUp()
        self.output = {"Protocol": "sacn", "Host": self.address, "SourceName": "Test bench"}
        self.packets = Packets(self.address)
        self.addCleanup(self.packets.close)

    def decoded(self, *fields):
        path = self.folder / "lights.pcap"
        self.packets.write_pcap(path)
        command = ["tshark", "-r", str(path), "--enable-heuristic", "acn", "-o", "acn.dmx_enable:TRUE", "-T", "fields"]
        for field in fields:
            command += ["-e", field]
        done = subprocess.run(command, capture_output=True, text=True, check=True)
        return [line.split("\t") for line in done.stdout.splitlines()]


class Output(LightStage):
    def test_an_independent_decoder_reads_every_packet(self):
        self.sequence("on.vexseq", 0.5, (0, 1, 100), (0.2, 1, 50), (0, 2, 10))
        self.sequence("two.vexseq", 0.5, (0, 7, 33.3), unit=2)
        tray = self.play_show(background=["on.vexseq", "two.vexseq"])
        self.assertTrue(wait_until(lambda: len(self.packets.data()) > 60, 10))
        tray.send(GRACEFUL)
        self.wait_exit()
        time.sleep(0.3)
        self.packets.close()
        rows = self.decoded("acn.dmx.universe", "acn.dmx.priority", "acn.dmx.source_name", "acn.dmx.start_code2",
                            "acn.dmx.count", "_ws.malformed", "acn.cid")
        data = [row for row in rows if row[0] in ("1", "2")]
        self.assertEqual(len(data), len(self.packets.data()))
        self.assertFalse([row for row in rows if row[5]], "malformed packets")
        self.assertEqual({row[0] for row in data}, {"1", "2"})
        self.assertEqual({row[1] for row in data}, {"100"})
        self.assertEqual({row[2].rstrip("\0") for row in data}, {"Test bench"})
        self.assertEqual({int(row[3], 0) for row in data}, {0})
        self.assertEqual({row[4] for row in data}, {"513"})
        self.assertEqual(len({row[6] for row in data}), 1)

    def test_levels_go_out_as_the_cues_say(self):
        self.sequence("steps.vexseq", 1.2, (0, 1, 100), (0.3, 1, 20), (0.6, 1, 66.6), (0.9, 1, 0.4))
        self.play_show(startup=["steps.vexseq"])
        self.assertTrue(wait_until(lambda: self.packets.levels(1, 1)[-1:] in ([1], [0])
                                   and len(self.packets.levels(1, 1)) >= 4, 10))
        self.assertEqual([level for level in self.packets.levels(1, 1) if level][:4], [255, 51, 170, 1])

    def test_a_universe_is_sent_no_faster_than_its_rate_and_numbered_without_a_gap(self):
        self.sequence("busy.vexseq", 1.0, *((n / 200, 1, n / 2) for n in range(200)))
        self.play_show(background=["busy.vexseq"])
        self.assertTrue(wait_until(lambda: len(self.packets.universe(1)) > 100, 10))
        numbers = [packet[111] for packet in self.packets.universe(1)]
        self.assertFalse([pair for pair in zip(numbers, numbers[1:]) if pair[1] != (pair[0] + 1) % 256])

    def test_the_stream_ends_with_three_terminated_packets_when_the_show_does(self):
        self.sequence("on.vexseq", 0.5, (0, 1, 100))
        tray = self.play_show(background=["on.vexseq"])
        self.assertTrue(wait_until(lambda: len(self.packets.universe(1)) > 5, 5))
        self.assertFalse([packet for packet in self.packets.data() if packet[112]])
        tray.send(GRACEFUL)
        self.wait_exit()
        time.sleep(0.3)
        options = [packet[112] for packet in self.packets.universe(1)]
        self.assertEqual(options[-4:], [0, 0x40, 0x40, 0x40])

    def test_lights_follow_the_song(self):
        silence(self.sequences / "song.wav", 2.0)
        self.sequence("song.vexseq", 9.0, (0.0, 1, 10), (0.5, 1, 40), (1.0, 1, 70), (1.5, 1, 100), (5.0, 1, 33),
                      media="song.wav")
        tray = self.play_show(musical=["song.vexseq"])
        self.assert_line(tray, "Ending Musical: song.vexseq")
        seen = [level for level in self.packets.levels(1, 1) if level]
        self.assertEqual(seen[:4], [26, 102, 178 if 178 in seen else 179, 255])
        self.assertNotIn(84, seen, "what lies behind the song's end is not played")

    def test_a_receiver_that_cannot_be_found_is_one_line_and_no_end(self):
        self.output["Host"] = "lights.invalid"
        self.sequence("on.vexseq", 0.5, (0, 1, 100), (0.2, 1, 50))
        tray = self.play_show(background=["on.vexseq"])
        self.assert_line(tray, "lights.invalid", 12)
        time.sleep(2)
        self.assertEqual(sum("lights.invalid" in line for line in tray.lines()), 1, tray.lines())
        self.assertIsNone(self.player.poll())


class Viewer(LightStage):
    """The demonstration's picture, fed with packets by hand."""

    def packet(self, sequence, level, universe=1, options=0):
        count = 512
        return (struct.pack(">HH", 16, 0) + b"ASC-E1.17\0\0\0" + struct.pack(">HI", 0x7000 + 110 + count, 4) + b"c" * 16 +
                struct.pack(">HI", 0x7000 + 88 + count, 2) + b"hand".ljust(64, b"\0") +
                struct.pack(">BHBBH", 100, 0, sequence, options, universe) +
                struct.pack(">HBBHHH", 0x7000 + 11 + count, 2, 0xA1, 0, 1, count + 1) + b"\0" + bytes([level]) * count)

    def test_packets_are_counted_and_lines_shown(self):
        self.packets.close()  # the viewer listens in its place
        picture = {"columns": 4, "scenery": ["    "], "lights": [{"universe": 1, "slot": 1, "glyph": "██",
                                                                  "cells": [[0, 0]]}]}
        (self.folder / "picture.json").write_text(json.dumps(picture))
        counts = self.folder / "counts.json"
        view = subprocess.Popen([str(programs() / "lightview"), "--address", self.address, "--counts", str(counts),
                                 str(self.folder / "picture.json")], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(self.end_process, view)
        sender = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.addCleanup(sender.close)
        view.stdin.write("18:00: Für Elise\n".encode())
        view.stdin.flush()
        self.assertEqual(view.stdout.readline().decode(), "18:00: Für Elise\n")
        good = [self.packet(n, level) for n, level in ((254, 10), (255, 10), (0, 20), (3, 30))]
        late, cut, other = self.packet(2, 99), good[0][:300], b"GET / HTTP/1.0"
        for datagram in good + [late, cut, other]:
            sender.sendto(datagram, (self.address, 5568))
        time.sleep(0.3)
        view.stdin.close()
        self.assertEqual(view.wait(5), 0)
        found = json.loads(counts.read_text())
        self.assertEqual((found["packets"], found["lost"], found["malformed"], found["universes"], found["mostLit"]),
                         (4, 2, 2, [1], 1))
        self.assertEqual(found["changes"], 3 * 512)


class Demonstration(Stage):
    def test_the_demonstration_plays_to_its_end(self):
        here = pathlib.Path(__file__).resolve().parents[2]
        done = subprocess.run(["python3", "-B", str(here / "demo" / "play.py"), str(programs()),
                               str(self.folder / "demo"), "--seconds", "20"], env=self.environment,
                              capture_output=True, text=True, timeout=120, stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("The show is over.", done.stdout)
        self.assertRegex(done.stdout, r"[1-9]\d* packets in universes 1, 2, 0 lost, 0 malformed")
        self.assertIn("button     1 press, 1 heard by the player, 1 answered with light", done.stdout)
        self.assertIn("Starting Musical: Für Elise.vexseq", done.stdout)
