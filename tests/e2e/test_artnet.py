"""The lights as Art-Net, chosen by the settings, as an independent decoder and a receiver see them."""
import struct
import subprocess
import time

from stage import GRACEFUL, Stage, wait_until
from test_lights import Packets

PORT = 6454
BROADCAST = "127.255.255.255"  # the loopback interface's own: only a socket that may broadcast sends there


class ArtNet(Stage):
    def setUp(self):
        super().setUp()
        self.output = {"Protocol": "artnet", "Host": self.address, "FirstUniverse": 3}

    def listen(self, address=None, port=PORT):
        packets = Packets(address or self.address, port)
        self.addCleanup(packets.close)
        return packets

    @staticmethod
    def universe(packets, number):
        return [packet for packet, _ in list(packets.received) if packet[14:16] == struct.pack("<H", number)]

    def decoded(self, packets, *fields):
        path = self.folder / "lights.pcap"
        packets.write_pcap(path)
        command = ["tshark", "-r", str(path), "-T", "fields"]
        for field in fields:
            command += ["-e", field]
        done = subprocess.run(command, capture_output=True, text=True, check=True)
        return [line.split("\t") for line in done.stdout.splitlines()]

    def end(self, tray, packets):
        tray.send(GRACEFUL)
        self.wait_exit()
        time.sleep(0.3)
        packets.close()

    def test_an_independent_decoder_reads_every_packet(self):
        packets = self.listen()
        self.sequence("on.vexseq", 0.5, (0, 1, 100), (0.2, 1, 50), (0, 2, 10))
        self.sequence("two.vexseq", 0.5, (0, 7, 33.3), unit=2)
        tray = self.play_show(background=["on.vexseq", "two.vexseq"])
        self.assertTrue(wait_until(lambda: len(packets.received) > 60, 10))
        self.end(tray, packets)
        rows = self.decoded(packets, "artnet.header.id", "artnet.header.opcode", "artnet.header.protver",
                            "artnet.output.universe", "artnet.output.length", "artnet.output.physical", "_ws.malformed")
        self.assertEqual(len(rows), len(packets.received))
        self.assertFalse([row for row in rows if row[6]], "malformed packets")
        self.assertEqual({row[0] for row in rows}, {"Art-Net"})
        self.assertEqual({int(row[1], 0) for row in rows}, {0x5000})
        self.assertEqual({int(row[2], 0) for row in rows}, {14})
        self.assertEqual({int(row[3], 0) for row in rows}, {3, 4})
        self.assertEqual({row[4] for row in rows}, {"512"})
        self.assertEqual({int(row[5], 0) for row in rows}, {0})

    def test_numbers_count_from_1_to_255_and_never_are_0(self):
        packets = self.listen()
        self.output["FrameRate"] = 250
        self.sequence("busy.vexseq", 1.0, *((n / 250, 1, n / 2.5) for n in range(250)))
        self.play_show(background=["busy.vexseq"])
        self.assertTrue(wait_until(lambda: len(packets.received) > 600, 15))
        numbers = [packet[12] for packet in self.universe(packets, 3)]
        self.assertEqual(numbers, [1 + n % 255 for n in range(len(numbers))])

    def test_a_quiet_stream_is_kept_alive_and_just_stops_at_the_end(self):
        packets = self.listen()
        self.sequence("on.vexseq", 60, (0, 2, 100))
        tray = self.play_show(startup=["on.vexseq"])
        self.assertTrue(wait_until(lambda: len(packets.received) >= 6, 10))
        self.assertEqual({packet[18:21] for packet in self.universe(packets, 3)}, {b"\0\xff\0"})
        self.end(tray, packets)
        slots = [packet[18:] for packet in self.universe(packets, 3)]
        self.assertEqual(slots[-1], bytes(512), "the sequence turned its lights off, and nothing came after that")
        self.assertEqual(set(slots), {b"\0\xff" + bytes(510), bytes(512)})
        self.assertFalse([row for row in self.decoded(packets, "_ws.malformed") if row[0]])

    def test_it_may_be_broadcast(self):
        packets = self.listen(BROADCAST)
        self.output.update(Host=BROADCAST, FirstUniverse=0)
        self.sequence("on.vexseq", 0.5, (0, 2, 100))
        tray = self.play_show(background=["on.vexseq"])
        self.assertTrue(wait_until(lambda: self.universe(packets, 0), 10), tray.lines())
        self.assertFalse([line for line in tray.lines() if "unreachable" in line])

    def test_none_sends_nothing_by_either_protocol(self):
        listeners = [self.listen(), self.listen(port=5568)]
        self.output["Protocol"] = "none"
        self.sequence("on.vexseq", 0.3, (0, 1, 100), (0.1, 1, 0))
        tray = self.play_show(startup=["on.vexseq"])
        self.assert_line(tray, "Ending Startup: on.vexseq")
        self.end(tray, listeners[0])
        self.assertEqual([each.received for each in listeners], [[], []])
