// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/exitcodes.h"
#include "tests/helpers/self-extractor/sfxtest.h"
#include "tests/support/testfiles.h"
#include "tests/support/waiting.h"

#include <QProcess>
#include <QTemporaryDir>

#include <memory>

// The output of one run. Wine passes on only the low byte of an exit code.
struct Run
{
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;

    // The value that the packed program prints for `key`.
    QString value(const char *key) const;
};

// Assembles executables and runs them under Wine, in folders that are removed with the object.
class ModuleRun
{
public:
    ModuleRun() = default;
    ModuleRun(const ModuleRun &) = delete;
    ModuleRun &operator=(const ModuleRun &) = delete;
    ~ModuleRun();

    // Makes a Wine prefix if the environment names none, and starts Wine's services, which run until
    // the end of the object or waitForServersEnd(). Returns false if the tests cannot run.
    [[nodiscard]] bool setUp();
    // Waits until no Windows process is left, not even Wine's own server. The next program starts
    // the next server, which sees the same mounts as the program.
    [[nodiscard]] bool waitForServersEnd() const;
    // Creates the temporary folder again, empty. `name` may be chosen.
    [[nodiscard]] bool renewTemporaryFolder(const QString &name = QStringLiteral("temp"));

    // Changes the module for later runs: the full one, or the small one, which all runs begin with.
    void useFullModule(bool full);
    // The same for the small one that sees a Windows before 10, or the real one.
    void pretendOldWindows(bool old);
    // The same for one that sees a token with administrator's rights. It prints the access rights of
    // its folder, "rights=...".
    void pretendElevation(bool elevated);
    // The same for one to which each look at the clock takes a second.
    void pretendSlowness(bool slow);
    // The same for a full one that sees a scanner which looks into files for long when they are closed.
    void pretendSlowClosing(bool slow);
    // The name of the full module, beside the small one.
    static constexpr const char *fullModule = "/7zS2-full.sfx";
    // Gives the module of later runs this text as its resource SETTINGS, and makes it a program for
    // the console. It is the small module, or another one beside it.
    [[nodiscard]] bool prepareModule(const QByteArray &settings, bool forConsole = false,
                                     const QString &name = QString());
    const QByteArray &module() const { return m_module; }
    static QByteArray programBytes();
    static QByteArray starterBytes();
    static QByteArray blockFor(const QString &program);

    // The file that write() and assemble() make.
    QString producedFile() const { return path(QStringLiteral("made/produced one.exe")); }
    // Returns an empty text on failure.
    QString write(const QByteArray &bytes) const;
    QString assemble(const QByteArray &archive, const QString &program) const;
    QString assemble(const Tree &tree, const QString &program) const;
    // Packs only the test program, as main.exe.
    QString assembleProgram() const;

    // Sets environment and working folder for a Windows program.
    void prepare(QProcess &process) const;
    // Starts the file through the starter. The tail is passed unchanged, the options are the
    // starter's. Standard input stays open.
    std::unique_ptr<QProcess> start(const QString &file, const QString &tail = QString(),
                                    const QStringList &options = {}) const;
    // The Linux ids of running processes: those of produced files (the module itself), and those of
    // all programs from the temporary folder.
    QList<qint64> moduleProcesses() const;
    QList<qint64> programProcesses() const;
    // Those whose program lies in this folder.
    static QList<qint64> processesFrom(const QString &folder);
    // Kills processes that Wine was just starting from the temporary folder when their parent was
    // killed. Wine 8 leaves them waiting for ever, with the program's file in use. On Windows, such a
    // process either does not exist or belongs to the job, which ends it.
    void endHalfStarted() const;
    // Keeps a file open, so that other processes cannot delete it, until finish() is called.
    std::unique_ptr<QProcess> hold(const QString &file) const;
    // Keeps the unpacked main.exe of the next start open in the same way, so that others cannot
    // read it. It prints "held=1" then.
    std::unique_ptr<QProcess> seizeProgram() const;
    // Starts the file directly, so that the id of the process is the module's own.
    std::unique_ptr<QProcess> startDirectly(const QString &file,
                                            const QStringList &arguments) const;
    // Closes standard input and waits until the process ends.
    static Run finish(QProcess &process, int milliseconds = patience);
    // Waits until the output contains `text` this many times. Returns all of the output.
    static QByteArray waitForOutput(QProcess &process, const QByteArray &text, int times = 1,
                                    int milliseconds = patience);
    Run run(const QString &file, const QString &tail = QString(),
            const QStringList &options = {}) const;

    // The content of the temporary folder, with hidden entries.
    QStringList leftovers() const;
    // Returns true if the temporary folder has an entry that matches; slashes separate subfolders.
    bool hasTemporary(const QString &pattern) const;
    // A path below this object's folder.
    QString path(const QString &name) const { return m_folder.filePath(name); }
    // The folder in which programs are started. It is not the folder of the produced file.
    QString callersFolder() const { return m_folder.path(); }
    // The Linux path of the temporary folder.
    const QString &temporaryFolder() const { return m_temporary; }
    const QString &prefix() const { return m_prefix; }

private:
    [[nodiscard]] bool startServices();
    void useModule(const QString &name);

    QTemporaryDir m_folder;
    QTemporaryDir m_ownPrefix;
    QString m_prefix;
    QString m_temporary;
    QByteArray m_module;
    QProcess m_idle;
};

// Wine's name for an absolute Linux path.
QString windowsPath(const QString &path);
int lowByte(sfx::ExitCode code);
