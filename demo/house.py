"""The house of the demonstration: what stands in the picture, and which circuits its lights hang on.

The picture is a grid of cells, two terminal columns wide and one line high, so that a cell is about square.
A light is one RGB lamp: three neighbouring circuits of a unit, shown in one or more cells. Unit 1 carries the
house and the sky, unit 2 the tree and the fence.
"""

COLUMNS = 39
ROWS = 16

ROOF_TOP = 2
ROOF_ROWS = 6
EAVES = ROOF_TOP + ROOF_ROWS
GROUND = ROWS - 1
TREE_MIDDLE = 32


class Light:
    """One lamp: cells in the picture, a unit and the first of its three circuits."""

    def __init__(self, unit, circuit, cells):
        self.unit = unit
        self.circuit = circuit
        self.cells = cells

    @property
    def x(self):
        return self.cells[0][0]

    @property
    def y(self):
        return self.cells[0][1]


class House:
    """All lights by the groups in which the sequences speak of them."""

    def __init__(self):
        self._next = {1: 1, 2: 1}
        # Both slopes from the eaves up, so that equal places in the lists are equally high.
        slope = range(2 * ROOF_ROWS)
        self.roof_left = [self._light(1, (1 + i, EAVES - 1 - i // 2)) for i in slope]
        self.roof_right = [self._light(1, (24 - i, EAVES - 1 - i // 2)) for i in slope]
        self.icicles = [self._light(1, *self._icicle(1 + 2 * i)) for i in range(12)]
        self.windows = [self._light(1, *self._block(4, 11, 3, 2)), self._light(1, *self._block(19, 11, 3, 2)),
                        self._light(1, *self._block(12, 5, 2, 2))]
        self.door = self._light(1, *self._block(12, 12, 2, 3))
        self.sky = [self._light(1, cell) for cell in
                    ((2, 1), (6, 3), (9, 0), (16, 1), (20, 3), (22, 0), (26, 2), (28, 0), (36, 1), (37, 4))]
        self.tree = [[self._light(2, (TREE_MIDDLE - row // 2 + i, 3 + row)) for i in range(2 * (row // 2) + 1)]
                     for row in range(10)]
        self.star = self._light(2, (TREE_MIDDLE, 2), (TREE_MIDDLE - 1, 2), (TREE_MIDDLE + 1, 2), (TREE_MIDDLE, 1))
        self.fence = [self._light(2, (x, GROUND - 1)) for x in range(0, COLUMNS, 3) if not 10 < x < 15]
        # Around the door, from its left foot over the top to the right one.
        self.arch = [self._light(1, cell) for cell in
                     ((11, 13), (11, 12), (11, 11), (12, 11), (13, 11), (14, 11), (14, 12), (14, 13))]

    def _light(self, unit, *cells):
        circuit = self._next[unit]
        self._next[unit] += 3
        return Light(unit, circuit, list(cells))

    @staticmethod
    def _icicle(x):
        return [(x, EAVES), (x + 1, EAVES), (x + (x // 2) % 2, EAVES + 1)]

    @staticmethod
    def _block(left, top, width, height):
        return [(left + x, top + y) for y in range(height) for x in range(width)]

    @property
    def roof(self):
        return self.roof_left + self.roof_right

    @property
    def tree_lights(self):
        return [light for row in self.tree for light in row]

    @property
    def all(self):
        return (self.roof + self.icicles + self.windows + [self.door] + self.sky + self.tree_lights + [self.star] +
                self.fence + self.arch)

    def picture(self, hint=""):
        """What the viewer draws: scenery as lines of text, and the lights with their cells and slots. The
        hint stands on the ground before the door."""
        lines = [[" "] * (2 * COLUMNS) for _ in range(ROWS)]
        for row in range(EAVES + 2, GROUND):
            lines[row][4] = "▏"
            lines[row][2 * 23 + 1] = "▕"
        for row in (GROUND - 2, GROUND - 1):
            for column in range(2 * TREE_MIDDLE, 2 * TREE_MIDDLE + 2):
                lines[row][column] = "▒"
        lines[GROUND] = list("▀" * (2 * COLUMNS))
        if hint:
            left = max(0, 26 - len(hint) // 2)
            lines[GROUND][left:left + len(hint)] = hint
        return {
            "columns": 2 * COLUMNS,
            "scenery": ["".join(line) for line in lines],
            "lights": [{"universe": light.unit, "slot": light.circuit, "glyph": "✦ " if light in self.sky else "██",
                        "cells": [[2 * x, y] for x, y in light.cells]} for light in self.all],
        }
