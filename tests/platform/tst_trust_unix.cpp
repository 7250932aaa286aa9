// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/trust_unix.h"

#include "platform/helperprocess.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

class TestTrustUnix : public QObject
{
    Q_OBJECT

private:
    static QString makeFile(const QTemporaryDir &dir, uint permissions)
    {
        QFile file(dir.filePath("tool"));
        if (!file.open(QIODevice::WriteOnly) || file.write("#!/bin/sh\nexit 0\n") < 0) {
            qFatal("the file could not be made");
        }
        file.setPermissions(QFile::Permissions::fromInt(permissions));
        return file.fileName();
    }

private slots:
    void permissions_data()
    {
        QTest::addColumn<uint>("permissions");
        QTest::addColumn<bool>("trusted");
        QTest::newRow("the owner's alone") << 0x7000U << true;
        QTest::newRow("others may read and run it") << 0x7055U << true;
        QTest::newRow("the group may write it") << 0x7020U << false;
        QTest::newRow("everybody may write it") << 0x7002U << false;
    }
    void permissions()
    {
        QFETCH(uint, permissions);
        QTemporaryDir dir;
        const QString path = makeFile(dir, permissions);
        const QString reason = untrustedFileReason(path);
        QTEST(reason.isEmpty(), "trusted");
        QVERIFY(reason.isEmpty() || reason == path + " may be written by others");
    }

    void anotherUsersFile()
    {
        QTemporaryDir dir;
        const QString path = makeFile(dir, 0x7055);
        if (chown(QFile::encodeName(path).constData(), 65534, 65534) != 0) {
            QSKIP("only root can give a file away");
        }
        QCOMPARE(untrustedFileReason(path), path + " belongs to another user");
    }

    void aMissingFileIsNobodys() { QCOMPARE(untrustedFileReason("/missing/tool"), QString()); }

    void aTrustedHelperStartsAndAnUntrustedOneFailsLikeOneThatDoesNotStart()
    {
        QTemporaryDir dir;
        const QString path = makeFile(dir, 0x7000);
        HelperProcess trusted;
        trusted.startHelper(path, {});
        QVERIFY(trusted.waitForFinished(5000));
        QCOMPARE(trusted.exitCode(), 0);

        QFile::setPermissions(path, QFile::Permissions::fromInt(0x7002));
        HelperProcess untrusted;
        untrusted.startHelper(path, {});
        QVERIFY(!untrusted.waitForStarted(5000));
        QCOMPARE(untrusted.errorString(), path + " may be written by others");
        QVERIFY(!untrusted.waitForFinished(100));
    }
};

QTEST_GUILESS_MAIN(TestTrustUnix)
#include "tst_trust_unix.moc"
