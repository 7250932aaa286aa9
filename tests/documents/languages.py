# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""Compares each document with its Chinese version.

Both have a link to the other one at their beginning, and the same sections. A section has the same blocks (apart from
comments), tables, list items, code, figures and links in both. A link or picture of a Chinese document leads to a Chinese
file if there is one. In a table that tests make, each English result has one Chinese word.
"""

import os
import re
from typing import NamedTuple
from urllib.parse import unquote

import markdown

NAMES = {"English": "English", "Chinese": "简体中文"}
BEGINNING = 5


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


class Document(NamedTuple):
    top: str
    name: str

    def text(self):
        return read(os.path.join(self.top, self.name))

    def is_chinese(self):
        return markdown.is_chinese(self.name)


class Section(NamedTuple):
    """From one heading to the next. The text has empty lines in place of blocks."""

    line: int
    level: int
    text: str
    blocks: list


def sections(text):
    lines = markdown.without_blocks(text).split("\n")
    starts = [number for number, line in enumerate(lines, 1) if re.match(r"#{1,6} ", line)]
    found = []
    for start, end in zip(starts, starts[1:] + [len(lines) + 1]):
        level = len(lines[start - 1]) - len(lines[start - 1].lstrip("#"))
        inside = [block for block in markdown.blocks(text) if start <= block.line < end]
        found.append(Section(start, level, "\n".join(lines[start - 1:end - 1]), inside))
    return found


def without_comments(text):
    """The lines of a block without comments and without empty lines at their place."""
    lines = [re.sub(r"(^|\s+)#\s.*", "", line) for line in text.split("\n")]
    return [line for line in lines if line]


def codes(text):
    """The code in the lines. What stands for something, such as <20 digits>, is in the document's language."""
    return {re.sub(r"<[^<>]*>", lambda name: f"<{''.join(re.findall('[0-9]+', name.group()))}>", code)
            for _, code in markdown.code_in_lines(text)}


def figures(text):
    """The numbers in the text, not in code, in addresses or in names such as x64."""
    plain = re.sub(r"\]\([^)]*\)", "]", markdown.CODE.sub(" ", text))
    return set(re.findall(r"0x[0-9A-Fa-f]+|(?<![A-Za-z\d.,])\d[\d,.]*(?<=\d)(?![A-Za-z\d])", plain))


def meaning(document, target):
    """What both languages' links to the same place have in common: the English file and the heading's number."""
    if re.match(r"[a-z][a-z0-9+.-]*:", target):
        return target.replace("/zh-cn/", "/")
    path, _, heading = unquote(target).partition("#")
    folder = os.path.dirname(document.name)
    place = os.path.normpath(os.path.join(folder, path)) if path else document.name
    number = ""
    if heading:
        anchors = markdown.anchors(read(os.path.join(document.top, place)))
        number = f" heading {anchors.index(heading) + 1}" if heading in anchors else f" {heading}"
    return markdown.english_of(place) + number


def links(document, text):
    """The links of the section, without those from a document to its other language."""
    own = os.path.basename(markdown.other_language(document.name))
    return {meaning(document, target) for _, _, target in markdown.links(text) if target != own}


def facts(document, section):
    """What must be the same in both languages: lists in their order, sets in any order."""
    lines = section.text.split("\n")
    return {
        "blocks": [(block.language, *without_comments(block.text)) for block in section.blocks],
        "rows of tables": [line.count("|") for line in lines if line.startswith("|")],
        "list items": [len(item) for item in re.findall(r"^( *)(?:-|\d+\.) ", section.text, re.MULTILINE)],
        "comments": re.findall(r"<!--.*?-->", section.text),
        "code": codes(section.text),
        "figures": figures(section.text),
        "links": links(document, section.text),
    }


def difference(one, other):
    if isinstance(one, set):
        return f"only in English: {sorted(one - other)}, only in Chinese: {sorted(other - one)}"
    return f"English: {one}, Chinese: {other}"


def compare_sections(english, chinese):
    faults = []
    for one, other in zip(sections(english.text()), sections(chinese.text())):
        place = f"{english.name}:{one.line} and {chinese.name}:{other.line}: "
        theirs = facts(chinese, other)
        faults += [f"{place}the sections have other {what}: {difference(value, theirs[what])}"
                   for what, value in facts(english, one).items() if value != theirs[what]]
    return faults


def rows(text):
    """The rows of all tables as (line, row)."""
    return [(number, line) for number, line in enumerate(markdown.without_blocks(text).split("\n"), 1)
            if line.startswith("|")]


def compare_rows(english, chinese):
    """A row has the same code and figures in both languages."""
    faults = []
    for (line, one), (other_line, other) in zip(rows(english.text()), rows(chinese.text())):
        for what in (codes, figures):
            if what(one) != what(other):
                faults.append(f"{english.name}:{line} and {chinese.name}:{other_line}: the rows have other "
                              f"{what.__name__}: {difference(what(one), what(other))}")
    return faults


def results(text):
    """The cells of the tables that tests make, without each row's name."""
    tables = re.findall(r"^<!-- rows of .* -->\n\n((?:\|.*\n)+)", text, re.MULTILINE)
    return [cell for table in tables for row in table.split("\n") for cell in row.split(" | ")[1:]]


def compare_results(english, chinese):
    """The same result has the same word everywhere."""
    faults, words = [], ({}, {})
    for cells in zip(results(english.text()), results(chinese.text())):
        for known, (one, other) in zip(words, (cells, cells[::-1])):
            if known.setdefault(one, other) != other:
                faults.append(f"{english.name} and {chinese.name}: {one} is {known[one]} in one row, and {other} in "
                              "another")
    return faults


def check_beginning(document):
    """The link to the other language."""
    other = os.path.basename(markdown.other_language(document.name))
    label = NAMES["English" if document.is_chinese() else "Chinese"]
    if f"[{label}]({other})" in document.text().split("\n")[:BEGINNING]:
        return []
    return [f"{document.name}: the first {BEGINNING} lines have no link [{label}]({other})"]


def check_targets(document):
    """A link of a Chinese document leads to a Chinese file if there is one, and no other link does."""
    faults = []
    other = os.path.basename(markdown.other_language(document.name))
    for line, _, target in markdown.links(document.text()):
        path = unquote(target.partition("#")[0])
        if re.match(r"[a-z][a-z0-9+.-]*:", target) or not path or target == other:
            continue
        in_chinese = markdown.other_language(path) if not markdown.is_chinese(path) else path
        there = os.path.exists(os.path.join(document.top, os.path.dirname(document.name), in_chinese))
        if there and markdown.is_chinese(path) != document.is_chinese():
            faults.append(f"{document.name}:{line}: {target} leads to the other language")
    return faults


def compare(english, chinese):
    faults = [fault for document in (english, chinese)
              for fault in check_beginning(document) + check_targets(document)]
    one, other = ([section.level for section in sections(document.text())] for document in (english, chinese))
    if one != other:
        return faults + [f"{english.name} and {chinese.name} have other sections: {difference(one, other)}"]
    return (faults + compare_sections(english, chinese) + compare_rows(english, chinese)
            + compare_results(english, chinese))


def check(top):
    """All faults of all pairs."""
    names = markdown.documents(top)
    chinese = [name for name in names if markdown.is_chinese(name)]
    faults = [f"{name} has no English version" for name in chinese if markdown.english_of(name) not in names]
    pairs = markdown.pairs(names)
    for english, other in pairs:
        faults += compare(Document(top, english), Document(top, other))
    print(f"{len(pairs)} documents in two languages")
    return faults if pairs else faults + ["no document is there in two languages"]
