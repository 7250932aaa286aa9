#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""manifests.py WRITE-MANIFESTS: fills the templates of winget and scoop, and reads what comes out."""

import hashlib
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

try:
    import yaml
except ImportError:
    print("python3-yaml is not installed")
    sys.exit(77)

write_manifests = sys.argv[1]
version = "3.4.5.6"
folder_in_zip = f"Kestrelpack-{version}-windows-x64"
address = "https://downloads.example/kestrelpack/3.4.5.6"


def check(claim, text):
    if not claim:
        sys.exit(f"FAIL: {text}")


def run(*arguments):
    return subprocess.run([write_manifests, *map(str, arguments)], capture_output=True, text=True)


def check_winget(folder, zip_file, sum_of_zip):
    place = folder / "winget/manifests/h/Halvorsoft/Kestrelpack" / version
    files = {path.name: yaml.safe_load(path.read_text("utf-8")) for path in place.iterdir()}
    prefix = "Halvorsoft.Kestrelpack"
    check(set(files) == {f"{prefix}{part}.yaml" for part in ("", ".installer", ".locale.en-US", ".locale.zh-CN")},
          f"winget has the files {sorted(files)}")
    for name, manifest in files.items():
        check(manifest["PackageIdentifier"] == prefix, f"{name}: identifier")
        check(manifest["PackageVersion"] == version, f"{name}: the version is the text {version}")
        check(manifest["ManifestVersion"] == "1.6.0", f"{name}: manifest version")
        kind = manifest["ManifestType"]
        first_line = (place / name).read_text("utf-8").splitlines()[0]
        check(f"winget-manifest.{kind}.1.6.0.schema" in first_line, f"{name}: the schema is that of {kind}")
    check(files[f"{prefix}.yaml"]["DefaultLocale"] == files[f"{prefix}.locale.en-US.yaml"]["PackageLocale"],
          "the default locale is the one that is there")
    for name in ("Publisher", "PackageName", "License", "ShortDescription"):
        check(files[f"{prefix}.locale.en-US.yaml"][name], f"the locale has {name}")
    check(len(files[f"{prefix}.locale.en-US.yaml"]["ShortDescription"]) <= 256, "the description is short")
    installer = files[f"{prefix}.installer.yaml"]
    check(installer["InstallerType"] == "zip" and installer["NestedInstallerType"] == "portable", "installer type")
    for nested in installer["NestedInstallerFiles"]:
        path = nested["RelativeFilePath"].replace("\\", "/")
        check(path in zip_file.namelist(), f"{path} is in the zip file")
    (one,) = installer["Installers"]
    check(one["InstallerUrl"] == f"{address}/{folder_in_zip}.zip", f"address {one['InstallerUrl']}")
    check(one["InstallerSha256"] == sum_of_zip.upper(), "SHA-256 in capitals")
    check(one["Architecture"] == "x64", "architecture")


def check_scoop(folder, zip_file, sum_of_zip):
    manifest = json.loads((folder / "scoop/kestrelpack.json").read_text("utf-8"))
    check(manifest["version"] == version, "scoop: version")
    check(all(manifest[key] for key in ("description", "homepage", "license")), "scoop: what every manifest has")
    one = manifest["architecture"]["64bit"]
    check(one == {"url": f"{address}/{folder_in_zip}.zip", "hash": sum_of_zip, "extract_dir": folder_in_zip},
          f"scoop: {one}")
    for name in [manifest["bin"], manifest["shortcuts"][0][0]]:
        check(f"{folder_in_zip}/{name}" in zip_file.namelist(), f"scoop: {name} is in the zip file")
    found = re.search(manifest["checkver"]["regex"], f'<a href="{version}/{folder_in_zip}.zip">')
    check(found and found[1] == version, f"scoop: the version on a page: {found}")
    later = json.dumps(manifest["autoupdate"]["architecture"]["64bit"]).replace("$version", version)
    check(json.loads(later) == {**one, "hash": {"url": "$baseurl/SHA256SUMS"}}, f"scoop: a later release: {later}")


def check_short_version(work):
    """YAML takes 3.4 for a number, unless it is in quotes."""
    zip_path = work / "Kestrelpack-3.4-windows-x64.zip"
    zip_path.write_bytes(b"")
    result = run("3.4", "https://downloads.example/latest", zip_path, work / "short")
    check(result.returncode == 0, result.stderr)
    for path in (work / "short/winget").rglob("*.yaml"):
        manifest = yaml.safe_load(path.read_text("utf-8"))
        check(manifest["PackageVersion"] == "3.4", f"{path.name}: the version is the text 3.4")
    print("ok: a version of two numbers")


def refuses(what, message, *arguments):
    result = run(*arguments)
    check(result.returncode == 1 and message in result.stderr, f"{what}: {result.returncode} {result.stderr}")
    print(f"ok: {what} is refused")


with tempfile.TemporaryDirectory() as name:
    work = pathlib.Path(name)
    zip_path = work / f"{folder_in_zip}.zip"
    with zipfile.ZipFile(zip_path, "w") as zip_file:
        for program in ("Kestrelpack.exe", "kestrelpack-cli.exe"):
            zip_file.writestr(f"{folder_in_zip}/{program}", "program")
    sum_of_zip = hashlib.sha256(zip_path.read_bytes()).hexdigest()

    out = work / "out ü"
    result = run(version, address + "/", zip_path, out)
    check(result.returncode == 0, result.stderr)
    for path in out.rglob("*"):
        if path.is_file():
            check(not re.search(r"@\w+@", path.read_text("utf-8")), f"{path} has a placeholder")
    with zipfile.ZipFile(zip_path) as zip_file:
        check_winget(out, zip_file, sum_of_zip)
        check_scoop(out, zip_file, sum_of_zip)
    print("ok: the manifests of winget and scoop")

    check_short_version(work)
    refuses("a version that is none", "is no version", "1.0 beta", address, zip_path, out)
    refuses("an address without https", "is no address", version, "http://downloads.example", zip_path, out)
    refuses("a zip file that is not there", "there is no file", version, address, work / "x-3.4.5.6-y.zip", out)
    refuses("a zip file of another version", "is not a zip file of version", "3.4.5.7", address, zip_path, out)
    refuses("an argument too few", "usage", version, address, zip_path)
