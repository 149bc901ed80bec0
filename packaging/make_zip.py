# SPDX-License-Identifier: MIT
"""usage: make_zip.py FOLDER ZIP

Packs a folder into a zip whose bytes depend on names and contents alone, and on SOURCE_DATE_EPOCH, the time that
every file in it bears.
"""
import os
import pathlib
import sys
import time
import zipfile


def main(folder, target):
    moment = time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"]))[:6]
    folder = pathlib.Path(folder)
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for path in sorted(path for path in folder.rglob("*") if path.is_file()):
            entry = zipfile.ZipInfo(path.relative_to(folder.parent).as_posix(), moment)
            entry.create_system = 0  # what unpacks it on Windows needs no rights of another system
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, path.read_bytes())


if __name__ == "__main__":
    main(*sys.argv[1:])
