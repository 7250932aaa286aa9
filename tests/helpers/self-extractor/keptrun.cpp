// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/keptrun.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *ownText = "the user's own";

// Below the profile.
const QStringList &ownFiles()
{
    static const QStringList files{u"own.txt"_s, u"Kestrelpack/own.txt"_s,
                                   u"Kestrelpack/folder/own.txt"_s};
    return files;
}

} // namespace

Tree KeptTest::usualTree()
{
    return {{u"data.txt"_s, "some data"},
            {u"empty.txt"_s, ""},
            {u"empty/"_s, QByteArray()},
            {u"lib/a.dll"_s, noise(3000, 1)},
            {u"lib/deep/b.dll"_s, noise(4000, 2)}};
}

QString KeptTest::assemble(const QString &name, Tree tree, const QByteArray &settings,
                           const QString &module)
{
    if (!m_run.prepareModule("Keep=\"30\"\n" + settings, false, module)) {
        return QString();
    }
    tree[u"main.exe"_s] = ModuleRun::programBytes();
    const QString file = m_run.assemble(tree, u"main.exe"_s);
    const QString path = m_run.path(u"made/produced one, "_s + name + u".exe"_s);
    QFile::remove(path);
    return QFile::rename(file, path) ? path : QString();
}

QString KeptTest::assembleUsual(const QByteArray &settings)
{
    return assemble(u"usual"_s, usualTree(), settings);
}

bool KeptTest::renewProfile(const QString &name)
{
    if (!m_profile.isEmpty()) {
        QDir(m_profile).removeRecursively();
    }
    m_profile = m_run.path(name);
    Tree tree;
    for (const QString &file : ownFiles()) {
        tree[file] = ownText;
    }
    return writeTree(m_profile, tree);
}

QStringList KeptTest::options() const
{
    return {u"--profile="_s + windowsPath(m_profile)};
}

std::unique_ptr<QProcess> KeptTest::start(const QString &file, const QString &tail) const
{
    return m_run.start(file, tail, options());
}

Run KeptTest::run(const QString &file, const QString &tail) const
{
    return m_run.run(file, tail, options());
}

bool KeptTest::isKept(const Run &run)
{
    return run.exitCode == 7 && run.value("program").contains(u"\\Kestrelpack\\"_s);
}

bool KeptTest::isPrivate(const Run &run)
{
    return run.exitCode == 7 && run.value("program").contains(u"\\kp-"_s);
}

QStringList KeptTest::keptFolders() const
{
    static const QRegularExpression name(u"^[0-9a-f]{64}$"_s);
    return QDir(base()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).filter(name);
}

QStringList KeptTest::besideKept() const
{
    static const QRegularExpression name(u"^[0-9a-f]{64}[.]"_s);
    return QDir(base()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System).filter(name);
}

QString KeptTest::application() const
{
    return base() + u'/' + keptFolders().value(0) + u"/main"_s;
}

bool KeptTest::hasTree(const Tree &tree) const
{
    for (auto item = tree.cbegin(); item != tree.cend(); ++item) {
        const QFileInfo info(application() + u'/' + item.key());
        const bool isRight = item.key().endsWith(u'/')
            ? info.isDir()
            : info.isFile() && !info.isSymLink() && contentOf(info.filePath()) == item.value();
        if (!isRight) {
            qWarning("%s is not as it must be", qPrintable(item.key()));
            return false;
        }
    }
    return QFileInfo(application() + u"/main.exe"_s).size() == ModuleRun::programBytes().size();
}

QMap<QString, QString> KeptTest::marks() const
{
    QMap<QString, QString> result;
    QDirIterator all(application(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = all.next();
        struct stat facts = {};
        if (lstat(QFile::encodeName(path).constData(), &facts) == 0) {
            result[path] = u"%1 %2.%3"_s.arg(facts.st_ino)
                               .arg(facts.st_ctim.tv_sec)
                               .arg(facts.st_ctim.tv_nsec);
        }
    }
    return result;
}

void KeptTest::initTestCase()
{
    QVERIFY(m_run.setUp());
    QVERIFY(writeFile(m_run.path(u"held"_s), "x"));
    m_holder = m_run.hold(m_run.path(u"held"_s));
    QVERIFY(m_holder != nullptr);
}

void KeptTest::init()
{
    QVERIFY(m_run.renewTemporaryFolder());
    QVERIFY(renewProfile());
}

void KeptTest::cleanup()
{
    QCOMPARE(m_run.leftovers(), QStringList());
    for (const QString &file : ownFiles()) {
        QCOMPARE(contentOf(m_profile + u'/' + file), QByteArray(ownText));
    }
}

void KeptTest::cleanupTestCase()
{
    if (m_holder != nullptr) {
        ModuleRun::finish(*m_holder);
    }
}

bool changeSecretly(const QString &path)
{
    QFile file(path);
    struct stat facts = {};
    if (stat(QFile::encodeName(path).constData(), &facts) != 0 || !file.open(QFile::ReadWrite)) {
        return false;
    }
    char byte = 0;
    if (!file.getChar(&byte) || !file.seek(0) || !file.putChar(static_cast<char>(byte ^ 1))) {
        return false;
    }
    file.close();
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    return utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0;
}

bool setAge(const QString &path, int days)
{
    const timespec time = {QDateTime::currentSecsSinceEpoch() - 86400LL * days, 0};
    const timespec times[2] = {time, time};
    return utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0;
}
