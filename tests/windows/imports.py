#!/usr/bin/env python3
"""Holds the Windows programs of a folder to standing alone: they may ask for no library but those that every
Windows since 7 brings. The socket library is none of these: it is loaded when a network is wanted.

    imports.py ARCHITECTURE FOLDER
"""
import pathlib
import re
import subprocess
import sys

MACHINE = {"advapi32", "kernel32", "msvcrt", "ole32", "oleaut32", "shell32", "user32", "winmm", "gdi32"}


def main(architecture, folder):
    strangers = 0
    programs = sorted(pathlib.Path(folder).glob("*.exe"))
    for program in programs:
        listing = subprocess.run([f"{architecture}-w64-mingw32-objdump", "-p", program], capture_output=True, text=True,
                                 check=True).stdout
        for library in re.findall(r"DLL Name: (.+)\.dll", listing, re.IGNORECASE):
            if library.lower() not in MACHINE:
                print(f"{program} wants {library}.dll")
                strangers += 1
    return 1 if strangers or len(programs) != 3 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
