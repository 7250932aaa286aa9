// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>

#include <sys/mount.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using sfx::ExitCode;

// Many kinds of temporary folders. The program runs there, or a message says why it cannot.
class TestTemporaryFolder : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void worksInAnyFolder_data();
    void worksInAnyFolder();
    void worksWithoutOneNamed();
    void keepsOthersOut();
    void saysWhyItCannotBeUsed_data();
    void saysWhyItCannotBeUsed();
    void saysThatItIsReadOnly();

private:
    QString m_file;
};

void TestTemporaryFolder::initTestCase()
{
    QVERIFY(m_run.setUp());
    m_file = m_run.assembleProgram();
}

void TestTemporaryFolder::worksInAnyFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("accents and blanks") << u"f\u00fcr mich"_s << "";
    QTest::newRow("Chinese") << u"\u4e34\u65f6"_s << "";
    QTest::newRow("beyond the basic plane") << u"\U0001f600"_s << "";
    QTest::newRow("percent signs, quotes and brackets") << u"100%TEMP% 'x' & (y)"_s << "";
    QTest::newRow("a separator at the end") << u"temp"_s << "\\";
    QTest::newRow("detours") << u"temp"_s << "\\..\\temp\\.";
    QTest::newRow("a long name") << QString(120, u'n') << "";
}

void TestTemporaryFolder::worksInAnyFolder()
{
    QFETCH(QString, name);
    QFETCH(QString, suffix);
    QVERIFY(m_run.renewTemporaryFolder(name));
    const QString folder = windowsPath(m_run.temporaryFolder());
    const Run result = m_run.run(m_file, QString(), {u"--temp="_s + folder + suffix});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 7);
    QVERIFY(result.value("program").startsWith(folder + u"\\kp-"_s));
    QCOMPARE(result.value("KESTRELPACK_DIR"), result.value("folder"));
}

// Without a named folder, Windows uses the user's own.
void TestTemporaryFolder::worksWithoutOneNamed()
{
    const Run result = m_run.run(m_file, QString(), {u"--temp=-"_s});
    QCOMPARE(result.exitCode, 7);
    QVERIFY(result.value("program").startsWith(u"C:\\users\\"_s));
    QDirIterator left(m_run.prefix() + u"/drive_c/users"_s, {u"kp-*"_s}, QDir::AllEntries,
                      QDirIterator::Subdirectories);
    QVERIFY(!left.hasNext());
}

// Wine maps the access list to Linux permissions, and the administrators to the group.
void TestTemporaryFolder::keepsOthersOut()
{
    QVERIFY(m_run.renewTemporaryFolder());
    const auto process = m_run.start(m_file, u" --wait"_s);
    QVERIFY(m_run.waitForOutput(*process, "KESTRELPACK_CWD=").contains("KESTRELPACK_CWD="));
    const QFileInfoList entries
        = QDir(m_run.temporaryFolder()).entryInfoList({u"kp-*"_s}, QDir::AllEntries | QDir::Hidden);
    QCOMPARE(entries.size(), 2); // the folder and its lock file
    constexpr auto others = QFileDevice::ReadOther | QFileDevice::WriteOther
        | QFileDevice::ExeOther;
    for (const QFileInfo &entry : entries) {
        QVERIFY2(!(entry.permissions() & others), qPrintable(entry.filePath()));
    }
    QCOMPARE(m_run.finish(*process).exitCode, 7);
}

void TestTemporaryFolder::saysWhyItCannotBeUsed_data()
{
    QTest::addColumn<QString>("folder");
    const QString own = windowsPath(m_run.callersFolder());
    QTest::newRow("there is none of that name") << own + u"\\nowhere"_s;
    QTest::newRow("nor the one above") << own + u"\\no\\where"_s;
    QTest::newRow("there is no such drive") << u"Q:\\nowhere"_s;
    QTest::newRow("it is a file") << own + u"\\made\\produced one.exe"_s;
}

void TestTemporaryFolder::saysWhyItCannotBeUsed()
{
    QFETCH(QString, folder);
    const Run result = m_run.run(m_file, QString(), {u"--temp="_s + folder});
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(ExitCode::NoFolder));
    QCOMPARE(result.value("program"), QString());
    const QString said = QString::fromUtf8(result.errors).trimmed();
    const QString begin = u"main Portable: A folder for the program cannot be made in the "
                          "temporary folder. %1\\ "_s.arg(folder);
    QVERIFY2(said.startsWith(begin), qPrintable(said));
    QVERIFY2(said.size() > begin.size() + 5, qPrintable(said)); // and the system's reason
}

void TestTemporaryFolder::saysThatItIsReadOnly()
{
    const QByteArray mountPoint = QFile::encodeName(m_run.temporaryFolder());
    if (geteuid() != 0 || mount("none", mountPoint.constData(), "tmpfs", MS_RDONLY, "") != 0) {
        QSKIP("a read-only disk cannot be mounted here");
    }
    const Run result = m_run.run(m_file);
    umount2(mountPoint.constData(), MNT_DETACH);
    QCOMPARE(result.value("ended").toUInt(), static_cast<quint32>(ExitCode::NoFolder));
    QVERIFY(result.errors.contains(windowsPath(m_run.temporaryFolder()).toUtf8()));
}

QTEST_GUILESS_MAIN(TestTemporaryFolder)
#include "tst_temporaryfolder.moc"
