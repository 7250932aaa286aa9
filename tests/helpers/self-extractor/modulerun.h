// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/exitcodes.h"
#include "tests/helpers/self-extractor/sfxtest.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

// What came out of one run; Wine passes on the low byte of an exit code only.
struct Run
{
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;

    // What the packed program tells as `key`.
    QString value(const char *key) const;
};

// Puts executables together and runs them under Wine, in folders that go with the object.
class ModuleRun
{
public:
    // Makes a Wine prefix if the environment names none. False: the tests cannot run.
    [[nodiscard]] bool setUp();
    // Waits until no Windows process is left, not even Wine's own server. The next one is started
    // by the next program, and sees the same mounts as that.
    [[nodiscard]] bool waitForServersEnd() const;
    // Makes the temporary folder new and empty; its name may be chosen.
    [[nodiscard]] bool renewTemporaryFolder(const QString &name = QStringLiteral("temp"));

    // Takes another module from now on: one that finds a Windows before 10, or the real one again.
    void pretendOldWindows(bool old);
    const QByteArray &module() const { return m_module; }
    static QByteArray programBytes();
    static QByteArray starterBytes();
    static QByteArray blockFor(const QString &program);

    // The file that write() and assemble() make.
    QString producedFile() const { return path(QStringLiteral("made/produced one.exe")); }
    // Empty: it failed.
    QString write(const QByteArray &bytes) const;
    QString assemble(const QByteArray &archive, const QString &program) const;
    QString assemble(const Tree &tree, const QString &program) const;
    // The packed test program alone, as main.exe.
    QString assembleProgram() const;

    // Environment and working folder for a Windows program.
    void prepare(QProcess &process) const;
    // Starts the file through the starter, with the tail as it stands and the starter's own
    // options. Standard input stays open.
    std::unique_ptr<QProcess> start(const QString &file, const QString &tail = QString(),
                                    const QStringList &options = {}) const;
    // The Linux ids of the running processes of produced files (the module's own), and of all
    // programs from the temporary folder.
    QList<qint64> moduleProcesses() const;
    QList<qint64> programProcesses() const;
    // Keeps a file open, not to be deleted by others, until the process is finish()ed.
    std::unique_ptr<QProcess> hold(const QString &file) const;
    // Starts the file directly, so that the process' id is the module's own.
    std::unique_ptr<QProcess> startDirectly(const QString &file,
                                            const QStringList &arguments) const;
    // Closes standard input and waits for the end.
    static Run finish(QProcess &process, int milliseconds = patience);
    // Waits until the output has `text` in it so many times; returns all of the output.
    static QByteArray waitForOutput(QProcess &process, const QByteArray &text, int times = 1,
                                    int milliseconds = patience);
    Run run(const QString &file, const QString &tail = QString(),
            const QStringList &options = {}) const;

    // What is in the temporary folder, hidden entries included.
    QStringList leftovers() const;
    // Whether the temporary folder has an entry of this pattern, subfolders by slashes.
    bool hasTemporary(const QString &pattern) const;
    // A path below this object's own folder.
    QString path(const QString &name) const { return m_folder.filePath(name); }
    // Where programs are started, another one than the produced file's.
    QString callersFolder() const { return m_folder.path(); }
    // The temporary folder as Linux names it.
    const QString &temporaryFolder() const { return m_temporary; }
    const QString &prefix() const { return m_prefix; }

private:
    QTemporaryDir m_folder;
    QTemporaryDir m_ownPrefix;
    QString m_prefix;
    QString m_temporary;
    QByteArray m_module;
};

// An absolute Linux path as Wine names it.
QString windowsPath(const QString &path);
QByteArray contentOf(const QString &path);
int lowByte(sfx::ExitCode code);
