# SPDX-License-Identifier: LGPL-2.1-or-later
"""Reads the journals that faults.cpp writes."""
import pathlib
import struct
from collections import namedtuple

HEAD = struct.Struct("<cIIQQ")

# kind: c created, w written, t truncated or extended, s synced, d folder made, u removed, r renamed
Change = namedtuple("Change", "kind path target offset data")


def read(path):
    """Returns the changes of a journal."""
    changes = []
    content = memoryview(pathlib.Path(path).read_bytes())
    place = 0
    while place < len(content):
        kind, path_size, target_size, offset, size = HEAD.unpack_from(content, place)
        place += HEAD.size
        ends = place + path_size, place + path_size + target_size
        changes.append(Change(kind.decode(), bytes(content[place:ends[0]]).decode(),
                              bytes(content[ends[0]:ends[1]]).decode(), offset,
                              bytes(content[ends[1]:ends[1] + size])))
        place = ends[1] + size
    return changes


def space_needed(changes, sizes):
    """Returns the bytes that the disk must have for the changes of files that have these sizes."""
    used = most = 0
    for change in changes:
        before = sizes.pop(change.target or change.path, 0)
        if change.kind == "w":
            sizes[change.path] = max(before, change.offset + len(change.data))
        elif change.kind == "t":
            sizes[change.path] = change.offset
        elif change.kind == "r":
            sizes[change.target] = sizes.pop(change.path, 0)
            before += sizes[change.target]
        elif change.kind == "s":
            sizes[change.path] = before
        used += sizes.get(change.target or change.path, 0) - before
        most = max(most, used)
    return most
