# SPDX-License-Identifier: LGPL-2.1-or-later
"""A throw-away home folder in which the real program runs."""
import os
import pathlib
import shutil
import signal
import subprocess
from collections import namedtuple

PATIENCE = 300

Outcome = namedtuple("Outcome", "code out err")


class Home:
    """The folder `path`: feeds, downloads and the store. It is always the same path, because links name it."""

    def __init__(self, path, tidel, faults):
        self.path = pathlib.Path(path)
        self.tidel = tidel
        self.faults = faults
        self.store = self.path / "data/tidel/store"

    def environment(self, faults=None):
        """Returns the environment of a program, with the settings `faults` of faults.cpp if there are any."""
        environment = {name: value for name, value in os.environ.items() if not name.startswith("XDG_")}
        environment.update(HOME=str(self.path), XDG_DATA_HOME=str(self.path / "data"), TZ="UTC",
                           LC_ALL="C.UTF-8")
        if faults is not None:
            environment.update(LD_PRELOAD=str(self.faults), TIDEL_FAULTS_FOLDER=str(self.path))
            environment.update({f"TIDEL_FAULTS_{name}": str(value) for name, value in faults.items()})
        return environment

    def start(self, *arguments, faults=None):
        return subprocess.Popen([self.tidel, *arguments], env=self.environment(faults), cwd=self.path,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def run(self, *arguments, faults=None, kill_after=None):
        """Runs `tidel` with the arguments, for at most `kill_after` seconds."""
        process = self.start(*arguments, faults=faults)
        try:
            out, err = process.communicate(timeout=kill_after or PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            out, err = process.communicate()
            if not kill_after:
                err += b"(did not end)"
        return Outcome(process.returncode, out.decode("utf-8", "replace"), err.decode("utf-8", "replace"))

    def become(self, folder):
        """Replaces the home by a copy of `folder`."""
        shutil.rmtree(self.path, ignore_errors=True)
        shutil.copytree(folder, self.path)

    def save(self, folder):
        shutil.copytree(self.path, folder)


def has_crashed(outcome):
    return outcome.code < 0 and outcome.code != -signal.SIGKILL or "(did not end)" in outcome.err
