#!/usr/bin/env python3
"""Does to the Windows player under Wine, in the middle of a show, what no program, setting or component should do,
and looks that the show goes on.

    harm.py i686|x86_64 [WORD ...]     all cases, or those whose name holds one of the words

Prints "ok NAME" or "not ok NAME" for each case, with what was seen.
"""
import itertools
import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import network  # noqa: E402
import wine  # noqa: E402
from network import E131, KEY, RECORDING, START_UP  # noqa: E402
from stage import wait_until  # noqa: E402
from test_shows import silence  # noqa: E402

CLASSES = r"HKEY_LOCAL_MACHINE\Software\Classes"
LIBRARY = "com_tests_suite.dll"
SCRIPT = "suite.txt"
CLASS_ID = "{7D3A5B20-1C4E-4F6A-8E21-3B5C7D9EAF0%d}"
PROGRAM_IDS = ("VexChannelIO.ChannelIO", "VEXSEQUENCELib.Sequence", "VEXSHELLCMDMGRLib.ShellCmdManager")
HARMLESS = ("null", "null-without-size", "size-0", "size-0-from-nobody", "no-struct", "one-byte", "no-final-zero",
            "cut-at-zero", "no-number", "other-data", "no-record", "huge", "huge-zeros", "huge-record", "many-odd",
            "others", "dead")
TRAYS = ("dead-tray", "nobodys-tray", "gone-tray")


class Stage(network.Stage):
    """The same with values of any kind in the registry and with the tests' components in the suite's place."""

    def __init__(self, machine, architecture):
        super().__init__(machine, architecture)
        tests = wine.BUILD / f"windows-{architecture}" / "tests"
        for name in ("BadSender.exe", LIBRARY):
            machine.bring(tests / name)

    def begin(self):
        super().begin()
        self.values = {}
        self.installed = False

    def clear(self):
        super().clear()
        if self.installed:
            self.bring_in("".join(f"\r\n[-{CLASSES}\\{name}]\r\n[-{CLASSES}\\CLSID\\{CLASS_ID % number}]\r\n"
                                  for number, name in enumerate(PROGRAM_IDS, 1)))
            del self.machine.environment["VEX_SUITE"]

    def bring_in(self, text):
        self.path("values.reg").write_bytes(("REGEDIT4\r\n" + text).encode("cp1252"))
        self.expect(self.call("reg", "import", "values.reg")[0] == 0, "the values cannot be imported")

    def write_settings(self):
        """Values stand below their subkeys as the registry editor writes them, 'hex(3):01'."""
        super().write_settings()
        self.bring_in("".join(f"\r\n[{KEY}{subkey}]\r\n" + "".join(f'"{name}"={value}\r\n' for name, value in values.items())
                              for subkey, values in self.values.items()))

    def install(self, *script):
        """The tests' components under the suite's program ids, told to begin with."""
        library = self.machine.path(LIBRARY).replace("\\", "\\\\")
        self.installed = True
        self.machine.environment["VEX_SUITE"] = SCRIPT
        self.bring_in("".join(
            f'\r\n[{CLASSES}\\{name}\\CLSID]\r\n@="{CLASS_ID % number}"\r\n'
            f'\r\n[{CLASSES}\\CLSID\\{CLASS_ID % number}\\InprocServer32]\r\n@="{library}"\r\n"ThreadingModel"="Apartment"\r\n'
            for number, name in enumerate(PROGRAM_IDS, 1)))
        self.path(SCRIPT + ".log").unlink(missing_ok=True)
        self.path(SCRIPT).unlink(missing_ok=True)
        self.components = {"Lights": "suite", "Media": "recorded", "Recording": RECORDING}
        self.write_script(*script)

    def write_script(self, *script):
        self.path("next.txt").write_text("".join(line + "\n" for line in script))
        os.replace(self.path("next.txt"), self.path(SCRIPT))

    def tell(self, *script):
        """Tells the components in the running player, and waits until they have heard."""
        self.write_script(*script)
        self.expect(wait_until(lambda: not self.path(SCRIPT).exists(), START_UP), f"nobody calls a component: {script}")

    def called(self):
        log = self.path(SCRIPT + ".log")
        return log.read_text(encoding="cp1252") if log.exists() else ""

    def expect_call(self, text, times=1):
        self.expect(wait_until(lambda: self.called().count(text) >= times, START_UP),
                    f"not {times} times {text!r}; last called:\n{self.called()[-2000:]}\n")

    def expect_more(self, what, how_many, why):
        before = what()
        self.expect(wait_until(lambda: what() >= before + how_many, START_UP), f"stands still at {before}: {why}")
        self.expect(self.player.poll() is None, f"the player has ended: {why}")

    def end(self):
        if self.installed:
            # What plays is stopped, and the engine must agree.
            self.call("vexctl.exe", "shutdown")
            self.tell("long SequenceEngine.PlayState 0")
        super().end()

    def watch_anew(self):
        self.watch.kill()
        self.watch.wait()
        self.watch = self.spawn("watch.txt", "vexctl.exe", "watch")


def messages_that_nobody_should_send_leave_the_show_its_lights(stage):
    packets = stage.listen(E131)
    stage.sequence("a.vexseq", 2, *((n / 20, 1, n * 2.5) for n in range(40)))
    stage.play(main=["a.vexseq"])

    def send(word):
        status, text = stage.call("BadSender.exe", word)
        stage.expect(status == 0, f"{word}: {text}")
        stage.expect_more(lambda: len(packets.data()), 20, f"after {word}: {text}")

    for word in HARMLESS:
        send(word)
    said = stage.said()
    stage.expect(said.count("Request for show on demand received: unended.shw") == 2, "what lacks its final zero is lost")
    stage.expect("Show on demand error: " in said, "what is no record is no error")
    stage.expect(said.count("rror") == said.count("Show on demand error: "), "there are other errors")
    for word in TRAYS:
        send(word)
    stage.watch_anew()
    stage.expect_line("[current] ")
    stage.expect_line("Starting Animation: a.vexseq")
    status, text = stage.call("vexctl.exe", "status")
    stage.expect(status == 0 and "eve.shw" in text, text)
    stage.expect(stage.said().count("Starting show:") == 0, "the show was begun anew")
    stage.end()


SUITE_DEFAULTS = ["ChannelIO.SetLink(BSTR:127.0.0.1, I2:3737, I2:3738)", "ChannelIO.SupportsSpecial = BOOL:-1",
                  "ChannelIO.LinkEnabled = BOOL:0",
                  *(line for network in range(4)
                    for line in (f"ChannelIO.ConfigureValue(I4:{network}, I2:2)",
                                 f"ChannelIO.ConfigureFlag(I4:{network}, BOOL:0)",
                                 f"ChannelIO.OpenNetwork(UI1:{network}, UI1&:{1 if network == 0 else 0})"))]
NUMBERS = {r"\XLK": ("LocalPort", "RemotePort", "On", "SupportsSpecial"), "": ("PostInstall", "PostInstallVer"),
           r"\Shared\Network": ("VexSpeed", "VexOldMCP", "ListNetworks", "NetworkBrillara", "NetworkCourser", "NetworkX10"),
           r"\Shared\Network\AuxA": ("VexSpeed", "NetworkBrillara"), r"\Shared\Network\AuxB": ("VexSpeed", "NetworkBrillara"),
           r"\Shared\Network\AuxC": ("VexSpeed", "NetworkBrillara"),
           r"\Shared\VideoPreferences": ("DisplayVideos", "DisplayVisualizations", "FullScreenVideo", "MonitorX", "MonitorY")}
TEXTS = {r"\XLK": ("RemoteHost",), r"\Shared": ("AudioPath", "NonAudioPath"),
         r"\Components": ("Lights", "ChannelIO", "SequenceEngine", "ShellCommandManager", "ChannelIO.SetLink",
                          "SequenceEngine.Load")}


# What is no 32-bit number: text, bytes, too short, too long, twice as long, nothing.
NO_NUMBERS = ('"4"', "hex(3):03,00,00,00", "hex(4):03,00", "hex(4):03,00,00,00,01", "hex(b):03,00,00,00,00,00,00,00", "hex(4):")
# What is no text: a number, bytes, words to expand, a list of words, a value of no kind.
NO_TEXTS = ("dword:00000004", "hex(3):44,3a,00", "hex(2):44,3a,5c,00", "hex(7):44,3a,00,45,3a,00,00", "hex(0):")


def harmed(turn):
    """Every setting with a value that is wrong for its kind; each in its turn."""
    values = {}
    for table, wrong in ((NUMBERS, NO_NUMBERS), (TEXTS, NO_TEXTS)):
        turns = itertools.count(turn)
        for subkey, names in table.items():
            values.setdefault(subkey, {}).update((name, wrong[next(turns) % len(wrong)]) for name in names)
    return values


def settings_are_defaults(stage, turn):
    stage.install("long SequenceEngine.PlayState 1")
    stage.values = harmed(turn)
    stage.sequence("a.vexseq", 60, (0, 1, 50))
    stage.play(main=["a.vexseq"])
    stage.expect_call("SequenceEngine.Start()")
    stage.expect_call("SequenceEngine.Load(BSTR:a.vexseq)")
    missing = [line for line in SUITE_DEFAULTS if line + "\n" not in stage.called()]
    stage.expect(not missing, f"not called: {missing}\n{stage.called()[:3000]}")
    stage.expect("rror" not in stage.said(), "an error is told")
    stage.end()


def settings_of_another_kind_or_size_are_defaults(stage):
    settings_are_defaults(stage, 0)


def settings_of_another_kind_or_size_are_defaults_whichever_has_which(stage):
    settings_are_defaults(stage, 1)


def text_without_its_final_zero_is_taken_whole(stage):
    stage.install("long SequenceEngine.PlayState 1")
    stage.values = {r"\XLK": {"RemoteHost": "hex(1):" + ",".join(f"{byte:02x}" for byte in b"10.0.0.7")}}
    stage.play(main=["a.vexseq"])
    stage.expect_call("ChannelIO.SetLink(BSTR:10.0.0.7, I2:3737, I2:3738)")
    stage.end()


def output_settings_of_another_kind_are_defaults(stage):
    packets = stage.listen(E131)
    stage.sequence("a.vexseq", 60, (0, 1, 100))
    stage.values = {r"\Output": {"Protocol": "dword:1", "FirstUniverse": '"7"', "SourceName": "hex(3):41,00",
                                 "Priority": '"1"', "FrameRate": "hex(4):01", "MediaOffset": "hex(3):01,00,00,00"}}
    stage.play(main=["a.vexseq"])
    stage.expect(wait_until(lambda: 255 in packets.levels(1, 1), START_UP), "no light in universe 1")
    packet = packets.universe(1)[-1]
    name = packet[44:108].rstrip(b"\0")
    stage.expect(name == b"VexMonitor" and packet[108] == 100, f"{name} with priority {packet[108]}")
    stage.end()


def components_that_raise_lack_members_and_hang_up_leave_the_show_going(stage):
    """A song whose components fail is over and does not come again; the next one plays."""
    broken = ("SequenceEngine.SyncToMusic", "SequenceEngine.GetEvent", "SequenceEngine.PlayState", "ChannelIO.SendEvent",
              "ChannelIO.AcceptsUnit", "ChannelIO.Flush")
    lacked = ("SequenceEngine.SyncToMusic", "SequenceEngine.Start", "SequenceEngine.GetEvent")
    stage.install("long SequenceEngine.PlayState 1", "text SequenceEngine.MediaFile carol.wav",
                  "bool ChannelIO.AcceptsUnit 1", "bool ChannelIO.AcceptsCircuit 1")
    stage.link = {"On": 1}
    silence(stage.path("carol.wav"), 600)
    stage.play(musical=[f"song{number}.seq" for number in range(40)])

    def lights_come():
        before = stage.called().count("ChannelIO.SendEvent(")
        stage.tell("light 5")
        stage.expect_call("ChannelIO.SendEvent(", before + 5)

    def line_comes_after(line, *harm):
        told = stage.said().count(line)
        stage.tell(*harm, "light 1")
        stage.expect(wait_until(lambda: stage.said().count(line) > told, START_UP), f"{harm}: no line {line!r}")

    def goes_on_after(line, *harm):
        line_comes_after(line, *harm)
        lights_come()

    stage.expect_call("SequenceEngine.SyncToMusic(")
    lights_come()
    for member in broken:
        goes_on_after("(Something broke):", f"raise {member} Something broke")
        goes_on_after("SEQUENCE (", f"raise {member}")
    for member in lacked:
        goes_on_after(f'has no member "{member.split(".")[1]}"', f"lack {member}",
                      "raise SequenceEngine.PlayState Something broke")
    # What cannot be loaded ends when its engine says so; this one says that it plays until it is asked once more.
    line_comes_after('has no member "Load"', "lack SequenceEngine.Load", "raise SequenceEngine.PlayState Something broke")
    goes_on_after("(Nothing loaded):", "raise SequenceEngine.PlayState Nothing loaded")
    stage.tell("press Heard")
    stage.expect_line("Trigger detected: Heard")
    stage.tell("hangup ChannelIO", "hangup SequenceEngine", "press Unheard")
    stage.expect_call("pressed, 1\n")
    lights_come()
    stage.expect("Unheard" not in stage.said(), "who has hung up is still heard")
    stage.end()


CASES = (messages_that_nobody_should_send_leave_the_show_its_lights, settings_of_another_kind_or_size_are_defaults,
         settings_of_another_kind_or_size_are_defaults_whichever_has_which, text_without_its_final_zero_is_taken_whole,
         output_settings_of_another_kind_are_defaults,
         components_that_raise_lack_members_and_hang_up_leave_the_show_going)

if __name__ == "__main__":
    sys.exit(network.main(sys.argv[1], sys.argv[2:], CASES, Stage))
