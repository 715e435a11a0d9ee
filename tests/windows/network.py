#!/usr/bin/env python3
"""Plays shows with the open components in the Windows player under Wine and looks from this machine at what it
sends, and sends it what comes in: E1.31, Art-Net and Open Sound Control as other programs see and speak them.

    network.py i686|x86_64 [WORD ...]     all cases, or those whose name holds one of the words

Prints "ok NAME" or "not ok NAME" for each case, with what was seen.
"""
import json
import pathlib
import random
import socket
import struct
import subprocess
import sys
import time
import zlib

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]
import wine  # noqa: E402
from stage import cue, show, wait_until, week  # noqa: E402
from test_inputs import free_port, group, press  # noqa: E402
from test_lights import Packets  # noqa: E402
from test_shows import silence  # noqa: E402

KEY = r"HKEY_CURRENT_USER\Software\Brillara"
E131, ARTNET = 5568, 6454
START_UP = 40  # seconds, on a busy machine
BLACK = bytes(512)
TELL_HOPS = 12  # IP_RECVTTL, for which the socket module has no name
RECORDING = "Geh\u00f6rt.txt"
PATIENCE = 240  # seconds: Wine's server has been seen to stand still for a minute beside a busy disk


class Failed(Exception):
    """A case that does not hold, with what was seen."""


class Stage:
    """The player in the machine's work folder, with settings and shows of its own for each case."""

    def __init__(self, machine, architecture):
        self.machine = machine
        self.player = None
        self.watch = None
        for name in ("VexMonitor", "vexctl", "VexPostInstall"):
            machine.bring(wine.BUILD / f"windows-{architecture}" / "bin" / f"{name}.exe")
        status, said = self.call("cmd", "/c", "cd")
        if status != 0 or not said.strip():
            raise Failed(f"Wine does not tell its folder: {said.strip()}")
        self.here = said.strip().replace("\\", "\\\\")

    def begin(self):
        self.address = f"127.{random.randrange(2, 250)}.{random.randrange(250)}.{random.randrange(1, 250)}"
        self.output = {"Protocol": "sacn", "Host": self.address, "SourceName": "Test bench"}
        self.components = {"Lights": "open", "Media": "recorded", "Recording": RECORDING}
        self.link = {}
        self.closing = []
        for name in (RECORDING, "player.txt", "watch.txt"):
            self.path(name).unlink(missing_ok=True)

    def path(self, name):
        return self.machine.folder / name

    def listen(self, port, address=None):
        packets = self.when_free(lambda: Packets(address or self.address, port))
        self.closing.append(packets)
        return packets

    def when_free(self, bind):
        """What the call gives that binds a port; another test beside this one may have it for a moment."""
        def bound():
            try:
                return bind() or True
            except OSError:
                return None

        result = wait_until(bound, START_UP)
        self.expect(result, "the port is taken")
        return result

    def sequence(self, name, *arguments, **options):
        self.path(name).write_text(cue(*arguments, **options), encoding="utf-8")

    def call(self, *command):
        status = self.machine.call(["wine", *command], PATIENCE, self.path("call.txt"))
        return status, self.path("call.txt").read_text(encoding="utf-8", errors="replace")

    def write_settings(self):
        def values(entries):
            return "".join(f'"{name}"=' + (f"dword:{value:08x}" if isinstance(value, int) else f'"{value}"') + "\r\n"
                           for name, value in entries.items())

        text = ("REGEDIT4\r\n\r\n" + f"[-{KEY}]\r\n\r\n[{KEY}]\r\n" + values({"UserDataPath": self.here + "\\\\"}) +
                f"\r\n[{KEY}\\Shared]\r\n" + values({"AudioPath": self.here, "NonAudioPath": self.here}))
        for name, entries in (("Output", self.output), ("Components", self.components), ("XLK", self.link)):
            text += f"\r\n[{KEY}\\{name}]\r\n" + values(entries)
        self.path("settings.reg").write_bytes(text.encode("cp1252"))
        self.expect(self.call("reg", "import", "settings.reg")[0] == 0, "the settings cannot be imported")

    def spawn(self, output, *command):
        with open(self.path(output), "wb") as sink:
            return subprocess.Popen(self.machine.command(["wine", *command]), stdin=subprocess.DEVNULL, stdout=sink,
                                    stderr=subprocess.STDOUT, env=self.machine.environment, cwd=self.machine.folder)

    def said(self):
        return "".join(self.path(name).read_text(encoding="utf-8", errors="replace")
                       for name in ("player.txt", "watch.txt") if self.path(name).exists())

    def expect(self, holds, what):
        if not holds:
            raise Failed(f"{what}\n{self.said()[-4000:]}")

    def expect_line(self, text, seconds=START_UP):
        self.expect(wait_until(lambda: text in self.said(), seconds), f"no line {text!r}")

    def play(self, **parts):
        """The player in the middle of a show that is in force, watched by the companion program."""
        self.path("eve.shw").write_bytes(show(**parts).encode("cp1252") + b"\r\n")
        self.path("weeksched.qsc").write_bytes(week((-60, 600, "eve.shw")).encode("cp1252") + b"\r\n")
        self.write_settings()
        self.player = self.spawn("player.txt", "VexMonitor.exe")
        self.expect(wait_until(lambda: self.call("vexctl.exe", "status")[0] == 0, START_UP), "the player does not run")
        self.watch = self.spawn("watch.txt", "vexctl.exe", "watch")
        self.expect_line("Starting show: eve.shw")

    def end(self):
        """The player ends as it does in the evening."""
        self.call("vexctl.exe", "shutdown")
        try:
            self.expect(self.player.wait(START_UP) == 0, "the player ends with a failure")
        except subprocess.TimeoutExpired:
            raise Failed("the player does not end\n" + self.said()) from None
        time.sleep(0.3)

    def clear(self):
        if self.player and self.player.poll() is None:
            self.call("vexctl.exe", "shutdown", "--now")
            try:
                self.player.wait(10)
            except subprocess.TimeoutExpired:
                self.player.kill()
                self.player.wait()
        if self.watch and self.watch.poll() is None:  # it would wait for the next player
            self.watch.kill()
            self.watch.wait()
        for packets in self.closing:
            packets.close()
        self.player = self.watch = None


def decoded(stage, packets, *fields):
    """The packets as an independent decoder reads them, a list of fields each."""
    packets.write_pcap(stage.path("lights.pcap"))
    command = ["tshark", "-r", str(stage.path("lights.pcap")), "--enable-heuristic", "acn",
               "-o", "acn.dmx_enable:TRUE", "-T", "fields"]
    for field in fields:
        command += ["-e", field]
    done = subprocess.run(command, capture_output=True, text=True, check=True)
    return [line.split("\t") for line in done.stdout.splitlines()]


def frame_file(frames, step_ms, compression):
    """A frame file of version 2, all its frames in one block where it is compressed with zlib (2)."""
    data = b"".join(frames)
    if compression == 2:
        data = zlib.compress(data)
    blocks = struct.pack("<II", 0, len(data)) if compression else b""
    head = 32 + len(blocks)
    return (b"PSEQ" + struct.pack("<HBBHIIBBBBB", head, 0, 2, head, len(frames[0]), len(frames), step_ms, 0,
                                  compression, 1 if compression else 0, 0) + bytes(9) + blocks + data)


def shown(packets, number):
    """The contents of a universe one after another, repeats left out."""
    contents = [packet[126:] for packet in packets.universe(number)]
    return [one for at, one in enumerate(contents) if at == 0 or contents[at - 1] != one]


def every_e131_packet_is_read_by_another_decoder(stage):
    packets = stage.listen(E131)
    stage.sequence("steps.vexseq", 1.2, (0, 1, 100), (0.3, 1, 20), (0.6, 1, 66.6), (0.9, 1, 0.4))
    stage.sequence("two.vexseq", 0.5, (0, 7, 33.3), unit=2)
    stage.play(startup=["steps.vexseq"], background=["two.vexseq"])
    stage.expect_line("Ending Startup: steps.vexseq")
    stage.end()
    levels = [level for level in packets.levels(1, 1) if level]
    stage.expect(levels[:4] == [255, 51, 170, 1], f"levels {levels}")
    rows = decoded(stage, packets, "acn.dmx.universe", "acn.dmx.priority", "acn.dmx.source_name", "acn.dmx.count",
                   "_ws.malformed", "acn.cid")
    data = [row for row in rows if row[0] in ("1", "2")]
    stage.expect(len(data) == len(packets.data()) and not any(row[4] for row in rows), "not every packet is read")
    seen = {(row[1], row[2].rstrip("\0"), row[3]) for row in data}
    stage.expect(seen == {("100", "Test bench", "513")} and len({row[5] for row in data}) == 1, seen)
    options = [packet[112] for packet in packets.universe(2)]
    stage.expect(options[-4:] == [0, 0x40, 0x40, 0x40], f"the stream ends with {options[-6:]}")


def frames_go_out_byte_for_byte(stage):
    packets = stage.listen(E131)
    random.seed(7)
    frames = [bytes(random.randrange(256) for _ in range(600)) for _ in range(6)]
    stage.path("plain.fseq").write_bytes(frame_file(frames, 200, 0))
    stage.path("packed.fseq").write_bytes(frame_file(frames[::-1], 200, 2))
    stage.play(startup=["plain.fseq", "packed.fseq"])
    stage.expect_line("Ending Startup: packed.fseq")
    stage.end()
    for number, part in ((1, slice(0, 512)), (2, slice(512, 600))):
        seen = shown(packets, number)
        wanted = [(frame[part] + BLACK)[:512] for frame in frames]
        stage.expect([one for one in seen if one != BLACK] == wanted + wanted[::-1],
                     f"universe {number} has other contents than the frames, {len(seen)} in all")


def e131_goes_by_multicast_where_no_host_is_set(stage):
    stage.output |= {"Host": "", "Interface": "127.0.0.1", "FirstUniverse": random.randrange(300, 60000)}
    number = stage.output["FirstUniverse"]
    group_address = f"239.255.{number >> 8}.{number & 255}"
    hops = set()
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as receiver:
        stage.when_free(lambda: receiver.bind((group_address, E131)))
        receiver.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP,
                            socket.inet_aton(group_address) + socket.inet_aton("127.0.0.1"))
        receiver.setsockopt(socket.IPPROTO_IP, TELL_HOPS, 1)
        receiver.settimeout(1)

        def lit():
            try:
                packet, told, _, _ = receiver.recvmsg(2000, 64)
            except socket.timeout:
                return False
            hops.update(struct.unpack("i", value)[0] for _, kind, value in told if kind == socket.IP_TTL)
            return packet[113:115] == struct.pack(">H", number) and packet[127] == 255

        stage.sequence("on.vexseq", 60, (0, 2, 100))
        stage.play(main=["on.vexseq"])
        stage.expect(wait_until(lit, 15), f"nothing at {group_address}")
    stage.expect(hops == {1}, f"time to live {hops}")


def art_net_is_read_by_another_decoder(stage):
    stage.output |= {"Protocol": "artnet", "FirstUniverse": 3}
    packets = stage.listen(ARTNET)
    stage.sequence("steps.vexseq", 1.2, (0, 2, 100), (0.4, 2, 20), (0.8, 2, 66.6))
    stage.play(startup=["steps.vexseq"])
    stage.expect_line("Ending Startup: steps.vexseq")
    stage.end()
    levels = [packet[19] for packet, _ in packets.received]
    levels = [level for at, level in enumerate(levels) if at == 0 or levels[at - 1] != level]
    stage.expect(levels == [255, 51, 170, 0], f"levels {levels}")
    rows = decoded(stage, packets, "artnet.header.id", "artnet.header.opcode", "artnet.output.universe",
                   "artnet.output.length", "_ws.malformed")
    seen = {(row[0], int(row[1], 0), int(row[2], 0), row[3], row[4]) for row in rows}
    stage.expect(seen == {("Art-Net", 0x5000, 3, "512", "")}, seen)
    stage.expect(len(rows) == len(packets.received), "not every packet is read")


def art_net_is_broadcast_where_it_is_told_to(stage):
    everyone = "127.255.255.255"  # the loopback interface's own: only a socket that may broadcast sends there
    stage.output |= {"Protocol": "artnet", "Host": everyone}
    packets = stage.listen(ARTNET, everyone)
    stage.sequence("on.vexseq", 60, (0, 5, 100))
    stage.play(main=["on.vexseq"])
    stage.expect(wait_until(lambda: any(packet[22:23] == b"\xff" for packet, _ in list(packets.received)), 15),
                 "nothing comes")


def a_press_by_another_program_starts_its_sequence(stage):
    port = free_port()
    stage.link = {"LocalPort": port, "On": 1}
    packets = stage.listen(E131)
    stage.sequence("a.vexseq", 60, (0, 1, 10))
    stage.sequence("flash.vexseq", 0.5, (0, 9, 100))
    stage.play(main=["a.vexseq"], groups="(" + group((3, "flash.vexseq")) + ")")
    stage.expect_line("Registering interactive triggers")
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
        sender.bind(("127.0.0.2", 0))
        sender.sendto(press(3, "Not from here"), ("127.0.0.1", port))
        other = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        other.sendto(b"no message at all", ("127.0.0.1", port))
        other.sendto(press(3, "T\u00fcr"), ("127.0.0.1", port))
        other.close()
    for line in ("Trigger detected: T\u00fcr", "Starting Interactive: flash.vexseq", "Ending Interactive: flash.vexseq"):
        stage.expect_line(line)
    stage.expect("Not from here" not in stage.said(), "a press came from elsewhere")
    stage.expect(255 in packets.levels(1, 9), "the light stays dark")
    status, text = stage.call("vexctl.exe", "trigger", "0", "1", "3", "Companion")
    stage.expect(status == 0, text)
    stage.expect_line("Trigger detected: Companion")


def triggers_without_end_leave_the_show_its_lights(stage):
    """What finds the port full is lost, as any datagram: the press at the end is sent until it is heard."""
    port = free_port()
    stage.link = {"LocalPort": port, "On": 1}
    packets = stage.listen(E131)
    stage.sequence("a.vexseq", 2, *((n / 20, 1, n * 2.5) for n in range(40)))
    stage.sequence("flash.vexseq", 0.5, (0, 9, 100))
    stage.play(main=["a.vexseq"], groups="(" + group((3, "flash.vexseq")) + ")")
    stage.expect_line("Registering interactive triggers")
    before = len(packets.received)
    nonsense = [press(4, "Nobody"), b"", b"/x\0\0", b"\xff" * 1400, b"#bundle\0" + bytes(8) + b"\0\0"]
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
        for number in range(30_000):
            sender.sendto(nonsense[number % len(nonsense)], ("127.0.0.1", port))
    during = len(packets.received)
    stage.expect(wait_until(lambda: len(packets.received) > during + 20, 15),
                 f"the lights stand still: {before} packets before, {during} after the flood")

    def heard():
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.sendto(press(3), ("127.0.0.1", port))
        return wait_until(lambda: "Trigger detected: Front door" in stage.said(), 1)

    stage.expect(wait_until(heard, START_UP), "a press is not heard any more")
    stage.expect(wait_until(lambda: 255 in packets.levels(1, 9), 15), "the light stays dark")
    stage.expect(stage.said().count("no trigger") == 1, "what is no trigger is told once")
    stage.end()


def lights_follow_the_song(stage):
    packets = stage.listen(E131)
    silence(stage.path("F\u00fcr Elise.wav"), 2.0)
    stage.sequence("song.vexseq", 9.0, (0.0, 1, 10), (0.5, 1, 40), (1.0, 1, 70), (1.5, 1, 100), (5.0, 1, 33),
                   media="F\u00fcr Elise.wav")
    stage.play(musical=["song.vexseq"])
    stage.expect_line("Ending Musical: song.vexseq")
    levels = [level for level in packets.levels(1, 1) if level]
    stage.expect(levels[:4] in ([26, 102, 178, 255], [26, 102, 179, 255]) and 84 not in levels, f"levels {levels}")
    calls = [json.loads(line) for line in stage.path(RECORDING).read_text(encoding="utf-8").splitlines()]
    media = [(one["call"], one.get("file")) for one in calls if one["kind"] == "media"]
    stage.expect(media[:4] == [("open", "F\u00fcr Elise.wav"), ("play", None), ("ended", None), ("stop", None)], media)


def a_receiver_that_cannot_be_found_is_one_line_and_no_end(stage):
    stage.output["Host"] = "lights.invalid"
    stage.sequence("on.vexseq", 0.5, (0, 1, 100), (0.2, 1, 50))
    stage.play(background=["on.vexseq"])
    stage.expect_line("lights.invalid")
    time.sleep(2)
    stage.expect(stage.said().count("lights.invalid") == 1 and stage.player.poll() is None, "more than one line")


def a_machine_without_its_socket_library_plays_on_and_says_so(stage):
    usual = stage.machine.environment["WINEDLLOVERRIDES"]
    stage.machine.environment["WINEDLLOVERRIDES"] = "ws2_32=;" + usual
    try:
        stage.sequence("on.vexseq", 0.5, (0, 1, 100), (0.2, 1, 50))
        stage.play(background=["on.vexseq"])
        stage.expect_line("ws2_32.dll")
        stage.expect_line("Starting Background: on.vexseq")
        stage.end()
    finally:
        stage.machine.environment["WINEDLLOVERRIDES"] = usual


CASES = (every_e131_packet_is_read_by_another_decoder, frames_go_out_byte_for_byte,
         e131_goes_by_multicast_where_no_host_is_set, art_net_is_read_by_another_decoder,
         art_net_is_broadcast_where_it_is_told_to, a_press_by_another_program_starts_its_sequence,
         triggers_without_end_leave_the_show_its_lights,
         lights_follow_the_song, a_receiver_that_cannot_be_found_is_one_line_and_no_end,
         a_machine_without_its_socket_library_plays_on_and_says_so)


def main(architecture, words, cases=CASES, kind=Stage):
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"windows-{architecture}: left out, {why}")
        return 0
    bad = 0
    try:
        stage = kind(machine, architecture)
        for case in cases:
            name = case.__name__.replace("_", " ")
            if words and not any(word in name for word in words):
                continue
            stage.begin()
            try:
                case(stage)
                print(f"ok windows-{architecture}: {name}", flush=True)
            except Failed as why:
                bad += 1
                print(f"not ok windows-{architecture}: {name}\n  {why}", flush=True)
            finally:
                stage.clear()
    finally:
        machine.stop()
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
