// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/applicationfolder.h"

#include <QTest>

using namespace sfx;

class TestApplicationFolder : public QObject
{
    Q_OBJECT

private slots:
    void keepsProgramPathsShort_data();
    void keepsProgramPathsShort();
};

void TestApplicationFolder::keepsProgramPathsShort_data()
{
    QTest::addColumn<int>("rootSize");
    QTest::addColumn<QString>("folder");
    QTest::newRow("plenty of room") << 50 << "requested name";
    QTest::newRow("just room enough") << 259 - 22 << "requested name"; // 14 + 6 and two separators
    QTest::newRow("one unit too many") << 259 - 21 << "app";
    QTest::newRow("no room at all") << 300 << "app";
}

void TestApplicationFolder::keepsProgramPathsShort()
{
    QFETCH(int, rootSize);
    Text requested;
    Text program;
    QVERIFY(requested.append(u"requested name") && program.append(u"my.exe"));
    QTEST(QString::fromUtf16(
              applicationFolderName(static_cast<std::size_t>(rootSize), requested, program)),
          "folder");
}

QTEST_APPLESS_MAIN(TestApplicationFolder)
#include "tst_applicationfolder.moc"
