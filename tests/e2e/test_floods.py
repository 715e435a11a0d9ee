"""Floods: other programs shout at the player as fast as the machine lets them, and the show goes on."""
import json
import pathlib
import signal
import socket
import subprocess
import sys
import threading
import time

import flooder
from stage import CURRENT, DEMAND, Stage, wait_until
from test_inputs import free_port, group, osc, press
from test_lights import Packets

FLOODER = pathlib.Path(__file__).with_name("flooder.py")


class Floods(Stage):
    COUNT = 100_000

    def setUp(self):
        super().setUp()
        self.port = free_port()
        self.link = {"LocalPort": self.port, "On": 1}
        self.output = {"Host": self.address}
        self.packets = Packets(self.address)
        self.addCleanup(self.packets.close)
        events = [{"kind": "main", "network": 0, "unit": 1, "circuit": 1, "start": 0, "end": 60, "from": 0, "to": 100},
                  {"kind": "main", "network": 0, "unit": 2, "circuit": 1, "start": 0, "end": 6, "from": 0, "to": 100}]
        (self.sequences / "long.vexseq").write_text(json.dumps(
            {"format": "vexseq", "version": 1, "duration": 60, "events": events}))
        self.sequence("flash.vexseq", 0.1, (0.0, 1, 100), unit=3)

    def begin(self):
        tray = self.play_show(main=["long.vexseq"], groups=f"({group((3, 'flash.vexseq'))})")
        self.assert_line(tray, "Starting Animation: long.vexseq")
        self.assertTrue(wait_until(lambda: self.packets.received, 5))
        return tray

    def flood(self, tray, name, count, share=0.05, retry=1):
        return self.spawn_flooder(str(self.meeting / self.window()), str(tray.handle), name, str(count), str(share),
                                  str(retry))

    def spawn_flooder(self, *arguments):
        process = subprocess.Popen([sys.executable, str(FLOODER), *arguments], stdout=subprocess.PIPE)
        self.addCleanup(self.end_process, process)
        return process

    @staticmethod
    def caused(tray, *names):
        wanted = {line for name in names for line in flooder.LINES[name].values()}
        return [line for line in tray.lines() if line in wanted]

    def assert_handled(self, tray, before, flooders):
        """All of it and in each sender's order; what others send may lie in between."""
        outcomes = {name: json.loads(process.communicate(timeout=300)[0]) for name, process in flooders.items()}
        for name, outcome in outcomes.items():
            self.assertEqual(outcome["failed"], 0)
            lines = outcome["lines"]
            self.assertTrue(lines)
            wait_until(lambda: len(self.caused(tray, name)) - before[name] >= len(lines), 60, 0.2)
            time.sleep(0.2)
            told = self.caused(tray, name)[before[name]:]
            self.assertEqual(len(told), len(lines))
            self.assertEqual(told, lines)
        return outcomes

    def assert_show_goes_on(self, tray, packets_before):
        self.assertIsNone(self.player.poll(), self.said())
        self.assertEqual(sum("Starting show" in line for line in tray.lines()), 1)
        self.assertFalse([line for line in tray.lines() if "Finished show" in line or "shutdown mode" in line])
        self.assertIn("eve.shw", self.status()["current"])
        self.assertGreater(len(self.packets.received), packets_before + 10, "the lights stood still")

    def before(self, tray):
        return {name: len(self.caused(tray, name)) for name in flooder.LINES}

    def test_a_hundred_thousand_messages_are_handled_in_order(self):
        tray = self.begin()
        before, packets = self.before(tray), len(self.packets.received)
        outcomes = self.assert_handled(tray, before, {"one": self.flood(tray, "one", self.COUNT)})
        self.assertEqual(outcomes["one"]["sent"], self.COUNT)
        self.assert_show_goes_on(tray, packets)

    def test_two_senders_at_once_each_keep_their_order(self):
        tray = self.begin()
        before, packets = self.before(tray), len(self.packets.received)
        flooders = {name: self.flood(tray, name, self.COUNT // 2) for name in ("one", "two")}
        outcomes = self.assert_handled(tray, before, flooders)
        self.assertEqual([each["sent"] for each in outcomes.values()], [self.COUNT // 2] * 2)
        self.assert_show_goes_on(tray, packets)

    def test_what_a_stopped_player_has_no_room_for_is_refused_and_the_rest_is_handled(self):
        tray = self.begin()
        before, packets = self.before(tray), len(self.packets.received)
        self.player.send_signal(signal.SIGSTOP)
        process = self.flood(tray, "one", 2000, share=0.5, retry=0)
        process.wait(60)
        refused = self.vexctl("reload")
        self.player.send_signal(signal.SIGCONT)
        outcomes = self.assert_handled(tray, before, {"one": process})
        self.assertGreater(outcomes["one"]["refused"], 0)
        self.assertEqual(refused.returncode, 1)
        self.assertIn("has not taken the message", refused.stderr)
        self.assertTrue(wait_until(lambda: len(self.packets.received) > packets + 10, 10))

    def private_memory(self):
        """Kilobytes that the player alone holds."""
        rollup = pathlib.Path(f"/proc/{self.player.pid}/smaps_rollup").read_text()
        return sum(int(line.split()[1]) for line in rollup.splitlines() if line.startswith("Private_Dirty"))

    def test_lines_without_end_for_a_tray_that_has_stopped_cost_little_memory_and_the_newest_are_kept(self):
        tray = self.begin()
        before, packets = self.before(tray)["one"], len(self.packets.received)
        deaf = self.tray(listen=False)
        self.assertTrue(wait_until(lambda: tray.of(CURRENT), 5))
        memory = self.private_memory()
        process = self.flood(deaf, "one", 30_000, share=1.0)
        lines = json.loads(process.communicate(timeout=120)[0])["lines"]
        grown = self.private_memory() - memory
        self.assertLess(grown, 8 << 10, "kilobytes for lines that nobody reads")
        deaf.listen()
        wait_until(lambda: self.caused(deaf, "one")[-1:] == lines[-1:] and len(self.caused(deaf, "one")) > 500, 20)
        time.sleep(0.5)
        kept = self.caused(deaf, "one")
        newest = 0
        while newest < len(kept) and kept[-1 - newest] == lines[-1 - newest]:
            newest += 1
        in_kernel = 20
        self.assertGreater(newest, 500)
        self.assertLessEqual(len(kept) - newest, in_kernel)
        self.assertLess(sum(len(line) for line in kept[-newest:]), 60000)
        self.assertEqual(before, self.before(tray)["one"], "the former tray gets nothing more")
        self.assertIsNone(self.player.poll())
        self.assertGreater(len(self.packets.received), packets + 10)

    def test_triggers_without_end_leave_the_show_its_lights_and_a_press_is_heard_afterwards(self):
        tray = self.begin()
        packets = len(self.packets.received)
        datagrams = [press(3), press(4, "Nobody"), b"", b"/x\0\0", b"\xff" * 1400,
                     osc("#bundle") + b"\0" * 7 + b"\1" + (len(press(4)).to_bytes(4, "big") + press(4)) * 1000]

        def shout():
            with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
                for number in range(self.COUNT // 2):
                    sender.sendto(datagrams[number % len(datagrams)], ("127.0.0.1", self.port))

        shouters = [threading.Thread(target=shout) for _ in range(2)]
        for each in shouters:
            each.start()
        for each in shouters:
            each.join()
        self.assert_show_goes_on(tray, packets)

        def heard():
            with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
                sender.sendto(press(3, "At last"), ("127.0.0.1", self.port))
            return tray.wait_line("Trigger detected: At last", 1)

        self.assertTrue(wait_until(heard, 20))
        tray.send(DEMAND)
        self.assert_line(tray, "Request to clear show on demand received", 5)
