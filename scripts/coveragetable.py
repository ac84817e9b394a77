"""Adds up by folder what llvm-cov has exported by file: coveragetable.py ROOT COVERAGE.JSON FOLDER ...

A file counts for the longest of the folders that it is in. Prints a table, and the files that fall short."""

import json
import os
import sys

KINDS = ("lines", "branches", "mcdc")


def read_files(root, path):
    """Gives {path below root: {kind: (covered, count)}}. A compiler cache may have another spelling of a path, and so two
    entries of one header: the one of which more has run counts."""
    with open(path, encoding="utf-8") as file:
        exported = json.load(file)
    found = {}
    for entry in exported["data"][0]["files"]:
        name = os.path.relpath(entry["filename"], root)
        kinds = {kind: (entry["summary"][kind]["covered"], entry["summary"][kind]["count"]) for kind in KINDS}
        if name not in found or kinds["lines"][0] > found[name]["lines"][0]:
            found[name] = kinds
    return found


def find_folder(name, folders):
    """The longest of the folders that the file is in, or None. The plug-in object is the files of its own folder alone."""
    of_it = [folder for folder in folders if name.startswith(folder + "/")]
    folder = max(of_it, key=len, default=None)
    return None if folder == "pluginobject" and os.path.dirname(name) != folder else folder


def add_up(files, folders):
    """Gives {folder: {kind: (covered, count)}}."""
    sums = {folder: {kind: (0, 0) for kind in KINDS} for folder in folders}
    for name, kinds in files.items():
        folder = find_folder(name, folders)
        if folder is None:
            continue
        for kind, (covered, count) in kinds.items():
            sums[folder][kind] = (sums[folder][kind][0] + covered, sums[folder][kind][1] + count)
    return sums


def show(covered, count):
    return f"{100 * covered / count:.1f} % ({covered} of {count})" if count else "none"


def make_table(sums):
    rows = ["| folder | lines | branches | MC/DC |", "|---|---|---|---|"]
    for folder, kinds in sums.items():
        rows.append(f"| `{folder}/` | {show(*kinds['lines'])} | {show(*kinds['branches'])} | {show(*kinds['mcdc'])} |")
    total = [tuple(sum(kinds[kind][i] for kinds in sums.values()) for i in (0, 1)) for kind in KINDS]
    rows.append(f"| all of these | {show(*total[0])} | {show(*total[1])} | {show(*total[2])} |")
    return "\n".join(rows)


def main():
    root, path, *folders = sys.argv[1:]
    files = read_files(root, path)
    print(make_table(add_up(files, folders)))
    print()
    for name, kinds in sorted(files.items()):
        missing = [f"{count - covered} {kind}" for kind, (covered, count) in kinds.items() if covered < count]
        if missing and find_folder(name, folders):
            print(f"{name}: {', '.join(missing)} never run")


if __name__ == "__main__":
    main()
