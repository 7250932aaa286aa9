# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""What the tests and the pages need of Markdown: languages, fenced blocks, headings, links
and pictures."""

import os
import re
from typing import NamedTuple

FENCE = re.compile(r"^( *)(`{3,}|~{3,})\s*([\w+-]*)[^`]*$")
LINK = re.compile(r"(!?)\[((?:[^\[\]]|\[[^\]]*\]\([^)]*\))*)\]\(<?([^)\s>]+)>?(?:\s+\"[^\"]*\")?\)")
CODE = re.compile(r"(`+)(?!`)(.*?)(?<!`)\1(?!`)")
CHINESE = ".zh-CN"
SKIPPED_FOLDERS = {"build", "out", "dist"}


def is_chinese(name):
    """Whether the file is the Chinese version of another: X.zh-CN.md is that of X.md."""
    return os.path.splitext(name)[0].endswith(CHINESE)


def english_of(name):
    root, extension = os.path.splitext(name)
    return root.removesuffix(CHINESE) + extension


def other_language(name):
    root, extension = os.path.splitext(name)
    return english_of(name) if is_chinese(name) else root + CHINESE + extension


def pairs(names):
    """The documents that are there in both languages, as (English, Chinese)."""
    return [(name, other_language(name)) for name in names
            if not is_chinese(name) and other_language(name) in names]


class Block(NamedTuple):
    """A fenced block. The text has no indentation of the list item that it stands in."""

    line: int
    language: str
    text: str


def documents(top):
    """The paths of all Markdown files below the folder, relative to it, in order."""
    found = []
    for folder, folders, files in os.walk(top):
        folders[:] = sorted(name for name in folders if name[0] != "."
                            and not (folder == top and name in SKIPPED_FOLDERS))
        found += [os.path.relpath(os.path.join(folder, name), top)
                  for name in files if name.endswith(".md")]
    return sorted(found)


def blocks(text):
    """All fenced blocks of the document."""
    found, fence, lines, start, language = [], None, [], 0, ""
    for number, line in enumerate(text.split("\n"), 1):
        match = FENCE.match(line)
        if fence is None:
            if match:
                fence, start, language, lines = match, number, match.group(3), []
        elif match and match.group(2).startswith(fence.group(2)) and not match.group(3):
            found.append(Block(start, language, "\n".join(lines) + "\n"))
            fence = None
        else:
            lines.append(line[len(fence.group(1)):] if line[:len(fence.group(1))].isspace() else line)
    if fence is not None:
        raise ValueError(f"the block in line {start} has no end")
    return found


def without_blocks(text):
    """The document with empty lines in place of its blocks."""
    lines = text.split("\n")
    for block in blocks(text):
        for number in range(block.line - 1, block.line + block.text.count("\n") + 1):
            lines[number] = ""
    return "\n".join(lines)


def without_code(text):
    """The document with empty lines in place of blocks, and without code in its lines."""
    return CODE.sub(lambda code: "x" * len(code.group()), without_blocks(text))


def code_in_lines(text):
    """The code in the lines of the document, outside of blocks, as (line, code)."""
    plain = without_blocks(text)
    return [(plain.count("\n", 0, match.start()) + 1, match.group(2)) for match in CODE.finditer(plain)]


def links(text):
    """All links and pictures as (line, is a picture, target)."""
    plain = without_code(text)
    found = []

    def collect(part, offset):
        for match in LINK.finditer(part):
            line = plain.count("\n", 0, offset + match.start()) + 1
            found.append((line, match.group(1) == "!", match.group(3)))
            collect(match.group(2), offset + match.start(2))

    collect(plain, 0)
    return sorted(found)


def anchor(heading):
    """The anchor of a heading, as GitHub makes it; the heading is Markdown."""
    text = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", heading.strip())
    text = re.sub(r"[^\w\- ]", "", text.lower())
    return text.replace(" ", "-")


def anchors(text):
    """The anchors of all headings. A repeated one gets a number."""
    found = []
    for line in without_blocks(text).split("\n"):
        match = re.match(r"^#{1,6} +(.*?)(?: +#+)?$", line)
        if match:
            name = anchor(match.group(1))
            number = sum(1 for other in found if re.fullmatch(re.escape(name) + r"(-\d+)?", other))
            found.append(f"{name}-{number}" if number else name)
    return found
