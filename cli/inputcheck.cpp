// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/inputcheck.h"

#include "packaging/compressionoptions.h"
#include "packaging/outputname.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>

#include <optional>

namespace {

// In bytes. The engine reads the whole icon file into memory. Even large real ones are below 1 MiB.
constexpr qint64 largestIconFile = 64 * 1048576;

QStringList programsIn(const QDir &folder)
{
    QStringList programs = folder.entryList(QDir::Files | QDir::Hidden);
    programs.removeIf(
        [](const QString &name) { return !name.endsWith(".exe", Qt::CaseInsensitive); });
    return programs;
}

// Returns the path without symbolic links and dots. If its last parts do not exist yet, only the
// existing parent is resolved.
QString resolvedPath(const QString &path)
{
    const QFileInfo info(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    const QString canonical = info.canonicalFilePath();
    if (!canonical.isEmpty() || info.isRoot()) {
        return canonical;
    }
    return QDir(resolvedPath(info.absolutePath())).filePath(info.fileName());
}

bool isSameOrInside(const QString &path, const QString &folder)
{
    const QString inner = resolvedPath(path);
    const QString outer = resolvedPath(folder);
    return inner == outer || inner.startsWith(outer.endsWith('/') ? outer : outer + '/');
}

// Returns true if the archiver would read the path as a pattern, and pack other folders as well. On
// Windows a name cannot contain these characters, but a path can begin with "//?/".
bool isPattern(const QString &path)
{
    const QString name = path.startsWith(QLatin1String("//?/")) ? path.mid(4) : path;
    return name.contains('*') || name.contains('?');
}

std::optional<Refusal> checkFolder(const QString &folder)
{
    const QFileInfo info(folder);
    if (!info.exists()) {
        return Refusal{QStringLiteral("the folder %1 does not exist").arg(folder)};
    }
    if (!info.isDir()) {
        return Refusal{QStringLiteral("%1 is not a folder").arg(folder)};
    }
    if (!info.isReadable() || !info.isExecutable()) {
        return Refusal{QStringLiteral("the folder %1 cannot be read").arg(folder)};
    }
    if (isPattern(resolvedPath(folder))) {
        return Refusal{
            QStringLiteral(
                "the path of the folder %1 has a * or ? in it, which the archiver takes for a "
                "pattern")
                .arg(resolvedPath(folder))};
    }
    if (!QFileInfo(QDir::tempPath()).isDir()) { // Qt returns an empty path if it is missing
        return Refusal{QStringLiteral("the temporary directory of this user does not exist")};
    }
    if (isSameOrInside(QDir::tempPath(), folder)) {
        return Refusal{QStringLiteral("the temporary directory %1 is inside the folder to pack")
                           .arg(QDir::tempPath())};
    }
    return std::nullopt;
}

// Finds the main program's file name if the user did not name one.
std::variant<QString, Refusal> onlyProgram(const QString &folder)
{
    const QStringList programs = programsIn(QDir(folder));
    if (programs.isEmpty()) {
        return Refusal{QStringLiteral("the folder %1 contains no .exe file").arg(folder)};
    }
    if (programs.size() > 1) {
        return Refusal{
            QStringLiteral("the folder %1 contains several programs; choose one with --main: %2")
                .arg(folder, programs.join(", "))};
    }
    return programs.constFirst();
}

// Accepts a file name, or a path to a file directly inside the folder.
std::variant<QString, Refusal> namedProgram(const QString &folder, const QString &name)
{
    const QString fileName = QFileInfo(name).fileName();
    if (name.contains('/') || name.contains('\\')) {
        const bool isInFolder = QFileInfo::exists(name)
            && resolvedPath(QFileInfo(name).absolutePath()) == resolvedPath(folder);
        if (!isInFolder) {
            return Refusal{
                QStringLiteral("the main program %1 is not directly inside the folder %2")
                    .arg(name, folder)};
        }
    }
    const QFileInfo program(QDir(folder).filePath(fileName));
    if (!program.isFile()) {
        return Refusal{QStringLiteral("the folder %1 contains no file %2").arg(folder, fileName)};
    }
    if (!fileName.endsWith(".exe", Qt::CaseInsensitive)) {
        return Refusal{QStringLiteral("the main program %1 is not an .exe file").arg(fileName)};
    }
    return fileName;
}

// Returns true if a produced file can start a program of that name. The configuration block
// contains the name in quotes on one line, and the template of the block has the placeholders %1 to
// %3. The other characters are not allowed in Windows file names.
bool canBeStarted(const QString &fileName)
{
    static const QRegularExpression unusable(R"([\x00-\x1f"*:<>?\\|]|%L?\d)");
    return !unusable.match(fileName).hasMatch();
}

// Returns true if Windows takes the name for a device, whatever its extension. A produced file with
// such a name in it unpacks nothing.
bool isDevice(const QString &fileName)
{
    static const QRegularExpression device(
        QStringLiteral(R"(^(CON|PRN|AUX|NUL|CONIN\$|CONOUT\$|(COM|LPT)[0-9\xb9\xb2\xb3]) *(\.|$))"),
        QRegularExpression::CaseInsensitiveOption);
    return device.match(fileName).hasMatch();
}

std::optional<Refusal> checkProgramName(const QString &fileName)
{
    if (isDevice(fileName)) {
        return Refusal{
            QStringLiteral("the produced file could not start %1: on Windows that is the "
                           "name of a device")
                .arg(fileName)};
    }
    if (canBeStarted(fileName)) {
        return std::nullopt;
    }
    return Refusal{
        QStringLiteral("the produced file could not start %1: the main program's name must not "
                       "have control characters, any of \" * : < > ? \\ |, or a % before "
                       "a digit")
            .arg(fileName)};
}

std::optional<Refusal> checkIcon(const QString &icon)
{
    const QFileInfo info(icon);
    if (icon.isEmpty()) {
        return std::nullopt;
    }
    if (info.isFile() && info.isReadable()) {
        return info.size() <= largestIconFile
            ? std::nullopt
            : std::optional(
                Refusal{QStringLiteral("the icon file %1 is larger than 64 MiB").arg(icon)});
    }
    return Refusal{(info.exists() ? QStringLiteral("the icon file %1 cannot be read")
                                  : QStringLiteral("the icon file %1 does not exist"))
                       .arg(icon)};
}

std::optional<Refusal> checkOutput(const QString &outputDir, const QString &folder,
                                   const QString &mainProgram)
{
    if (isSameOrInside(outputDir, folder)) {
        return Refusal{
            QStringLiteral("the output directory %1 is inside the folder to pack").arg(outputDir)};
    }
    if (!QDir().mkpath(outputDir)) {
        return Refusal{QStringLiteral("cannot create the output directory %1").arg(outputDir)};
    }
    // The only sure way to know whether a file can be made is to make one.
    QTemporaryFile probe(QDir(outputDir).filePath(".kestrelpack-XXXXXX"));
    if (!probe.open()) {
        return Refusal{QStringLiteral("cannot write to the output directory %1: %2")
                           .arg(outputDir, probe.errorString())};
    }
    const QFileInfo output(outputPath(outputDir, mainProgram));
    if (output.isDir() || (output.exists() && !output.isWritable())) {
        return Refusal{QStringLiteral("cannot replace the output file %1").arg(output.filePath())};
    }
    return std::nullopt;
}

} // namespace

std::variant<PackagingJob, Refusal> checkInputs(const CommandLine &line)
{
    if (const auto refusal = checkFolder(line.folder)) {
        return *refusal;
    }
    const auto program = line.mainProgram.isEmpty() ? onlyProgram(line.folder)
                                                    : namedProgram(line.folder, line.mainProgram);
    if (const auto *refusal = std::get_if<Refusal>(&program)) {
        return *refusal;
    }
    const QString mainProgram = std::get<QString>(program);
    if (const auto refusal = checkProgramName(mainProgram)) {
        return *refusal;
    }
    if (const auto refusal = checkIcon(line.iconPath)) {
        return *refusal;
    }
    if (const auto refusal = checkOutput(line.outputDir, line.folder, mainProgram)) {
        return *refusal;
    }

    PackagingJob job;
    job.folderPath = resolvedPath(line.folder);
    job.outputDir = resolvedPath(line.outputDir);
    job.mainExeName = mainProgram;
    job.iconPath = line.iconPath.isEmpty() ? QString()
                                           : QFileInfo(line.iconPath).absoluteFilePath();
    job.compressionLevel = compressionLevelText(line.levelIndex);
    job.compressionMethod = compressionMethodText(line.methodIndex);
    job.dictionarySize = dictionarySizeText(-1);
    return job;
}
