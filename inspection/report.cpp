// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/report.h"

#include "helpers/self-extractor/decoding/methods.h"

#include <QJsonArray>
#include <QLocale>

namespace {

QString methodName(quint64 id)
{
    using namespace sfx;
    static const QHash<quint64, QString> names{
        {method::Copy, "Copy"},   {method::Delta, "Delta"},   {method::Arm64, "ARM64"},
        {method::RiscV, "RISCV"}, {method::Lzma2, "LZMA2"},   {method::Lzma, "LZMA"},
        {method::X86, "BCJ"},     {method::Bcj2, "BCJ2"},     {method::Ppc, "PPC"},
        {method::Ia64, "IA64"},   {method::Arm, "ARM"},       {method::ArmThumb, "ARMT"},
        {method::Sparc, "SPARC"}, {method::Zstd, "Zstandard"}};
    return names.value(id, "0x" + QString::number(id, 16));
}

// Every method once, in the order of the archive.
QJsonArray methodsOf(const sfx::Archive &archive)
{
    QStringList methods;
    const std::uint32_t solidBlocks = archive.tables().db.NumFolders;
    for (std::uint32_t i = 0; i < solidBlocks; ++i) {
        sfx::CoderGraph graph;
        if (archive.coderGraph(i, graph) != sfx::Status::Ok) {
            continue;
        }
        for (unsigned coder = 0; coder < graph.wiring.NumCoders; ++coder) {
            const QString name = methodName(graph.wiring.Coders[coder].MethodID);
            if (!methods.contains(name)) {
                methods.append(name);
            }
        }
    }
    return QJsonArray::fromStringList(methods);
}

QString attributesText(std::uint32_t attributes)
{
    QString text;
    for (const auto &[bit, letter] :
         {std::pair(0x01, 'R'), std::pair(0x02, 'H'), std::pair(0x04, 'S'), std::pair(0x20, 'A')}) {
        if ((attributes & static_cast<std::uint32_t>(bit)) != 0) {
            text += QLatin1Char(letter);
        }
    }
    return text;
}

QJsonObject entryObject(const sfx::Entry &entry, const FileHashes &hashes)
{
    const QString path = pathOf(entry);
    QJsonObject object{{"path", path},
                       {"isFolder", entry.isFolder},
                       {"size", static_cast<qint64>(entry.size)},
                       {"attributes", attributesText(entry.attributes)}};
    if (entry.hasModified) {
        object["modified"] = modifiedTimeOf(entry).toString(Qt::ISODate);
    }
    if (const auto hash = hashes.constFind(path); hash != hashes.constEnd()) {
        object["sha256"] = QString::fromLatin1(hash->toHex());
    }
    return object;
}

QJsonArray entriesOf(sfx::Archive &archive, const FileHashes &hashes)
{
    QJsonArray entries;
    for (std::uint32_t i = 0; i < archive.entryCount(); ++i) {
        sfx::Entry entry;
        if (archive.entry(i, entry) == sfx::Status::Ok) {
            entries.append(entryObject(entry, hashes));
        }
    }
    return entries;
}

QJsonObject programObject(const ProgramFacts &facts)
{
    QJsonObject identity;
    for (const auto &[name, value] : facts.identity) {
        identity[name] = value;
    }
    return {{"machine", facts.machine},
            {"subsystem", facts.subsystem},
            {"signed", facts.isSigned},
            {"ownModule", facts.hasOwnModule},
            {"identity", identity}};
}

QJsonObject blockObject(const sfx::ConfigBlock &block)
{
    return {{"runProgram", toQString(block.runProgram)},
            {"title", toQString(block.title)},
            {"folderName", toQString(block.folderName)},
            {"silent", block.silent},
            {"progress", block.progress}};
}

QString workingFolderName(sfx::WorkingFolder folder)
{
    switch (folder) {
    case sfx::WorkingFolder::Caller:
        return QStringLiteral("caller");
    case sfx::WorkingFolder::Executable:
        return QStringLiteral("exe");
    case sfx::WorkingFolder::Application:
        break;
    }
    return QStringLiteral("app");
}

// Only what the resource contains.
QJsonObject settingsObject(const sfx::Settings &settings)
{
    QJsonObject object;
    const auto insert = [&object](const char *key, const sfx::Text &value) {
        if (!value.isEmpty()) {
            object[QLatin1String(key)] = toQString(value);
        }
    };
    insert("program", settings.program);
    insert("folder", settings.folderName);
    insert("title", settings.title);
    insert("arguments", settings.arguments);
    if (settings.hasWorkingFolder) {
        object["workingFolder"] = workingFolderName(settings.workingFolder);
    }
    if (settings.hasSilent) {
        object["silent"] = settings.silent;
    }
    return object;
}

// What the self-extractor does, from settings and block together.
QJsonObject startObject(const sfx::StartPlan &plan, const ProgramFacts &facts)
{
    const bool isForConsole = facts.subsystem == "console";
    return {{"kind", isForConsole ? "console" : "graphical"},
            {"program", toQString(plan.program())},
            {"arguments", toQString(plan.settings.arguments)},
            {"workingFolder", workingFolderName(plan.settings.workingFolder)},
            {"folder", toQString(plan.folderName())},
            {"title", toQString(plan.title())},
            {"silent", plan.isSilent()},
            {"progress", plan.showsProgress(isForConsole)}};
}

QString numberText(const QJsonValue &value)
{
    return QLocale::c().toString(value.toInteger());
}

QString listText(const QJsonArray &values)
{
    QStringList texts;
    for (const auto &value : values) {
        texts.append(value.toString());
    }
    return texts.join(", ");
}

QString row(const char *name, const QString &text)
{
    return QStringLiteral("%1%2\n").arg(QLatin1String(name), -14).arg(text);
}

QString programText(const QJsonObject &program)
{
    return QStringLiteral("%1, subsystem %2, %3, %4")
        .arg(program["machine"].toString(), program["subsystem"].toString(),
             program["signed"].toBool() ? QStringLiteral("with a signature (not checked)")
                                        : QStringLiteral("not signed"),
             program["ownModule"].toBool() ? QStringLiteral("the module of this version")
                                           : QStringLiteral("another module"));
}

QString startRows(const QJsonObject &start, const QJsonObject &settings)
{
    const QString arguments = start["arguments"].toString();
    QString text = row("kind", start["kind"].toString())
        + row("starts",
              start["program"].toString() + (arguments.isEmpty() ? QString() : ' ' + arguments))
        + row("works in", start["workingFolder"].toString())
        + row("title", start["title"].toString())
        + row("silent", start["silent"].toBool() ? QStringLiteral("yes") : QStringLiteral("no"));
    const char *name = "settings";
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        text += row(name, setting.key() + ": " + setting.value().toVariant().toString());
        name = "";
    }
    return text;
}

} // namespace

QJsonObject reportOf(ProducedFile &file, const ProgramFacts &facts, const FileHashes &hashes)
{
    const QJsonObject archive{{"offset", static_cast<qint64>(file.archiveOffset())},
                              {"size", static_cast<qint64>(file.size() - file.archiveOffset())},
                              {"unpackedSize", static_cast<qint64>(file.totalBytes())},
                              {"methods", methodsOf(file.archive())}};
    return {{"file", file.path()},
            {"size", static_cast<qint64>(file.size())},
            {"program", programObject(facts)},
            {"start", startObject(file.plan(), facts)},
            {"settings", settingsObject(file.plan().settings)},
            {"block", blockObject(file.plan().block)},
            {"archive", archive},
            {"entries", entriesOf(file.archive(), hashes)}};
}

QString textOf(const QJsonObject &report)
{
    const QJsonObject program = report["program"].toObject();
    const QJsonObject archive = report["archive"].toObject();
    const QJsonArray entries = report["entries"].toArray();
    const double unpacked = archive["unpackedSize"].toDouble();
    const double ratio = unpacked > 0 ? 100 * archive["size"].toDouble() / unpacked : 100;

    QString text = row("file", report["file"].toString())
        + row("size", numberText(report["size"]) + " bytes") + row("program", programText(program));
    const QJsonObject identity = program["identity"].toObject();
    for (auto string = identity.begin(); string != identity.end(); ++string) {
        text += row("", string.key() + ": " + string.value().toString());
    }
    text += startRows(report["start"].toObject(), report["settings"].toObject())
        + row("archive",
              QStringLiteral("%1 bytes at %2, %3")
                  .arg(numberText(archive["size"]), numberText(archive["offset"]),
                       listText(archive["methods"].toArray())))
        + row("unpacked",
              QStringLiteral("%1 bytes in %2 entries; the archive has %3 % of that")
                  .arg(numberText(archive["unpackedSize"]))
                  .arg(entries.size())
                  .arg(ratio, 0, 'f', 1));
    for (const auto &value : entries) {
        const QJsonObject entry = value.toObject();
        text += QStringLiteral("%1  %2  %3\n")
                    .arg(entry["isFolder"].toBool() ? QString() : numberText(entry["size"]), 15)
                    .arg(entry["modified"].toString(), -20)
                    .arg(entry["path"].toString() + (entry["isFolder"].toBool() ? "/" : ""));
    }
    return text;
}
