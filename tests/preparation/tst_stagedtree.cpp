// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/stagedtree.h"

#include "preparation/folderlisting.h"
#include "preparation/stagingplace.h"
#include "tests/support/folderstate.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

bool goOn(qint64)
{
    return true;
}

// The content of the tree as the plan and the disk have it: path, size, time, bytes.
QStringList treeContent(const QString &folder)
{
    QStringList lines;
    for (const SourceEntry &entry : listFolder(folder).entries) {
        lines << QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(entry.path)
                     .arg(static_cast<int>(entry.kind))
                     .arg(entry.modified)
                     .arg(entry.mode.value_or(entry.attributes.value_or(0) & 0x27), 0, 8)
                     .arg(entry.kind == SourceEntry::Kind::File
                              ? QString::fromUtf8(readFile(folder + '/' + entry.path))
                              : QString());
    }
    lines.sort();
    return lines;
}

} // namespace

class TestStagedTree : public QObject
{
    Q_OBJECT

private:
    QString source() const { return m_temp->filePath("source"); }
    QString parent() const { return m_temp->filePath("parent"); }
    QStringList leftInParent() const
    {
        return QDir(parent()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    SourcePlan plan(const TreeOptions &options = {}) const
    {
        const auto result = planTree(source(), listFolder(source()).entries, options);
        if (const auto *problems = std::get_if<TreeProblems>(&result)) {
            qFatal("%s", qUtf8Printable(textOf(problems->messages.constFirst())));
        }
        return std::get<SourcePlan>(result);
    }

    std::unique_ptr<QTemporaryDir> m_temp;

private slots:
    void init()
    {
        m_temp = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_temp->path()).mkpath("source/data/empty"));
        QVERIFY(QDir(m_temp->path()).mkdir("parent"));
        QVERIFY(writeFile(source() + "/app.exe", "program"));
        QVERIFY(writeFile(source() + "/data/a.txt", "text"));
    }

    void theTreeIsEqualAndTheSourceUntouched()
    {
        const QStringList before = folderState(source());
        {
            TreeOptions options;
            options.permissions = TreeOptions::Permissions::AsTheyAre;
            StagedTree tree(parent());
            QVERIFY(!tree.create(plan(options), goOn));
            QCOMPARE(treeContent(tree.path()), treeContent(source()));
            QCOMPARE(tree.linkedFiles(), 2);
            QCOMPARE(tree.copiedBytes(), 0);
        }
        QCOMPARE(leftInParent(), QStringList());
        QCOMPARE(folderState(source()), before);
    }

    void changedTimesAreThoseOfCopies()
    {
        const QStringList before = folderState(source());
        TreeOptions options;
        options.times.limit = 10000000;
        StagedTree tree(parent());
        QVERIFY(!tree.create(plan(options), goOn));
        QCOMPARE(tree.linkedFiles(), 0);
        QCOMPARE(tree.copiedBytes(), 11);
        for (const SourceEntry &entry : listFolder(tree.path()).entries) {
            QCOMPARE(entry.modified, 10000000);
        }
        QCOMPARE(readFile(tree.path() + "/data/a.txt"), "text");
        QCOMPARE(folderState(source()), before);
        QVERIFY(tree.remove());
        QCOMPARE(folderState(source()), before);
        QCOMPARE(leftInParent(), QStringList());
    }

    void whatIsLeftOutIsNotThere()
    {
        TreeOptions options;
        options.excludes = QStringList{"*.txt"};
        StagedTree tree(parent());
        QVERIFY(!tree.create(plan(options), goOn));
        QVERIFY(QFileInfo::exists(tree.path() + "/data/empty"));
        QVERIFY(!QFileInfo::exists(tree.path() + "/data/a.txt"));
    }

    void readOnlyFilesStayReadOnly()
    {
        const QString file = source() + "/data/a.txt";
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
        const QStringList before = folderState(source());
        {
            StagedTree tree(parent());
            QVERIFY(!tree.create(plan(), goOn));
            QVERIFY(!(QFile::permissions(tree.path() + "/data/a.txt") & QFile::WriteOwner));
        }
        QCOMPARE(folderState(source()), before);
        QCOMPARE(leftInParent(), QStringList());
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    }

    void filesThatMustNotBeLinkedAreCopied()
    {
        SourcePlan changed = plan();
        for (PlannedFile &file : changed.files) {
            file.mustNotBeLinked = true;
        }
        StagedTree tree(parent());
        QVERIFY(!tree.create(changed, goOn));
        QCOMPARE(tree.linkedFiles(), 0);
        QCOMPARE(readFile(tree.path() + "/app.exe"), "program");
    }

    void aStopLeavesNothing()
    {
        for (int calls = 0; calls < 2; ++calls) {
            int call = 0;
            StagedTree tree(parent());
            const QString error
                = textOf(tree.create(plan(), [&](qint64) { return call++ < calls; }).value());
            QVERIFY(!error.isEmpty());
            QVERIFY(tree.wasStopped());
            QCOMPARE(leftInParent(), QStringList());
        }
    }

    void anErrorNamesTheFileAndLeavesNothing()
    {
        const SourcePlan planned = plan();
        QVERIFY(QFile::remove(source() + "/data/a.txt"));
        StagedTree tree(parent());
        const QString error = textOf(tree.create(planned, goOn).value());
        QVERIFY2(error.startsWith("cannot copy data/a.txt for packing: "), qUtf8Printable(error));
        QVERIFY(!tree.wasStopped());
        QCOMPARE(leftInParent(), QStringList());
    }

    void aMissingParentIsAnError()
    {
        StagedTree tree(m_temp->filePath("missing"));
        QVERIFY(tree.create(plan(), goOn).has_value());
    }

    void progressCountsAllBytes()
    {
        qint64 last = 0;
        StagedTree tree(parent());
        QVERIFY(writeFile(source() + "/z", "last"));
        const auto error = tree.create(plan(), [&](qint64 bytes) {
            last = bytes;
            return true;
        });
        QVERIFY(!error);
        QCOMPARE(last, 11); // before the last file
    }

    void aPlaceIsChosen_data()
    {
        constexpr qint64 gib = 1 << 30;
        QTest::addColumn<bool>("tempLinks");
        QTest::addColumn<qint64>("tempFree");
        QTest::addColumn<bool>("outLinks");
        QTest::addColumn<qint64>("outFree");
        QTest::addColumn<QString>("path");
        QTest::addColumn<qint64>("bytes");
        QTest::newRow("links in both")
            << true << 1 * gib << true << 99 * gib << "temp" << qint64(0);
        QTest::newRow("links on a full disk")
            << true << qint64(0) << false << 99 * gib << "temp" << qint64(0);
        QTest::newRow("links beside the output")
            << false << 99 * gib << true << qint64(0) << "out" << qint64(0);
        QTest::newRow("no links, more space beside the output")
            << false << 11 * gib << false << 12 * gib << "out" << 10 * gib;
        QTest::newRow("no links, more space in the temporary directory")
            << false << 12 * gib << false << 11 * gib << "temp" << 10 * gib;
        QTest::newRow("no space") << false << 9 * gib << false << 10 * gib << "" << qint64(0);
    }

    void aPlaceIsChosen()
    {
        QFETCH(const bool, tempLinks);
        QFETCH(const qint64, tempFree);
        QFETCH(const bool, outLinks);
        QFETCH(const qint64, outFree);
        SourcePlan large;
        PlannedFile file;
        file.size = qint64(10) << 30;
        large.files.append(file);
        const ChosenPlace chosen
            = chooseStagingPlace(large,
                                 {{"temp", tempLinks, tempFree}, {"out", outLinks, outFree}});
        QTEST(chosen.path, "path");
        QTEST(chosen.bytesToCopy, "bytes");
        QCOMPARE(!chosen.note.has_value(), !chosen.path.isEmpty() && chosen.bytesToCopy == 0);
        if (chosen.path.isEmpty()) {
            QCOMPARE(textOf(*chosen.note),
                     "10.0 GiB have to be copied before packing, but no disk has the space: "
                     "out (10.0 GiB), temp (9.0 GiB)");
        }
    }

    void aPlaceThatTheArchiverCannotReadIsNotChosen()
    {
        const ChosenPlace chosen
            = chooseStagingPlace(plan(), {{"/tmp/a*b", true, 1 << 30}, {"/out", true, 1 << 30}});
        QCOMPARE(chosen.path, "/out");
    }

    void aPlaceIsTried()
    {
        const QStringList before = folderState(source());
        const PlaceToStage place = placeToStage(parent(), plan());
        QVERIFY(place.canLink);
        QVERIFY(place.freeBytes > 0);
        QCOMPARE(leftInParent(), QStringList());
        QCOMPARE(folderState(source()), before);
    }
};

QTEST_GUILESS_MAIN(TestStagedTree)
#include "tst_stagedtree.moc"
