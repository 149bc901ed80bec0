# SPDX-License-Identifier: MIT
"""usage: coverage_rooms.py SUMMARY LINES BRANCHES

Prints the coverage of every room from gcovr's JSON summary, and what keeps the worst files of each from 100%.
Exit status 1 when a room's lines or branches stay below the percentages given, or when a room has no lines.
"""
import json
import sys

ROOMS = ("app", "support", "platform", "crypto", "hash")


def percent(covered, total):
    return 100.0 * covered / total if total else 100.0


def figures(files):
    """Percentage of lines and of branches over several files."""
    def over_all(kind):
        return percent(sum(file[f"{kind}_covered"] for file in files), sum(file[f"{kind}_total"] for file in files))
    return over_all("line"), over_all("branch")


def main(summary, least_lines, least_branches):
    with open(summary, encoding="utf-8") as text:
        files = json.load(text)["files"]
    passed = True
    print(f"{'room':12}{'lines':>8}{'branches':>10}   least covered")
    for room in ROOMS:
        inside = [file for file in files if file["filename"].startswith(room + "/") and file["line_total"]]
        lines, branches = figures(inside)
        enough = bool(inside) and lines >= least_lines and branches >= least_branches
        passed = passed and enough
        worst = sorted(inside, key=lambda file: file["line_covered"] - file["line_total"])[:3]
        names = ", ".join(f"{file['filename'].removeprefix(room + '/')} {figures([file])[0]:.0f}%" for file in worst
                          if file["line_covered"] < file["line_total"])
        print(f"{room + '/':12}{lines:7.1f}%{branches:9.1f}%   {names}{'' if enough else '   TOO LOW'}")
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], float(sys.argv[2]), float(sys.argv[3])))
