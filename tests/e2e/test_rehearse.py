"""An evening on a virtual clock, by the companion's command."""
import json
import os
import pty
import re
import subprocess

from stage import Stage, programs, show


class Rehearse(Stage):
    """24 December 2026, a Thursday: the weekly show plays from 18:00 to 18:01."""

    SPAN = ["--from", "2026-12-24 17:59:50", "--until", "2026-12-24 18:01:30"]

    def setUp(self):
        super().setUp()
        self.write_settings()
        self.write_week(text="((410460,2,(,0,eve.shw),410400))")
        self.sequence("a.vexseq", 5, (0.0, 1, 100))
        self.sequence("m.vexseq", 20, (0.0, 1, 100), media="song.ogg")
        self.write_show("eve.shw", main=["a.vexseq"], musical=["m.vexseq"])

    def rehearse(self, *arguments, json_lines=True):
        return self.vexctl(*(["--json"] if json_lines else []), "rehearse", *self.SPAN, *arguments)

    def lines(self, *arguments):
        answer = self.rehearse(*arguments)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return [json.loads(line) for line in answer.stdout.splitlines()]

    def test_lines_have_their_shapes_and_begin_with_the_time(self):
        lines = self.lines("--assume-media")
        self.assertEqual(lines[0], {"t": "2026-12-24 17:59:50.000", "kind": "log", "level": 1,
                                    "text": "Show Player starting", "play": None, "file": None})
        self.assertTrue(all(list(line)[:2] == ["t", "kind"] for line in lines))
        self.assertIn({"t": "2026-12-24 18:00:00.002", "kind": "media", "call": "open", "file": "song.ogg"}, lines)
        self.assertFalse([line for line in lines if line.get("call") in ("send", "flush")])

    def test_only_what_is_asked_for_is_printed(self):
        self.assertEqual({line["kind"] for line in self.lines("--assume-media", "--only", "log,seq")}, {"log", "seq"})
        sent = self.lines("--assume-media", "--only", "io")
        self.assertIn({"t": "2026-12-24 18:00:00.002", "kind": "io", "call": "send",
                       "args": [0, 1, 1, 100, 100, "", 1, 0, 0, 1]}, sent)
        self.assertTrue(any(line["call"] == "flush" for line in sent))

    def test_the_same_again_is_the_same_to_the_byte(self):
        self.write_show("eve.shw", main=["a.vexseq"], musical=["m.vexseq"])
        first = self.rehearse("--assume-media", "--only", "log,seq,media,io,window", "--seed", "7").stdout
        self.assertTrue(all(self.rehearse("--assume-media", "--only", "log,seq,media,io,window", "--seed", "7").stdout ==
                            first for _ in range(20)))

    def test_nothing_is_started_lit_or_written(self):
        self.sequence("sh.vexseq", 1)
        (self.sequences / "sh.vexseq").write_text(json.dumps({
            "format": "vexseq", "version": 1, "duration": 1,
            "shellCommand": {"commandLine": f"touch {self.folder}/started", "windowStyle": 1}}))
        self.write_show("eve.shw", startup=["sh.vexseq"])
        before = sorted(path for path in self.folder.rglob("*"))
        lines = self.lines("--only", "shell")
        self.assertEqual(lines, [{"t": "2026-12-24 18:00:00.002", "kind": "shell",
                                  "commandLine": f"touch {self.folder}/started"}])
        self.assertEqual(sorted(path for path in self.folder.rglob("*")), before)

    def test_a_person_reads_what_happens_and_a_summary(self):
        answer = self.rehearse("--assume-media", json_lines=False)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertIn("Thursday 2026-12-24\n", answer.stdout)
        self.assertIn("  18:00:00  show eve.shw begins\n  18:00:00    song m.vexseq\n", answer.stdout)
        summary = answer.stdout.splitlines()[-1]
        self.assertTrue(summary.startswith("1 show played in 0:01 h of 0:01 h, 3 songs"), summary)
        self.assertEqual(self.rehearse("--assume-media", "--summary", json_lines=False).stdout, summary + "\n")

    def test_a_missing_song_is_found_and_strict_says_so(self):
        self.assertEqual(self.rehearse("--assume-media", "--strict", "--summary").returncode, 0)
        answer = self.rehearse("--strict", "--summary")
        self.assertEqual(answer.returncode, 1)
        self.assertNotIn(" 0 errors", answer.stdout)
        self.assertEqual(self.rehearse("--summary").returncode, 0)

    def test_inputs_happen(self):
        (self.folder / "new.shw").write_text(show(main=["b.vexseq"]))
        self.sequence("b.vexseq", 600)
        inputs = self.folder / "inputs.jsonl"
        inputs.write_text(json.dumps({"at": "2026-12-24 18:00:30.000", "copy": {"from": "new.shw",
                                                                                "to": str(self.data / "eve.shw")}}))
        lines = self.lines("--assume-media", "--inputs", str(inputs), "--only", "log")
        self.assertIn("Current show's contents have changed", [line["text"] for line in lines])
        self.assertIn("b.vexseq", [line["file"] for line in lines])
        self.assertNotIn("b.vexseq", (self.data / "eve.shw").read_text())

    def test_other_settings_are_rehearsed(self):
        other = self.folder / "other.reg"
        other.write_text("Windows Registry Editor Version 5.00\n")
        self.assertFalse([line for line in self.lines("--settings", str(other), "--only", "log")
                          if line["text"].startswith("Starting show")])

    def test_damage_on_purpose_is_told_where_it_strikes_and_everything_holds(self):
        songs = [f"m{number}.vexseq" for number in range(8)]
        for song in songs:
            self.sequence(song, 120, (0.0, 1, 100), media="song.ogg")
        animations = [f"a{number}.vexseq" for number in range(8)]
        for animation in animations:
            self.sequence(animation, 30, (0.0, 1, 100))
        self.write_show("eve.shw", main=animations, musical=songs)
        self.write_week(text="((414000,2,(,0,eve.shw),410400))")
        evening = ["rehearse", "--from", "2026-12-24 17:59:50", "--until", "2026-12-24 19:10:00", "--assume-media"]
        struck = set()
        for seed in range(1, 6):
            answer = self.vexctl("--json", *evening, "--faults", str(seed), "--only", "fault,log")
            self.assertEqual((answer.returncode, answer.stderr), (0, ""))
            faults = [json.loads(line) for line in answer.stdout.splitlines() if '"kind":"fault"' in line]
            self.assertTrue(faults)
            self.assertTrue(all(list(fault) == ["t", "kind", "call", "file"] for fault in faults))
            struck.add(json.dumps(faults))
            self.assertIn('"text":"Finished show: eve.shw"', answer.stdout)
        self.assertEqual(len(struck), 5)
        told = self.vexctl(*evening, "--faults", "1").stdout
        self.assertIn("FAULT on purpose: ", told)
        self.assertEqual(told, self.vexctl(*evening, "--faults", "1").stdout)
        self.assertIn("faults on purpose", self.vexctl(*evening, "--faults", "1", "--summary").stdout)

    def test_what_cannot_be_done_is_said(self):
        inputs = self.folder / "inputs.jsonl"
        inputs.write_text("{}\n")
        for status, arguments in ((1, ["--inputs", str(inputs)]), (1, ["--inputs", "gone.jsonl"]),
                                  (1, ["--settings", "gone.reg"]), (2, ["--only", "noise"]), (2, ["--seed", "x"])):
            answer = self.rehearse(*arguments)
            self.assertEqual(answer.returncode, status, (arguments, answer))
            self.assertEqual(len(answer.stderr.splitlines()), 1, (arguments, answer))
        answer = self.vexctl("rehearse", "--from", "2026-12-24 18:00", "--until", "2026-12-24 18:00")
        self.assertEqual(answer.returncode, 2)

    LONG = ["--json", "rehearse", "--from", "2026-03-01 00:00", "--until", "2026-03-16 00:00"]

    def run_long(self, **streams):
        """Long enough for a bar to appear: the log of a fortnight without a show, a heartbeat each second."""
        return subprocess.Popen([str(programs() / "vexctl"), *self.LONG], env=self.environment, cwd=self.folder,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, **streams)

    def test_a_bar_shows_how_far_it_is_and_goes_without_a_trace(self):
        self.write_week(text="()")
        ours, theirs = pty.openpty()
        process = self.run_long(stderr=theirs)
        os.close(theirs)
        seen = b""
        while True:
            try:
                more = os.read(ours, 65536)
            except OSError:  # the other end is closed
                break
            seen += more
        os.close(ours)
        self.assertEqual(process.wait(), 0)
        drawn = seen.decode("ascii").split("\r")
        bars = [line for line in drawn if line.strip()]
        self.assertTrue(bars, seen)
        for bar in bars:
            self.assertRegex(bar, r"^\[=*>? *\] +[0-9]+ %  2026-03-[0-9][0-9]$")
        parts = [int(re.search("([0-9]+) %", bar)[1]) for bar in bars]
        self.assertEqual(parts, sorted(parts))
        self.assertEqual(drawn[-2:], [" " * len(bars[-1]), ""], "the line is left blank, the cursor at its begin")

    def test_without_a_terminal_there_is_no_bar(self):
        self.write_week(text="()")
        process = self.run_long(stderr=subprocess.PIPE)
        self.assertEqual(process.communicate()[1], b"")
        self.assertEqual(process.returncode, 0)
