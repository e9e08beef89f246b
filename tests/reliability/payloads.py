# SPDX-License-Identifier: LGPL-2.1-or-later
"""Hostile texts in every part of a feed, of its headers and of the command line.

payloads.txt has a kind and a JSON text in each line, and the number of its repetitions if it is not one.
"""
import fcntl
import json
import os
import pathlib
import pty
import re
import struct
import subprocess
import termios
import threading

from archive import facts
from findings import Judge
from home import PATIENCE, Outcome
from payloadserver import JSON_ITEMS, RSS_ITEMS, PayloadServer, as_bytes

TABLE = pathlib.Path(__file__).with_name("payloads.txt")
LINE = re.compile(r'(\w+) (".*")(?: (\d+))?')
# Cases follow each other by this step, so that a few of them are of all kinds.
STEP = 61
# Control characters, and formatting that changes the order of what is beside it.
UNSAFE = re.compile("[\x00-\x09\x0b-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u206f\ufff9-\ufffb\ufeff]")
# No list shows it.
PASSWORD = re.compile(r"(?<=://)([^\s/@:]*):[^\s/@]*(?=@)")
# The commands that are given the text itself.
ON_COMMAND_LINE = (
    ["subscribe", "--", "{}"], ["unsubscribe", "--", "{}"], ["messages", "--", "{}"], ["enclosures", "--", "{}"],
    ["favorite", "--", "{}"], ["unfavorite", "--", "{}"], ["download", "--", "{}"], ["refresh", "--", "{}"],
    ["prune", "--keep", "0", "--", "{}"], ["prune", "--keep={}"], ["download", "--into={}", "http://127.0.0.1:1/"],
)


def read_table():
    matches = [LINE.fullmatch(line) for line in TABLE.read_text(encoding="utf-8").splitlines()]
    return [(match[1], json.loads(match[2]) * int(match[3] or 1)) for match in matches]


def run_on_terminal(home, *arguments):
    """Runs `tidel` so that it writes to a terminal, and returns what the terminal got."""
    terminal, program = pty.openpty()
    # Wide enough for every title, and of no height, so that lists are not cut.
    fcntl.ioctl(program, termios.TIOCSWINSZ, struct.pack("HHHH", 0, 5000, 0, 0))
    process = subprocess.Popen([home.tidel, *map(as_bytes, arguments)], env=home.environment(), cwd=home.path,
                               stdin=subprocess.DEVNULL, stdout=program, stderr=program)
    os.close(program)
    guard = threading.Timer(PATIENCE, process.kill)
    guard.start()
    output = b""
    while piece := read(terminal):
        output += piece
    os.close(terminal)
    code = process.wait()
    guard.cancel()
    return Outcome(code, output.decode("utf-8", "replace"), "")


def read(terminal):
    try:
        return os.read(terminal, 65536)
    except OSError:  # the program has ended
        return b""


def tree(folder):
    return {path: path.lstat().st_mtime_ns for path in folder.rglob("*")}


class Payloads:
    def __init__(self, scenes, options):
        self.home = scenes.home
        self.start = scenes.work / "filled"
        self.payloads = read_table()
        self.server = PayloadServer()
        self.neighbour = scenes.work / "neighbour"
        self.neighbour.mkdir()
        (self.neighbour / "planted").write_text("planted")
        self.home.become(self.start)
        self.before = facts(self.home)

    def run(self, case, rng, findings):
        kind, text = self.payloads[case * STEP % len(self.payloads)]
        self.server.text = text
        self.text = text
        self.home.become(self.start)
        self.outside = tree(self.neighbour), set(os.listdir(self.home.path)), set(os.listdir(self.neighbour.parent))
        self.judge = Judge(self.home, findings, case, f"{kind} {text[:60]!r}")
        findings.tried += 1
        self.through_feeds()
        self.through_downloads()
        self.through_edits()
        if "\0" not in text:
            self.through_command_line()
        self.check_rest()
        self.judge.end()

    def on_terminal(self, *arguments):
        """Runs a command, which may fail, and checks what it writes."""
        outcome = run_on_terminal(self.home, *arguments)
        found = UNSAFE.search(outcome.out.replace("\r\x1b[K", "").replace("\r\n", "\n"))
        self.judge.compare("control characters", [f"{found[0]!r} by {arguments[0]}"] if found else [])
        self.judge.compare("crashed", [f"{arguments[0]}: {outcome.code}"] if outcome.code not in (0, 1, 2) else [])
        return outcome

    def through_feeds(self):
        for name, items in (("rss", len(RSS_ITEMS)), ("json", len(JSON_ITEMS) + 1)):
            outcome = self.on_terminal("subscribe", f"{self.server.address}/{name}")
            listed = self.on_terminal("messages", f"{self.server.address}/{name}").out.splitlines()
            # A line break in a header can be the end of the headers, and the document is cut then.
            if outcome.code == 0 and "\n" not in self.text:
                self.judge.compare("lost", [f"{name}: {len(listed)} messages"] if len(listed) != items else [])
                self.compare_title(name, listed)
        self.on_terminal("subscribe", f"{self.server.address}/redirect")
        self.on_terminal("subscribe", f"{self.server.address}/redirected")
        self.on_terminal("refresh")

    def compare_title(self, name, listed):
        """A text without markup is listed as it is."""
        isplain = self.text.isprintable() and self.text == " ".join(self.text.split()) and len(self.text) < 200
        if isplain and not set("<&") & set(self.text) and not UNSAFE.search(self.text):
            shown = PASSWORD.sub(r"\1", self.text)
            found = any(shown in line for line in listed)
            self.judge.compare("lost", [] if found else [f"the title in {name}"])

    def through_downloads(self):
        addresses = [f"{self.server.address}/file", f"{self.server.address}/file/type"]
        for line in self.on_terminal("messages", f"{self.server.address}/rss").out.splitlines():
            if "  name " in line or "  address " in line:
                addresses.append(line.split()[-1])
        for address in addresses:
            self.on_terminal("download", address)

    def through_edits(self):
        if "\0" not in self.text:
            self.on_terminal("edit", f"{self.server.address}/json", f"--title={self.text}")
            self.on_terminal("edit", f"{self.server.address}/json", f"--link={self.text}")

    def through_command_line(self):
        for command in ON_COMMAND_LINE:
            self.on_terminal(*[word.replace("{}", self.text) for word in command])

    def check_rest(self):
        """What has nothing to do with the text must be as it was."""
        outcome = self.on_terminal("channels")
        self.judge.compare("refused", [outcome.out] if outcome.code != 0 else [])
        observed = self.judge.observe(isfinal=True) or {}
        self.judge.compare("lost", set(self.before) - set(observed))
        known = {fact.channel for fact in self.before}
        others = {fact.channel for fact in observed if fact.kind == "channel"} - known
        self.judge.compare("invented", others - {f"{self.server.address}/{name}" for name in ("rss", "json", "redirected")})
        outside = tree(self.neighbour), set(os.listdir(self.home.path)), set(os.listdir(self.neighbour.parent))
        self.judge.compare("outside files", [] if outside == self.outside else [outside])
