// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/bundledtool.h"
#include "tests/support/knownpermissions.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestBundledTool : public QObject
{
    Q_OBJECT

private slots:
    void everyHelperIsCopiedOutWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("archiver") << "7zr.exe";
        QTest::newRow("self-extractor module") << "7zS2.sfx";
        QTest::newRow("resource editor") << "ResourceHacker.exe";
    }
    void everyHelperIsCopiedOutWhole()
    {
        QFETCH(QString, name);
        QTemporaryDir temp;
        QVERIFY(provideBundledTool(":/resources/" + name, temp.filePath(name)));
        QFile bundled(":/resources/" + name);
        QFile copy(temp.filePath(name));
        QVERIFY(bundled.open(QIODevice::ReadOnly) && copy.open(QIODevice::ReadOnly));
        QVERIFY(bundled.size() > 0);
        QCOMPARE(copy.readAll(), bundled.readAll());
        QCOMPARE(known(copy.permissions() & QFile::Permissions::fromInt(0x7077)),
                 known(QFile::Permissions::fromInt(0x7000)));
    }

    void aFileThatIsThereStaysAsItIs()
    {
        QTemporaryDir temp;
        QFile file(temp.filePath("7zr.exe"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("old") == 3);
        file.close();
        QVERIFY(provideBundledTool(":/resources/7zr.exe", file.fileName()));
        QCOMPARE(file.size(), 3);
    }

    void aFolderThatIsMissingFails()
    {
        QTemporaryDir temp;
        QVERIFY(!provideBundledTool(":/resources/7zr.exe", temp.filePath("missing/7zr.exe")));
    }
};

QTEST_APPLESS_MAIN(TestBundledTool)
#include "tst_bundledtool.moc"
