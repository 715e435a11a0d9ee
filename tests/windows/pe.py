"""Reads what a Windows program says of itself: its machine, the oldest system it starts on, the functions it asks
for, library by library, and its resources.
"""
import pathlib
import struct

MACHINES = {0x014C: "i686", 0x8664: "x86_64"}
IMPORTS, RESOURCES = 1, 2  # places in the table of directories
ICON, ICON_GROUP, VERSION = 3, 14, 16  # kinds of resource


class Program:
    def __init__(self, path):
        self.data = pathlib.Path(path).read_bytes()
        head = self.number("<I", 0x3C)
        if self.data[head:head + 4] != b"PE\0\0":
            raise ValueError(f"{path} is no Windows program")
        machine, count = self.numbers("<HH", head + 4)
        self.machine = MACHINES.get(machine, hex(machine))
        optional = head + 24
        self.wide = self.number("<H", optional) == 0x20B
        self.oldest_system = self.numbers("<HH", optional + 48)
        self.directories = optional + (112 if self.wide else 96)
        sections = optional + self.number("<H", head + 20)
        table, self.symbols = self.numbers("<II", head + 12)
        self.long_names = table + 18 * self.symbols
        self.sections = [(self.section_name(at), *self.numbers("<IIII", at + 8))
                         for at in range(sections, sections + 40 * count, 40)]

    def numbers(self, form, at):
        return struct.unpack_from(form, self.data, at)

    def number(self, form, at):
        return self.numbers(form, at)[0]

    def section_name(self, at):
        """Eight letters, or where in the table of longer names it stands."""
        name = self.data[at:at + 8].rstrip(b"\0").decode("ascii")
        return self.text(self.long_names + int(name[1:])) if name.startswith("/") else name

    def place(self, address):
        """Where in the file that stands which the running program has at this address."""
        for _, size, start, kept, offset in self.sections:
            if start <= address < start + max(size, kept):
                return address - start + offset
        raise ValueError(f"nothing lies at {address:#x}")

    def text(self, at):
        return self.data[at:self.data.index(b"\0", at)].decode("ascii")

    def imports(self):
        """Library, in small letters, to the names of functions; one asked for by number is "#N"."""
        found = {}
        form, step, by_number = ("<Q", 8, 1 << 63) if self.wide else ("<I", 4, 1 << 31)
        at = self.place(self.number("<I", self.directories + 8 * IMPORTS))
        while name := self.number("<I", at + 12):
            functions = found.setdefault(self.text(self.place(name)).lower(), set())
            entry = self.place(self.number("<I", at) or self.number("<I", at + 16))
            while value := self.number(form, entry):
                functions.add(f"#{value & 0xFFFF}" if value & by_number else self.text(self.place(value) + 2))
                entry += step
            at += 20
        return found

    def resources(self, kind):
        """The resources of a kind by their number."""
        self.root = self.place(self.number("<I", self.directories + 8 * RESOURCES))
        for found, folder in self.entries(0):
            if found == kind:
                return {name: self.content(self.entries(languages)[0][1])
                        for name, languages in self.entries(folder)}
        return {}

    def entries(self, folder):
        at = self.root + (folder & 0x7FFFFFFF)
        count = sum(self.numbers("<HH", at + 12))
        return [self.numbers("<II", at + 16 + 8 * n) for n in range(count)]

    def content(self, entry):
        address, size = self.numbers("<II", self.root + entry)
        at = self.place(address)
        return self.data[at:at + size]

    def icon_sizes(self):
        """The edges of the icon's pictures in points, as the pictures themselves say."""
        pictures = self.resources(ICON)
        group = self.resources(ICON_GROUP)[1]
        sizes = []
        for n in range(struct.unpack_from("<H", group, 4)[0]):
            picture = pictures[struct.unpack_from("<H", group, 6 + 14 * n + 12)[0]]
            packed = picture.startswith(b"\x89PNG")
            sizes.append(struct.unpack_from(">I" if packed else "<I", picture, 16 if packed else 4)[0])
        return sizes

    def version(self):
        """The version's number, "1.2.3.4", and its texts by name."""
        block = self.resources(VERSION)[1]
        fixed = block.index(struct.pack("<I", 0xFEEF04BD))
        high, low = struct.unpack_from("<II", block, fixed + 8)
        texts = {}
        strings(block, 0, texts)
        return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}", texts


def strings(block, at, texts):
    """Goes through the nested blocks of a version: length, length of the value, kind, name, value, blocks."""
    length, value_length, is_text = struct.unpack_from("<HHH", block, at)
    end, name = at + length, at + 6
    here = name
    while block[here:here + 2] != b"\0\0":
        here += 2
    word = block[name:here].decode("utf-16-le")
    here = (here + 2 + 3) // 4 * 4
    if is_text and value_length:
        texts[word] = block[here:here + 2 * value_length].decode("utf-16-le").rstrip("\0")
        return end
    here += value_length
    while (here := (here + 3) // 4 * 4) < end:
        here = strings(block, here, texts)
    return end
