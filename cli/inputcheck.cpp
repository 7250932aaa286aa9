// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/inputcheck.h"

#include "cli/language.h"
#include "packaging/outputname.h"
#include "preparation/archivermethod.h"
#include "preparation/windowsname.h"

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

// Finds the main program's file name if the user did not name one.
std::variant<QString, Refusal> onlyProgram(const QString &folder)
{
    const QStringList programs = programsIn(QDir(folder));
    if (programs.isEmpty()) {
        return Refusal{text("the folder %1 contains no .exe file").arg(folder)};
    }
    if (programs.size() > 1) {
        return Refusal{text("the folder %1 contains several programs; choose one with --main: %2")
                           .arg(folder, programs.join(", "))};
    }
    return programs.constFirst();
}

// Returns the path relative to the folder, or an empty text if it is not inside.
QString pathInside(const QString &folder, const QString &path)
{
    const QString outer = resolvedPath(folder);
    const QString inner
        = QDir(resolvedPath(QFileInfo(path).path())).filePath(QFileInfo(path).fileName());
    return isSameOrInside(QFileInfo(inner).path(), folder) ? QDir(outer).relativeFilePath(inner)
                                                           : QString();
}

// Accepts a path inside the folder, or a path from the current directory to such a file.
std::variant<QString, Refusal> namedProgram(const QString &folder, const QString &name)
{
    const QString path = QString(name).replace('\\', '/');
    const QString inFolder = QDir(folder).filePath(path);
    const bool isHere = !QFileInfo(inFolder).isFile() && path.contains('/')
        && QFileInfo::exists(path);
    const QString program = pathInside(folder, isHere ? path : inFolder);
    if (program.isEmpty()) {
        return Refusal{text("the main program %1 is not inside the folder %2").arg(name, folder)};
    }
    if (!QFileInfo(QDir(folder).filePath(program)).isFile()) {
        return Refusal{text("the folder %1 contains no file %2").arg(folder, program)};
    }
    if (!program.endsWith(".exe", Qt::CaseInsensitive)) {
        return Refusal{text("the main program %1 is not an .exe file").arg(program)};
    }
    return program;
}

// The template of the configuration block has the placeholders %1 to %3, and the name must not look
// like one.
std::optional<Refusal> checkProgramName(const QString &program)
{
    static const QRegularExpression placeholder("%L?[0-9]");
    if (placeholder.match(program).hasMatch()) {
        return Refusal{text("the produced file could not start %1: the main program's name must "
                            "not have a % before a digit")
                           .arg(program)};
    }
    const qsizetype names = program.count('/') + 1;
    for (qsizetype i = 0; i < names; ++i) {
        if (const auto problem = windowsNameProblem(program.section('/', 0, i))) {
            return Refusal{text(*problem)};
        }
    }
    return std::nullopt;
}

std::optional<Refusal> checkProductName(const QString &name)
{
    static const QRegularExpression onlyEnding("^ *\\.exe$",
                                               QRegularExpression::CaseInsensitiveOption);
    if (name.contains('/') || windowsNameProblem(name) || onlyEnding.match(name).hasMatch()) {
        return Refusal{
            text("the executable cannot be named %1: Windows does not allow that name").arg(name)};
    }
    return std::nullopt;
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
            : std::optional(Refusal{text("the icon file %1 is larger than 64 MiB").arg(icon)});
    }
    return Refusal{(info.exists() ? text("the icon file %1 cannot be read")
                                  : text("the icon file %1 does not exist"))
                       .arg(icon)};
}

bool isFilePath(const QString &output)
{
    return output.endsWith(".exe", Qt::CaseInsensitive) && !QFileInfo(output).isDir();
}

// Returns the path of the executable. Its folder may be missing.
std::variant<QString, Refusal> productPath(const PackOptions &options, const QString &mainProgram)
{
    if (!options.name.isEmpty()) {
        if (const auto refusal = checkProductName(options.name)) {
            return *refusal;
        }
    }
    if (!isFilePath(options.output)) {
        const QString name = options.name.isEmpty() ? outputBaseName(mainProgram) + ".exe"
                                                    : options.name;
        return QDir(options.output).filePath(name);
    }
    const QString name = QFileInfo(options.output).fileName();
    if (!options.name.isEmpty() && options.name != name) {
        return Refusal{text("--name %1 and --output %2 contradict each other")
                           .arg(options.name, options.output)};
    }
    return options.output;
}

// The only sure way to know whether a file can be made is to make one.
std::optional<Refusal> tryToWrite(const QString &outputDir)
{
    QTemporaryFile probe(QDir(outputDir).filePath(".kestrelpack-XXXXXX"));
    if (!probe.open()) {
        return Refusal{text("cannot write to the output directory %1: %2")
                           .arg(outputDir, probe.errorString())};
    }
    return std::nullopt;
}

// Returns the innermost part of the path that exists.
QFileInfo existingPart(const QString &path)
{
    QFileInfo part(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    while (!part.exists() && !part.isRoot()) {
        part.setFile(part.path());
    }
    return part;
}

std::optional<Refusal> checkOutput(const QFileInfo &product, const QString &folder)
{
    const QString outputDir = product.path();
    if (const auto refusal = checkProductName(product.fileName())) {
        return *refusal;
    }
    if (isSameOrInside(outputDir, folder)) {
        return Refusal{text("the output directory %1 is inside the folder to pack").arg(outputDir)};
    }
    if (!existingPart(outputDir).isDir()) {
        return Refusal{text("cannot create the output directory %1").arg(outputDir)};
    }
    if (product.isDir() || (product.exists() && !product.isWritable())) {
        return Refusal{text("cannot replace the output file %1").arg(product.filePath())};
    }
    return QFileInfo(outputDir).isDir() ? tryToWrite(outputDir) : std::nullopt;
}

} // namespace

std::optional<Refusal> checkFolder(const QString &folder)
{
    const QFileInfo info(folder);
    if (!info.exists()) {
        return Refusal{text("the folder %1 does not exist").arg(folder)};
    }
    if (!info.isDir()) {
        return Refusal{text("%1 is not a folder").arg(folder)};
    }
    if (!info.isReadable() || !info.isExecutable()) {
        return Refusal{text("the folder %1 cannot be read").arg(folder)};
    }
    if (isArchiverPattern(resolvedPath(folder))) {
        return Refusal{
            text("the path of the folder %1 has a * or ? in it, which the archiver takes for a "
                 "pattern")
                .arg(resolvedPath(folder))};
    }
    if (!QFileInfo(QDir::tempPath()).isDir()) { // Qt returns an empty path if it is missing
        return Refusal{text("the temporary directory of this user does not exist")};
    }
    if (isSameOrInside(QDir::tempPath(), folder)) {
        return Refusal{
            text("the temporary directory %1 is inside the folder to pack").arg(QDir::tempPath())};
    }
    return std::nullopt;
}

std::variant<CheckedInputs, Refusal> checkInputs(const PackOptions &options)
{
    if (const auto refusal = checkFolder(options.folder)) {
        return *refusal;
    }
    const auto program = options.mainProgram.isEmpty()
        ? onlyProgram(options.folder)
        : namedProgram(options.folder, options.mainProgram);
    if (const auto *refusal = std::get_if<Refusal>(&program)) {
        return *refusal;
    }
    const QString mainProgram = std::get<QString>(program);
    if (const auto refusal = checkProgramName(mainProgram)) {
        return *refusal;
    }
    if (const auto refusal = checkIcon(options.iconPath)) {
        return *refusal;
    }
    const auto path = productPath(options, mainProgram);
    if (const auto *refusal = std::get_if<Refusal>(&path)) {
        return *refusal;
    }
    const QFileInfo product(std::get<QString>(path));
    if (const auto refusal = checkOutput(product, options.folder)) {
        return *refusal;
    }
    return CheckedInputs{resolvedPath(options.folder), mainProgram,
                         options.iconPath.isEmpty()
                             ? QString()
                             : QFileInfo(options.iconPath).absoluteFilePath(),
                         QDir(resolvedPath(product.path())).filePath(product.fileName())};
}

std::optional<Refusal> makeOutputDirectory(const QString &product)
{
    const QString outputDir = QFileInfo(product).path();
    if (!QDir().mkpath(outputDir)) {
        return Refusal{text("cannot create the output directory %1").arg(outputDir)};
    }
    return tryToWrite(outputDir);
}
