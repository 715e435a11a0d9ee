"""Names that mean harm, from the real player's shows, sequences and triggers to vextray's page and log."""
import json
import socket
import struct

from stage import DEMAND, START_UP
from test_inputs import free_port
from test_tray import WithVexTray

MARKUP = "<img src=x onerror=document.title='owned'>\"&amp;.shw"
SEQUENCE = "<script>document.title='owned'<;script>\x07\x1b[2J\t'$`id`.vexseq"
TRIGGER = "\x1b]0;owned\x07<b>Haustür</b>\x90\x9d" + "w" * 10000
LONG = "l" * 10000


def osc_trigger(name):
    """Open Sound Control by hand: texts end in zeros up to a multiple of four bytes."""
    def text(value):
        data = value.encode() + b"\0"
        return data + b"\0" * (-len(data) % 4)

    return text("/trigger") + text(",iiis") + struct.pack(">3i", 0, 1, 3) + text(name)


class HostileNames(WithVexTray):
    def play_them(self):
        port = free_port()
        self.link = {"LocalPort": port, "On": 1}
        self.sequence(SEQUENCE, 3600, (0, 1, 100))
        self.write_show(MARKUP, background=[SEQUENCE.replace("(", "*O").replace(")", "*C").replace(",", "*S")])
        self.write_week((-60, 600, MARKUP))
        self.start_player()
        self.start_vextray("--packets", "off")
        self.wait_text("Starting show: " + MARKUP)
        self.wait_text("Starting Background: " + SEQUENCE)
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.sendto(osc_trigger(TRIGGER), ("127.0.0.1", port))
        self.wait_text("Trigger detected: " + TRIGGER)
        self.tray(register=False).send(DEMAND, f"({LONG},(F,,F,),2,F)")
        self.wait_text("Cannot read show file: " + LONG, 2 * START_UP)

    def test_reach_log_and_page_as_text(self):
        self.play_them()
        state = self.look()
        self.assertIn(SEQUENCE, [each["file"] for each in state["player"]["playing"]])
        lines = [line["text"] for line in json.loads(self.get("/api/lines")[1])]
        for text in ("Starting show: " + MARKUP, "Trigger detected: " + TRIGGER, "Cannot read show file: " + LONG):
            self.assertIn(text, lines)
        self.assertIn(MARKUP, json.loads(self.get("/api/shows")[1]))
        self.assertIn(MARKUP, [each["show"] for each in json.loads(self.get("/api/history")[1])])
        week = self.get("/api/week")[1]
        self.assertIn("&lt;img src=x", week)
        self.assertNotIn("<img", week)

    def test_do_not_move_the_terminal(self):
        self.play_them()
        for command in ("log", "history"):
            printed = self.vexctl(command).stdout
            self.assertIn(MARKUP, printed)
            harm = [character for character in printed if ord(character) < 32 and character != "\n"
                    or 127 <= ord(character) < 160]
            self.assertEqual(harm, [], command)
        self.assertIn(r"\x1b[2J\x09", self.vexctl("log").stdout)
