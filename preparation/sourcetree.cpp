// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/sourcetree.h"

#include "platform/filenamecase.h"
#include "preparation/glob.h"
#include "preparation/windowsname.h"

#include <QHash>

#include <algorithm>

namespace {

constexpr qsizetype shownProblems = 20;
// The self-extractor reads at most 64 MiB of header (Archive::maxHeaderSize). An entry has at least
// its name in UTF-16 there, a time and its attributes.
constexpr qint64 largestHeader = 64 << 20;
constexpr qint64 headerBytesPerEntry = 2 + 8 + 4;

quint32 normalMode(quint32 mode, bool isFolder, TreeOptions::Permissions permissions)
{
    if (permissions == TreeOptions::Permissions::AsTheyAre) {
        return mode;
    }
    if (isFolder) {
        return 0755;
    }
    const bool mayBeExecuted = (mode & 0100) != 0
        && permissions == TreeOptions::Permissions::Normal;
    const quint32 normal = mayBeExecuted ? 0755 : 0644;
    return (mode & 0222) == 0 ? normal & ~0222u : normal;
}

quint32 normalAttributes(quint32 attributes, bool isFolder, TreeOptions::Permissions permissions)
{
    constexpr quint32 readOnlyHiddenSystem = 0x01 | 0x02 | 0x04;
    constexpr quint32 directory = 0x10;
    constexpr quint32 archive = 0x20;
    return permissions == TreeOptions::Permissions::Uniform
        ? (attributes & readOnlyHiddenSystem) | (isFolder ? directory : archive)
        : attributes;
}

class Planner
{
public:
    Planner(const QString &folder, const QList<SourceEntry> &entries, const TreeOptions &options)
        : m_entries(entries)
        , m_options(options)
    {
        m_plan.folder = folder;
    }

    std::variant<SourcePlan, TreeProblems> run()
    {
        readGlobs();
        if (m_problems.isEmpty()) {
            index();
            walk({}, {}, {QString()});
            checkMainProgram();
            warnOfIdleGlobs();
        }
        if (!m_problems.isEmpty()) {
            return TreeProblems{shortened()};
        }
        return m_plan;
    }

private:
    void readGlobs()
    {
        for (const QString &text : m_options.excludes) {
            auto glob = Glob::parse(text);
            if (const auto *error = std::get_if<Message>(&glob)) {
                m_problems.append(*error);
            } else {
                m_globs.append(std::get<Glob>(glob));
            }
        }
        m_globIsUsed.fill(false, m_globs.size());
    }

    void index()
    {
        for (const SourceEntry &entry : m_entries) {
            m_entryOf.insert(entry.path, &entry);
            const qsizetype slash = entry.path.lastIndexOf('/');
            m_children[slash < 0 ? QString() : entry.path.left(slash)].append(&entry);
        }
        for (auto &children : m_children) {
            std::sort(children.begin(), children.end(),
                      [](const SourceEntry *left, const SourceEntry *right) {
                          return left->path < right->path;
                      });
        }
    }

    // Returns the number of the first pattern that chooses the path, or -1. Notes all that do.
    qsizetype excludingGlob(const QString &path, bool isFolder)
    {
        qsizetype first = -1;
        for (qsizetype i = 0; i < m_globs.size(); ++i) {
            if ((first < 0 || !m_globIsUsed[i]) && m_globs[i].matches(path, isFolder)) {
                m_globIsUsed[i] = true;
                first = first < 0 ? i : first;
            }
        }
        return first;
    }

    // Adds the content of the folder `source` as that of `path`. `open` are the folders in the
    // source that contain it, as the archive sees it; a link to one of them has no end.
    void walk(const QString &source, const QString &path, const QStringList &open)
    {
        for (const SourceEntry *child : m_children.value(source)) {
            if (isTooLarge()) {
                return;
            }
            const QString name = child->path.section('/', -1);
            visit(*child, path.isEmpty() ? name : path + '/' + name, open);
        }
    }

    void visit(const SourceEntry &found, const QString &path, const QStringList &open)
    {
        const SourceEntry *entry = &found;
        if (found.kind == SourceEntry::Kind::Link
            && found.targetKind == SourceEntry::Target::Inside) {
            entry = found.target.isEmpty() ? nullptr : m_entryOf.value(found.target);
        }
        const bool isFolder = found.kind == SourceEntry::Kind::Link
            ? entry == nullptr || entry->kind == SourceEntry::Kind::Folder
            : found.kind == SourceEntry::Kind::Folder;
        const qsizetype glob = excludingGlob(path, isFolder);
        if (glob >= 0) {
            leaveOut(found, path, m_globs[glob]);
            return;
        }
        if (found.kind == SourceEntry::Kind::Link) {
            m_plan.needsStaging = true;
            if (!isFollowed(found, path, entry, open)) {
                return;
            }
        }
        if (isPossible(*entry, found, path)) {
            add(*entry, path, open);
        }
    }

    // Patterns are compared with everything in a folder that is left out, so that none of them is
    // reported as one that matches nothing.
    void leaveOut(const SourceEntry &entry, const QString &path, const Glob &glob)
    {
        m_plan.needsStaging = true;
        noteMainProgram(path, glob);
        if (entry.kind != SourceEntry::Kind::Folder) {
            return;
        }
        for (const SourceEntry *child : m_children.value(entry.path)) {
            const QString inside = path + '/' + child->path.section('/', -1);
            excludingGlob(inside, child->kind == SourceEntry::Kind::Folder);
            leaveOut(*child, inside, glob);
        }
    }

    void noteMainProgram(const QString &path, const Glob &glob)
    {
        if (fileNameUpperCase(path) == fileNameUpperCase(m_options.mainProgram)) {
            addProblem(Message{"the pattern %1 excludes the main program %2", {glob.text(), path}});
        }
    }

    bool isFollowed(const SourceEntry &link, const QString &path, const SourceEntry *target,
                    const QStringList &open)
    {
        switch (link.targetKind) {
        case SourceEntry::Target::Outside:
            return addProblem(Message{"the link %1 leads out of the folder, to %2",
                                      {shownPath(path), shownPath(link.target)}});
        case SourceEntry::Target::Circle:
            return addProblem(Message{"the link %1 leads back to itself", {shownPath(path)}});
        case SourceEntry::Target::None:
        case SourceEntry::Target::Missing:
            return addProblem(Message{"the link %1 leads to %2, which does not exist",
                                      {shownPath(path), shownPath(link.target)}});
        case SourceEntry::Target::Inside:
            break;
        }
        if (link.target.isEmpty() || open.contains(link.target)) {
            return addProblem(
                Message{"the link %1 leads to a folder that contains it, so it has no end",
                        {shownPath(path)}});
        }
        return target != nullptr
            || addProblem(Message{"the link %1 leads to %2, which does not exist",
                                  {shownPath(path), shownPath(link.target)}});
    }

    // `found` is the entry whose name counts, `entry` the one whose content does.
    bool isPossible(const SourceEntry &entry, const SourceEntry &found, const QString &path)
    {
        const QString shown = shownPath(path);
        if (found.nameIsDamaged) {
            return addProblem(Message{"%1 cannot be packed: its name is not valid UTF-8", {shown}});
        }
        if (const auto problem = windowsNameProblem(path)) {
            return addProblem(*problem);
        }
        switch (entry.kind) {
        case SourceEntry::Kind::File:
        case SourceEntry::Kind::Folder:
            return isAlone(path);
        case SourceEntry::Kind::Unreadable:
            return addProblem(Message{"%1 cannot be read: %2", {shown, entry.problem}});
        case SourceEntry::Kind::Device:
            return addProblem(Message{"%1 is a device, not a file", {shown}});
        case SourceEntry::Kind::Pipe:
            return addProblem(Message{"%1 is a pipe, not a file", {shown}});
        case SourceEntry::Kind::Socket:
            return addProblem(Message{"%1 is a socket, not a file", {shown}});
        case SourceEntry::Kind::Link:
            break; // has been followed
        }
        return false;
    }

    // Compares as the self-extractor's PathSet does. Every folder is an entry, so two entries
    // collide only if their whole paths are equal.
    bool isAlone(const QString &path)
    {
        const QString upper = fileNameUpperCase(path);
        const auto other = m_pathOf.constFind(upper);
        if (other != m_pathOf.constEnd()) {
            return addProblem(Message{"%1 and %2 cannot both be packed: on Windows they "
                                      "are the same name",
                                      {shownPath(other.value()), shownPath(path)}});
        }
        m_pathOf.insert(upper, path);
        return true;
    }

    void add(const SourceEntry &entry, const QString &path, const QStringList &open)
    {
        const bool isFolder = entry.kind == SourceEntry::Kind::Folder;
        m_headerBytes += 2 * path.size() + headerBytesPerEntry;
        const qint64 modified = m_options.times.applyTo(entry.modified);
        std::optional<quint32> mode = entry.mode;
        if (mode) {
            mode = normalMode(*mode, isFolder, m_options.permissions);
        }
        std::optional<quint32> attributes = entry.attributes;
        if (attributes) {
            attributes = normalAttributes(*attributes, isFolder, m_options.permissions);
        }
        const bool isChanged = modified != entry.modified || mode != entry.mode
            || attributes != entry.attributes;
        m_plan.needsStaging = m_plan.needsStaging || isChanged;
        if (isFolder) {
            m_plan.folders.append({path, modified, mode, attributes});
            walk(entry.path, path, open + QStringList{entry.path});
            return;
        }
        m_plan.files.append({path, entry.path, entry.size, modified, mode, attributes, isChanged,
                             entry.mustNotBeLinked});
        m_plan.totalBytes += entry.size;
        if (fileNameUpperCase(path) == fileNameUpperCase(m_options.mainProgram)) {
            m_plan.mainProgram = path;
        }
    }

    // Folders that are linked many times may stand for more entries than any disk holds.
    bool isTooLarge()
    {
        if (m_headerBytes > largestHeader && !m_isTooLarge) {
            m_isTooLarge = true;
            addProblem(Message{"there are too many files: the list of their names is larger "
                               "than the 64 MiB that a produced file may have"});
        }
        return m_isTooLarge;
    }

    void checkMainProgram()
    {
        if (m_problems.isEmpty() && m_plan.files.isEmpty()) {
            addProblem(m_globs.isEmpty()
                           ? Message{"the folder %1 contains no files", {m_plan.folder}}
                           : Message{"the patterns leave no files to pack"});
        }
        if (m_problems.isEmpty() && m_plan.mainProgram.isEmpty()
            && !m_options.mainProgram.isEmpty()) {
            addProblem(Message{"the folder %1 contains no file %2",
                               {m_plan.folder, m_options.mainProgram}});
        }
    }

    void warnOfIdleGlobs()
    {
        for (qsizetype i = 0; i < m_globs.size(); ++i) {
            if (!m_globIsUsed[i]) {
                m_plan.warnings.append(
                    Message{"the pattern %1 matches nothing in the folder", {m_globs[i].text()}});
            }
        }
    }

    bool addProblem(const Message &message)
    {
        m_problems.append(message);
        return false;
    }

    QList<Message> shortened() const
    {
        const qsizetype rest = m_problems.size() - shownProblems;
        if (rest <= 0) {
            return m_problems;
        }
        return m_problems.first(shownProblems)
            + QList<Message>{Message{"and %1 more", {QString::number(rest)}}};
    }

    const QList<SourceEntry> &m_entries;
    const TreeOptions &m_options;
    QList<Glob> m_globs;
    QList<bool> m_globIsUsed;
    QHash<QString, const SourceEntry *> m_entryOf;
    QHash<QString, QList<const SourceEntry *>> m_children;
    QHash<QString, QString> m_pathOf; // by their upper case
    SourcePlan m_plan;
    QList<Message> m_problems;
    qint64 m_headerBytes = 0;
    bool m_isTooLarge = false;
};

} // namespace

qint64 SourcePlan::bytesToCopy(bool canLink) const
{
    qint64 bytes = 0;
    for (const PlannedFile &file : files) {
        bytes += canLink && !file.isChanged && !file.mustNotBeLinked ? 0 : file.size;
    }
    return bytes;
}

std::variant<SourcePlan, TreeProblems>
planTree(const QString &folder, const QList<SourceEntry> &entries, const TreeOptions &options)
{
    return Planner(folder, entries, options).run();
}
