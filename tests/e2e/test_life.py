"""The player's life: start-up, the lines at the tray, shutdown in every way, a second instance, being killed."""
import os
import pathlib
import signal
import stat
import time

from stage import (CURRENT, GRACEFUL, IMMEDIATE, INITIALIZED, NEXT, SCHEDULES, STATUS, START_UP, Stage, wait_until)


class StartUp(Stage):
    def test_lines_and_reports_reach_a_tray_in_order(self):
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        self.assertTrue(wait_until(lambda: tray.of(INITIALIZED), 5))
        self.assertEqual(tray.lines()[:2], ["Show Player starting", "Schedule loaded"])
        self.assertRegex(tray.of(STATUS)[0], r"^\d\d:\d\d: Show Player starting\r\n\d\d:\d\d: Schedule loaded$")
        kinds = [kind for kind, _, _ in tray.received]
        self.assertEqual(kinds[:3], [STATUS, NEXT, CURRENT])
        self.assertEqual(tray.of(INITIALIZED), [""])
        self.assertNotIn(-1, kinds, "a datagram of a wrong shape came")

    def test_a_tray_registered_early_is_told_of_the_start_once(self):
        self.start_player()
        tray = self.tray()
        tray.register()
        self.assertTrue(wait_until(lambda: tray.of(INITIALIZED), START_UP))
        again = self.tray()
        self.assertTrue(wait_until(lambda: again.of(CURRENT), 5))
        time.sleep(1.5)
        self.assertEqual(len(tray.of(INITIALIZED)) + len(again.of(INITIALIZED)), 1)

    def test_nothing_plays_before_the_start_up_delay_is_over(self):
        tray = self.play_show()
        started = next(moment for kind, text, moment in tray.received if kind == STATUS and "Starting show" in text)
        self.assertGreater(started - self.started, 4.9)

    def test_noschedule_leaves_the_schedule_aside_until_told_otherwise(self):
        self.write_show()
        self.write_week((-60, 600, "eve.shw"))
        self.start_player("/noschedule")
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        self.assertEqual(tray.lines()[0], "Show Player starting (for on demand shows)")
        time.sleep(2.5)
        self.assertFalse(tray.wait_line("Starting show", 0))
        self.assertTrue(self.status()["noSchedule"])
        tray.send(SCHEDULES)
        self.assert_line(tray, "Starting show: eve.shw")

    def test_the_switch_with_a_blank_behind_it_is_another_command_line(self):
        self.start_player("/noschedule", "")
        tray = self.tray()
        self.assert_line(tray, "Show Player starting")
        self.assertEqual(tray.lines()[0], "Show Player starting")

    def test_a_second_instance_ends_silently_and_leaves_the_first_alone(self):
        self.start_player()
        window = self.window()
        second = self.run_program("VexMonitor")
        self.assertEqual((second.returncode, second.stdout, second.stderr), (0, b"", b""))
        self.assertEqual(self.window(), window)
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        self.assertFalse(tray.wait_line("shutting down", 0))

    def test_the_meeting_place_belongs_to_the_user_alone(self):
        self.start_player()
        self.assertEqual(stat.S_IMODE(os.stat(self.meeting).st_mode), 0o700)
        handle = (self.meeting / "player").read_text()
        self.assertTrue(0 < int(handle) < 2 ** 31)
        self.assertTrue(stat.S_ISSOCK(os.stat(self.meeting / handle.strip()).st_mode))

    def test_a_meeting_place_too_long_for_a_socket_is_refused_with_a_reason(self):
        self.meeting = self.folder / ("m" * 120)
        self.environment["VEX_RUNTIME_DIR"] = str(self.meeting)
        self.write_settings()
        done = self.run_program("VexMonitor")
        self.assertIn(str(self.meeting), done.stderr.decode())

    def test_a_damaged_settings_file_is_named_with_its_line(self):
        self.write_settings()
        with open(self.settings, "a", encoding="utf-8") as settings:
            settings.write('"Broken"=dword:zz\n')
        line = len(self.settings.read_text().splitlines())
        self.start_player(settings=False)
        self.assertTrue(wait_until(lambda: str(self.settings) in self.said(), 5), self.said())
        self.assertRegex(self.said(), rf"settings\.reg\D*{line}\b")


class Shutdown(Stage):
    def gone(self):
        return not (self.meeting / "player").exists() and not (self.meeting / "status.json").exists()

    def test_graceful_without_a_show_ends_at_once(self):
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        tray.send(GRACEFUL)
        self.assertEqual(self.wait_exit(3), 0)
        self.assert_in_order(tray, "Graceful shutdown requested", "Show Player shutting down")
        self.assertTrue(self.gone())

    def test_graceful_with_a_show_plays_its_shutdown_sequences(self):
        self.sequence("bye.vexseq", 0.7, (0, 1, 100))
        self.sequence("loop.vexseq", 0.5, (0, 2, 100))
        tray = self.play_show(main=["loop.vexseq"], shutdown=["bye.vexseq"])
        self.assert_line(tray, "Starting Animation: loop.vexseq")
        tray.send(GRACEFUL)
        self.assertEqual(self.wait_exit(), 0)
        self.assert_in_order(tray, "Graceful shutdown requested", "Current show is entering shutdown mode",
                             "Stopping Animation: loop.vexseq", "Starting Shutdown: bye.vexseq",
                             "Ending Shutdown: bye.vexseq", "Finished show: eve.shw", "Show Player shutting down")
        self.assertTrue(self.gone())

    def test_immediate_leaves_the_show_where_it_is(self):
        self.sequence("bye.vexseq", 0.7, (0, 1, 100))
        tray = self.play_show(background=["bye.vexseq"], shutdown=["bye.vexseq"])
        tray.send(IMMEDIATE)
        self.assertEqual(self.wait_exit(3), 0)
        self.assert_in_order(tray, "Immediate shutdown requested", "Show Player shutting down")
        self.assertFalse(tray.wait_line("Starting Shutdown", 0))
        self.assertTrue(self.gone())

    def test_termination_is_graceful_and_a_second_one_immediate(self):
        self.sequence("bye.vexseq", 30, (0, 1, 100))
        tray = self.play_show(shutdown=["bye.vexseq"])
        self.player.send_signal(signal.SIGTERM)
        self.assert_line(tray, "Starting Shutdown: bye.vexseq", 5)
        self.assertIsNone(self.player.poll())
        self.player.send_signal(signal.SIGTERM)
        self.assertEqual(self.wait_exit(3), 0)
        self.assert_line(tray, "Show Player shutting down", 2)

    def test_an_event_that_ends_ends_its_show_gracefully(self):
        self.sequence("bye.vexseq", 0.5, (0, 1, 100))
        tray = self.play_show(seconds=9, shutdown=["bye.vexseq"])
        self.assert_line(tray, "Finished show: eve.shw")
        self.assert_in_order(tray, "Current show is entering shutdown mode", "Starting Shutdown: bye.vexseq",
                             "Finished show: eve.shw")
        self.assertIsNone(self.player.poll())


class Killed(Stage):
    def test_after_a_kill_the_show_is_back_within_six_seconds(self):
        self.sequence("loop.vexseq", 0.5, (0, 1, 100))
        self.play_show(background=["loop.vexseq"])
        self.player.kill()
        self.player.wait()
        self.assertTrue((self.meeting / "player").exists(), "a killed player cannot tidy up")
        self.start_player(settings=False)
        tray = self.tray()
        self.assert_line(tray, "Starting Background: loop.vexseq")
        moment = next(moment for kind, text, moment in tray.received
                      if kind == STATUS and "Starting Background" in text)
        self.assertLess(moment - self.started, 6.0)

    def test_a_tray_that_was_there_before_hears_the_new_player_once_it_registers_again(self):
        tray = self.play_show()
        self.player.kill()
        self.player.wait()
        before = len(tray.received)
        self.start_player(settings=False)
        tray.register()
        self.assertTrue(wait_until(lambda: len(tray.received) > before, 3))


class Status(Stage):
    def test_the_status_file_tells_what_plays(self):
        self.sequence("loop.vexseq", 0.5, (0, 1, 100))
        tray = self.play_show(background=["loop.vexseq"])
        self.assert_line(tray, "Starting Background")
        status = wait_until(lambda: (self.status() or {}).get("playing") and self.status(), 3)
        self.assertEqual(status["pid"], self.player.pid)
        self.assertEqual(status["playing"], [{"play": "Background", "file": "loop.vexseq"}])
        self.assertRegex(status["current"], r"^\(eve\.shw,\(T,[\d: -]+,T,[\d: -]+\),0,F\)$")
        self.assertEqual((status["ready"], status["noSchedule"], status["shuttingDown"], status["link"]),
                         (True, False, False, False))
        self.assertEqual(set(status), {"pid", "started", "ready", "noSchedule", "shuttingDown", "link", "current",
                                       "next", "playing", "media", "lastError"})
        self.assertIsNone(status["media"])
        self.assertIsNone(status["lastError"])

    def test_reading_the_status_takes_nobodys_place(self):
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        code, out, _ = self.vexctl("--json", "status")
        self.assertEqual(code, 0)
        self.assertIn('"pid"', out)
        tray.send(GRACEFUL)
        self.assert_line(tray, "Graceful shutdown requested", 3)

    def test_no_file_is_left_in_the_meeting_place_but_the_lock(self):
        self.start_player()
        tray = self.tray()
        tray.send(IMMEDIATE)
        self.wait_exit()
        tray.close()
        left = sorted(path.name for path in pathlib.Path(self.meeting).iterdir())
        self.assertEqual(left, ["player.lock"])
