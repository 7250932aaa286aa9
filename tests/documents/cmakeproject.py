# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
"""Runs the CMake code of the documents, in a project with one Windows program, tern."""

import os
import shutil
import subprocess

BEGIN = """cmake_minimum_required(VERSION 3.21)
project(Tern VERSION 2.5.1 LANGUAGES CXX RC)
"""
FIND = "find_package(Kestrelpack REQUIRED CONFIG NO_CMAKE_FIND_ROOT_PATH)\n"
PROGRAM = "add_executable(tern main.cpp tern.rc)\n"


def write(folder, name, text):
    with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
        file.write(text)


def make_project(folder, code, top):
    """What the code itself does not do is done before it."""
    os.makedirs(os.path.join(folder, "texts"))
    write(folder, "texts/words.txt", "one two\n")
    write(folder, "main.cpp", "int main() { return 0; }\n")
    write(folder, "tern.rc", '1 ICON "tern.ico"\n')
    shutil.copy(os.path.join(top, "examples/hello/hello.ico"), os.path.join(folder, "tern.ico"))
    write(folder, "windows.cmake", "set(CMAKE_SYSTEM_NAME Windows)\n"
          "set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)\nset(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)\n")
    write(folder, "CMakeLists.txt", BEGIN + ("" if "find_package" in code else FIND)
          + ("" if "add_executable" in code else PROGRAM) + code)


def commands(code, package):
    """A command that signs is not run: it needs a certificate."""
    yield ["cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DCMAKE_TOOLCHAIN_FILE=windows.cmake",
           f"-DCMAKE_PREFIX_PATH={package}"]
    if "kestrelpack_add_portable" in code and "SIGN" not in code:
        yield ["cmake", "--build", "build", "--target", "tern-portable"]


def run(folder, code, top, package, environment):
    """Configures and packs, with the package in the build folder of Kestrelpack. Returns the exit code and the output."""
    make_project(folder, code, top)
    output = b""
    for command in commands(code, package):
        result = subprocess.run(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=600, check=False)
        output += result.stdout
        if result.returncode != 0:
            return result.returncode, output
    return 0, output
