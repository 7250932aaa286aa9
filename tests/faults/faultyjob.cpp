// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/faults/faultyjob.h"

#include "packaging/blockwriter.h"
#include "packaging/worker.h"
#include "tests/faults/rownotes.h"
#include "tests/support/folderstate.h"
#include "tests/support/testfiles.h"
#include "tests/support/testicons.h"

#include <QRegularExpression>

namespace {

const QByteArray bundledModule = "module";
constexpr int keptOfALine = 300; // so that a flood is not stored

QString nameOf(Ending ending)
{
    switch (ending) {
    case Ending::Failed:
        return "fails";
    case Ending::Done:
        return "is done";
    case Ending::Unnoticed:
        break;
    }
    return "is done, with a bad output";
}

void makeFile(const QString &path, const QByteArray &content)
{
    if (!QDir().mkpath(QFileInfo(path).path()) || !writeFile(path, content)) {
        qFatal("a file could not be made");
    }
    QFile file(path); // an old time, which a copy of the file would not have
    if (!file.open(QIODevice::ReadWrite)
        || !file.setFileTime(QDateTime({2019, 5, 17}, {8, 9, 10}), QFile::FileModificationTime)) {
        qFatal("a file's time could not be set");
    }
}

} // namespace

FaultyJob::FaultyJob()
{
    makeFile(source("my.tool.exe"), "program");
    makeFile(source("data/文件.txt"), QByteArray(70000, 'd'));
    makeFile(source("data/empty"), "");
    makeFile(output(), older);
    temp.plantModule(bundledModule);
    temp.plantEditor("");
    useArchiver("");
    platform->icon = extractedIcon(32, 32);
    job = {source(), temp.filePath("temp.7z"), output(""), "my.tool.exe", {}, "5", "LZMA", "16M"};
}

FaultyJob::~FaultyJob()
{
    m_disk.reset(); // before the folder on which the disk is mounted
}

QString FaultyJob::source(const QString &name) const
{
    return folders.filePath(name.isEmpty() ? "source" : "source/" + name);
}

QString FaultyJob::output(const QString &name) const
{
    return folders.filePath(name.isEmpty() ? "output" : "output/" + name);
}

void FaultyJob::useArchiver(const QByteArray &script)
{
    temp.plantArchiver(script + "\nwrite @3 " + QByteArray::number(archiveSize) + "\n");
}

void FaultyJob::useRealArchiver()
{
    QFile::remove(temp.filePath("7zr.exe"));
}

void FaultyJob::replaceHelper(const QString &name, const QByteArray &content) const
{
    const QString path = temp.filePath(name);
    if (!QFile::remove(path) || !writeFile(path, content)
        || !QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        qFatal("the helper could not be replaced");
    }
}

void FaultyJob::atMoment(const QString &moment, const std::function<void()> &action)
{
    platform->before = [moment, action, done = false](const QString &now) mutable {
        if (now == moment && !done) {
            done = true;
            action();
        }
    };
}

void FaultyJob::putOnSmallDisk(const QString &folder, int kibibytes)
{
    m_disk = std::make_unique<SmallDisk>(folder, kibibytes);
    if (!m_disk->isThere()) {
        skip("only root on Linux can mount");
    }
}

void FaultyJob::hold(const QString &path)
{
    m_heldPath = path;
    if (!HeldFile(path).isThere()) {
        skip("only Windows keeps others from reading");
    }
}

void FaultyJob::run(Rights rights)
{
    Worker worker;
    QObject::connect(&worker, &Worker::logMessage, &worker,
                     [this](const QString &text) { log << text.left(keptOfALine); });
    QObject::connect(&worker, &Worker::progressChanged, &worker,
                     [this](int value) { log << QStringLiteral("progress %1").arg(value); });
    QObject::connect(&worker, &Worker::finished, &worker, [this](bool done) { success = done; });

    std::unique_ptr<OrdinaryRights> ordinary;
    if (rights == Rights::Ordinary) {
        ordinary = std::make_unique<OrdinaryRights>(QStringList{folders.path(), temp.path()});
        QVERIFY(ordinary->areThere());
    }
    const HeldFile held(m_heldPath);
    worker.createPortableApp(job.folderPath, job.archivePath, job.outputDir, job.mainExeName,
                             job.iconPath, job.compressionLevel, job.compressionMethod,
                             job.dictionarySize);
}

void FaultyJob::check(const Fault &fault)
{
    fault.spoil(*this);
    if (!m_reason.isEmpty()) {
        noteSkipped();
        QSKIP(qUtf8Printable(m_reason));
    }
    const QStringList before = sourceState();
    run(fault.rights);
    const QString whole = log.join('\n');
    QVERIFY2(whole.contains(fault.line), qUtf8Printable(whole));
    QCOMPARE(nameOf(ending()), nameOf(fault.ending));
    QCOMPARE(leftInOutput(), fault.output);
    QCOMPARE(leftInTemporary(), fault.temporary);
    QCOMPARE(sourceState(), before);
    const QString lines = QString(fault.line).replace('\n', "`, `");
    noteResult({nameOf(fault.ending), '`' + lines + '`', fault.output, fault.temporary});
}

Ending FaultyJob::ending() const
{
    if (!success) {
        return Ending::Failed;
    }
    return describedOutput() == "my.exe, whole" ? Ending::Done : Ending::Unnoticed;
}

QByteArray FaultyJob::block()
{
    return configurationBlock("my", "my.tool.exe").toUtf8();
}

QString FaultyJob::describedOutput() const
{
    const QByteArray content = readFile(output());
    const QByteArray start = bundledModule + block();
    if (content == older) {
        return "the older my.exe";
    }
    if (content.isEmpty()) {
        return "an empty my.exe";
    }
    if (content == start) {
        return "my.exe without an archive";
    }
    const QByteArray expected = start + readFile(job.archivePath);
    return content == expected         ? "my.exe, whole"
        : expected.startsWith(content) ? "my.exe, cut short"
                                       : "my.exe with other content";
}

QString FaultyJob::leftInOutput() const
{
    const QFileInfo folder(job.outputDir);
    if (!folder.isDir()) {
        return folder.exists() ? "no directory" : "nothing";
    }
    QStringList names
        = QDir(job.outputDir)
              .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDir::Name);
    names.replaceInStrings(QRegularExpression("^my\\.exe$"), describedOutput());
    return names.isEmpty() ? "nothing" : names.join(", ");
}

QString FaultyJob::leftInTemporary() const
{
    QStringList names = temp.names();
    for (const char *helper : {"7zr.exe", "7zS2.sfx", "ResourceHacker.exe"}) {
        names.removeAll(helper);
    }
    return names.isEmpty() ? "nothing" : names.join(", ");
}

QStringList FaultyJob::sourceState() const
{
    return folderState(source(), m_changedByOthers);
}
