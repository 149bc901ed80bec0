# SPDX-License-Identifier: MIT
"""The checksum test scripts of coreutils 9.1, fetched from Debian into the build folder, and how to run one of them.

They are not part of this project, and nothing of them is kept but in the build folder.
"""
import os
import pathlib
import shutil
import subprocess

from program import BUILD_DIRECTORY, PROGRAM, TOOLS

VERSION = "9.1"
SOURCES = pathlib.Path("/etc/apt/sources.list.d/debian.sources")
SCRIPTS = ("b2sum.sh", "cksum-a.sh", "cksum-c.sh", "cksum.sh", "md5sum-bsd.sh", "md5sum-newline.pl",
           "md5sum-parallel.sh", "md5sum.pl", "sha1sum-vec.pl", "sha1sum.pl", "sha224sum.pl", "sha256sum.pl",
           "sha384sum.pl", "sha512sum.pl", "sm3sum.pl", "sum-sysv.sh", "sum.pl")


class NotThere(Exception):
    """Why the scripts cannot be fetched."""


def apt(folder, *arguments):
    """Runs apt-get with lists and sources of its own, so that the system's stay as they are."""
    lists = folder / "lists"
    (lists / "partial").mkdir(parents=True, exist_ok=True)
    command = ["apt-get", "-q", "-y", "-o", "Dir::Etc::SourceList=/dev/null",
               "-o", f"Dir::Etc::SourceParts={folder / 'sources'}", "-o", f"Dir::State::Lists={lists}",
               "-o", f"Dir::Cache={folder / 'cache'}", "-o", "APT::Sandbox::User=root",
               "-o", "Acquire::Retries=2", *arguments]
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True, timeout=300, check=False)
    if done.returncode != 0:
        raise NotThere(f"apt-get {arguments[0]}: {done.stderr.strip()[-500:]}")


def fetch():
    """The folder with the unpacked sources, fetched once for a build folder."""
    folder = pathlib.Path(BUILD_DIRECTORY) / "coreutils"
    unpacked = folder / f"coreutils-{VERSION}"
    if unpacked.is_dir():
        return unpacked
    if not SOURCES.is_file() or not shutil.which("apt-get"):
        raise NotThere(f"{SOURCES} or apt-get is missing")
    (folder / "sources").mkdir(parents=True, exist_ok=True)
    (folder / "cache").mkdir(exist_ok=True)
    text = SOURCES.read_text(encoding="utf-8").replace("Types: deb\n", "Types: deb-src\n")
    (folder / "sources" / "source.sources").write_text(text, encoding="utf-8")
    apt(folder, "update")
    apt(folder, "source", "--download-only", f"coreutils={VERSION}-1")
    partial = folder / "partial"
    shutil.rmtree(partial, ignore_errors=True)
    partial.mkdir()
    subprocess.run(["tar", "-xf", folder / f"coreutils_{VERSION}.orig.tar.xz", "-C", partial,
                    f"coreutils-{VERSION}/tests", f"coreutils-{VERSION}/init.cfg"], check=True)
    (partial / f"coreutils-{VERSION}").rename(unpacked)
    return unpacked


def link_tools(folder):
    """A folder `src` in which the tools are this program."""
    links = pathlib.Path(folder) / "src"
    links.mkdir(parents=True)
    for tool in TOOLS:
        (links / tool).symlink_to(PROGRAM)
    return links


def run_script(sources, script, folder):
    """Runs one script as its own makefile would. Returns its status, 77 when it skipped itself, and what it printed."""
    links = link_tools(folder)
    environment = {"PATH": f"{links}:/usr/bin:/bin:/usr/sbin:/sbin", "HOME": str(folder), "LC_ALL": "C", "TMPDIR": str(folder),
                   "VERSION": VERSION, "PACKAGE_VERSION": VERSION, "abs_top_builddir": str(folder),
                   "abs_top_srcdir": str(sources), "abs_srcdir": str(sources), "srcdir": str(sources),
                   "top_srcdir": str(sources), "built_programs": " ".join((*TOOLS, "printf", "shuf")), "host_os": "linux-gnu",
                   "CU_TEST_NAME": script, "PERL": "perl", "AWK": "awk", "EGREP": "grep -E", "SHELL": "/bin/sh",
                   "CONFIG_HEADER": "/dev/null", "CC": "cc", "EXEEXT": "", "VERBOSE": "yes"}
    path = str(sources / "tests" / "misc" / script)
    if script.endswith(".pl"):
        command = ["perl", "-w", f"-I{sources / 'tests'}", "-MCuSkip", "-MCoreutils",
                   f"-MCuTmpdir qw({script})", path]
    else:
        command = ["bash", path]
    done = subprocess.run(["bash", "-c", 'exec "$@" 9>&2', "bash", *command], cwd=folder, env=environment,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=600,
                          check=False)
    return done.returncode, done.stdout.decode(errors="replace")
