"""vexctl doctor: a machine on which all is well, and one that is broken in one place for each line."""
import ctypes
import glob
import json
import os
import socket
import subprocess
import unittest

import stage

LEVELS = ("good", "warning", "bad")


class Doctor(stage.Stage):
    def setUp(self):
        super().setUp()
        self.output = {"Protocol": "sacn", "Host": self.address}
        self.components = {"AudioOutput": "null"}
        self.link = {}
        self.sequence("s.vexseq", 1)
        self.write_show("eve.shw", main=["s.vexseq"])
        self.write_week((-60, 600, "eve.shw"))
        for name in ("XDG_RUNTIME_DIR", "PULSE_SERVER"):
            self.environment.pop(name, None)
        self.environment["XDG_RUNTIME_DIR"] = str(self.folder / "session")
        (self.folder / "session").mkdir()

    def lines(self, *around):
        """The answer as {subject: [(level, found, remedy)]}; `around` runs vexctl inside another command."""
        if not self.settings.exists():
            self.write_settings()
        done = subprocess.run([*around, str(stage.programs() / "vexctl"), "--json", "doctor"], cwd=self.folder,
                              env=self.environment, capture_output=True, timeout=60)
        found = {}
        for text in done.stdout.decode().splitlines():
            line = json.loads(text)
            self.assertEqual(list(line), ["level", "subject", "found", "remedy"])
            self.assertIn(line["level"], LEVELS)
            self.assertEqual(line["remedy"] == "", line["level"] == "good", line)
            found.setdefault(line["subject"], []).append((line["level"], line["found"], line["remedy"]))
        bad = sum(level == "bad" for group in found.values() for level, _, _ in group)
        self.assertEqual(done.returncode, 1 if bad else 0, done.stderr)
        self.assertEqual(done.stderr.decode(),
                         "" if not bad else f"vexctl: {bad} line{' is' if bad == 1 else 's are'} bad\n")
        return found

    def line(self, subject, *around):
        found = self.lines(*around)
        self.assertIn(subject, found)
        self.assertEqual(len(found[subject]), 1, found[subject])
        return found[subject][0]

    def expect(self, subject, level, words, remedy="", around=()):
        answer = self.line(subject, *around)
        self.assertEqual(answer[0], level, answer)
        self.assertIn(words, answer[1])
        self.assertIn(remedy, answer[2])

    def test_a_good_machine_is_good_but_for_what_the_test_itself_lacks(self):
        self.write_settings()
        self.run_program("VexPostInstall")
        found = self.lines()
        others = {subject: group for subject, group in found.items() if group[0][0] != "good"}
        self.assertLessEqual(set(others), {"account", "clock", "player"}, others)
        self.assertEqual(found["show eve.shw"], [("good", "everything that it names is there", "")])

    def test_lines_for_people_say_level_subject_found_and_remedy(self):
        self.write_settings()
        done = self.vexctl("doctor")
        for line in done.stdout.splitlines():
            self.assertRegex(line, r"\A(good  [^:]+: .+|(warning|bad)  [^:]+: .+ — .+)\Z")
        self.assertIn("good  show eve.shw: everything that it names is there", done.stdout)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        (self.sequences / "s.vexseq").unlink()
        done = self.vexctl("doctor")
        self.assertEqual((done.returncode, done.stderr), (1, "vexctl: 1 line is bad\n"))

    def test_it_changes_nothing(self):
        self.write_settings()
        before = {path: path.read_bytes() for path in self.folder.rglob("*") if path.is_file()}
        self.lines()
        self.assertEqual({path: path.read_bytes() for path in self.folder.rglob("*") if path.is_file()}, before)
        self.assertFalse(self.meeting.exists())

    def test_account(self):
        self.expect("account", "warning" if os.geteuid() == 0 else "good", "")

    def test_installation(self):
        self.expect("installation", "warning", "no record", "run VexPostInstall")
        self.run_program("VexPostInstall")
        self.expect("installation", "good", str(stage.programs()))

    def test_settings(self):
        self.write_settings()
        with open(self.settings, "a", encoding="utf-8") as settings:
            settings.write('"Broken"=dword:zz\n')
        number = len(self.settings.read_text().splitlines())
        answer = subprocess.run([str(stage.programs() / "vexctl"), "--json", "doctor"], env=self.environment,
                                capture_output=True, cwd=self.folder)
        lines = [json.loads(line) for line in answer.stdout.decode().splitlines()]
        told = [line["found"] for line in lines if (line["subject"], line["level"]) == ("settings", "bad")]
        self.assertEqual(len(told), 1)
        self.assertIn(f"{self.settings} line {number}:", told[0])

    def test_user_data_folder(self):
        self.write_settings()
        self.data.rename(self.folder / "elsewhere")
        self.expect("user data folder", "bad", f"{self.data}/ is no folder", "UserDataPath")

    def test_sequence_and_song_folder(self):
        self.sequences.rename(self.folder / "elsewhere")
        found = self.lines()
        for subject, setting in (("sequence folder", "NonAudioPath"), ("song folder", "AudioPath")):
            (level, words, remedy), = found[subject]
            self.assertEqual((level, words), ("bad", f"{self.sequences}/ is no folder"))
            self.assertIn(setting, remedy)

    def test_schedules(self):
        self.write_week(text="((424800,2,(,0,eve.shw)")
        (self.data / "yearsched.qsc").write_text("((2026-13-24,((417600,2,(,0,x.shw),414000))))")
        found = self.lines()
        for subject in ("weekly schedule", "dated schedule"):
            self.assertEqual(found[subject][0][0], "bad")
            self.assertIn(" is damaged: ", found[subject][0][1])

    def test_schedules_without_a_show(self):
        (self.data / "weeksched.qsc").unlink()
        self.expect("schedules", "warning", "no show", "vexctl week add")

    def test_show_that_is_missing(self):
        (self.data / "eve.shw").unlink()
        self.expect("show eve.shw", "bad", "missing", "user data folder")

    def test_sequence_and_song_that_are_missing_or_no_song(self):
        self.sequence("gone.vexseq", 1, media="gone.ogg")
        self.sequence("noise.vexseq", 1, media="noise.ogg")
        (self.sequences / "noise.ogg").write_bytes(b"this is no song")
        self.write_show("eve.shw", musical=["gone.vexseq", "noise.vexseq"], main=["nowhere.vexseq"])
        told = [words for level, words, _ in self.lines()["show eve.shw"] if level == "bad"]
        self.assertEqual(len(told), 3, told)
        for word in ("nowhere.vexseq", "gone.ogg", "noise.ogg"):
            self.assertTrue(any(word in words for words in told), (word, told))

    def test_rights(self):
        self.expect("rights", "good", "nobody else")
        (self.data / "eve.shw").chmod(0o666)
        self.expect("rights", "warning", f"{self.data}/eve.shw", "chmod go-w")

    def test_components(self):
        self.components["Lights"] = "laser"
        self.expect("components", "bad", '"laser"', "does not start")

    def test_lights_without_a_protocol(self):
        self.output = {"Protocol": "smoke"}
        self.expect("lights", "bad", "not known", "sacn, artnet or none")

    def test_lights_to_a_host_that_nobody_knows(self):
        self.output["Host"] = "lights.invalid"
        self.expect("lights", "bad", "lights.invalid", "dotted address")

    def test_lights_without_a_network(self):
        self.output = {"Protocol": "sacn"}
        self.expect("lights", "bad", "no way out", "cable", around=self.apart("--net"))

    def test_link_port_that_is_taken(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as holder:
            holder.bind(("127.0.0.1", 0))
            port = holder.getsockname()[1]
            self.link = {"On": 1, "LocalPort": port}
            self.expect("link", "bad", f"port {port} cannot be opened", "LocalPort")
        self.expect("link", "good", f"on, port {port}")

    def with_a_song(self):
        self.components = {}
        song = self.folder / "sequences" / "song.ogg"
        song.write_bytes(b"not looked into here")
        self.sequence("song.vexseq", 1, media="song.ogg")
        self.write_show("eve.shw", musical=["song.vexseq"])

    def test_sound(self):
        self.with_a_song()
        cards = [device for device in glob.glob("/dev/snd/pcmC*p") if os.access(device, os.W_OK)]
        self.expect("sound", "good" if cards else "bad", "card")
        server = self.folder / "session" / "pipewire-0"
        with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as listener:
            listener.bind(str(server))
            listener.listen()
            self.expect("sound", "good", str(server))

    def test_sound_that_the_settings_switch_off(self):
        self.with_a_song()
        self.components = {"AudioOutput": "null"}
        self.expect("sound", "warning", '"null"', "AudioOutput")

    def test_display(self):
        self.with_a_song()
        self.environment["DISPLAY"] = ":60791"
        self.expect("display", "warning", "nobody answers at DISPLAY=:60791", "DisplayVideos")
        self.video = {"DisplayVideos": 0}
        self.write_settings()
        self.expect("display", "good", "none needed")

    def test_clock(self):
        class Timex(ctypes.Structure):
            _fields_ = [("modes", ctypes.c_uint), ("rest", ctypes.c_char * 400)]

        kept = ctypes.CDLL(None).adjtimex(ctypes.byref(Timex())) != 5  # TIME_ERROR
        self.expect("clock", "good" if kept else "warning", "", "" if kept else "time service")

    def apart(self, *what):
        """A command that runs another one in namespaces of its own, as root there."""
        command = ["unshare", *([] if os.geteuid() == 0 else ["--user", "--map-root-user"]), *what]
        if subprocess.run([*command, "true"], capture_output=True).returncode != 0:
            self.fail(f"{' '.join(command)} is not allowed here; the case cannot be tried")
        return command

    def test_disk_space(self):
        around = self.apart("--mount")
        for options, level, words in (("size=8m", "bad", " MB free"), ("size=100m", "warning", " MB free"),
                                      ("ro", "bad", "read-only")):
            mount = f'mount -t tmpfs -o {options} none "$0" && exec "$@"'
            found = self.lines(*around, "sh", "-c", mount, str(self.data))
            (got, told, remedy), = found["disk space"]
            self.assertEqual((got, words in told, remedy != ""), (level, True, True), told)

    def test_meeting_place(self):
        self.environment["VEX_RUNTIME_DIR"] = str(self.folder / ("m" * 120))
        self.expect("meeting place", "bad", "too long", "VEX_RUNTIME_DIR")

    def test_player(self):
        self.expect("player", "warning", "no player", "start VexMonitor")
        self.start_player()
        self.expect("player", "good", "running")


if __name__ == "__main__":
    unittest.main()
