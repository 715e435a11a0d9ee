"""Inputs that come over the network, and shows on demand, with programs of others beside our own."""
import socket
import struct
import subprocess

from stage import LINK, Stage, wait_until


def free_port():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def osc(text):
    data = text.encode() + b"\0"
    return data + b"\0" * (-len(data) % 4)


def press(number, name="Front door", unit=1, network=0):
    return osc("/trigger") + osc(",iiis") + struct.pack(">iii", network, unit, number) + osc(name)


def group(*entries, independent="F", interruptible="T"):
    """An interactive group; an entry is (input, sequence...)."""
    texts = ",".join(f"({sequences[0]},({number},Button,1,0)" + "".join("," + name for name in sequences[1:]) + ")"
                     for number, *sequences in entries)
    return f"({len(entries)},,{independent},{interruptible},F,Buttons,({texts}),T)"


class Inputs(Stage):
    def setUp(self):
        super().setUp()
        self.port = free_port()
        self.link = {"LocalPort": self.port, "On": 1}
        for name in ("flash.vexseq", "spark.vexseq", "a.vexseq", "slow.vexseq", "a2.vexseq"):
            self.sequence(name, 60 if name in ("a.vexseq", "slow.vexseq", "a2.vexseq") else 0.3, (0.0, 1, 100))

    def send(self, data, address="127.0.0.1"):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.bind((address, 0))
            sender.sendto(data, ("127.0.0.1", self.port))

    def oscsend(self, *arguments):
        subprocess.run(["oscsend", "127.0.0.1", str(self.port), "/trigger", *map(str, arguments)], check=True, timeout=20)

    def ready(self, groups, **parts):
        tray = self.play_show(main=["a.vexseq"], groups=f"({groups})", **parts)
        self.assert_line(tray, "Registering interactive triggers")
        return tray

    def test_a_press_by_another_program_starts_its_sequence(self):
        tray = self.ready(group((3, "flash.vexseq")))
        self.oscsend("iiis", 0, 1, 3, "Front door")
        self.assert_in_order(tray, "Trigger detected: Front door", "Starting Interactive: flash.vexseq",
                             "Ending Interactive: flash.vexseq")

    def test_vexctl_presses(self):
        tray = self.ready(group((3, "flash.vexseq")))
        answer = self.vexctl("trigger", "0", "1", "3", "Tür")
        self.assertEqual(answer, (0, "trigger sent\n", ""))
        self.assert_in_order(tray, "Trigger detected: Tür", "Starting Interactive: flash.vexseq")

    def test_vexctl_cannot_press_where_the_link_is_off(self):
        self.link["On"] = 0
        self.play_show(main=["a.vexseq"])
        answer = self.vexctl("trigger", "0", "1", "3")
        self.assertEqual(answer.returncode, 1)
        self.assertIn("link is off", answer.stderr)
        self.assertEqual(self.vexctl("trigger", "0", "1").returncode, 2)
        self.assertEqual(self.vexctl("trigger", "0", "1", "x").returncode, 2)

    def test_vexctl_cannot_press_without_a_player(self):
        self.write_settings()
        answer = self.vexctl("trigger", "0", "1", "3")
        self.assertEqual(answer.returncode, 1)
        self.assertEqual(len(answer.stderr.splitlines()), 1)

    def test_presses_in_turn_go_round(self):
        tray = self.ready(group((3, "flash.vexseq", "spark.vexseq")))
        for _ in range(3):
            self.oscsend("iiis", 0, 1, 3, "x")
            self.assertTrue(wait_until(lambda: not any(each["play"] == "Interactive" for each in self.status()["playing"])
                                       and any("Ending Interactive" in line for line in tray.lines()), 5))
        self.assert_in_order(tray, "Starting Interactive: flash.vexseq", "Starting Interactive: spark.vexseq",
                             "Starting Interactive: flash.vexseq")

    def test_a_child_presses_as_fast_as_it_can(self):
        tray = self.ready(group((3, "flash.vexseq")) + "," + group((4, "slow.vexseq"), interruptible="F"))
        for number in range(200):
            self.send(press(3 + number % 2, f"press {number}"))
        self.assert_line(tray, "Trigger detected: press 199")
        for number in range(200):
            self.assert_line(tray, f"Trigger detected: press {number}", 1)
        self.assert_line(tray, "Ending Interactive: flash.vexseq")
        self.assertEqual(sum("Starting Interactive: slow.vexseq" in line for line in tray.lines()), 1)
        self.assertTrue(wait_until(lambda: [each["file"] for each in self.status()["playing"]] ==
                                   ["a.vexseq", "slow.vexseq"], 5), self.status())

    def test_a_startup_trigger_releases_the_show(self):
        text = ("((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,(a.vexseq),T,F,F),(0,1,2,0,,,T,F,F),,"
                "(2,0,1,0,,,T,F,F),(" + group((3, "flash.vexseq")) + "),1,(3,Front door,1,0),F)")
        tray = self.play_show(text=text)
        self.assert_line(tray, "Registering startup trigger")
        self.oscsend("iiis", 0, 1, 4, "Another")
        self.oscsend("iiis", 0, 1, 3, "Front door")
        self.assert_in_order(tray, "Trigger detected: Another", "Startup trigger detected",
                             "Starting Interactive: flash.vexseq", "Registering interactive triggers")
        self.assert_line(tray, "Starting Animation: a.vexseq")

    def start_mode(self, kind):
        """A show with a background, an animation, a startup trigger (input 3) and a group (input 4)."""
        self.sequence("sky.vexseq", 60, (0.0, 2, 50))
        text = ("((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,(a.vexseq),T,F,F),(0,1,2,0,,,T,F,F),,"
                f"(2,0,1,0,,(sky.vexseq),T,F,F),({group((4, 'flash.vexseq'))}),{kind},(3,Front door,1,0),F)")
        tray = self.play_show(text=text)
        self.assert_line(tray, "Registering startup trigger")
        return tray

    def test_start_mode_1_holds_everything_back_until_the_press(self):
        tray = self.start_mode(1)
        self.oscsend("iiis", 0, 1, 4, "early")
        self.assert_line(tray, "Trigger detected: early")
        self.assertFalse(tray.wait_line("Starting Background", 1))
        self.oscsend("iiis", 0, 1, 3, "door")
        self.assert_in_order(tray, "Startup trigger detected", "Clearing triggers", "Starting Background: sky.vexseq",
                             "Registering interactive triggers", "Starting Animation: a.vexseq")
        self.assertFalse(tray.wait_line("Starting Interactive", 0.3), "the early press was only written down")

    def test_start_mode_2_plays_the_background_and_holds_the_rest_back(self):
        tray = self.start_mode(2)
        self.assert_line(tray, "Starting Background: sky.vexseq")
        self.assertEqual(self.vexctl("trigger", "0", "1", "4", "early").returncode, 0)
        self.assert_line(tray, "Trigger detected: early")
        self.assertFalse(tray.wait_line("Starting Animation", 1))
        self.assertEqual(self.vexctl("trigger", "0", "1", "3").returncode, 0)
        self.assert_in_order(tray, "Startup trigger detected", "Starting Animation: a.vexseq")
        self.assertEqual(sum("Starting Background" in line for line in tray.lines()), 1)
        self.assertFalse(any("Starting Interactive" in line for line in tray.lines()))

    def test_any_other_start_mode_holds_nothing_back(self):
        tray = self.start_mode(3)
        self.assert_line(tray, "Starting Animation: a.vexseq")
        self.oscsend("iiis", 0, 1, 4, "bell")
        self.oscsend("iiis", 0, 1, 3, "door")
        self.assert_in_order(tray, "Starting Background: sky.vexseq", "Trigger detected: bell", "Startup trigger detected")
        self.assert_line(tray, "Starting Interactive: flash.vexseq")

    def test_a_magic_toy_plays_all_of_a_trigger_and_stops_what_its_group_played(self):
        self.sequence("bell.vexseq", 60, (0.0, 5, 100))
        tray = self.ready(group((3, "slow.vexseq", "a2.vexseq"), (4, "bell.vexseq"), independent="T"))
        self.oscsend("iiis", 0, 1, 3, "toy")
        self.assert_line(tray, "Starting Interactive: slow.vexseq")
        self.oscsend("iiis", 0, 1, 4, "bell")
        self.assert_in_order(tray, "Trigger detected: bell", "Ending Interactive: slow.vexseq")
        self.assert_line(tray, "Starting Interactive: bell.vexseq")
        self.assertTrue(wait_until(lambda: [each["file"] for each in self.status()["playing"]] ==
                                   ["a.vexseq", "bell.vexseq"], 5), self.status())

    def test_what_is_no_trigger_is_told_once_and_the_show_goes_on(self):
        tray = self.ready(group((3, "flash.vexseq")))
        wrong = [b"", b"\0", b"/trigger", press(3)[:-4], osc("/trigger") + osc(",iii") + struct.pack(">iii", 0, 1, 3),
                 osc("/trigger") + osc(",fffs") + struct.pack(">fff", 0, 1, 3) + osc("x"), b"x" * 60000,
                 b"#bundle\0" + struct.pack(">Qi", 1, 2 ** 31 - 1)]
        for _ in range(20):
            for data in wrong:
                self.send(data)
        bundle = b"#bundle\0" + struct.pack(">Q", 1) + struct.pack(">i", len(press(3))) + press(3)

        def press_is_heard():  # what finds the port full of rubbish is lost, as any datagram: press again
            self.send(bundle)
            return wait_until(lambda: any("Trigger detected: Front door" in line for line in tray.lines()), 0.5)

        self.assertTrue(wait_until(press_is_heard, 10), tray.lines())
        self.assert_in_order(tray, "The link got what is no trigger", "Trigger detected: Front door",
                             "Starting Interactive: flash.vexseq")
        self.assertEqual(sum("no trigger:" in line for line in tray.lines()), 1)

    def test_another_sender_is_not_heard(self):
        tray = self.ready(group((3, "flash.vexseq")))
        self.send(press(3, "stranger"), "127.0.0.2")
        self.send(press(3, "friend"))
        self.assert_line(tray, "Trigger detected: friend")
        self.assertFalse(tray.wait_line("stranger", 0.2))

    def test_any_sender_is_heard_where_the_settings_say_so(self):
        self.link["RemoteHost"] = "0.0.0.0"
        tray = self.ready(group((3, "flash.vexseq")))
        self.send(press(3, "stranger"), "127.0.0.2")
        self.assert_line(tray, "Trigger detected: stranger")

    def test_the_link_is_switched_while_the_show_plays(self):
        tray = self.ready(group((3, "flash.vexseq")))
        tray.send(LINK, b"OFF")
        self.assertTrue(wait_until(lambda: self.status()["link"] is False, 5))
        self.send(press(3, "unheard"))
        self.assertEqual(self.vexctl("link", "on").returncode, 0)
        self.assertTrue(wait_until(lambda: self.status()["link"] is True, 5))
        self.send(press(3, "heard"))
        self.assert_line(tray, "Trigger detected: heard")
        self.assertFalse(tray.wait_line("unheard", 0.2))

    def test_a_port_that_is_taken_is_told_and_had_later(self):
        taken = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        taken.bind(("127.0.0.1", self.port))
        tray = self.ready(group((3, "flash.vexseq")))
        self.assert_line(tray, f"No triggers from the link (port {self.port})")
        taken.close()
        self.assertEqual(self.vexctl("link", "on").returncode, 0)
        self.assertTrue(wait_until(lambda: (self.send(press(3, "late")), tray.wait_line("Trigger detected: late", 0.3))[1], 10))


class OnDemand(Stage):
    def setUp(self):
        super().setUp()
        for name in ("a.vexseq", "b.vexseq"):
            self.sequence(name, 60, (0.0, 1, 100))
        self.write_show("party.shw", main=["b.vexseq"])

    def test_a_show_is_played_and_cleared(self):
        tray = self.play_show(main=["a.vexseq"])
        answer = self.vexctl("play", "party.shw")
        self.assertEqual(answer, (0, 'asked to play "party.shw", until it is cleared\n', ""))
        self.assert_in_order(tray, "Request for show on demand received: party.shw",
                             "Current show is entering shutdown mode", "Finished show: eve.shw", "Starting show: party.shw")
        self.assertTrue(wait_until(lambda: self.status()["current"] == "(party.shw,(F,,F,),2,F)", 3), self.status())
        self.assertEqual(self.vexctl("clear"), (0, "asked to clear the show on demand\n", ""))
        self.assert_line(tray, "Starting show: eve.shw", count=2)
        self.assert_in_order(tray, "Request to clear show on demand received", "Finished show: party.shw",
                             "Starting show: eve.shw")

    def test_a_show_is_played_for_a_time(self):
        tray = self.play_show(main=["a.vexseq"])
        answer = self.vexctl("--json", "play", "party.shw", "--for", "5")
        self.assertEqual(answer, (0, '{"ok":true}\n', ""))
        self.assert_in_order(tray, "Starting show: party.shw")
        self.assertTrue(tray.wait_line("Finished show: party.shw", 15))
        self.assert_line(tray, "Starting show: eve.shw", count=2)

    def test_a_show_in_the_future_waits(self):
        tray = self.play_show(main=["a.vexseq"])
        answer = self.vexctl("play", "party.shw", "--from", "2099-12-24 18:00", "--until", "2099-12-24 22:00:05")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assert_line(tray, "Request for show on demand received: party.shw")
        self.assertFalse(tray.wait_line("entering shutdown", 1.5))

    def test_only_shows_on_demand_play_without_a_schedule(self):
        self.write_show(main=["a.vexseq"])
        self.write_week((-60, 600, "eve.shw"))
        self.start_player("/noschedule")
        tray = self.tray()
        self.vexctl("play", "party.shw")
        self.assert_line(tray, "Starting show: party.shw")
        self.vexctl("clear")
        self.assert_line(tray, "Finished show: party.shw")
        self.assertFalse(tray.wait_line("Starting show: eve.shw", 1.5))

    def test_a_missing_show_is_told_each_second_and_the_player_goes_on(self):
        tray = self.play_show(main=["a.vexseq"])
        self.vexctl("play", "gone.shw", "--for", "3")
        self.assert_line(tray, "Cannot read show file: gone.shw", count=2)
        self.assertTrue(wait_until(lambda: sum("Starting show: eve.shw" in line for line in tray.lines()) == 2, 15))

    def test_a_text_that_is_no_record_or_reversed_is_told(self):
        tray = self.play_show(main=["a.vexseq"])
        tray.send(9, b"((")
        tray.send(9, b"(party.shw,(T,2026-12-24 18:00:00,T,2026-12-24 17:00:00),2,F)")
        self.assert_line(tray, "Show on demand error: ")
        self.assert_line(tray, "Request for show on demand received: party.shw")

    def test_wrong_words_are_wrong_usage(self):
        self.write_settings()
        for words in (["play"], ["play", ""], ["play", "x.shw", "--for", "soon"], ["play", "x.shw", "--for", "0"],
                      ["play", "x.shw", "--for", "1m2h"], ["play", "x.shw", "--from", "tomorrow"],
                      ["play", "x.shw", "--for", "5", "--until", "2099-12-24 18:00"], ["play", "\u2603.shw"],
                      ["play", "x.shw", "--from", "2026-12-24 18:00", "--until", "2026-12-24 18:00"], ["clear", "x"]):
            answer = self.vexctl(*words)
            self.assertEqual(answer.returncode, 2, (words, answer))
            self.assertEqual(len(answer.stderr.splitlines()), 1, (words, answer))

    def test_without_a_player_nothing_can_be_asked(self):
        self.write_settings()
        for words in (["play", "x.shw"], ["clear"]):
            answer = self.vexctl(*words)
            self.assertEqual(answer.returncode, 1)
            self.assertEqual(len(answer.stderr.splitlines()), 1)
