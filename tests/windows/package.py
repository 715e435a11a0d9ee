#!/usr/bin/env python3
"""Makes the zip of the Windows programs that users get, looks what is in it, and runs the programs as they come out
of it under Wine, in a folder whose name has a blank.

    package.py i686|x86_64

The programs of build/windows-ARCHITECTURE have to be built. Prints "ok NAME" or "not ok NAME" for each case, with
what was seen.
"""
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import imports  # noqa: E402
import wine  # noqa: E402
from pe import Program  # noqa: E402

ROOT = wine.BUILD.parent
PROGRAMS = {"VexMonitor": "Unattended light show player", "vexctl": "Controls, checks and rehearses VexMonitor",
            "VexPostInstall": "Prepares the settings of VexMonitor"}
CONTENT = {"README.txt", "LICENSE.txt", "docs/settings.md", "docs/planning.md", "docs/december.svg",
           *(f"licences/{name}.txt" for name in ("CLI11", "nlohmann-json", "zlib", "zstd", "gcc", "mingw-w64")),
           *(f"{name}.exe" for name in PROGRAMS)}
LARGEST = 3_000_000  # bytes of a program, the companion with its rehearsal stage too
ICON_SIZES = [16, 32, 48, 256]
PATIENCE = 40  # seconds for the player's start, on a busy machine


def version():
    return re.search(r"project\(VexMonitor VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text()).group(1)


def pack(architecture):
    """The zip, made anew."""
    folder = wine.BUILD / f"windows-{architecture}"
    for old in folder.glob("VexMonitor-*.zip"):
        old.unlink()
    done = subprocess.run(["cpack"], cwd=folder, capture_output=True, text=True)
    made = [path.name for path in folder.glob("VexMonitor-*.zip")]
    name = f"VexMonitor-{version()}-windows-{architecture}"
    yield f"{name}.zip is made", made == [f"{name}.zip"], (made, done.stdout + done.stderr)


def content(packed, top):
    files = {info.filename: info for info in packed.infolist() if not info.is_dir()}
    wanted = {f"{top}/{name}" for name in CONTENT}
    yield "the zip holds what users need, and nothing else", files.keys() == wanted, files.keys() ^ wanted
    empty = [name for name, info in files.items() if info.file_size == 0]
    yield "none of its files is empty", not empty, empty
    readme = packed.read(f"{top}/README.txt")
    lines = readme.split(b"\n")[:-1]
    yield "its README names this version, in lines as Windows ends them", version().encode() in lines[0] and all(
        line.endswith(b"\r") for line in lines), readme[:200]
    yield "its licence is this project's", packed.read(f"{top}/LICENSE.txt") == (ROOT / "LICENSE").read_bytes(), ""


def files(folder, architecture):
    """The programs as files: what they weigh, ask for and say of themselves."""
    for name, description in PROGRAMS.items():
        path = folder / f"{name}.exe"
        program = Program(path)
        left = [section[0] for section in program.sections if "debug" in section[0]]
        yield f"{name} is stripped", not left and not program.symbols, (left, program.symbols)
        size = path.stat().st_size
        yield f"{name} is smaller than {LARGEST / 1e6:g} MB", size < LARGEST, size
        faults = list(imports.faults(path, architecture))
        yield f"{name} stands alone, on Windows 7 too", not faults, faults
        yield f"{name} has the icon in all sizes", program.icon_sizes() == ICON_SIZES, program.icon_sizes()
        number, texts = program.version()
        wanted = {"FileDescription": description, "FileVersion": version(), "InternalName": name,
                  "OriginalFilename": f"{name}.exe", "ProductName": "VexMonitor", "ProductVersion": version()}
        yield f"{name} says what it is", (number, texts) == (f"{version()}.0", wanted), (number, texts)


class Run:
    """The unpacked programs on the machine, each run's output read from a file."""

    def __init__(self, machine, folder):
        self.machine = machine
        self.folder = folder

    def __call__(self, program, *arguments, timeout=60):
        output = self.machine.folder / "package-run.txt"
        status = self.machine.call(["wine", f"{self.folder}/{program}.exe", *arguments], timeout, output)
        return status, output.read_text(encoding="utf-8", errors="replace").replace("\r\n", "\n")


def life(machine, folder):
    run = Run(machine, folder)
    installed = run("VexPostInstall")
    registry = machine.folder / "package-registry.txt"
    machine.call(["wine", "reg", "query", r"HKCU\Software\Brillara", "/v", "AppPath"], 60, registry)
    path = registry.read_text(encoding="utf-8", errors="replace").strip()
    yield "the unpacked VexPostInstall notes its folder", installed[0] == 0 and path.endswith(f"\\{folder}\\"), (installed, path)
    help_text = run("vexctl", "--help")
    yield "the unpacked vexctl teaches", help_text[0] == 0 and "rehearse" in help_text[1], help_text
    process = subprocess.Popen(machine.command(["wine", f"{folder}/VexMonitor.exe", "/noschedule"]),
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               env=machine.environment, cwd=machine.folder)
    end = time.monotonic() + PATIENCE
    status = {}
    while time.monotonic() < end and not status.get("ready"):
        code, text = run("vexctl", "--json", "status")
        status = json.loads(text) if code == 0 else {}
        time.sleep(0.2)
    yield "the unpacked VexMonitor plays", status.get("ready") and status.get("noSchedule"), status
    asked = run("vexctl", "shutdown")
    try:
        code = process.wait(PATIENCE)
    except subprocess.TimeoutExpired:
        code = None
        process.kill()
    yield "and ends when it is asked to", asked[0] == code == 0, (asked, code)


def unpacked(packed, top, architecture):
    with tempfile.TemporaryDirectory() as folder:
        packed.extractall(folder)
        yield from files(pathlib.Path(folder) / top, architecture)
    try:
        machine = wine.machine(architecture).start()
    except wine.Unavailable as why:
        print(f"windows-{architecture}: the unpacked programs are not run, {why}")
        return
    folder = "Light shows"
    try:
        shutil.rmtree(machine.folder / folder, ignore_errors=True)
        packed.extractall(machine.folder)
        (machine.folder / top).rename(machine.folder / folder)
        yield from life(machine, folder)
    finally:
        machine.stop()
        shutil.rmtree(machine.folder / folder, ignore_errors=True)


def cases(architecture):
    yield from pack(architecture)
    top = f"VexMonitor-{version()}-windows-{architecture}"
    with zipfile.ZipFile(wine.BUILD / f"windows-{architecture}" / f"{top}.zip") as packed:
        yield from content(packed, top)
        yield from unpacked(packed, top, architecture)


def main(architecture):
    bad = 0
    for name, holds, seen in cases(architecture):
        print(f"{'ok' if holds else 'not ok'} windows-{architecture}: {name}", flush=True)
        if not holds:
            print(f"  {seen}")
            bad += 1
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
