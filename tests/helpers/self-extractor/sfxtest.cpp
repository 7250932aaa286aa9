// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/sfxtest.h"

#include "helpers/self-extractor/archive/contents.h"
#include "helpers/self-extractor/archive/shortname.h"
#include "tests/support/testfiles.h"

#include "7zCrc.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>

#include <cmath>

namespace {

// Call and jump instructions with different targets.
QByteArray machineCode(qsizetype size)
{
    QRandomGenerator random(7);
    QByteArray code;
    while (code.size() < size) {
        code += QByteArray::fromHex("554889e54883ec20");
        code += '\xe8';
        const quint32 target = random.bounded(0x40000u) - static_cast<quint32>(code.size());
        code.append(reinterpret_cast<const char *>(&target), 4);
        code += QByteArray::fromHex("0f84");
        code.append(reinterpret_cast<const char *>(&target), 4);
        code += QByteArray::fromHex("488b45f0c9c3");
    }
    return code;
}

QByteArray wave(qsizetype samples)
{
    QByteArray sound("RIFF");
    const auto put = [&sound](auto value) {
        value = qToLittleEndian(value);
        sound.append(reinterpret_cast<const char *>(&value), sizeof value);
    };
    put(static_cast<quint32>(36 + samples * 4));
    sound += "WAVEfmt ";
    put(quint32(16));
    put(quint16(1));
    put(quint16(2));
    put(quint32(44100));
    put(quint32(176400));
    put(quint16(4));
    put(quint16(16));
    sound += "data";
    put(static_cast<quint32>(samples * 4));
    for (qsizetype i = 0; i < samples; ++i) {
        put(static_cast<qint16>(std::lround(12000 * std::sin(static_cast<double>(i) / 37))));
        put(static_cast<qint16>(std::lround(9000 * std::sin(static_cast<double>(i) / 11))));
    }
    return sound;
}

} // namespace

QString pathOf(const sfx::Entry &entry)
{
    return QString::fromUtf16(entry.path, static_cast<qsizetype>(entry.pathSize));
}

sfx::Status TreeSink::begin(std::uint64_t, std::uint32_t)
{
    isConsistent = isConsistent && tree.isEmpty();
    return sfx::Status::Ok;
}

sfx::Status TreeSink::makeFolder(const sfx::Entry &folder)
{
    isConsistent = isConsistent && m_open.isNull();
    order += pathOf(folder);
    tree.insert(pathOf(folder) + u'/', QByteArray());
    return sfx::Status::Ok;
}

sfx::Status TreeSink::beginFile(const sfx::Entry &file)
{
    // Only a file with a name like a short one has been begun before, as an empty file.
    const bool isAgain = file.size != 0 && sfx::couldBeShortName(file.path, file.pathSize);
    isConsistent = isConsistent && m_open.isNull() && tree.contains(pathOf(file)) == isAgain
        && tree.value(pathOf(file)).isEmpty();
    order += pathOf(file);
    m_open = pathOf(file);
    tree.insert(m_open, QByteArray(""));
    return sfx::Status::Ok;
}

sfx::Status TreeSink::write(const std::uint8_t *data, std::size_t size)
{
    isConsistent = isConsistent && !m_open.isNull();
    tree[m_open].append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    return sfx::Status::Ok;
}

sfx::Status TreeSink::endFile(const sfx::Entry &file)
{
    isConsistent = isConsistent && m_open == pathOf(file);
    if (file.hasModified) {
        modified.insert(m_open, file.modified);
    }
    m_open = QString();
    return sfx::Status::Ok;
}

sfx::Status TreeSink::finishFolder(const sfx::Entry &folder)
{
    isConsistent = isConsistent && m_open.isNull() && tree.contains(pathOf(folder) + u'/');
    return sfx::Status::Ok;
}

void upperCase(char16_t *text, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = QChar(text[i]).toUpper().unicode();
    }
}

sfx::Status unpackBytes(const QByteArray &bytes, std::uint64_t offset, Tree &tree,
                        const QString &program)
{
    MemorySource source(bytes);
    sfx::Archive archive(source);
    sfx::Text name;
    std::uint64_t totalBytes = 0;
    TreeSink sink;
    if (!name.append(reinterpret_cast<const char16_t *>(program.utf16()),
                     static_cast<std::size_t>(program.size()))) {
        return sfx::Status::NoMemory;
    }
    sfx::Status status = archive.open(offset);
    if (status == sfx::Status::Ok) {
        status = sfx::checkContents(archive, name, upperCase, totalBytes);
    }
    if (status == sfx::Status::Ok) {
        status = sfx::unpack(archive, sink, totalBytes);
    }
    if (!sink.isConsistent) {
        return sfx::Status::WriteFailed;
    }
    tree = sink.tree;
    return status;
}

bool writeTree(const QString &folder, const Tree &tree)
{
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        const QString path = folder + u'/' + item.key();
        if (item.key().endsWith(u'/')) {
            QDir().mkpath(path);
            continue;
        }
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(item.value()) != item.value().size()) {
            return false;
        }
    }
    return true;
}

QByteArray pack(const QString &folder, const QStringList &switches)
{
    QTemporaryDir output;
    const QString archive = output.filePath(QStringLiteral("a.7z"));
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral(KESTRELPACK_TEST_ARCHIVER),
                  QStringList{QStringLiteral("a"), QStringLiteral("-t7z"), archive,
                              QStringLiteral("./*"), QStringLiteral("-r")}
                      + switches);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        qWarning("%s", process.readAllStandardError().constData());
        return QByteArray();
    }
    return contentOf(archive);
}

QByteArray packTree(const Tree &tree, const QStringList &switches)
{
    QTemporaryDir folder;
    return writeTree(folder.path(), tree) ? pack(folder.path(), switches) : QByteArray();
}

Tree mixedTree()
{
    Tree tree;
    tree[QStringLiteral("main.exe")] = contentOf(QStringLiteral(KESTRELPACK_TEST_ARCHIVER));
    tree[QStringLiteral("lib/code.bin")] = machineCode(300000);
    tree[QStringLiteral("sound/tone.wav")] = wave(60000);
    tree[QStringLiteral("text/long.txt")] = QByteArray("All work and no play. ").repeated(40000);
    tree[QStringLiteral("noise.dat")] = noise(200001, 3);
    tree[QStringLiteral("empty.txt")] = QByteArray("");
    tree[QStringLiteral("\u7a0b\u5e8f/\u8bfb\u6211.txt")] = "\xe4\xbd\xa0\xe5\xa5\xbd";
    for (const char *folder : {"empty/", "lib/", "sound/", "text/", "\xe7\xa8\x8b\xe5\xba\x8f/"}) {
        tree[QString::fromUtf8(folder)] = QByteArray();
    }
    return tree;
}

QByteArray noise(qsizetype size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes) {
        byte = static_cast<char>(random.generate());
    }
    return bytes;
}

void resealArchive(QByteArray &archive)
{
    CrcGenerateTable();
    char *start = archive.data();
    const auto offset = qFromLittleEndian<quint64>(start + 12);
    const auto size = qFromLittleEndian<quint64>(start + 20);
    qToLittleEndian<quint32>(CrcCalc(start + 32 + offset, size), start + 28);
    resealStart(archive);
}

void resealStart(QByteArray &archive)
{
    CrcGenerateTable();
    char *start = archive.data();
    qToLittleEndian<quint32>(CrcCalc(start + 12, 20), start + 8);
}
