# SPDX-License-Identifier: MIT
"""A model of comparing a list with a tree, written from the rules alone, and random cases for it.

A case is what the list tells (path -> content), and what the tree holds. Contents stand for their digests.
"""
import base64
import hashlib
import json
import os
import random
import zlib

UNREADABLE = None # instead of the content of a file that cannot be read

NAMES = [b"a", b"b", b"c", b"B", b"a.txt", b"name with blanks", b"\xc3\xa4", b"x-y", b"z"]
ODD_NAMES = [b" leading", b"trailing ", b"back\\slash", b"line\nend", b"return\r", b"quote'", b'double"', b"\xff\xfe",
             b"#hash", b"*star", b"per%25cent", b"tab\t", b"; semicolon", b"a) = b", b"\x01", b"-", b"~", b"\\", b"comma,"]
CONTENTS = [b"", b"one", b"two", b"three", b"eno", b"longer" * 100, b"x" * 70000]


def base(path):
    return path.rpartition(b"/")[2]


def classify(listed, tree, looks_the_same=()):
    """Path -> (words, other path). Paths in `looks_the_same` kept size and time though their content changed."""
    found = {}
    missing = sorted(path for path in listed if path not in tree)
    new = sorted(path for path in tree if path not in listed and tree[path] is not UNREADABLE)
    same = sorted(path for path in listed if path in tree and tree[path] == listed[path])
    for path in tree:
        if tree[path] is UNREADABLE:
            found[path] = ("NOT READ", None)
        elif path in listed and tree[path] != listed[path]:
            found[path] = ("CHANGED, same size and time" if path in looks_the_same else "CHANGED", None)
    for path in same:
        found[path] = ("OK", None)

    origin = {}
    for is_alike in (lambda old, now: base(old) == base(now), lambda old, now: True):
        for old in missing:
            if listed[old] == b"" or old in origin.values():
                continue
            for now in new:
                if now not in origin and tree[now] == listed[old] and is_alike(old, now):
                    origin[now] = old
                    break
    for path in missing:
        if path not in origin.values():
            found[path] = ("MISSING", None)
    for path in new:
        originals = [other for other in same if listed[other] == tree[path] and tree[path] != b""]
        if path in origin:
            found[path] = ("RENAMED", origin[path])
        else:
            found[path] = ("COPY", originals[0]) if originals else ("NEW", None)
    return found


def totals(found):
    """The summary: every class that occurs, in a fixed order."""
    order = ["OK", "NEW", "MISSING", "CHANGED", "CHANGED, same size and time", "RENAMED", "COPY", "NOT READ"]
    words = [word for word, _ in found.values()]
    return "; ".join(f"{words.count(word)} {word}" for word in order if words.count(word) or word == "OK")


def audit_status(found):
    words = {word for word, _ in found.values()}
    return 2 if "NOT READ" in words else 1 if words - {"OK"} else 0


def update(listed, order, tree, found, accepted):
    """What the list tells after an update, and in which order. `accepted` holds words."""
    told = {}
    renamed = {other: path for path, (words, other) in found.items() if words == "RENAMED"}
    for path in order:
        words = found.get(path, (None, None))[0]
        if words == "OK" or words == "NOT READ":
            told[path] = listed[path]
        elif words and words.startswith("CHANGED"):
            told[path] = tree[path] if words in accepted else listed[path]
        elif path in renamed:
            told[renamed[path]] = listed[path]
    for path in sorted(found):
        if found[path][0] in ("NEW", "COPY"):
            told[path] = tree[path]
    return told, (sorted(told) if order == sorted(order) else list(told))


def update_status(found, accepted):
    words = {words for words, _ in found.values()}
    changed = {one for one in words if one.startswith("CHANGED")}
    return 2 if "NOT READ" in words else 1 if changed - set(accepted) else 0


def read_report(output):
    """The lines of --json: [(path, words, other path)]."""
    def name(line, member):
        if member + "_base64" in line:
            return base64.b64decode(line[member + "_base64"])
        return os.fsencode(line[member]) if member in line else None

    lines = [json.loads(line) for line in output.splitlines()]
    return [(name(line, "path"), line["result"], name(line, "from") or name(line, "of")) for line in lines]


# How lists of each kind are written: path and content -> line, and what the form cannot hold.

def digest(function, content):
    if function == "crc32":
        return zlib.crc32(content).to_bytes(4, "big")
    return hashlib.new(function, content).digest()


def escaped(path):
    return path.replace(b"\\", b"\\\\").replace(b"\n", b"\\n").replace(b"\r", b"\\r")


def gnu_line(before, path, after):
    """A line with the name between two texts."""
    return (b"\\" if escaped(path) != path else b"") + before + escaped(path) + after + b"\n"


class Kind:
    def __init__(self, name, line, holds=lambda path: True, header=b"", end=b"\n"):
        self.name, self.line, self.holds, self.header, self.end = name, line, holds, header, end

        # Whether a list without entries is known to be of this kind.
        self.is_told_by_name = bool(header) or name.startswith(("SHA", "manifest"))

    def write(self, contents, paths):
        return self.header + b"".join(self.line(path, contents[path]) for path in paths)


def plain_holds(path):
    """Forms without escapes end a name where the line ends, and begin it at the first character that is none of theirs."""
    return not any(byte in path for byte in (b"\n", b"\r"))


def tagged(path, content):
    return gnu_line(b"SHA256 (", path, b") = " + digest("sha256", content).hex().encode())


def two_tags(path, content):
    return (gnu_line(b"MD5 (", path, b") = " + digest("md5", content).hex().encode()) +
            gnu_line(b"SHA1 (", path, b") = " + digest("sha1", content).hex().encode()))


def percent(path):
    return path.replace(b"%", b"%25").replace(b"\r", b"%0D").replace(b"\n", b"%0A")


KINDS = [
    Kind("SHA256SUMS", lambda path, content: gnu_line(digest("sha256", content).hex().encode() + b"  ", path, b"")),
    Kind("list", lambda path, content: gnu_line(digest("md5", content).hex().encode() + b" *", path, b"")),
    Kind("list.sha512", lambda path, content: gnu_line(digest("sha512", content).hex().upper().encode() + b"  ", path,
                                                       b"")),
    Kind("list64", lambda path, content: gnu_line(base64.b64encode(digest("sha1", content)) + b"  ", path, b"")),
    Kind("list.crlf", lambda path, content: gnu_line(digest("sha256", content).hex().encode() + b"  ", path,
                                                     b"\r"), lambda path: b"\r" not in path),
    Kind("list.zero", lambda path, content: digest("sha256", content).hex().encode() + b"  " + path + b"\0", end=b"\0"),
    Kind("tagged", tagged),
    Kind("openssl", lambda path, content: b"SHA2-256(" + path + b")= " + digest("sha256", content).hex().encode() +
         b"\n", lambda path: plain_holds(path) and b"\\" not in path),
    Kind("two", two_tags),
    Kind("list.sfv", lambda path, content: path + b" " + digest("crc32", content).hex().upper().encode() + b"\n",
         lambda path: plain_holds(path) and path == path.strip(b" \t") and not path.startswith((b";", b"#", b"\\")),
         header=b"; a comment\n"),
    Kind("deep", lambda path, content: b"%d,%s,%s,%s\n" % (
        len(content), digest("md5", content).hex().encode(), digest("sha256", content).hex().encode(), path),
         plain_holds, header=b"%%%% HASHDEEP-1.0\n%%%% size,md5,sha256,filename\n## a comment\n"),
    Kind("manifest-sha256.txt", lambda path, content: digest("sha256", content).hex().encode() + b"  " +
         percent(path) + b"\n", lambda path: not path.endswith(b"\r")),
]


class Case:
    """A list of a tree, and the tree some time later."""

    def __init__(self, seed, odd_names, unreadable):
        self.random = rng = random.Random(seed)
        self.kind = rng.choice(KINDS)
        self.names = NAMES + (ODD_NAMES if odd_names and rng.random() < 0.5 else [])
        self.listed = {}
        for _ in range(rng.randrange(0, 12)):
            self.put(self.listed)
        if not self.kind.is_told_by_name:
            self.listed.setdefault(b"tree/a", b"one")
        self.tree = dict(self.listed)
        self.decayed = set()
        for _ in range(rng.choice((0, 1, 3, 8))):
            rng.choice((self.remove, self.rename, self.swap, self.copy, self.change, self.decay, self.add))()
        if unreadable and self.tree and rng.random() < 0.3:
            path = rng.choice(sorted(self.tree))
            self.tree[path] = UNREADABLE
            self.decayed.discard(path)
        self.order = sorted(self.listed)
        if rng.random() < 0.3:
            rng.shuffle(self.order)

    def path(self):
        depth = self.random.choice((1, 1, 2, 3))
        folders = [b"d" + name for name in self.names[:3]]
        return b"/".join([b"tree"] + [self.random.choice(folders) for _ in range(depth - 1)] +
                         [self.random.choice(self.names)])

    def put(self, files, content=None):
        path = self.path()
        if path not in files and self.kind.holds(path):
            files[path] = self.random.choice(CONTENTS) if content is None else content
            return path
        return None

    def pick(self):
        paths = sorted(path for path in self.tree if path in self.listed and path not in self.decayed)
        return self.random.choice(paths) if paths else None

    def remove(self):
        self.tree.pop(self.pick(), None)

    def rename(self):
        path = self.pick()
        if path and self.put(self.tree, self.tree[path]):
            del self.tree[path]

    def swap(self):
        one, other = self.pick(), self.pick()
        if one:
            self.tree[one], self.tree[other] = self.tree[other], self.tree[one]

    def copy(self):
        path = self.pick()
        if path:
            self.put(self.tree, self.tree[path])

    def change(self):
        path = self.pick()
        if path:
            self.tree[path] += b"changed"

    def decay(self):
        """One bit, without a trace in size and time."""
        path = self.pick()
        if path and self.tree[path] and self.tree[path] == self.listed[path]:
            self.tree[path] = bytes([self.tree[path][0] ^ 1]) + self.tree[path][1:]
            self.decayed.add(path)

    def add(self):
        self.put(self.tree)
