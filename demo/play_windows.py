#!/usr/bin/env python3
"""Plays the demonstration with the Windows programs under Wine: the same show, the same picture.

    demo/play_windows.py PROGRAMS FOLDER VIEWER [--seconds N]

PROGRAMS is the folder with VexMonitor.exe, vexctl.exe and VexPostInstall.exe, VIEWER this machine's lightview. The
settings go into the registry of a Wine prefix that belongs to the demonstration. Songs play through Wine's media
player control; the lights, sent from inside Wine, come back to the viewer as packets. The status lines come from
vexctl.exe, since the player tells them to windows of its own machine only. There is no video: it would need a
display of Windows' own.
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "windows"))
import play  # noqa: E402
import turns  # noqa: E402
import wine  # noqa: E402

SOUND_DEVICES = pathlib.Path("/dev/snd")
COMPONENTS = """
[HKEY_CURRENT_USER\\Software\\Brillara\\Components]
"Lights"="open"
"Media"="wmp"
"""
CLEAN = "\n[-HKEY_CURRENT_USER\\Software\\Brillara]\n"


class WindowsDemonstration(play.Demonstration):
    ADDRESSES = [address for address in play.Demonstration.ADDRESSES if address.startswith("127.")]

    def __init__(self, programs, folder, viewer, seconds, machine):
        super().__init__(programs, folder, seconds)
        self.machine = machine
        self.viewer = viewer
        self.display = False
        self.environment = dict(machine.environment)
        if SOUND_DEVICES.exists():  # heard where there is something to hear it with
            del self.environment["ALSA_CONFIG_PATH"]

    def command(self, name):
        return ["wine", str(self.programs / f"{name}.exe")]

    def typed(self, name):
        return f"WINEPREFIX={self.machine.prefix} wine {super().typed(name)}.exe"

    def tell_of_the_page(self):
        """The page belongs to the programs for Linux."""

    def prepare(self):
        """The machine is this demonstration's own, so the usual place is free."""

    def make(self, hint):
        end = super().make(hint)
        settings = self.folder / "settings.reg"
        head, rest = settings.read_text(encoding="utf-8").split("\n", 1)
        # Programs of Windows read the registry's text as UTF-16 behind a mark.
        text = head + "\n" + CLEAN + rest + COMPONENTS
        settings.write_bytes(text.replace("\n", "\r\n").encode("utf-16"))
        if self.machine.call(["wine", "reg", "import", self.path(settings)]) != 0:
            raise SystemExit(f"Wine's registry does not take {settings}")
        return end

    @staticmethod
    def path(file):
        return "Z:" + str(file).replace("/", "\\")


def start_machine():
    machine = wine.Wine64("demonstration")
    machine.stop()  # left over from a run that was killed
    print("Starting Wine; its first start prepares a machine and takes a moment.", flush=True)
    try:
        return machine.start()
    except BaseException:
        machine.stop()
        raise


def main():
    parser = play.arguments(__doc__)
    parser.add_argument("viewer", type=pathlib.Path)
    given = parser.parse_args()
    with turns.claim(given.folder):
        try:
            machine = start_machine()
        except wine.Unavailable as why:
            print(why, file=sys.stderr)
            return 1
        try:
            return WindowsDemonstration(given.programs.resolve(), play.empty(given.folder), given.viewer.resolve(),
                                        given.seconds, machine).play()
        finally:
            machine.stop()


if __name__ == "__main__":
    play.run(main)
