// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/filesystem.h"

#include <QTest>

// The largest file of a disk: FAT calls a larger one a full disk.
class TestFileSystem : public QObject
{
    Q_OBJECT

private slots:
    void holdsLargeFiles_data();
    void holdsLargeFiles();
};

void TestFileSystem::holdsLargeFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<quint64>("size");
    QTest::addColumn<bool>("holds");
    constexpr quint64 limit = (1ull << 32) - 1;
    QTest::newRow("the largest file on FAT32") << "FAT32" << limit << true;
    QTest::newRow("a byte more") << "FAT32" << limit + 1 << false;
    QTest::newRow("on FAT") << "FAT" << limit + 1 << false;
    QTest::newRow("on exFAT") << "exFAT" << limit + 1 << true;
    QTest::newRow("on NTFS") << "NTFS" << limit + 1 << true;
    QTest::newRow("on an unknown disk") << "" << limit + 1 << true;
    QTest::newRow("on a disk with a short name") << "FA" << limit + 1 << true;
}

void TestFileSystem::holdsLargeFiles()
{
    QFETCH(QString, name);
    QFETCH(quint64, size);
    QTEST(sfx::holdsFileOf(reinterpret_cast<const char16_t *>(name.utf16()), size), "holds");
}

QTEST_APPLESS_MAIN(TestFileSystem)
#include "tst_filesystem.moc"
