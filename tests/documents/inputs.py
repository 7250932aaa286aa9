# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""The files that the documents' commands work with. The example application plays every application."""

import os
import shutil
import subprocess
import zipfile

TOOLS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "tools")

# Folders with an application: the name of the folder, and that of its program.
APPLICATIONS = {"my-application": "my.exe", "my-qt-application": "my.exe", "my-tool": "tool.exe"}


def programs(folder):
    """The paths of all .exe files below the folder, relative to it."""
    return {os.path.relpath(os.path.join(place, name), folder)
            for place, _, names in os.walk(folder) for name in names if name.endswith(".exe")}


class Stock:
    """Makes the inputs once; each block gets copies."""

    def __init__(self, folder, top, tools, hello):
        """TOOLS are the programs by the names that the commands use."""
        self.folder = os.path.join(folder, "inputs")
        self.programs = os.path.join(folder, "bin")
        self.top, self.cli, self.hello = top, tools["kestrelpack-cli"], hello
        os.mkdir(self.folder)
        os.mkdir(self.programs)
        for name, program in tools.items():
            os.symlink(program, os.path.join(self.programs, name))
        self.make_applications()
        self.make_runtimes()
        self.make_certificates()
        self.run([self.cli, "--quiet", "-o", os.path.join(self.folder, "out"), hello])

    def run(self, command):
        return subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT).stdout

    def make_applications(self):
        for name, program in APPLICATIONS.items():
            shutil.copytree(self.hello, os.path.join(self.folder, name))
            os.rename(os.path.join(self.folder, name, "hello.exe"), os.path.join(self.folder, name, program))
        shutil.copy(os.path.join(self.top, "examples/hello/hello.ico"), os.path.join(self.folder, "clock.ico"))

    def make_runtimes(self):
        """What Java and Python bring."""
        os.makedirs(os.path.join(self.folder, "windows-jdk/jmods"))
        for name in ("windows-jdk/jmods/java.base.jmod", "clock.jar", "report_tool.py", "package.json"):
            with open(os.path.join(self.folder, name), "w", encoding="utf-8"):
                pass
        with zipfile.ZipFile(os.path.join(self.folder, "python-3.13.9-embed-amd64.zip"), "w") as archive:
            archive.write(os.path.join(self.hello, "hello.exe"), "python.exe")
            archive.write(os.path.join(self.hello, "hello.exe"), "pythonw.exe")
            archive.writestr("python313._pth", "python313.zip\n.\n")

    def make_certificates(self):
        def path(name):
            return os.path.join(self.folder, name)

        self.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=Tests",
                  "-addext", "extendedKeyUsage=codeSigning", "-keyout", path("key.pem"),
                  "-out", path("certificate.pem")])
        shutil.copy(path("certificate.pem"), path("authority.pem"))

    def place_into(self, folder):
        shutil.copytree(self.folder, folder)

    def environment(self, work):
        """Other people's tools are played by scripts, if they are large; see tools/."""
        return {**os.environ, "PATH": os.pathsep.join([TOOLS, self.programs, os.environ["PATH"]]),
                "PLAYED_PROGRAM": os.path.join(self.hello, "hello.exe"), "TMPDIR": work,
                "LC_ALL": "C.UTF-8"}

    def is_whole(self, product):
        return subprocess.run([self.cli, "verify", product], check=False, stdout=subprocess.DEVNULL).returncode == 0

    def help(self):
        return self.run([self.cli, "--language", "en", "--help"]).decode()
