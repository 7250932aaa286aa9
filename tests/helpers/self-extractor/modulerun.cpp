// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/modulerun.h"

#include "tests/helpers/self-extractor/preparedmodule.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <csignal>
#include <functional>

#include <glob.h>

namespace {

// Processes with a command line for which `matches` returns true. There are zeros between the
// arguments.
QList<qint64> processesWith(const std::function<bool(const QString &)> &matches)
{
    QList<qint64> ids;
    for (const QString &name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        const qint64 id = name.toLongLong();
        const QByteArray line = contentOf(QStringLiteral("/proc/%1/cmdline").arg(id));
        if (id > 0 && matches(QString::fromUtf8(line))) {
            ids += id;
        }
    }
    return ids;
}

// Wine gives its processes their Windows command line.
QList<qint64> processesOf(const QString &pathBegin)
{
    return processesWith([&](const QString &line) { return line.startsWith(pathBegin); });
}

} // namespace

QString Run::value(const char *key) const
{
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith(QByteArray(key) + '=')) {
            return QString::fromUtf8(line.mid(line.indexOf('=') + 1)).remove(u'\r');
        }
    }
    return QString();
}

QString windowsPath(const QString &path)
{
    return QStringLiteral("Z:") + QString(path).replace(u'/', u'\\');
}

int lowByte(sfx::ExitCode code)
{
    return static_cast<int>(static_cast<quint32>(code) & 0xff);
}

ModuleRun::~ModuleRun()
{
    m_idle.closeWriteChannel();
    m_idle.waitForFinished(patience);
}

// Without this, Wine starts its services for each program and ends them after it. One start of
// thousands fails: winedevice.exe crashes in ntoskrnl.exe, and a line about it comes among the errors
// of the program.
bool ModuleRun::startServices()
{
    prepare(m_idle);
    m_idle.setStandardErrorFile(QProcess::nullDevice());
    m_idle.start(QStringLiteral("wine"), {QStringLiteral(KESTRELPACK_TEST_IDLE_PROGRAM)});
    return !waitForOutput(m_idle, "idle=1").isEmpty();
}

bool ModuleRun::setUp()
{
    m_prefix = qEnvironmentVariable("KESTRELPACK_TEST_WINEPREFIX");
    m_module = contentOf(QStringLiteral(KESTRELPACK_TEST_MODULE));
    if (m_module.isEmpty() || programBytes().isEmpty()
        || !QDir().mkpath(path(QStringLiteral("made")))) {
        return false;
    }
    if (m_prefix.isEmpty()) {
        m_prefix = m_ownPrefix.path();
        QProcess boot;
        prepare(boot);
        boot.start(QStringLiteral("wine"), {QStringLiteral("wineboot"), QStringLiteral("-i")});
        if (!boot.waitForFinished(patience)) {
            return false;
        }
    }
    return startServices();
}

void ModuleRun::useModule(const QString &name)
{
    const QString module = QStringLiteral(KESTRELPACK_TEST_MODULE);
    m_module = contentOf(name.isEmpty() ? module : module.section(u'/', 0, -2) + name);
}

void ModuleRun::useFullModule(bool full)
{
    useModule(full ? QString::fromLatin1(fullModule) : QString());
}

void ModuleRun::pretendOldWindows(bool old)
{
    useModule(old ? QStringLiteral("/old-windows.sfx") : QString());
}

void ModuleRun::pretendElevation(bool elevated)
{
    useModule(elevated ? QStringLiteral("/elevated.sfx") : QString());
}

void ModuleRun::pretendSlowness(bool slow)
{
    useModule(slow ? QStringLiteral("/slow.sfx") : QString());
}

void ModuleRun::pretendSlowClosing(bool slow)
{
    useModule(slow ? QStringLiteral("/slow-closing.sfx") : QString());
}

bool ModuleRun::prepareModule(const QByteArray &settings, bool forConsole, const QString &name)
{
    useModule(name);
    m_module = preparedModule(m_module, settings, forConsole);
    return !m_module.isEmpty();
}

bool ModuleRun::waitForServersEnd() const
{
    // Debian installs it outside of the path, for the scripts that choose a version.
    QString server = QStandardPaths::findExecutable(QStringLiteral("wineserver"));
    if (server.isEmpty()) {
        server = QStringLiteral("/usr/lib/wine/wineserver");
    }
    // After a program of it was killed, a Wine desktop may stay, and its server too. No other test
    // uses the prefix now, so the server is ended.
    QProcess end;
    prepare(end);
    end.start(server, {QStringLiteral("-k")});
    QProcess process;
    prepare(process);
    if (!end.waitForFinished(patience)) { // its exit code tells only whether a server was running
        return false;
    }
    process.start(server, {QStringLiteral("-w")});
    return process.waitForFinished(patience) && process.exitCode() == 0;
}

bool ModuleRun::renewTemporaryFolder(const QString &name)
{
    if (!m_temporary.isEmpty()) {
        QDir(m_temporary).removeRecursively();
    }
    m_temporary = path(name);
    return QDir().mkpath(m_temporary);
}

QByteArray ModuleRun::programBytes()
{
    return contentOf(QStringLiteral(KESTRELPACK_TEST_PROGRAM));
}

QByteArray ModuleRun::starterBytes()
{
    return contentOf(QStringLiteral(KESTRELPACK_TEST_STARTER));
}

QByteArray ModuleRun::blockFor(const QString &program)
{
    const QString base = program.section(u'.', 0, 0);
    return QStringLiteral(";!@Install@!UTF-8!\nTitle=\"%1 Portable\"\nBeginPrompt=\"%1\"\n"
                          "Progress=\"yes\"\nRunProgram=\"%2\"\nInstallPath=\"%%T\\%1\"\n"
                          "GUIMode=\"2\"\nSilent=\"0\"\nOverwrite=\"1\"\n;!@InstallEnd@!\n")
        .arg(base, program)
        .toUtf8();
}

QString ModuleRun::write(const QByteArray &bytes) const
{
    QFile file(producedFile());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        return QString();
    }
    return file.fileName();
}

QString ModuleRun::assemble(const QByteArray &archive, const QString &program) const
{
    return archive.isEmpty() ? QString() : write(m_module + blockFor(program) + archive);
}

QString ModuleRun::assemble(const Tree &tree, const QString &program) const
{
    return assemble(packTree(tree, {QStringLiteral("-mx=1")}), program);
}

QString ModuleRun::assembleProgram() const
{
    return assemble(Tree{{QStringLiteral("main.exe"), programBytes()}}, QStringLiteral("main.exe"));
}

void ModuleRun::prepare(QProcess &process) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("WINEPREFIX"), m_prefix);
    environment.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    environment.insert(QStringLiteral("WINEDLLOVERRIDES"), QStringLiteral("mscoree,mshtml="));
    environment.remove(QStringLiteral("DISPLAY"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(callersFolder());
}

// Wine's loader would change the quoting, and it accepts only lines that the system's shell
// accepts. So a Windows program starts the file. It reads the line and the temporary folder from a
// file.
std::unique_ptr<QProcess> ModuleRun::start(const QString &file, const QString &tail,
                                           const QStringList &options) const
{
    static int number = 0;
    const QString tailFile = path(QStringLiteral("tail-%1").arg(++number));
    QFile out(tailFile);
    if (!out.open(QIODevice::WriteOnly) || out.write(tail.toUtf8()) < 0) {
        return nullptr;
    }
    out.close();
    auto process = std::make_unique<QProcess>();
    prepare(*process);
    process->start(QStringLiteral("wine"),
                   QStringList{QStringLiteral(KESTRELPACK_TEST_STARTER),
                               QStringLiteral("--temp=") + windowsPath(m_temporary)}
                       + options + QStringList{windowsPath(file), windowsPath(tailFile)});
    return process;
}

std::unique_ptr<QProcess> ModuleRun::startDirectly(const QString &file,
                                                   const QStringList &arguments) const
{
    auto process = std::make_unique<QProcess>();
    prepare(*process);
    process->start(QStringLiteral("wine"), QStringList{file} + arguments);
    return process;
}

std::unique_ptr<QProcess> ModuleRun::hold(const QString &file) const
{
    auto process = std::make_unique<QProcess>();
    prepare(*process);
    process->start(QStringLiteral("wine"),
                   {QStringLiteral(KESTRELPACK_TEST_STARTER),
                    QStringLiteral("--hold=") + windowsPath(file)});
    return waitForOutput(*process, "held=1").isEmpty() ? nullptr : std::move(process);
}

std::unique_ptr<QProcess> ModuleRun::seizeProgram() const
{
    auto process = std::make_unique<QProcess>();
    prepare(*process);
    process->start(QStringLiteral("wine"),
                   {QStringLiteral(KESTRELPACK_TEST_STARTER),
                    QStringLiteral("--seize=") + windowsPath(m_temporary)});
    return process;
}

QByteArray ModuleRun::waitForOutput(QProcess &process, const QByteArray &text, int times,
                                    int milliseconds)
{
    QByteArray output;
    while (output.count(text) < times) {
        if (!process.waitForReadyRead(milliseconds)) {
            return QByteArray();
        }
        output += process.readAllStandardOutput();
    }
    return output;
}

QList<qint64> ModuleRun::moduleProcesses() const
{
    return processesOf(windowsPath(producedFile()).chopped(4)); // without ".exe"
}

QList<qint64> ModuleRun::programProcesses() const
{
    return processesFrom(m_temporary);
}

QList<qint64> ModuleRun::processesFrom(const QString &folder)
{
    return processesOf(windowsPath(folder) + u'\\');
}

void ModuleRun::endHalfStarted() const
{
    const QString program = QChar(u'\0') + windowsPath(m_temporary) + u'\\';
    const QList<qint64> ids = processesWith([&](const QString &line) {
        return line.section(u'\0', 0, 0).contains(u"/wine") && line.contains(program);
    });
    for (const qint64 id : ids) {
        kill(static_cast<pid_t>(id), SIGKILL);
    }
}

Run ModuleRun::finish(QProcess &process, int milliseconds)
{
    Run result;
    process.closeWriteChannel();
    if (process.state() == QProcess::NotRunning || process.waitForFinished(milliseconds)) {
        result.exitCode = process.exitCode();
    }
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    return result;
}

Run ModuleRun::run(const QString &file, const QString &tail, const QStringList &options) const
{
    const std::unique_ptr<QProcess> process = start(file, tail, options);
    return process != nullptr ? finish(*process) : Run();
}

QStringList ModuleRun::leftovers() const
{
    return QDir(m_temporary)
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

bool ModuleRun::hasTemporary(const QString &pattern) const
{
    glob_t found{};
    const QString path = m_temporary + u'/' + pattern;
    const bool has = glob(QFile::encodeName(path).constData(), 0, nullptr, &found) == 0;
    globfree(&found);
    return has;
}
