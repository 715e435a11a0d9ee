"""Single keys from the terminal, as they are pressed."""
import os
import select
import sys
import termios
import tty


class Keys:
    """Within `with`, keys come one by one and are not shown; the terminal is put back afterwards. Where input or
    output is no terminal there are none."""

    def __init__(self):
        self.work = sys.stdin.isatty() and sys.stdout.isatty()
        self._before = None

    def __enter__(self):
        if self.work:
            self._before = termios.tcgetattr(sys.stdin)
            tty.setcbreak(sys.stdin, termios.TCSADRAIN)
        return self

    def __exit__(self, *_):
        if self._before:
            termios.tcsetattr(sys.stdin, termios.TCSADRAIN, self._before)

    @staticmethod
    def pressed(patience):
        """The next key, empty text when none came in so many seconds."""
        ready, _, _ = select.select([sys.stdin], [], [], patience)
        return os.read(sys.stdin.fileno(), 1).decode("ascii", "replace") if ready else ""
