"""vextray: the log, the history, and the truth about what plays."""
import concurrent.futures
import fcntl
import http.client
import json
import pathlib
import random
import re
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import time

from stage import GRACEFUL, START_UP, WM_COPYDATA, Stage, cue, programs, wait_until


class WithVexTray(Stage):
    """A player's place with vextray in the tray's, its page on a free port."""

    def setUp(self):
        super().setUp()
        self.environment.pop("XDG_STATE_HOME", None)
        self.state = self.folder / ".local" / "state" / "vexmonitor"

    def start_vextray(self, *options):
        self.vextray = self.spawn("vextray", "--listen", "127.0.0.1:0", *options, stdout=subprocess.PIPE, text=True)
        self.page = int(re.search(r":(\d+)$", self.vextray.stdout.readline().strip()).group(1))

    def get(self, path):
        connection = http.client.HTTPConnection("127.0.0.1", self.page, timeout=5)
        connection.request("GET", path)
        answer = connection.getresponse()
        body = answer.read().decode()
        connection.close()
        return answer.status, body

    def look(self):
        return json.loads(self.get("/api/state")[1])

    def wait_light(self, light, seconds=START_UP):
        self.assertTrue(wait_until(lambda: self.look()["light"] == light, seconds, 0.1), self.look())
        return self.look()

    def log(self):
        return [json.loads(line) for line in self.vexctl("--json", "log").stdout.splitlines()]

    def texts(self):
        return [line["text"] for line in self.log()]

    def wait_text(self, text, seconds=START_UP):
        self.assertTrue(wait_until(lambda: any(text in each for each in self.texts()), seconds, 0.1), self.texts())


class TheLog(WithVexTray):
    def test_lines_have_date_and_time_and_survive_player_and_tray(self):
        self.start_player("/noschedule")
        self.start_vextray()
        self.wait_text("Show Player initialized")
        self.player.kill()
        self.player.wait()
        self.wait_text("The player has gone without a farewell")
        self.start_player("/noschedule", settings=False)
        starts = wait_until(lambda: sum(text.startswith("Show Player starting") for text in self.texts()) == 2, START_UP)
        self.assertTrue(starts, self.texts())
        self.vextray.terminate()
        self.assertEqual(self.vextray.wait(10), 0)
        lines = self.log()
        for line in lines:
            self.assertRegex(line["time"], r"\A\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\Z")
        self.assertEqual(lines[-1]["text"], "vextray ends")

    def test_errors_are_of_level_3_and_repeats_are_counted(self):
        self.write_week((-60, 600, "missing.shw"))
        self.start_player()
        self.start_vextray()
        found = wait_until(lambda: [line for line in self.log() if line.get("count", 1) >= 3], START_UP, 0.1)
        self.assertTrue(found, self.log())
        self.assertEqual((found[0]["text"], found[0]["level"]), ("Cannot read show file: missing.shw", 3))
        answer = self.vexctl("log", "--level", "3")
        self.assertLessEqual(answer.stdout.count("Cannot read show file: missing.shw"), 3)  # the trouble in between
        self.assertRegex(answer.stdout, r"Cannot read show file: missing\.shw \(\d+ times, last ")

    def test_follow_prints_lines_as_they_come(self):
        self.start_vextray()
        follower = self.spawn("vexctl", "log", "--follow", stdout=subprocess.PIPE, text=True)
        self.assertIn("vextray begins", follower.stdout.readline())
        self.start_player("/noschedule")
        self.assertIn("A player has come", follower.stdout.readline())
        self.assertIn("Show Player starting (for on demand shows)", follower.stdout.readline())

    def test_without_a_log_vexctl_says_where_it_would_be(self):
        for command in ("log", "history"):
            answer = self.vexctl(command)
            self.assertEqual((answer.returncode, answer.stdout), (1, ""))
            self.assertIn(str(self.state / command), answer.stderr)

    def test_a_second_vextray_does_not_write_into_the_same_log(self):
        self.start_vextray()
        second = self.run_program("vextray", "--listen", "off", seconds=10)
        self.assertEqual(second.returncode, 1)
        self.assertIn(b"another vextray", second.stderr)

    def test_help_teaches_and_wrong_usage_is_status_2(self):
        answer = self.run_program("vextray", "--help")
        self.assertEqual(answer.returncode, 0)
        for word in (b"--on-trouble", b"--password-file", b"--log-size", b"--log-files", b"VEX_RUNTIME_DIR"):
            self.assertIn(word, answer.stdout)
        for arguments in (["--nonsense"], ["--listen", "here"], ["--log-files", "0"], ["--sound", "loud"]):
            self.assertEqual(self.run_program("vextray", *arguments).returncode, 2, arguments)


class TheHistory(WithVexTray):
    def test_show_with_songs_and_errors_from_beginning_to_end(self):
        self.sequence("song.vexseq", 0.5, (0, 1, 100))
        self.write_show(musical=["song.vexseq", "gone.vexseq"])
        self.write_week((-60, 600, "eve.shw"))
        self.start_player()
        self.start_vextray()
        self.wait_text('Error: Sequence file "gone.vexseq"')
        self.tray(register=False).send(GRACEFUL)
        self.assertEqual(self.wait_exit(), 0)
        self.wait_text("The player has ended")
        shows = [json.loads(line) for line in self.vexctl("--json", "history").stdout.splitlines()]
        self.assertEqual([each["show"] for each in shows], ["eve.shw"])
        self.assertFalse(shows[0]["broken"])
        self.assertTrue(shows[0]["from"] <= shows[0]["to"])
        self.assertEqual({song["file"] for song in shows[0]["songs"]}, {"song.vexseq"})
        self.assertIn("gone.vexseq", shows[0]["errors"][0]["text"])
        self.assertIn("song.vexseq", self.vexctl("history").stdout)


class TheTruth(WithVexTray):
    def setUp(self):
        super().setUp()
        self.output = {"Protocol": "sacn", "Host": self.address, "SourceName": "Tree " + self.address}
        self.sequence("lights.vexseq", 3600, (0, 1, 100))

    def play(self):
        self.write_show(main=["lights.vexseq"])
        self.write_week((-60, 600, "eve.shw"))
        self.start_player()

    def test_playing_only_while_packets_are_seen(self):
        self.play()
        marks = self.folder / "marks"
        self.start_vextray("--on-trouble", f"{self.mark_script(marks)}")
        state = self.wait_light("playing")
        self.assertEqual(state["why"], [])
        self.assertEqual([each["universe"] for each in state["packets"]["universes"]], [1])
        self.assertEqual((state["packets"]["seen"], state["player"]["show"]), (True, "eve.shw"))
        self.assertEqual(self.get("/healthz")[0], 200)
        self.player.send_signal(signal.SIGSTOP)
        state = self.wait_light("trouble", 6)
        self.assertIn("no packets are seen of universe 1, since ", state["why"][0])
        self.assertFalse(state["packets"]["ok"])
        self.assertTrue(state["player"]["ok"])
        self.assertEqual(self.get("/healthz")[0], 503)
        self.assertIn('vexmonitor_light{colour="trouble"} 1', self.get("/metrics")[1])
        self.player.send_signal(signal.SIGCONT)
        self.wait_light("playing")
        self.assertTrue(wait_until(lambda: marks.exists() and marks.read_text().count("\n") >= 2, 5))
        begin, end = marks.read_text().splitlines()
        self.assertRegex(begin, r"\Abegin no packets are seen of universe 1, since \d{4}-")
        self.assertRegex(end, r"\Aend\s*\Z")

    def mark_script(self, marks):
        script = self.folder / "mark.sh"
        script.write_text(f'#!/bin/sh\necho "$1 $2" >> {marks}\n')
        script.chmod(0o755)
        return script

    def test_a_killed_player_is_trouble_and_one_that_took_leave_is_off(self):
        self.play()
        self.start_vextray()
        self.wait_light("playing")
        self.player.kill()
        self.player.wait()
        self.assertIn("gone without a farewell", self.wait_light("trouble")["why"][0])
        self.start_player(settings=False)
        self.wait_light("playing", 2 * START_UP)
        self.tray(register=False).send(GRACEFUL)
        self.wait_exit()
        state = self.wait_light("off")
        self.assertEqual((state["why"], state["player"]["running"], state["now"]), ([], False, None))

    def test_multicast_is_heard_beside_other_listeners(self):
        self.output = {"Protocol": "sacn", "Interface": "127.0.0.1", "SourceName": "Tree " + self.address}
        self.play()
        self.start_vextray()
        state = self.wait_light("playing")
        self.assertTrue(state["packets"]["watched"])
        self.assertEqual(state["packets"]["universes"][0]["protocol"], "sacn")

    def test_art_net_is_seen_as_the_player_sends_it(self):
        self.output = {"Protocol": "artnet", "Host": self.address, "FirstUniverse": 3}
        (self.sequences / "two.vexseq").write_text(cue(3600, (0, 7, 50), unit=2), encoding="utf-8")
        self.write_show(main=["lights.vexseq"], background=["two.vexseq"])
        self.write_week((-60, 600, "eve.shw"))
        self.start_player()
        self.start_vextray()
        self.wait_light("playing")
        self.assertTrue(wait_until(lambda: len(self.look()["packets"]["universes"]) == 2, START_UP), self.look())
        universes = self.look()["packets"]["universes"]
        self.assertEqual([(each["universe"], each["protocol"]) for each in universes], [(3, "artnet"), (4, "artnet")])
        self.assertIn('vexmonitor_universe_packets_total{universe="4",protocol="artnet"}', self.get("/metrics")[1])
        self.player.send_signal(signal.SIGSTOP)
        self.assertIn("no packets are seen of universe 3, 4, since ", self.wait_light("trouble", 6)["why"][0])
        self.player.send_signal(signal.SIGCONT)
        self.wait_light("playing")

    def test_packets_of_a_port_that_a_receiver_has_are_not_taken_from_it(self):
        receiver = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.addCleanup(receiver.close)
        receiver.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        receiver.settimeout(START_UP)
        receiver.bind((self.address, 5568))
        self.play()
        self.start_vextray()
        state = self.wait_light("trouble")
        self.assertIn("cannot be watched", state["why"][0])
        self.assertTrue(receiver.recv(2000))
        self.end_process(self.vextray)
        self.start_vextray("--packets", "off")
        self.wait_light("playing")

    def test_a_show_without_lights_needs_no_packets(self):
        self.sequence("lights.vexseq", 3600)
        self.play()
        self.start_vextray()
        self.assertFalse(self.wait_light("playing")["packets"]["needed"])


class FakePlayer:
    """A player from outside: its lock, its window, and lines with numbers for whoever registers."""

    def __init__(self, meeting):
        meeting.mkdir(parents=True, mode=0o700)
        self.meeting = meeting
        self.lock = open(meeting / "player.lock", "w")
        fcntl.flock(self.lock, fcntl.LOCK_EX)
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.socket.bind(str(meeting / "77"))
        (meeting / "player").write_text("77\n")
        self.socket.settimeout(20)
        self.number = 0
        self.sent = []

    def wait_registration(self):
        sender = struct.unpack_from("<I", self.socket.recv(1000), 4)[0]
        return str(self.meeting / str(sender))

    def say(self, tray):
        self.number += 1
        payload = f"07{time.strftime('%H:%M')}: line {self.number}".encode() + b"\0"
        self.socket.sendto(struct.pack("<4I", WM_COPYDATA, 77, 3, len(payload)) + payload, tray)
        self.sent.append((self.number, time.monotonic()))

    def close(self):
        self.socket.close()
        self.lock.close()


class TheLogUnderKill(WithVexTray):
    """vextray itself is killed at two hundred moments of chance: eight of them side by side, 25 times each."""

    def kill_again_and_again(self, seed, kills):
        chance = random.Random(seed)
        place = pathlib.Path(tempfile.mkdtemp(prefix="vex-"))
        player = FakePlayer(place / "meet")
        environment = dict(self.environment, VEX_RUNTIME_DIR=str(player.meeting), HOME=str(place),
                           VEX_SETTINGS=str(place / "settings.reg"))
        must = []
        try:
            for _ in range(kills):
                vextray = subprocess.Popen([str(programs() / "vextray"), "--listen", "off", "--log-size", "8",
                                            "--log-files", "1000"], env=environment)
                tray = player.wait_registration()
                end = time.monotonic() + chance.uniform(0.1, 1.6)
                while time.monotonic() < end:
                    player.say(tray)
                    time.sleep(0.004)
                vextray.kill()
                killed = time.monotonic()
                vextray.wait()
                must += [number for number, moment in player.sent if moment < killed - 1.0]
                player.sent.clear()
            done = subprocess.run([str(programs() / "vexctl"), "--json", "log"], env=environment, capture_output=True,
                                  text=True, timeout=20)
            lines = [json.loads(line)["text"] for line in done.stdout.splitlines()]
            return must, [int(text[5:]) for text in lines if text.startswith("line ")], done.stderr
        finally:
            player.close()
            shutil.rmtree(place, ignore_errors=True)

    def test_nothing_is_lost_but_the_last_second(self):
        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            results = list(pool.map(lambda seed: self.kill_again_and_again(seed, 25), range(8)))
        for must, numbers, errors in results:
            self.assertGreater(len(must), 100)
            self.assertEqual(sorted(set(must) - set(numbers)), [], errors)
            self.assertEqual(numbers, sorted(set(numbers)))
