// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/stagedtree.h"

#include "preparation/folderlisting.h"
#include "tests/support/folderstate.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

struct stat stateOf(const QString &path)
{
    struct stat state = {};
    if (lstat(QFile::encodeName(path).constData(), &state) != 0) {
        qFatal("no state of %s", qUtf8Printable(path));
    }
    return state;
}

SourcePlan planOf(const QString &folder, const TreeOptions &options = {})
{
    return std::get<SourcePlan>(planTree(folder, listFolder(folder).entries, options));
}

bool goOn(qint64)
{
    return true;
}

} // namespace

// What only Unix can show: permission bits, numbers of links, links and other file systems.
class TestStagedTreeUnix : public QObject
{
    Q_OBJECT

private:
    QString source(const QString &name = {}) const { return m_temp->filePath("source/" + name); }
    QString parent() const { return m_temp->filePath("parent"); }
    void addFile(const QString &name, mode_t mode) const
    {
        QVERIFY(writeFile(source(name), name.toUtf8()));
        QCOMPARE(chmod(QFile::encodeName(source(name)).constData(), mode), 0);
    }

    std::unique_ptr<QTemporaryDir> m_temp;

private slots:
    void init()
    {
        m_temp = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_temp->path()).mkpath("source/folder"));
        QVERIFY(QDir(m_temp->path()).mkdir("parent"));
        addFile("plain", 0644);
        addFile("folder/group", 0664);
        QCOMPARE(chmod(QFile::encodeName(source("folder")).constData(), 0500), 0);
    }
    void cleanup() { chmod(QFile::encodeName(source("folder")).constData(), 0700); }

    void onlyFilesThatChangeAreCopied()
    {
        const struct stat before = stateOf(source("plain"));
        const struct stat groupBefore = stateOf(source("folder/group"));
        const struct stat folderBefore = stateOf(source("folder"));
        {
            StagedTree tree(parent());
            QVERIFY(!tree.create(planOf(m_temp->filePath("source")), goOn));
            QCOMPARE(stateOf(tree.path() + "/plain").st_ino, before.st_ino);
            QCOMPARE(stateOf(source("plain")).st_nlink, before.st_nlink + 1);
            const struct stat copy = stateOf(tree.path() + "/folder/group");
            QVERIFY(copy.st_ino != groupBefore.st_ino);
            QCOMPARE(copy.st_mode & 07777, 0644u);
            QCOMPARE(copy.st_mtim.tv_sec, groupBefore.st_mtim.tv_sec);
            QCOMPARE(copy.st_mtim.tv_nsec, groupBefore.st_mtim.tv_nsec / 100 * 100);
            QCOMPARE(stateOf(tree.path() + "/folder").st_mode & 07777, 0755u);
            QCOMPARE(stateOf(tree.path() + "/folder").st_mtim.tv_sec, folderBefore.st_mtim.tv_sec);
        }
        for (const auto &[name, state] :
             {std::pair(QString("plain"), before), std::pair(QString("folder/group"), groupBefore),
              std::pair(QString("folder"), folderBefore)}) {
            const struct stat after = stateOf(source(name));
            QCOMPARE(after.st_nlink, state.st_nlink);
            QCOMPARE(after.st_mode, state.st_mode);
            QCOMPARE(after.st_mtim.tv_sec, state.st_mtim.tv_sec);
            QCOMPARE(after.st_mtim.tv_nsec, state.st_mtim.tv_nsec);
        }
    }

    void foldersThatMayNotBeWrittenAreRemoved()
    {
        TreeOptions options;
        options.permissions = TreeOptions::Permissions::AsTheyAre;
        StagedTree tree(parent());
        QVERIFY(!tree.create(planOf(m_temp->filePath("source"), options), goOn));
        QCOMPARE(stateOf(tree.path() + "/folder").st_mode & 07777, 0500u);
        QVERIFY(tree.remove());
        QVERIFY(QDir(parent()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

    void linksAreFollowed()
    {
        QCOMPARE(symlink("folder", QFile::encodeName(source("link")).constData()), 0);
        QCOMPARE(symlink("plain", QFile::encodeName(source("name")).constData()), 0);
        StagedTree tree(parent());
        QVERIFY(!tree.create(planOf(m_temp->filePath("source")), goOn));
        QVERIFY(S_ISDIR(stateOf(tree.path() + "/link").st_mode));
        QCOMPARE(readFile(tree.path() + "/link/group"), "folder/group");
        QCOMPARE(stateOf(tree.path() + "/name").st_ino, stateOf(source("plain")).st_ino);
    }

    void aFileThatBecomesALinkIsRefused()
    {
        const SourcePlan plan = planOf(m_temp->filePath("source"));
        QVERIFY(QFile::remove(source("plain")));
        QCOMPARE(symlink("/etc/passwd", QFile::encodeName(source("plain")).constData()), 0);
        StagedTree tree(parent());
        const QString error = textOf(tree.create(plan, goOn).value());
        QVERIFY2(error.startsWith("cannot copy plain for packing: "), qUtf8Printable(error));
    }

    void aFileThatBecomesAPipeIsRefused()
    {
        const SourcePlan plan = planOf(m_temp->filePath("source"));
        QVERIFY(QFile::remove(source("plain")));
        QCOMPARE(mkfifo(QFile::encodeName(source("plain")).constData(), 0600), 0);
        StagedTree tree(parent());
        QCOMPARE(textOf(tree.create(plan, goOn).value()),
                 "cannot copy plain for packing: it is no file any more");
    }

    // A link in the tree that somebody has added is removed with nothing else, or stays.
    void removalFollowsNoLinks()
    {
        QVERIFY(QDir(m_temp->path()).mkdir("outside"));
        QVERIFY(writeFile(m_temp->filePath("outside/plain"), "keep"));
        StagedTree tree(parent());
        QVERIFY(!tree.create(planOf(m_temp->filePath("source")), goOn));
        QVERIFY(QFile::remove(tree.path() + "/plain"));
        QCOMPARE(symlink(QFile::encodeName(m_temp->filePath("outside/plain")).constData(),
                         QFile::encodeName(tree.path() + "/plain").constData()),
                 0);
        QVERIFY(tree.remove());
        QCOMPARE(readFile(m_temp->filePath("outside/plain")), "keep");
    }

    void toAnotherFileSystemFilesAreCopied()
    {
        const QTemporaryDir other("/dev/shm/kestrelpack-XXXXXX");
        if (!other.isValid() || stateOf(other.path()).st_dev == stateOf(m_temp->path()).st_dev) {
            QSKIP("there is no other file system");
        }
        StagedTree tree(other.path());
        QVERIFY(!tree.create(planOf(m_temp->filePath("source")), goOn));
        QCOMPARE(tree.linkedFiles(), 0);
        QCOMPARE(readFile(tree.path() + "/plain"), "plain");
        QCOMPARE(stateOf(tree.path() + "/plain").st_mtim.tv_sec,
                 stateOf(source("plain")).st_mtim.tv_sec);
    }
};

QTEST_GUILESS_MAIN(TestStagedTreeUnix)
#include "tst_stagedtree_unix.moc"
