#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""check-bill.py SCRIPT: runs distribution/bill-of-materials twice and checks what it writes."""

import hashlib
import json
import subprocess
import sys

script = sys.argv[1]


def bill():
    command = [script, "1.2.3", "0123abcd", "1790000000", script]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


text = bill()
assert text == bill(), "the same input gives the same text"
data = json.loads(text)
assert data["spdxVersion"] == "SPDX-2.3"
assert data["creationInfo"]["created"] == "2026-09-21T14:13:20Z"
parts = {part["SPDXID"]: part for part in data["packages"]}
assert len(parts) == len(data["packages"]), "each part has its own name"
for part in parts.values():
    assert part["versionInfo"], f"{part['name']} has a version"
    assert part["licenseConcluded"], f"{part['name']} has a licence"
for name in ["qt", "sevenzip", "zstd", "mingw-w64", "gcc", "nanosvg"]:
    assert f"SPDXRef-{name}" in parts, f"{name} is listed"
(file,) = data["files"]
with open(script, "rb") as stream:
    assert file["checksums"][0]["checksumValue"] == hashlib.sha256(stream.read()).hexdigest()
names = set(parts) | {file["SPDXID"], "SPDXRef-DOCUMENT"}
related = set()
for relation in data["relationships"]:
    related |= {relation["spdxElementId"], relation["relatedSpdxElement"]}
assert related == names, f"every part is related, and nothing else: {related ^ names}"
