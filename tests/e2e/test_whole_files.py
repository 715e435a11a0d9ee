"""Schedules and shows are written whole or not at all, whatever happens meanwhile, and a running player learns of it."""
import concurrent.futures
import datetime
import json
import os
import resource
import stat
import subprocess

import stage
from test_authoring import MONDAY, Authoring


class WholeFiles(Authoring):
    """Files are written whole or not at all, and no change is lost."""

    ADD = ["week", "add", "Tue 18:00", "Tue 22:00", "b.shw"]

    def test_many_at_once_lose_no_change(self):
        slots = [(day, hour) for day in ("Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat") for hour in range(0, 24, 3)]

        def add(slot):
            day, hour = slot
            return self.vexctl("--json", "week", "add", f"{day} {hour:02}:00", f"{day} {hour + 2:02}:00",
                               f"{day}{hour}.shw")

        with concurrent.futures.ThreadPoolExecutor(max_workers=16) as workers:
            answers = list(workers.map(add, slots))
        self.assertEqual([answer for answer in answers if answer.returncode], [])
        text = self.json("week", "list")["text"]
        self.assertEqual(text.count(".shw"), len(slots))
        self.assertTrue(all(f"{day}{hour}.shw" in text for day, hour in slots))
        self.assertEqual(self.left_over(), ["weeksched.qsc"])

    def test_many_changes_of_both_files_at_once(self):
        days = range(1, 29)
        with concurrent.futures.ThreadPoolExecutor(max_workers=16) as workers:
            added = list(workers.map(lambda day: self.vexctl(
                "--json", "year", "add", f"2026-12-{day:02} 18:00", f"2026-12-{day:02} 22:00", f"{day}.shw"), days))
            removed = list(workers.map(lambda day: self.vexctl(
                "--json", "year", "remove", f"2026-12-{day:02} 18:00"), days[::2]))
        self.assertEqual([answer for answer in added + removed if answer.returncode], [])
        self.assertEqual(self.json("year", "list")["text"].count(".shw"), 14)

    def test_permissions_are_kept_and_a_links_target_is_written(self):
        real = self.folder / "real"
        real.mkdir()
        (real / "w.qsc").write_text(MONDAY)
        (real / "w.qsc").chmod(0o640)
        (self.data / "weeksched.qsc").symlink_to(real / "w.qsc")
        self.json(*self.ADD)
        self.assertTrue((self.data / "weeksched.qsc").is_symlink())
        self.assertEqual(stat.S_IMODE((real / "w.qsc").stat().st_mode), 0o640)
        self.assertIn("b.shw", (real / "w.qsc").read_text())
        self.assertEqual(self.left_over(real), ["w.qsc"])

    def limited(self, *arguments, before=None):
        done = self.run_program("vexctl", "--json", *arguments, preexec_fn=before)
        return stage.Answer(done.returncode, done.stdout.decode(), done.stderr.decode())

    def assert_old_file_whole(self, answer, words, folder, left):
        self.assertEqual(answer.returncode, 1, answer)
        told = json.loads(answer.stdout)
        self.assertEqual((told["number"], told["source"], told["description"]), (75, "", words))
        self.assertEqual(len(answer.stderr.splitlines()), 1, answer)
        self.assertEqual((folder / "weeksched.qsc").read_bytes().decode(), MONDAY + "\r\n")
        self.assertEqual(self.left_over(folder), left)

    def test_a_file_that_may_not_grow_leaves_the_old_one(self):
        self.write_week(text=MONDAY)
        answer = self.limited(*self.ADD, before=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (10, 10)))
        self.assert_old_file_whole(answer, "File too large", self.data, ["weeksched.qsc"])

    def test_a_folder_that_may_not_be_written_leaves_the_old_one(self):
        self.write_week(text=MONDAY)
        self.folder.chmod(0o755)
        self.settings.chmod(0o644)
        self.data.chmod(0o555)
        self.addCleanup(self.data.chmod, 0o755)

        def nobody():
            if os.getuid() == 0:  # root may write everywhere
                os.setuid(65534)

        answer = self.limited(*self.ADD, before=nobody)
        self.assert_old_file_whole(answer, "Permission denied", self.data, ["weeksched.qsc"])

    def test_a_full_disk_leaves_the_old_one(self):
        disk = self.folder / "disk"
        disk.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8k", "none", str(disk)], capture_output=True)
        if mounted.returncode:  # only root can; for others nothing at all may be written
            self.write_week(text=MONDAY)
            answer = self.limited(*self.ADD, before=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0)))
            return self.assert_old_file_whole(answer, "File too large", self.data, ["weeksched.qsc"])
        self.addCleanup(subprocess.run, ["umount", str(disk)])
        (disk / "weeksched.qsc").write_bytes(MONDAY.encode() + b"\r\n")
        (disk / "filler").write_bytes(bytes(4096))
        answer = self.limited(*self.ADD, "--file", str(disk / "weeksched.qsc"))
        self.assert_old_file_whole(answer, "No space left on device", disk, ["filler", "weeksched.qsc"])

    def test_one_that_is_killed_leaves_the_old_file_or_the_new_one(self):
        self.write_week(text=MONDAY)
        for delay in range(40):
            process = self.spawn("vexctl", "week", "add", "Tue 18:00", "Tue 22:00", "b.shw",
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            try:
                process.wait(delay / 2000)
            except subprocess.TimeoutExpired:
                process.kill()
            process.wait()
            text = self.json("week", "list")["text"]
            self.assertIn(text, (MONDAY, "((165600,2,(,0,eve.shw),151200),(252000,2,(,0,b.shw),237600))"))
            self.write_week(text=MONDAY)
        self.json(*self.ADD)  # no lock outlives its holder


class Reload(Authoring):
    def test_a_running_player_plays_what_has_been_added(self):
        self.sequence("a.vexseq", 60)
        self.write_show("d.shw", main=["a.vexseq"])
        self.write_week(text="()")
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Schedule loaded")
        start, end = self.span()
        self.json("week", "add", start, end, "d.shw", "--no-reload")
        self.assertFalse(tray.wait_line("Starting show: d.shw", 3))
        self.json("week", "remove", start, "--no-reload")
        answer = self.vexctl("week", "add", start, end, "d.shw")
        self.assertEqual(answer.returncode, 0, answer)
        self.assertIn("asked the running player to reload", answer.stdout)
        self.assert_line(tray, "Starting show: d.shw")
        self.json("week", "remove", start)
        self.assertTrue(stage.wait_until(lambda: "d.shw" not in (self.status() or {}).get("current", "d.shw"), 20),
                        self.status())

    @staticmethod
    def span():
        """From a minute ago for half an hour, as times of the week."""
        now = datetime.datetime.now()
        return [(now + datetime.timedelta(minutes=minutes)).strftime("%a %H:%M") for minutes in (-1, 30)]
