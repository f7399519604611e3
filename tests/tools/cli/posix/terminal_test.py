"""terminal_test.py PROGRAM: "watch --all" at a terminal; what it draws, what keys do, and how it leaves."""

import fcntl
import os
import pty
import select
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time

PROGRAM = sys.argv[1]
LEAVE = b"\x1b[?25h\x1b[?1049l"
PATIENCE = 60  # seconds, on a machine that is busy


class Terminal:
    """The program at a terminal of its own."""

    def __init__(self, *arguments):
        self.master, self.slave = pty.openpty()
        self.resize(24, 90)
        self.before = termios.tcgetattr(self.slave)
        self.process = subprocess.Popen(
            [PROGRAM, *arguments], stdin=self.slave, stdout=self.slave, stderr=self.slave,
            start_new_session=True, preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))
        self.output = b""

    def resize(self, rows, columns):
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def type(self, text):
        os.write(self.master, text)

    def read(self):
        ready, _, _ = select.select([self.master], [], [], 0.1)
        if ready:
            self.output += os.read(self.master, 65536)

    def wait_for(self, wanted, after=0):
        """Where the text ends that is waited for."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            at = self.output.find(wanted, after)
            if at >= 0:
                return at + len(wanted)
            self.read()
        raise SystemExit(f"never seen: {wanted!r}\n{self.output[-3000:]!r}")

    def end(self):
        end = time.monotonic() + PATIENCE
        while self.process.poll() is None:
            self.read()
            if time.monotonic() > end:
                self.process.kill()
                raise SystemExit("did not end")
        for _ in range(3):
            self.read()
        return self.process.returncode

    def check_left(self):
        assert self.output.endswith(LEAVE), self.output[-200:]
        assert termios.tcgetattr(self.slave) == self.before, "the terminal is another"


def keys_and_sizes():
    terminal = Terminal("watch", "--all")
    at = terminal.wait_for(b"Writes/s")
    terminal.wait_for(b"BSP", at)
    assert not termios.tcgetattr(terminal.slave)[3] & (termios.ECHO | termios.ICANON)
    terminal.type(b"n")
    at = terminal.wait_for(b"by name", at)
    terminal.type(b"/bs")
    at = terminal.wait_for(b"/bs_", at)
    terminal.type(b"\x1b")
    at = terminal.wait_for(b"q quit", at)
    terminal.type(b"v")
    at = terminal.wait_for(b"414 channels", at)
    terminal.type(b"\x1b[F")
    terminal.wait_for(b"\x1b[23;1H", at)
    terminal.resize(10, 40)
    at = terminal.wait_for(b"\x1b[10;1H\x1b[7mq quit  / search  n name  a age  c num\xe2\x80\xa6\x1b[0m", at)
    terminal.type(b"q")
    assert terminal.end() == 0
    terminal.check_left()


def signals():
    for how in (lambda t: t.type(b"\x03"), lambda t: t.process.send_signal(signal.SIGTERM)):
        terminal = Terminal("watch", "--all")
        terminal.wait_for(b"Writes/s")
        how(terminal)
        assert terminal.end() == 0
        terminal.check_left()


def sudden_end():
    """Two requests at once: the second takes the system's own way, and still leaves the terminal in order."""
    terminal = Terminal("watch", "--all")
    terminal.wait_for(b"Writes/s")
    terminal.process.send_signal(signal.SIGSTOP)  # so that both are there when it goes on
    terminal.process.send_signal(signal.SIGINT)
    terminal.process.send_signal(signal.SIGTERM)
    terminal.process.send_signal(signal.SIGCONT)
    assert terminal.end() in (0, -signal.SIGINT, -signal.SIGTERM)
    terminal.check_left()


def no_stopping():
    terminal = Terminal("watch", "--all")
    at = terminal.wait_for(b"Writes/s")
    terminal.type(b"\x1a\x1cn")
    terminal.wait_for(b"by name", at)
    terminal.type(b"q")
    assert terminal.end() == 0
    terminal.check_left()


def main():
    with tempfile.TemporaryDirectory() as folder:
        for name in ("XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"):
            os.environ[name] = folder
        os.environ["TERM"] = "xterm-256color"
        holder = subprocess.Popen([PROGRAM, "feed", "-"], stdin=subprocess.PIPE, stderr=subprocess.DEVNULL)
        try:
            while subprocess.run([PROGRAM, "status"], stdout=subprocess.DEVNULL).returncode != 0:
                time.sleep(0.05)
            subprocess.run([PROGRAM, "set", "BSP", "6.4"], check=True, stdout=subprocess.DEVNULL)
            keys_and_sizes()
            signals()
            sudden_end()
            no_stopping()
        finally:
            holder.communicate(b"")


main()
