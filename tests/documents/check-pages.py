#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""check-pages.py FOLDER OUTPUT: makes the pages of the project in FOLDER twice, in OUTPUT, and checks them.

Each link and picture leads to a file in the pages, and each anchor to an element. Nothing is fetched from elsewhere,
there are no scripts, pictures have texts, and both times give equal pages. The two pages of a document in two languages
lead to each other, and the navigation of a page leads to pages in its language.
"""

import os
import re
import shutil
import subprocess
import sys
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit

sys.dont_write_bytecode = True
import markdown


class Page(HTMLParser):
    """What is checked of a page."""

    def __init__(self, path):
        super().__init__()
        self.path = path
        self.ids, self.links, self.faults = [], [], []
        self.other_languages, self.navigation = [], []
        self.language, self.has_title, self.is_in_navigation = None, False, False
        with open(path, encoding="utf-8") as file:
            self.feed(file.read())
        if not self.has_title or not self.language:
            self.faults.append("has no title or no language")
        self.faults += [f"has two elements {name}" for name in sorted(set(self.ids)) if self.ids.count(name) > 1]

    def handle_starttag(self, tag, attrs):
        given = dict(attrs)
        self.has_title |= tag == "title"
        if tag == "html":
            self.language = given.get("lang")
        self.is_in_navigation |= tag == "nav"
        if "id" in given:
            self.ids.append(given["id"])
        if tag in ("script", "iframe", "object", "embed", "style"):
            self.faults.append(f"has an element {tag}")
        if tag == "img" and "alt" not in given:
            self.faults.append(f"has a picture without a text: {given.get('src')}")
        for name in ("href", "src"):
            if name in given:
                self.links.append((given[name], tag == "a"))
        self.note_languages(tag, given)

    def handle_endtag(self, tag):
        if tag == "nav":
            self.is_in_navigation = False

    def note_languages(self, tag, given):
        """Collects the links to other languages as (element, language, file), and the files of the navigation."""
        place = os.path.normpath(os.path.join(os.path.dirname(self.path), unquote(given.get("href", "").split("#")[0])))
        if "hreflang" in given:
            self.other_languages.append((tag, given["hreflang"], place))
        if tag == "a" and self.is_in_navigation and not given["href"].startswith("#"):
            self.navigation.append(place)


def pages_in(folder):
    return {os.path.join(place, name): Page(os.path.join(place, name))
            for place, _, names in os.walk(folder) for name in names if name.endswith(".html")}


def fault_of(page, target, is_link, pages):
    parts = urlsplit(target)
    if parts.scheme or parts.netloc:
        return None if is_link and parts.scheme in ("https", "mailto") else f"fetches {target}"
    place = page.path
    if parts.path:
        place = os.path.normpath(os.path.join(os.path.dirname(page.path), unquote(parts.path)))
    if not os.path.isfile(place):
        return f"{target} leads nowhere"
    if parts.fragment and (place not in pages or unquote(parts.fragment) not in pages[place].ids):
        return f"{target} has no such place"
    return None


def check(folder):
    pages = pages_in(folder)
    faults, count = [], 0
    for page in pages.values():
        found = list(page.faults)
        for target, is_link in page.links:
            count += 1
            found.append(fault_of(page, target, is_link, pages))
        faults += [f"{os.path.relpath(page.path, folder)}: {fault}" for fault in found if fault]
    with open(os.path.join(folder, "style.css"), encoding="utf-8") as file:
        if re.search(r"url\(|@import", file.read()):
            faults.append("style.css: fetches something")
    print(f"{len(pages)} pages, {count} links")
    return faults if pages and count else ["there are no pages or no links"]


def page_of(document):
    folder, name = os.path.split(document)
    return os.path.join(folder, "index.html" if name == "README.md" else name[:-len("md")] + "html")


def faults_of_pair(page, language, other, other_language):
    """What is wrong with the page of a document that has another page in the other language."""
    faults = [] if page.language == language else [f"is in {page.language}, not in {language}"]
    for tag in ("a", "link"):
        if (tag, other_language, other.path) not in page.other_languages:
            faults.append(f"has no element {tag} that leads to its page in {other_language}")
    return faults


def check_languages(top, folder):
    """The pages of documents in two languages, and the navigations of all pages."""
    pages = pages_in(folder)
    by_name = {os.path.relpath(path, folder): page for path, page in pages.items()}
    pairs = [[by_name[page_of(name)] for name in pair] for pair in markdown.pairs(markdown.documents(top))]
    faults = []
    for english, chinese in pairs:
        faults += [(english, fault) for fault in faults_of_pair(english, "en", chinese, "zh-CN")]
        faults += [(chinese, fault) for fault in faults_of_pair(chinese, "zh-CN", english, "en")]
    others = {one.path: other for pair in pairs for one, other in (pair, pair[::-1])}
    for page in pages.values():
        if not page.navigation or not page.other_languages:
            faults.append((page, "has no navigation or no link to the other language"))
        faults += [(page, f"has {os.path.relpath(place, folder)} in its navigation, which is in the other language")
                   for place in page.navigation
                   if place in others and pages[place].language != page.language]
    print(f"{len(pairs)} pairs of pages in two languages")
    return [f"{os.path.relpath(page.path, folder)}: {fault}" for page, fault in faults] + (
        [] if pairs else ["no document has pages in two languages"])


def contents(folder):
    found = {}
    for place, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(place, name)
            with open(path, "rb") as file:
                found[os.path.relpath(path, folder)] = file.read()
    return found


def main():
    top, output = (os.path.abspath(argument) for argument in sys.argv[1:3])
    if not shutil.which("cmark-gfm"):
        print("skipped: cmark-gfm is missing (Debian package cmark-gfm)")
        return 77
    made = []
    for _ in range(2):
        subprocess.run([os.path.join(top, "scripts/make-pages"), output], check=True)
        made.append(contents(output))
    faults = check(output) + check_languages(top, output)
    if made[0] != made[1]:
        faults.append("the pages differ from time to time")
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
