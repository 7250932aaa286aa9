#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""check-links.py FOLDER: checks the links of all documents in the folder, without the network.

A link to a file or folder must lead to one, and an anchor to a heading. Paths, presets and options of scripts that are
named as code must exist. A document and its Chinese version must say the same (languages.py).
"""

import glob
import json
import os
import re
import sys
from urllib.parse import unquote

sys.dont_write_bytecode = True
import languages
import markdown


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def fault_of(top, document, target):
    """What is wrong with the link, or None."""
    if re.match(r"^[a-z][a-z0-9+.-]*:", target):
        return None if target.startswith(("https://", "mailto:")) else "is not https"
    path, _, name = unquote(target).partition("#")
    place = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
    if place.startswith(".."):
        return "leads out of the project"
    if not os.path.exists(os.path.join(top, place)):
        return "leads nowhere"
    if not name:
        return None
    if not place.endswith(".md"):
        return "has an anchor, but leads to no document"
    return None if name in markdown.anchors(read(os.path.join(top, place))) else "has no such heading"


def check_links(top):
    faults = []
    count = 0
    for document in markdown.documents(top):
        for line, _, target in markdown.links(read(os.path.join(top, document))):
            count += 1
            fault = fault_of(top, document, target)
            if fault:
                faults.append(f"{document}:{line}: {target} {fault}")
    if not count:
        faults.append("no links were found")
    print(f"{count} links")
    return faults


def check_paths(top):
    """Paths that are named as code, such as scripts/bench, exist."""
    folders = [name for name in os.listdir(top) if os.path.isdir(os.path.join(top, name))
               and name[0] != "." and name not in markdown.SKIPPED_FOLDERS]
    faults, count = [], 0
    for document in markdown.documents(top):
        for line, code in markdown.code_in_lines(read(os.path.join(top, document))):
            path = re.match(r"(?:\./)?([\w./*-]+)", code)
            if not path or "<" in code or "{" in code:
                continue
            path = path.group(1)
            if path.split("/")[0] in folders and "/" in path or code.startswith("./"):
                count += 1
                places = [top, os.path.join(top, os.path.dirname(document))]
                if not any(glob.glob(os.path.join(place, path + end)) for place in places for end in ("", "*")):
                    faults.append(f"{document}:{line}: there is no {path}")
    print(f"{count} paths")
    return faults


def check_presets(top):
    """Presets of CMake that a document names exist."""
    presets = json.loads(read(os.path.join(top, "CMakePresets.json")))
    known = {preset["name"] for kind in ("configurePresets", "testPresets") for preset in presets[kind]}
    return [f"{document}: there is no preset {name}" for document in markdown.documents(top)
            for name in re.findall(r"--preset ([\w-]+)", read(os.path.join(top, document))) if name not in known]


def check_script_options(top):
    """Options that a document gives to a script stand in the script."""
    faults, count = [], 0
    for document in markdown.documents(top):
        text = read(os.path.join(top, document))
        code = [line for _, line in markdown.code_in_lines(text)]
        code += [line for block in markdown.blocks(text) if block.language == "sh" for line in block.text.split("\n")]
        for line in code:
            script = re.match(r"(?:\./)?(scripts/[\w-]+|run\.sh|test\.sh) ", line)
            for option in re.findall(r" (--[\w-]+)", line) if script else []:
                count += 1
                if not re.search(re.escape(option) + r"(?![\w-])", read(os.path.join(top, script.group(1)))):
                    faults.append(f"{document}: {script.group(1)} has no option {option}")
    print(f"{count} options of scripts")
    return faults


def main():
    top = sys.argv[1]
    faults = check_links(top) + check_paths(top) + languages.check(top)
    faults += check_presets(top) + check_script_options(top)
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
