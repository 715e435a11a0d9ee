"""vexctl's control commands and the post-installation program."""
import json
import re
import signal
import subprocess
import time

from stage import INITIALIZED, STATUS, Stage, programs, system_path, wait_until

KEY = r"[HKEY_CURRENT_USER\Software\Brillara]"


class Control(Stage):
    def test_without_a_player_every_command_says_so_with_status_1(self):
        for command in (["status"], ["watch"], ["reload"], ["link", "on"], ["link", "off"], ["schedules", "on"],
                        ["shutdown"], ["shutdown", "--now"]):
            code, out, err = self.vexctl(*command)
            self.assertEqual((code, out), (1, ""), command)
            self.assertRegex(err, r"\A[^\n]*no player is running[^\n]*\n\Z", command)

    def test_a_killed_player_counts_as_none(self):
        self.start_player()
        self.player.kill()
        self.player.wait()
        code, _, err = self.vexctl("status")
        self.assertEqual(code, 1)
        self.assertIn("no player is running", err)

    def test_wrong_usage_is_status_2(self):
        for command in ([], ["nonsense"], ["link"], ["link", "maybe"], ["schedules", "off"], ["status", "extra"],
                        ["shutdown", "--later"], ["--jason", "status"]):
            code, out, err = self.vexctl(*command)
            self.assertEqual(code, 2, (command, out, err))
            self.assertTrue(err.strip(), command)

    def test_help_teaches_with_examples(self):
        code, out, _ = self.vexctl("--help")
        self.assertEqual(code, 0)
        for word in ("status", "watch", "reload", "link", "schedules", "shutdown", "--json", "Plan:", "Control:"):
            self.assertIn(word, out)
        self.assertEqual(self.vexctl("shutdown", "--help")[0], 0)

    def test_commands_reach_the_player(self):
        self.link = {"LocalPort": 0}
        self.start_player("/noschedule")
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        self.assertEqual(self.vexctl("reload")[0], 0)
        self.assert_line(tray, "Schedule loaded", 3, count=2)
        for word, state in (("on", True), ("off", False)):
            self.assertEqual(self.vexctl("link", word)[0], 0)
            self.assertTrue(wait_until(lambda: self.status()["link"] == state, 3))
        self.assertEqual(self.vexctl("schedules", "on")[0], 0)
        self.assertTrue(wait_until(lambda: not self.status()["noSchedule"], 3))
        self.assertEqual(self.vexctl("shutdown")[0], 0)
        self.assertEqual(self.wait_exit(), 0)
        self.assert_line(tray, "Graceful shutdown requested", 1)

    def test_shutdown_now_ends_a_show_where_it_is(self):
        self.sequence("long.vexseq", 60, (0, 1, 100))
        tray = self.play_show(background=["long.vexseq"], shutdown=["long.vexseq"])
        self.assertEqual(self.vexctl("shutdown", "--now")[0], 0)
        self.assertEqual(self.wait_exit(3), 0)
        self.assert_line(tray, "Immediate shutdown requested", 1)

    def test_status_tells_people_and_scripts(self):
        self.sequence("loop.vexseq", 0.5, (0, 1, 100))
        tray = self.play_show(background=["loop.vexseq"])
        self.assert_line(tray, "Starting Background")
        self.assertTrue(wait_until(lambda: self.status()["playing"], 3))
        code, out, _ = self.vexctl("status")
        self.assertEqual(code, 0)
        for word in ("eve.shw", "Background: loop.vexseq", "link", "off", str(self.player.pid)):
            self.assertIn(word, out)
        code, out, _ = self.vexctl("--json", "status")
        self.assertEqual((code, json.loads(out)), (0, self.status()))


class Watch(Stage):
    def watch(self, *arguments):
        self.out = open(self.folder / "watched.txt", "wb")
        self.addCleanup(self.out.close)
        return self.spawn("vexctl", *arguments, "watch", stdout=self.out, stderr=subprocess.DEVNULL)

    def watched(self):
        return (self.folder / "watched.txt").read_text(encoding="utf-8")

    def test_it_prints_lines_and_reports_until_interrupted(self):
        self.write_show("Für Elise.shw")
        self.write_week((-60, 600, "Für Elise.shw"))
        self.start_player()
        watch = self.watch()
        self.assertTrue(wait_until(lambda: "Starting show: Für Elise.shw" in self.watched(), 12), self.watched())
        lines = self.watched().splitlines()
        self.assertRegex(lines[0], r"^\d\d:\d\d: Show Player starting$")
        self.assertRegex(lines[1], r"^\d\d:\d\d: Schedule loaded$")
        self.assertTrue([line for line in lines if "(Für Elise.shw," in line])
        watch.send_signal(signal.SIGINT)
        self.assertEqual(watch.wait(5), 0)

    def test_in_json_each_line_is_an_object(self):
        self.start_player()
        self.watch("--json")
        self.assertTrue(wait_until(lambda: "Show Player initialized" in self.watched(), 12))
        lines = [json.loads(line) for line in self.watched().splitlines()]
        self.assertTrue(all(set(line) >= {"kind", "text"} for line in lines))

    def test_it_follows_a_player_that_comes_back(self):
        self.start_player()
        self.watch()
        self.assertTrue(wait_until(lambda: "Show Player initialized" in self.watched(), 12))
        self.player.kill()
        self.player.wait()
        self.start_player(settings=False)
        self.assertTrue(wait_until(lambda: self.watched().count("Show Player initialized") == 2, 15), self.watched())
        self.assertEqual(self.watched().count("Show Player starting"), 2)

    def test_the_newest_tray_takes_the_place(self):
        self.start_player()
        first = self.tray()
        self.assert_line(first, "Schedule loaded")
        self.watch()
        self.assertTrue(wait_until(lambda: "Show Player initialized" in self.watched(), 12))
        self.assertFalse(first.wait_line("Show Player initialized", 0))
        self.assertEqual(len(first.of(INITIALIZED)), 0)
        self.assertTrue(first.of(STATUS))


class PostInstall(Stage):
    def values(self):
        text = self.settings.read_text(encoding="utf-8")
        return dict(re.findall(r'^"(\w+)"=(.*)$', text, re.M))

    def install(self):
        done = self.run_program("VexPostInstall")
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    def own_folder(self):
        return '"' + (system_path(programs()) + "\\").replace("\\", "\\\\") + '"'

    def test_it_makes_settings_where_there_are_none(self):
        self.environment["XDG_DATA_HOME"] = str(self.folder / "share")
        self.install()
        values = self.values()
        self.assertEqual(values["PostInstall"], "dword:00000001")
        self.assertGreaterEqual(int(values["PostInstallVer"].removeprefix("dword:"), 16), 5)
        self.assertEqual(values["AppPath"], self.own_folder())
        data = values["UserDataPath"].strip('"').replace("\\\\", "/").removeprefix("Z:")
        self.assertTrue((self.folder / "share").exists() and data.startswith(str(self.folder)), data)
        self.assertIn(KEY, self.settings.read_text())

    def test_it_merges_and_keeps_everything_else(self):
        before = ("REGEDIT4\n\n; my settings\n" + KEY + '\n"PostInstall"=dword:00000000\n"Mine"="kept"\n"Raw"=hex:01,02\n'
                  f'"UserDataPath"="{system_path(self.data)}"'.replace("\\", "\\\\").replace("[HKEY_CURRENT_USER\\\\Software\\\\", "[HKEY_CURRENT_USER\\Software\\") +
                  "\n\n[HKEY_LOCAL_MACHINE\\Software\\Other]\n\"x\"=\"y\"\n")
        self.settings.write_text(before)
        self.data.rmdir()
        self.install()
        after = self.settings.read_text()
        for line in ("; my settings", '"Mine"="kept"', '"Raw"=hex:01,02', "[HKEY_LOCAL_MACHINE\\Software\\Other]",
                     '"x"="y"', '"PostInstall"=dword:00000001'):
            self.assertIn(line, after)
        self.assertEqual(self.values()["UserDataPath"].rstrip('"').rstrip("\\"),
                         '"' + system_path(self.data).replace("\\", "\\\\"), "a folder that is set is kept")
        self.assertTrue(self.data.is_dir(), "the user data folder is made")

    def test_a_second_run_changes_nothing(self):
        self.write_settings()
        self.install()
        before, moment = self.settings.read_bytes(), self.settings.stat().st_mtime_ns
        time.sleep(0.05)
        self.install()
        self.assertEqual(self.settings.read_bytes(), before)
        self.assertEqual(self.settings.stat().st_mtime_ns, moment)

    def test_it_makes_a_folder_with_an_umlaut(self):
        folder = self.folder / "Weihnachten für alle"
        text = f'Windows Registry Editor Version 5.00\n\n{KEY}\n"UserDataPath"="' + \
               system_path(folder).replace("\\", "\\\\") + '\\\\"\n'
        self.settings.write_text(text, encoding="utf-8")
        self.install()
        self.assertTrue(folder.is_dir())
        self.assertIn("Weihnachten für alle", self.settings.read_text(encoding="utf-8"))

    def test_an_export_in_utf_16_stays_one(self):
        text = f'Windows Registry Editor Version 5.00\r\n\r\n{KEY}\r\n"UserDataPath"="' + \
               system_path(self.data).replace("\\", "\\\\") + '\\\\"\r\n"Who"="Zoë"\r\n'
        self.settings.write_bytes(b"\xff\xfe" + text.encode("utf-16-le"))
        self.install()
        after = self.settings.read_bytes()
        self.assertTrue(after.startswith(b"\xff\xfe"))
        decoded = after[2:].decode("utf-16-le")
        self.assertIn('"Who"="Zoë"\r\n', decoded)
        self.assertIn('"PostInstall"=dword:00000001\r\n', decoded)

    def test_the_player_runs_it_when_the_record_is_missing(self):
        self.start_player()
        self.assertEqual(self.values()["AppPath"], self.own_folder())
        self.assertEqual(self.values()["PostInstall"], "dword:00000001")

    def test_wrong_usage_is_status_2(self):
        self.assertEqual(self.run_program("VexPostInstall", "--nonsense").returncode, 2)
