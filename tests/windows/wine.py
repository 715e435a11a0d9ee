"""Wine machines on which the Windows programs are tried: a 64-bit one of this machine's Wine, and a 32-bit one
in a small Debian of its own, since the suite's components are 32-bit and need the real thing.

A machine has no display: its driver is the null one, with which hidden windows, message boxes and timers work.
Programs are run in the machine's work folder, where they leave what they write.
"""
import os
import pathlib
import shutil
import subprocess

BUILD = pathlib.Path(__file__).resolve().parents[2] / "build"
ROOT32 = BUILD / "wine" / "root32"
FOLDER32 = "machine/work"  # in that Debian
LIBRARIES32 = "/usr/lib/i386-linux-gnu/wine"


class Unavailable(Exception):
    """Why a machine cannot be set up here."""


class Wine:
    """A Windows machine: start() it, run programs, stop() it."""

    def __init__(self):
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": os.environ.get("HOME", "/root"),
            "WINEDEBUG": "-all",
            "WINEDLLOVERRIDES": "mscoree,mshtml=;winemenubuilder.exe=d",
            # Without a UTF-8 locale files with names outside ASCII cannot be opened.
            "LC_ALL": "C.UTF-8",
        }

    def bring(self, program):
        """Copies a program, and the files beside it that bear its name and more, into the work folder."""
        for file in (program, *program.parent.glob(program.stem + "_*.*")):
            shutil.copy2(file, self.folder / file.name)
        return program.name

    def path(self, name):
        """A file of the work folder as the machine names it."""
        return "Z:" + f"{self.work}/{name}".replace("/", "\\")

    def call(self, arguments, timeout=120, output=None, errors=None, folder=""):
        """Runs a command of the machine in its work folder or one below it, its standard output and standard error
        going to files (one, unless the other is named), never to a pipe: services that it starts would keep that
        open, and in a session of its own: an interrupt typed at the terminal would end them. Returns the exit
        status, None after a timeout."""
        with open(output or os.devnull, "wb") as sink, open(errors or os.devnull, "wb") as other:
            process = subprocess.Popen(self.command(arguments, folder), stdin=subprocess.DEVNULL, stdout=sink,
                                       stderr=other if errors else subprocess.STDOUT, env=self.environment,
                                       cwd=self.folder / folder, start_new_session=True)
            try:
                return process.wait(timeout)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                return None

    def start(self):
        # Sound goes nowhere, in its own time.
        (self.folder / "sound.conf").write_text("pcm.!default { type null }\nctl.!default { type null }\n")
        if not self.ready():
            if self.call(["wineboot", "-i"]) != 0:
                raise Unavailable("wineboot fails")
            self.call(["wineserver", "-w"])
            self.call(["wine", "reg", "add", r"HKCU\Software\Wine\Drivers", "/v", "Graphics", "/d", "null", "/f"])
            # A crash is an exit status, not a window that waits for somebody.
            self.call(["wine", "reg", "add", r"HKCU\Software\Wine\WineDbg", "/v", "ShowCrashDialog", "/t",
                       "REG_DWORD", "/d", "0", "/f"])
            self.call(["wineserver", "-w"])
            self.mark_ready()
        self.call(["wineserver", "-p"])
        return self

    def show_on(self, display):
        """Starts the machine anew with a display of this one; without it the null driver is taken again."""
        self.call(["wine", "reg", "add", r"HKCU\Software\Wine\Drivers", "/v", "Graphics", "/d", "x11,null", "/f"])
        self.stop()
        self.environment["DISPLAY"] = display
        return self.start()

    def stop(self):
        self.call(["wineserver", "-k"])

    def run(self, program, arguments=(), timeout=300, output=None):
        """Runs a Windows program that is copied into the work folder first."""
        return self.call(["wine", self.bring(pathlib.Path(program)), *arguments], timeout, output)


class Wine64(Wine):
    def __init__(self, name="x86_64"):
        super().__init__()
        if not shutil.which("wine") or not shutil.which("wineboot"):
            raise Unavailable("Wine is not installed (cmake/install-packages.sh windows)")
        self.prefix = BUILD / "wine" / name
        self.folder = self.prefix / "work"
        self.folder.mkdir(parents=True, exist_ok=True)
        self.work = str(self.folder)
        self.environment |= {"WINEPREFIX": str(self.prefix), "ALSA_CONFIG_PATH": str(self.folder / "sound.conf")}

    def command(self, arguments, _folder=""):
        return arguments

    def ready(self):
        return (self.prefix / "ready").exists()

    def mark_ready(self):
        (self.prefix / "ready").touch()


class Wine32(Wine):
    def __init__(self):
        super().__init__()
        if not (ROOT32 / "ready").exists():
            raise Unavailable(f"there is no 32-bit Wine in {ROOT32} (cmake/install-packages.sh windows)")
        if os.geteuid() != 0:
            raise Unavailable("the 32-bit Wine stands in a root folder of its own, which only root may enter")
        self.folder = ROOT32 / FOLDER32
        self.folder.mkdir(parents=True, exist_ok=True)
        self.work = f"/{FOLDER32}"
        # Without it the root folder does not even know this machine's own name for itself.
        hosts = ROOT32 / "etc" / "hosts"
        if not hosts.exists():
            hosts.write_text("127.0.0.1 localhost\n", encoding="ascii")
        # The loader finds its libraries here where the root folder has no /proc to tell.
        self.environment |= {"PATH": "/usr/bin:/bin", "HOME": "/root", "WINEPREFIX": "/prefix",
                             "WINEDLLPATH": LIBRARIES32, "ALSA_CONFIG_PATH": f"{self.work}/sound.conf"}

    def command(self, arguments, folder=""):
        return ["/usr/sbin/chroot", str(ROOT32), "/bin/sh", "-c", 'cd "$0" && exec "$@"', f"{self.work}/{folder}", *arguments]

    def ready(self):
        return (ROOT32 / "prefix" / "ready").exists()

    def mark_ready(self):
        (ROOT32 / "prefix" / "ready").touch()


def machine(architecture):
    return Wine32() if architecture == "i686" else Wine64()
