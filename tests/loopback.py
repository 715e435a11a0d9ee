#!/usr/bin/env python3
"""Switches on the loopback interface of a network that was just made, and runs a command there.

    unshare --net tests/loopback.py COMMAND ...
"""
import fcntl
import os
import socket
import struct
import sys

SIOCGIFFLAGS, SIOCSIFFLAGS, IFF_UP = 0x8913, 0x8914, 1

with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as asker:
    name, flags = struct.unpack("16sh", fcntl.ioctl(asker, SIOCGIFFLAGS, struct.pack("16sh", b"lo", 0)))
    fcntl.ioctl(asker, SIOCSIFFLAGS, struct.pack("16sh", name, flags | IFF_UP))
os.execvp(sys.argv[1], sys.argv[1:])
