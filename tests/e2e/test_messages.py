"""The message channel: reload, link, shows on demand, wrong shapes, and trays that stop, die and come back."""
import signal
import struct
import subprocess
import time

from stage import CURRENT, DEMAND, LINK, RELOAD, WM_COPYDATA, Stage, wait_until


class Messages(Stage):
    def test_reload_takes_a_changed_schedule(self):
        self.write_show()
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        self.write_week((-60, 600, "eve.shw"))
        time.sleep(1.5)
        self.assertFalse(tray.wait_line("Starting show", 0), "a schedule is read only when asked")
        tray.send(RELOAD)
        self.assert_line(tray, "Starting show: eve.shw", 5)

    def test_reload_of_a_broken_schedule_keeps_the_old_one(self):
        tray = self.play_show()
        self.write_week(text="((1,2,(,0,a.shw),5)")
        tray.send(RELOAD)
        self.assert_line(tray, "tmrVexMsgQueue_Timer Error: ", 5)
        self.assertTrue(wait_until(lambda: "list" in (self.status()["lastError"] or {}).get("text", ""), 3), self.status())
        time.sleep(1.5)
        self.assertFalse(tray.wait_line("shutdown mode", 0))
        self.assertIn("eve.shw", self.status()["current"])

    def test_a_broken_schedule_at_start_is_told_and_the_player_ends(self):
        self.write_week(text="(a),b),c)")
        self.write_settings()
        done = self.run_program("VexMonitor")
        self.assertIn("Shows cannot be enabled because of an error.", done.stderr.decode())

    def test_a_show_on_demand_plays_at_once_and_is_withdrawn(self):
        self.write_show("spot.shw")
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        time.sleep(1.2)
        tray.send(DEMAND, "(spot.shw,(F,,F,),2,F)")
        self.assert_line(tray, "Starting show: spot.shw", 2)
        self.assert_line(tray, "Request for show on demand received: spot.shw", 1)
        tray.send(DEMAND)
        self.assert_line(tray, "Finished show: spot.shw", 3)
        self.assert_line(tray, "Request to clear show on demand received", 1)

    def test_a_request_that_cannot_be_read_is_told(self):
        self.start_player()
        tray = self.tray()
        tray.send(DEMAND, "(spot.shw,(F,,F,),2)")
        self.assert_line(tray, "Show on demand error: Unexpected number of fields in serialized monitored show "
                               "event: 3", 3)

    def test_the_link_switches_by_the_exact_word(self):
        self.link = {"LocalPort": 0}
        self.start_player()
        tray = self.tray()
        for word, state in (("ON", True), ("on", False), ("ON", True), ("OFF", False)):
            tray.send(LINK, word)
            self.assertTrue(wait_until(lambda: self.status() and self.status()["link"] == state, 3), (word, state))

    def test_names_outside_ascii_come_as_single_bytes(self):
        self.write_show("Für Elise.shw")
        self.start_player()
        tray = self.tray()
        self.assert_line(tray, "Show Player initialized")
        time.sleep(1.2)
        tray.send(DEMAND, "(Für Elise.shw,(F,,F,),2,F)")
        self.assert_line(tray, "Starting show: Für Elise.shw", 3)
        self.assertTrue(wait_until(lambda: "Für Elise.shw" in self.status()["current"], 3), self.status())

    def test_datagrams_of_a_wrong_shape_are_dropped(self):
        self.start_player()
        tray = self.tray()
        word = b"01\0"
        for datagram in (b"", b"short", struct.pack("<3I", WM_COPYDATA, 7, 3),
                         struct.pack("<4I", 75, 7, 3, len(word)) + word,
                         struct.pack("<4I", WM_COPYDATA, 7, 3, len(word) + 1) + word,
                         struct.pack("<4I", WM_COPYDATA, 7, 3, len(word) - 1) + word,
                         struct.pack("<4I", WM_COPYDATA, 7, 3, 0),
                         struct.pack("<4I", WM_COPYDATA, 7, 3, 2 ** 32 - 1) + word):
            tray.send_raw(datagram)
        tray.send_raw(struct.pack("<4I", WM_COPYDATA, 7, 99, 4) + b"42\0x")
        self.assert_line(tray, "Show Player initialized")
        self.assertIsNone(self.player.poll())

    def test_other_data_words_and_a_missing_zero_are_no_fault(self):
        self.start_player()
        tray = self.tray()
        tray.send_raw(struct.pack("<4I", WM_COPYDATA, tray.handle, 12345, 2) + b"05")
        self.assertTrue(tray.wait_line("Schedule loaded", 5, count=2))

    def test_messages_are_handled_in_their_order(self):
        self.start_player()
        tray = self.tray()
        for number in range(40):
            tray.send(DEMAND, f"(show{number}.shw,(F,,F,),2,F)")
            time.sleep(0.01)
        self.assertTrue(tray.wait_line("show39.shw", 5))
        asked = [line for line in tray.lines() if "on demand received" in line]
        self.assertEqual(asked, [f"Request for show on demand received: show{n}.shw" for n in range(40)])


class Trays(Stage):
    LINES = 400

    def ask_for_lines(self, sender):
        """Each reload is one line, which the player writes however its tray is."""
        for _ in range(self.LINES):
            sender.send(RELOAD)
            time.sleep(0.004)

    def player_answers(self, sender):
        """The player is not waiting for anybody: the link, once switched, shows at once."""
        for word, state in (("ON", True), ("OFF", False)):
            sender.send(LINK, word)
            if not wait_until(lambda: self.status() and self.status()["link"] == state, 3):
                return False
        return True

    def test_a_tray_that_does_not_read_loses_no_line(self):
        self.link = {"LocalPort": 0}
        self.start_player()
        sender = self.tray(register=False)
        deaf = self.tray(listen=False)
        self.ask_for_lines(sender)
        self.assertTrue(self.player_answers(sender))
        deaf.listen()
        self.assertTrue(deaf.wait_line("Schedule loaded", 10, count=self.LINES + 1),
                        f"{len(deaf.lines())} lines of {self.LINES + 1}")
        time.sleep(0.3)
        self.assertEqual(sum("Schedule loaded" in line for line in deaf.lines()), self.LINES + 1)

    def test_a_watch_that_is_stopped_gets_its_lines_when_it_goes_on(self):
        self.link = {"LocalPort": 0}
        self.start_player()
        sender = self.tray(register=False)
        out = open(self.folder / "watched.txt", "wb")
        self.addCleanup(out.close)
        watch = self.spawn("vexctl", "watch", stdout=out, stderr=subprocess.DEVNULL)

        def watched():
            return (self.folder / "watched.txt").read_text().count("Schedule loaded")

        self.assertTrue(wait_until(watched, 5))
        watch.send_signal(signal.SIGSTOP)
        self.ask_for_lines(sender)
        self.assertTrue(self.player_answers(sender))
        watch.send_signal(signal.SIGCONT)
        self.assertTrue(wait_until(lambda: watched() == self.LINES + 1, 10), f"{watched()} of {self.LINES + 1}")

    def test_lines_written_while_no_tray_lives_are_kept_for_the_next(self):
        self.start_player()
        first = self.tray()
        self.assert_line(first, "Schedule loaded")
        sender = self.tray(register=False)
        first.close()
        self.ask_for_lines(sender)
        second = self.tray()
        self.assertTrue(second.wait_line("Schedule loaded", 10, count=self.LINES), f"{len(second.lines())} lines")
        self.assertTrue(wait_until(lambda: second.of(CURRENT), 3))

    def test_a_tray_that_dies_unread_leaves_the_player_in_peace(self):
        self.link = {"LocalPort": 0}
        self.start_player()
        sender = self.tray(register=False)
        deaf = self.tray(listen=False)
        self.ask_for_lines(sender)
        deaf.close()
        self.ask_for_lines(sender)
        self.assertTrue(self.player_answers(sender))
        after = self.tray()
        self.assertTrue(after.wait_line("Schedule loaded", 10, count=self.LINES // 2))
