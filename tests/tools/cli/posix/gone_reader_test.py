"""gone_reader_test.py PROGRAM: what becomes of the program when the reader of its output goes, or takes but a line."""

import os
import socket
import subprocess
import sys
import time

PROGRAM = sys.argv[1]
PATIENCE = 60  # seconds, on a machine that is busy
failures = []


def expect(right, what):
    if not right:
        failures.append(what)


def run(output, arguments):
    """Its exit code (the signal, negative, where one ended it) and standard error. Python leaves a new program the
    system's own way with SIGPIPE, as a shell does."""
    return subprocess.run([PROGRAM, *arguments], stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.PIPE,
                          timeout=PATIENCE)


def into_a_pipe_without_reader(arguments):
    read, write = os.pipe()
    os.close(read)
    try:
        return run(write, arguments)
    finally:
        os.close(write)


def ends_as_with_a_reader(*arguments):
    wanted = run(subprocess.DEVNULL, arguments)
    found = into_a_pipe_without_reader(arguments)
    expect((found.returncode, found.stderr) == (wanted.returncode, wanted.stderr),
           f"{arguments}: {found} and not {wanted}")


def ends_by_itself(*arguments):
    found = into_a_pipe_without_reader(arguments)
    expect((found.returncode, found.stderr) == (0, b""), f"{arguments}: {found}")


def leaves_in_one_piece(*arguments):
    whole = run(subprocess.PIPE, arguments).stdout
    expect(4096 < len(whole) < 65536, f"{arguments}: {len(whole)} bytes show nothing")
    reader, writer = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)  # keeps writes apart
    with reader, writer:
        run(writer, arguments)
        piece = reader.recv(1 << 20)
    expect(piece == whole, f"{arguments}: a piece of {len(piece)} bytes, of {len(whole)}")


def wait_for_shared_data():
    end = time.monotonic() + PATIENCE
    while run(subprocess.DEVNULL, ["status"]).returncode != 0:
        if time.monotonic() > end:
            raise SystemExit("no shared data")
        time.sleep(0.01)


for command in (["--help"], ["list"], ["list", "--json"], ["manual"], ["status"], ["get", "BSP"], ["nosuchcommand"]):
    ends_as_with_a_reader(*command)
ends_by_itself("simulate", "--speed", "0")
leaves_in_one_piece("list")
with subprocess.Popen([PROGRAM, "feed", "-", "--quiet"], stdin=subprocess.PIPE, stderr=subprocess.DEVNULL) as host:
    wait_for_shared_data()
    ends_by_itself("get", "BSP")
    ends_by_itself("watch", "BSP", "--interval", "0.05", "--json")
    host.stdin.close()

for failure in failures:
    print(failure)
sys.exit(1 if failures else 0)
