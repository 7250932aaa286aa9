// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/archivermethod.h"
#include "preparation/folderlisting.h"
#include "preparation/stagedtree.h"
#include "tests/support/testfiles.h"
#include "tests/support/waiting.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace {

// How a machine and a checkout can differ.
struct Machine
{
    const char *name;
    bool isReversed; // the order in which files are made
    QFile::Permissions permissions;
    qint64 seconds; // the files' time
    const char *timeZone;
    int threads;
};

constexpr QFile::Permissions readWrite = QFile::ReadOwner | QFile::WriteOwner;
const Machine here = {"here", false, readWrite, 1600000000, "UTC", 2};
const QList<Machine> others = {
    {"one processor", false, readWrite, 1600000000, "UTC", 1},
    {"eight processors", false, readWrite, 1600000000, "UTC", 8},
    {"another order", true, readWrite, 1600000000, "UTC", 2},
    {"other permissions", false,
     readWrite | QFile::ExeOwner | QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther,
     1600000000, "UTC", 2},
    {"other times", false, readWrite, 1700000000, "UTC", 2},
    {"another time zone", false, readWrite, 1600000000, "Asia/Tokyo", 2},
};

// Text that compresses, with repetitions at all distances.
QByteArray textOf(quint32 seed, int size)
{
    QRandomGenerator random(seed);
    QByteArray text;
    while (text.size() < size) {
        const int word = int(random.bounded(5000u));
        text += "word" + QByteArray::number(word * word) + (word % 9 == 0 ? "\n" : " ");
    }
    return text;
}

struct FileOfTree
{
    QString path;
    QByteArray content;
};

// Files with equal names are stored in the order of their times; *.exe and *.dll get a filter.
QList<FileOfTree> makeTreeFiles()
{
    QList<FileOfTree> files;
    for (int i = 0; i < 6; ++i) {
        files.append({QStringLiteral("folder%1/same.txt").arg(i), textOf(quint32(i), 60000)});
        files.append({QStringLiteral("name%1.dll").arg(i), textOf(quint32(100 + i), 40000)});
    }
    files.append({"app.exe", QByteArray("MZ") + textOf(77, 1200000)});
    files.append(FileOfTree{"folder0/empty", {}});
    return files;
}

} // namespace

// The real archiver makes equal archives of equal files, however the machines differ.
class TestReproducible : public QObject
{
    Q_OBJECT

private:
    void makeTree(const QString &folder, const Machine &machine) const
    {
        QList<FileOfTree> files = m_files;
        if (machine.isReversed) {
            std::reverse(files.begin(), files.end());
        }
        for (const FileOfTree &each : files) {
            const QString path = folder + '/' + each.path;
            QVERIFY(QDir().mkpath(QFileInfo(path).path()));
            QVERIFY(writeFile(path, each.content));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            // In other times, the order of times is reversed as well.
            const qint64 number = each.content.size() % 97;
            const qint64 seconds = machine.seconds
                + (machine.seconds == here.seconds ? number : -number);
            QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(seconds),
                                     QFileDevice::FileModificationTime));
            file.close();
            QVERIFY(QFile::setPermissions(path, machine.permissions));
        }
    }

    QByteArray archiveOf(const QString &folder, const QString &level, const QString &method,
                         const Machine &machine) const
    {
        const QString archive = m_temp.filePath("archive.7z");
        QFile::remove(archive);
        QProcess archiver;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TZ", machine.timeZone);
        archiver.setProcessEnvironment(environment);
        // As the engine does it, with another number of processors.
        archiver.start(m_temp.filePath("7zr.exe"),
                       {"a", "-t7z", QDir::toNativeSeparators(archive),
                        QDir::toNativeSeparators(folder + "/*"), "-r", "-mx=" + level,
                        "-m0=" + method, "-bsp1", "-ssc",
                        QStringLiteral("-mmt=%1").arg(machine.threads)});
        if (!archiver.waitForFinished(patience) || archiver.exitCode() != 0) {
            qFatal("the archiver failed: %s", archiver.readAllStandardError().constData());
        }
        return QCryptographicHash::hash(readFile(archive), QCryptographicHash::Sha256).toHex();
    }

    QByteArray preparedArchive(const QString &level, const QString &method, const Machine &machine)
    {
        const QTemporaryDir source;
        makeTree(source.path(), machine);
        TreeOptions options;
        options.times = std::get<TimeRule>(timeRuleOf({}, {}, true));
        options.permissions = TreeOptions::Permissions::Uniform;
        const auto plan = std::get<SourcePlan>(
            planTree(source.path(), listFolder(source.path()).entries, options));
        StagedTree tree(m_temp.path());
        if (const auto error = tree.create(plan, [](qint64) { return true; })) {
            qFatal("%s", qUtf8Printable(textOf(*error)));
        }
        return archiveOf(tree.path(), level, archiverMethod(level, method), machine);
    }

    const QList<FileOfTree> m_files = makeTreeFiles();
    QTemporaryDir m_temp;

private slots:
    void initTestCase()
    {
        const QString program = m_temp.filePath("7zr.exe");
        QVERIFY(QFile::copy(":/resources/7zr.exe", program));
        QVERIFY(QFile::setPermissions(program, readWrite | QFile::ExeOwner));
    }

    void preparedArchivesAreEqual_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("method");
        QTest::newRow("store") << "0"
                               << "LZMA";
        QTest::newRow("LZMA at level 3") << "3"
                                         << "LZMA";
        QTest::newRow("LZMA at level 5") << "5"
                                         << "LZMA";
        QTest::newRow("LZMA at level 9") << "9"
                                         << "LZMA";
        QTest::newRow("LZMA2 at level 1, in several blocks") << "1"
                                                             << "LZMA2";
        QTest::newRow("LZMA2 at level 5") << "5"
                                          << "LZMA2";
    }

    void preparedArchivesAreEqual()
    {
        QFETCH(const QString, level);
        QFETCH(const QString, method);
        const QByteArray expected = preparedArchive(level, method, here);
        for (const Machine &machine : others) {
            QVERIFY2(preparedArchive(level, method, machine) == expected, machine.name);
        }
    }

    // Shows that the test above can fail.
    void othersDiffer()
    {
        const QTemporaryDir source;
        makeTree(source.path(), here);
        const QByteArray first = archiveOf(source.path(), "1", "LZMA2", here);
        QCOMPARE(archiveOf(source.path(), "1", "LZMA2", here), first);
        Machine single = here;
        single.threads = 1;
        QVERIFY(archiveOf(source.path(), "1", "LZMA2", single) != first);
        const QTemporaryDir later;
        makeTree(later.path(), others[4]);
        QVERIFY(archiveOf(later.path(), "1", "LZMA2", here) != first);
    }
};

QTEST_GUILESS_MAIN(TestReproducible)
#include "tst_reproducible.moc"
