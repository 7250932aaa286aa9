#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""check-commands.py FOLDER CLI ARCHIVER HELLO: runs the commands of the documents.

FOLDER is the project, CLI the terminal program, ARCHIVER 7zr, HELLO the folder of the example application. Each
fenced block of both READMEs, of CONTRIBUTING.md and of docs/*.md is run in a new folder with inputs (inputs.py), and
each executable that it makes is verified. A block that is listed in not-run.txt is not run. A block that fails, and a
line of the list that fits no block of its document, are faults. Blocks that differ in their comments only are run
once, and a block of a Chinese document that is the same in the English one belongs to that one alone.
"""

import os
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import cmakeproject
import inputs
import markdown

# Ends a command that hangs; the machine may stall for minutes.
LIMIT = 600


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def checked_documents(top):
    return [name for name in markdown.documents(top)
            if markdown.english_of(name) in ("README.md", "CONTRIBUTING.md") or os.path.dirname(name) == "docs"]


def own_blocks(top, document):
    """The blocks of the document, for a Chinese one only those that the English one does not have."""
    blocks = markdown.blocks(read(os.path.join(top, document)))
    english = os.path.join(top, markdown.english_of(document))
    if not markdown.is_chinese(document) or not os.path.exists(english):
        return blocks
    same = {(block.language, block.text) for block in markdown.blocks(read(english))}
    return [block for block in blocks if (block.language, block.text) not in same]


def reasons():
    """The list not-run.txt: {(document, first line): reason}."""
    found, key = {}, None
    for line in read(os.path.join(os.path.dirname(__file__), "not-run.txt")).split("\n"):
        if line.startswith("    ") and key:
            found[key] = (found[key] + " " + line.strip()).strip()
        elif line and not line.startswith("#"):
            document, _, first = line.partition(": ")
            key = (document, first)
            found[key] = ""
    return found


def without_comments(text):
    return re.sub(r"(^|\s+)#\s.*", "", text, flags=re.MULTILINE)


def packs(text):
    """Whether a command of the block makes an executable."""
    return re.search(r"^kestrelpack-cli (?!verify|inspect|extract)", text, re.MULTILINE) is not None


def run_shell(text, folder, _, environment):
    result = subprocess.run(["sh", "-eu", "-c", text], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=LIMIT, check=False)
    return result.returncode, result.stdout


def run_cmake(text, folder, stock, environment):
    # The program is build/*/bin/kestrelpack-cli.
    package = os.path.dirname(os.path.dirname(stock.cli))
    return cmakeproject.run(os.path.join(folder, "project"), text, stock.top, package, environment)


RUNNERS = {"sh": run_shell, "cmake": run_cmake}


def run(block, place, stock):
    """Runs the block. Returns what went wrong, or None."""
    with tempfile.TemporaryDirectory() as work:
        folder = os.path.join(work, "folder")
        stock.place_into(folder)
        before = inputs.programs(folder)
        print(f"{place}:\n{block.text}", flush=True)
        status, output = RUNNERS[block.language](block.text, folder, stock, stock.environment(work))
        print(output.decode(errors="replace"), flush=True)
        if status != 0:
            return f"{place}: ends with {status}"
        made = sorted(name for name in inputs.programs(folder) - before
                      if os.path.dirname(name) in ("out", "dist"))
        if not made and packs(block.text):
            return f"{place}: makes no executable"
        for name in made:
            if not stock.is_whole(os.path.join(folder, name)):
                return f"{place}: {name} does not verify"
    return None


def check_blocks(top, stock):
    faults, listed, done = [], reasons(), {}
    unused = {key for key in listed if os.path.exists(os.path.join(top, key[0]))}
    for document in checked_documents(top):
        for block in own_blocks(top, document):
            place = f"{document}:{block.line}"
            key = (document, block.text.split("\n")[0])
            text = without_comments(block.text)
            if key in listed:
                unused.discard(key)
                if not listed[key]:
                    faults.append(f"{place}: not-run.txt gives no reason")
            elif block.language not in RUNNERS:
                faults.append(f"{place}: is no block of {' or '.join(RUNNERS)}, and not listed in not-run.txt")
            elif text not in done:
                done[text] = run(block, place, stock)
                faults += [done[text]] if done[text] else []
    faults += [f"not-run.txt: no block of {name} begins with: {first}" for name, first in sorted(unused)]
    print(f"{len(done)} blocks were run, {len(listed)} are listed in not-run.txt")
    return faults + ([] if done else ["no block was run"])


def check_lines(top, stock):
    """Runs the archiver's commands in the lines of the READMEs."""
    faults, count = [], 0
    for document in ("README.md", "README.zh-CN.md"):
        for line, code in markdown.code_in_lines(read(os.path.join(top, document))):
            if code.startswith("7zr "):
                count += 1
                faults.append(run(markdown.Block(line, "sh", code + "\n"), f"{document}:{line}", stock))
    return [fault for fault in faults if fault] + ([] if count == 2 else ["7zr is not named once in each README"])


def check_options(top, stock):
    """Every option that the READMEs explain in tables, or that is named with the program, is in the help."""
    known = set(re.findall(r"--[a-z-]+", stock.help()))
    named = set()
    for name in markdown.documents(top):
        text = read(os.path.join(top, name))
        for line in re.findall(r"^\| `-.*$", text, re.MULTILINE) if name.startswith("README") else []:
            named |= set(re.findall(r"`[^`]*?(--[a-z-]+)", line))
        for _, code in markdown.code_in_lines(text):
            if code.startswith("kestrelpack-cli "):
                named |= set(re.findall(r" (--[a-z-]+)", code))
    return [f"kestrelpack-cli has no option {name}" for name in sorted(named - known)]


def main():
    top, cli, archiver, hello = (os.path.abspath(argument) for argument in sys.argv[1:5])
    with tempfile.TemporaryDirectory() as folder:
        stock = inputs.Stock(folder, top, {"kestrelpack-cli": cli, "7zr": archiver}, hello)
        faults = check_blocks(top, stock) + check_lines(top, stock) + check_options(top, stock)
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
