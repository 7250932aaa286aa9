#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""action.py ACTION KESTRELPACK-CLI HELLO-FOLDER: runs the steps of the composite action as a runner would.

The release is a folder of this machine. What the steps start that would change the machine (sudo, apt-get) or is
part of Windows runners only (cygpath, unzip) is a script in PATH that does the like in the test's folder.
"""

import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile

try:
    import yaml
except ImportError:
    print("python3-yaml is not installed")
    sys.exit(77)

action = yaml.safe_load(pathlib.Path(sys.argv[1]).read_text("utf-8"))
program, hello = (pathlib.Path(path).resolve() for path in sys.argv[2:4])
version = "9.8.7.6"


def check(claim, text):
    if not claim:
        sys.exit(f"FAIL: {text}")


def script(path, text):
    path.write_text("#!/bin/sh\nset -eu\n" + text)
    path.chmod(0o755)


class Runner:
    """A machine of a build server: its folders, its tools, its release."""

    def __init__(self, work, system):
        self.work, self.system = work, system
        self.tools, self.temp, self.release = work / "tools", work / "temp ü", work / "release"
        for folder in (self.tools, self.temp, self.release):
            folder.mkdir(parents=True)
        script(self.tools / "sudo", '[ "$1" = apt-get ]\nexec "$@"\n')
        script(self.tools / "id", "echo 1000\n")  # not root, so the step has to ask for it
        # The package of the test is the program itself.
        script(self.tools / "apt-get", f'echo "apt-get $*" >>"{work}/calls"\n'
               f'for last; do :; done\ncase $last in ./*.deb) install -m 755 "$last" "{self.tools}/kestrelpack-cli" ;; esac\n')
        script(self.tools / "cygpath", '[ "$1" = --windows ]\nprintf "%s\\n" "$2"\n')
        script(self.tools / "unzip", 'for last; do :; done\nexec cmake -E tar xf "$last"\n')
        self.path_file, self.output_file = work / "path", work / "output"
        if system == "Linux":
            self.file = self.release / f"kestrelpack-cli_{version}_amd64.deb"
            shutil.copy(program, self.file)
        else:
            self.file = self.release / f"Kestrelpack-{version}-windows-x64.zip"
            with zipfile.ZipFile(self.file, "w") as archive:
                entry = zipfile.ZipInfo(f"Kestrelpack-{version}-windows-x64/kestrelpack-cli")
                entry.external_attr = 0o100755 << 16
                archive.writestr(entry, program.read_bytes())
        self.sum = hashlib.sha256(self.file.read_bytes()).hexdigest()

    def run(self, **given):
        """Runs the steps with the inputs. Returns the text and the exit code of the first that fails, or of the last."""
        inputs = {name: str(given.pop(name, one.get("default", ""))) for name, one in action["inputs"].items()}
        check(not given, f"the action has no inputs {given}")
        self.path_file.write_text("")
        self.output_file.write_text("")
        text = ""
        for step in action["runs"]["steps"]:
            check(step["shell"] == "bash", f"{step['name']} is a step for bash")
            check("${{" not in step["run"], f"{step['name']}: inputs come in as variables, never as text of the script")
            environment = dict(os.environ, RUNNER_OS=self.system, RUNNER_TEMP=str(self.temp),
                               GITHUB_PATH=str(self.path_file), GITHUB_OUTPUT=str(self.output_file))
            added = self.path_file.read_text().splitlines()
            environment["PATH"] = os.pathsep.join([*added, str(self.tools), environment["PATH"]])
            for name, value in step.get("env", {}).items():
                environment[name] = re.sub(r"\$\{\{ inputs\.(\w+) \}\}", lambda found: inputs[found[1]], value)
            result = subprocess.run(["bash", "--noprofile", "--norc", "-e", "-o", "pipefail", "-c", step["run"]],
                                    cwd=self.work, env=environment, capture_output=True, text=True)
            text += result.stdout + result.stderr
            if result.returncode != 0:
                break
        return text, result.returncode

    def arguments(self, **more):
        return {"version": version, "address": self.release.as_uri(), "sha256": self.sum, "folder": hello,
                "output": "dist ü/my app.exe", **more}


def packs(runner, what, expected, **more):
    text, code = runner.run(**runner.arguments(**more))
    check(code == 0, f"{what}: {code} {text}")
    outputs = dict(line.split("=", 1) for line in runner.output_file.read_text().splitlines())
    product = runner.work / outputs["file"]
    report = subprocess.run([program, "inspect", product], capture_output=True, text=True, check=True).stdout
    for line in expected:
        check(re.search(line, report), f"{what}: no line {line} in\n{report}")
    print(f"ok: {runner.system}: {what}")


def fails(runner, what, message, **more):
    text, code = runner.run(**runner.arguments(**more))
    check(code != 0 and message in text, f"{what}: {code} {text}")
    check(runner.output_file.read_text() == "", f"{what}: an output in spite of the failure")
    print(f"ok: {runner.system}: {what}")


check(action["runs"]["using"] == "composite", "the action is composite")
check(action["outputs"]["file"]["value"] == "${{ steps.pack.outputs.file }}", "the output comes from the step pack")
check([step.get("id") for step in action["runs"]["steps"]].count("pack") == 1, "there is a step pack")
for name in action["inputs"]:
    used = any(f"${{{{ inputs.{name} }}}}" in str(step["env"]) for step in action["runs"]["steps"])
    check(used, f"the input {name} is used")

with tempfile.TemporaryDirectory() as name:
    for system in ("Linux", "Windows"):
        runner = Runner(pathlib.Path(name) / system, system)
        packs(runner, "packs a folder", [r"starts +hello\.exe", r"kind +console"])
        packs(runner, "passes main program and options on", [r"title +two words; \$HOME"], main="hello.exe",
              options="--title=two words; $HOME\n--level=fastest\n", sha256=runner.sum.upper())
        (runner.work / "dist ü/my app.exe").unlink()
        fails(runner, "another check sum", "which is not the one in sha256", sha256="0" * 64)
        fails(runner, "a release that is not there", "curl", version="0.0.0.1")
        fails(runner, "a folder that is not there", "nowhere", folder="/nowhere")
        fails(runner, "an output that is no program", "does not end in .exe", output="dist")
        if system == "Linux":
            calls = (runner.work / "calls").read_text()
            check("apt-get install -q -y" in calls, f"the package was not installed: {calls}")
    fails(Runner(pathlib.Path(name) / "macOS", "macOS"), "a system without Kestrelpack", "runs on Linux and Windows")
