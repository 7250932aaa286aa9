// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/trust_unix.h"

#include "platform/helperprocess.h"
#include "tests/support/testfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;
constexpr gid_t nogroup = 65534;

enum class Maker { User, Nobody };

QByteArray nameOf(const QString &path)
{
    return QFile::encodeName(path);
}

} // namespace

class TestTrustUnix : public QObject
{
    Q_OBJECT

private:
    // Makes a directory with the permissions `mode` and a program in it.
    struct Place
    {
        explicit Place(mode_t mode) : directory(temp.filePath("place")), tool(directory + "/tool")
        {
            if (mkdir(nameOf(directory).constData(), 0700) != 0
                || !writeFile(tool, "#!/bin/sh\nexit 0\n")
                || chmod(nameOf(tool).constData(), 0700) != 0
                || chmod(nameOf(directory).constData(), mode) != 0) {
                qFatal("the place could not be made");
            }
        }

        QTemporaryDir temp;
        QString directory;
        QString tool;
    };

    static bool give(const QString &path, Maker maker)
    {
        return maker == Maker::User
            || (geteuid() == 0 && lchown(nameOf(path).constData(), nobody, nogroup) == 0);
    }

private slots:
    void whoMayWriteADirectory_data()
    {
        QTest::addColumn<uint>("user");
        QTest::addColumn<uint>("owner");
        QTest::addColumn<uint>("group");
        QTest::addColumn<uint>("mode");
        QTest::addColumn<bool>("others");
        constexpr uint somebody = 4711; // not in the list of users
        constexpr uint somebodyElse = 4712;
        QTest::newRow("the user's alone") << somebody << somebody << somebody << 0700U << false;
        QTest::newRow("all may read it") << somebody << somebody << somebody << 0755U << false;
        QTest::newRow("root's") << somebody << 0U << 0U << 0755U << false;
        QTest::newRow("everybody's") << somebody << somebody << somebody << 0777U << true;
        QTest::newRow("everybody's, sticky") << somebody << 0U << 0U << 01777U << true;
        QTest::newRow("everybody's, not the group's")
            << somebody << somebody << somebody << 0702U << true;
        QTest::newRow("another user's") << somebody << somebodyElse << somebody << 0755U << true;
        QTest::newRow("another user's, of root") << 0U << somebody << 0U << 0700U << true;
        QTest::newRow("the user's own group may write it") << 0U << 0U << 0U << 0775U << false;
        QTest::newRow("another group may write it") << 0U << 0U << uint(nogroup) << 0775U << true;
        QTest::newRow("another group may write it, and owns what is made there")
            << 0U << 0U << uint(nogroup) << 02775U << true;
        QTest::newRow("a group may write it of which nothing is known")
            << somebody << somebody << somebody << 0775U << true;
    }
    void whoMayWriteADirectory()
    {
        QFETCH(uint, user);
        QFETCH(uint, owner);
        QFETCH(uint, group);
        QFETCH(uint, mode);
        struct stat directory = {};
        directory.st_uid = owner;
        directory.st_gid = group;
        directory.st_mode = S_IFDIR | mode;
        QTEST(othersMayWrite(directory, user), "others");
    }

    void anyModeIsUsed_data()
    {
        QTest::addColumn<uint>("directory");
        QTest::addColumn<uint>("file");
        for (const uint directory : {0700U, 01777U}) {
            for (const uint file : {0500U, 0664U, 0755U, 0775U, 0777U, 04777U}) {
                QTest::addRow("%o in a directory of %o", file, directory) << directory << file;
            }
        }
    }
    void anyModeIsUsed()
    {
        QFETCH(uint, directory);
        QFETCH(uint, file);
        const Place place(directory);
        QCOMPARE(chmod(nameOf(place.tool).constData(), file), 0);
        QCOMPARE(untrustedFileReason(place.tool), QString());
    }

    void anotherUsersFile_data()
    {
        QTest::addColumn<uint>("mode");
        QTest::addColumn<bool>("used");
        QTest::newRow("in a directory of the user's own") << 0700U << true;
        QTest::newRow("in one that all may read") << 0755U << true;
        QTest::newRow("in one that everybody may write") << 0777U << false;
        QTest::newRow("in one like /tmp") << 01777U << false;
    }
    void anotherUsersFile()
    {
        QFETCH(uint, mode);
        QFETCH(bool, used);
        const Place place(mode);
        if (!give(place.tool, Maker::Nobody)) {
            QSKIP("only root can give a file away");
        }
        QCOMPARE(untrustedFileReason(place.tool),
                 used ? QString() : place.tool + " belongs to another user");
    }

    // With any umask: the group that may write is the user's own group.
    void aDirectoryAsMkdirMakesItIsPrivate_data()
    {
        QTest::addColumn<uint>("mask");
        for (const uint mask : {002U, 022U, 077U}) {
            QTest::addRow("umask %03o", mask) << mask;
        }
    }
    void aDirectoryAsMkdirMakesItIsPrivate()
    {
        QFETCH(uint, mask);
        const QTemporaryDir temp;
        const mode_t before = umask(mask);
        const bool made = QDir(temp.path()).mkpath("own");
        umask(before);
        const QString tool = temp.filePath("own/tool");
        QVERIFY(made && writeFile(tool, "x"));
        if (!give(tool, Maker::Nobody)) {
            QSKIP("only root can give a file away");
        }
        QCOMPARE(untrustedFileReason(tool), QString());
    }

    void links_data()
    {
        QTest::addColumn<uint>("mode");
        QTest::addColumn<Maker>("link");
        QTest::addColumn<Maker>("target");
        QTest::addColumn<QString>("reason");
        const QString anothersLink = "%1 belongs to another user";
        const QString anothersTarget = "%1 is a link to a file of another user";
        QTest::newRow("the user's to the user's")
            << 01777U << Maker::User << Maker::User << QString();
        QTest::newRow("another's to the user's")
            << 01777U << Maker::Nobody << Maker::User << anothersLink;
        QTest::newRow("the user's to another's")
            << 01777U << Maker::User << Maker::Nobody << anothersTarget;
        QTest::newRow("another's to another's")
            << 01777U << Maker::Nobody << Maker::Nobody << anothersLink;
        QTest::newRow("another's to another's, in a directory of the user's own")
            << 0700U << Maker::Nobody << Maker::Nobody << QString();
    }
    void links()
    {
        QFETCH(uint, mode);
        QFETCH(Maker, link);
        QFETCH(Maker, target);
        QFETCH(QString, reason);
        const Place place(mode);
        const QString path = place.directory + "/link";
        QVERIFY(QFile::link(place.tool, path));
        if (!give(path, link) || !give(place.tool, target)) {
            QSKIP("only root can give a file away");
        }
        QCOMPARE(untrustedFileReason(path), reason.isEmpty() ? QString() : reason.arg(path));
    }

    void aLinkToAProgramOfTheSystem()
    {
        const Place place(01777);
        const QString path = place.directory + "/link";
        QVERIFY(QFile::link("/bin/sh", path));
        QCOMPARE(untrustedFileReason(path), QString());
    }

    void aProgramOfTheSystemIsTrustedByEveryUser()
    {
        if (geteuid() != 0 || seteuid(nobody) != 0) {
            QSKIP("only root can be another user");
        }
        const QString reason = untrustedFileReason("/bin/sh");
        QCOMPARE(seteuid(0), 0);
        QCOMPARE(reason, QString());
    }

    void aMissingFileIsNobodys()
    {
        const Place place(01777);
        QCOMPARE(untrustedFileReason(place.directory + "/missing"), QString());
        QCOMPARE(untrustedFileReason("/missing/tool"), QString());
    }

    void aTrustedHelperStarts()
    {
        const Place place(0700);
        QCOMPARE(chmod(nameOf(place.tool).constData(), 0777), 0);
        HelperProcess process;
        process.startHelper(place.tool, {});
        QVERIFY2(process.waitForFinished(300000), qPrintable(process.errorString()));
        QCOMPARE(process.exitCode(), 0);
    }

    void anUntrustedHelperFailsLikeOneThatDoesNotStart()
    {
        const Place place(01777);
        if (!give(place.tool, Maker::Nobody)) {
            QSKIP("only root can give a file away");
        }
        HelperProcess process;
        process.startHelper(place.tool, {});
        QVERIFY(!process.waitForStarted(5000));
        QCOMPARE(process.errorString(), place.tool + " belongs to another user");
        QVERIFY(!process.waitForFinished(100));
    }
};

QTEST_GUILESS_MAIN(TestTrustUnix)
#include "tst_trust_unix.moc"
