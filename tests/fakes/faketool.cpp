// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Plays a helper program, under any name it is copied to. The environment variable FAKE_<its file
// name up to the first dot, in capitals>, such as FAKE_7ZR, holds its commands, one on each line.
// It runs them in order. Without the variable it does nothing and succeeds.
//
//   print TEXT, complain TEXT   to standard output, to standard error; "\n" in TEXT is a line feed
//   flood MEBIBYTES, flood-error MEBIBYTES
//                               lines of text, to standard output or to standard error
//   record FILE                 appends the arguments to FILE, one on each line, and an empty line
//   write FILE SIZE             makes FILE with SIZE bytes of a pattern; "@3" means argument 3
//   copy FROM TO, remove FILE
//   sleep MILLISECONDS
//   wait FILE                   until FILE exists
//   if ARGUMENT                 goes on if ARGUMENT is one of the arguments, otherwise ends with 0
//   unless ARGUMENT             goes on if ARGUMENT is no argument, otherwise ends with 0
//   crash, exit CODE

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace {

using Words = std::vector<std::string>;

std::string environmentNameFor(const char *programPath)
{
    std::string name = std::filesystem::path(programPath).filename().string();
    name = name.substr(0, name.find('.'));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return "FAKE_" + name;
}

std::string unescaped(std::string text)
{
    for (std::size_t at = 0; (at = text.find("\\n", at)) != std::string::npos; ++at) {
        text.replace(at, 2, 1, '\n');
    }
    return text;
}

void writePattern(const std::string &path, unsigned long long size)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    std::string block(65536, '\0');
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = static_cast<char>((i * 7 + i / 251) & 0xFF);
    }
    while (size > 0) {
        const auto count = std::min<unsigned long long>(size, block.size());
        file.write(block.data(), static_cast<std::streamsize>(count));
        size -= count;
    }
}

void flood(std::ostream &stream, int mebibytes)
{
    std::string block;
    while (block.size() < 1048576) {
        block += " 12% 345 + a folder/with a file in it.bin\n";
    }
    for (int i = 0; i < mebibytes; ++i) {
        stream << block << std::flush;
    }
}

[[noreturn]] void crash()
{
#ifdef _WIN32
    std::_Exit(static_cast<int>(0xC0000005)); // a real access violation would call the debugger
#else
    std::abort();
#endif
}

class FakeTool
{
public:
    explicit FakeTool(Words arguments) : m_arguments(std::move(arguments)) {}

    int run(const std::string &script) const
    {
        std::istringstream lines(script);
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words(line);
            std::string command;
            words >> command >> std::ws;
            std::string rest;
            std::getline(words, rest);
            if (command == "exit") {
                return std::stoi(rest);
            }
            if ((command == "if" && !hasArgument(rest))
                || (command == "unless" && hasArgument(rest))) {
                return 0;
            }
            obey(command, rest);
        }
        return 0;
    }

private:
    void obey(const std::string &command, const std::string &rest) const
    {
        if (command == "print") {
            std::cout << unescaped(rest) << std::flush;
        } else if (command == "complain") {
            std::cerr << unescaped(rest) << std::flush;
        } else if (command == "flood") {
            flood(std::cout, std::stoi(rest));
        } else if (command == "flood-error") {
            flood(std::cerr, std::stoi(rest));
        } else if (command == "record") {
            record(rest);
        } else if (command == "write") {
            const auto operands = split(rest);
            writePattern(operands.at(0), std::stoull(operands.at(1)));
        } else if (command == "copy") {
            const auto operands = split(rest);
            // Not copy_file: in GCC 12's library for Windows it treats files as text.
            std::ofstream(operands.at(1), std::ios::binary | std::ios::trunc)
                << std::ifstream(operands.at(0), std::ios::binary).rdbuf();
        } else if (command == "remove") {
            std::filesystem::remove(split(rest).at(0));
        } else if (command == "sleep") {
            std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(rest)));
        } else if (command == "wait") {
            while (!std::filesystem::exists(rest)) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        } else if (command == "crash") {
            crash();
        } else if (command != "if" && command != "unless" && !command.empty()) {
            std::cerr << "fake tool: no such command: " << command << std::endl;
            std::exit(99);
        }
    }

    // Words are separated by blanks. "@N" is argument N of this run.
    Words split(const std::string &text) const
    {
        std::istringstream stream(text);
        Words words;
        for (std::string word; stream >> word;) {
            words.push_back(word[0] == '@' ? m_arguments.at(std::stoul(word.substr(1))) : word);
        }
        return words;
    }

    void record(const std::string &path) const
    {
        std::ofstream file(path, std::ios::binary | std::ios::app);
        for (std::size_t i = 1; i < m_arguments.size(); ++i) {
            file << m_arguments[i] << '\n';
        }
        file << '\n';
    }

    bool hasArgument(const std::string &text) const
    {
        return std::find(m_arguments.begin(), m_arguments.end(), text) != m_arguments.end();
    }

    Words m_arguments; // the program's own path first
};

} // namespace

int main(int argc, char *argv[])
{
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY); // so that a line feed stays a line feed
    _setmode(_fileno(stderr), _O_BINARY);
#endif
    const char *script = std::getenv(environmentNameFor(argv[0]).c_str());
    return FakeTool(Words(argv, argv + argc)).run(script ? script : "");
}
