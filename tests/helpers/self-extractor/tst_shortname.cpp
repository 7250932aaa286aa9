// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/shortname.h"

#include <QTest>

// Names that Windows could give to other entries as their short names.
class TestShortName : public QObject
{
    Q_OBJECT

private slots:
    void areKnown_data();
    void areKnown();
};

void TestShortName::areKnown_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("couldBe");
    QTest::newRow("a short name") << "LONGFI~1.TXT" << true;
    QTest::newRow("in small letters") << "longfi~1.txt" << true;
    QTest::newRow("without an extension") << "PROGRA~2" << true;
    QTest::newRow("from a long list") << "LO1A2B~12.C" << false; // nine characters
    QTest::newRow("with two digits") << "LONGF~12.C" << true;
    QTest::newRow("in a folder") << "a long folder/LONGFI~1.TXT" << true;
    QTest::newRow("only its folder") << "LONGFI~1/a long name.txt" << false;
    QTest::newRow("a base of nine") << "LONGFIL~1.TXT" << false;
    QTest::newRow("an extension of four") << "LONGFI~1.HTML" << false;
    QTest::newRow("two dots") << "A~1.B.C" << true; // no short name, but this costs nothing
    QTest::newRow("no number") << "BACKUP~.TXT" << false;
    QTest::newRow("a number without a tilde") << "FILE1.TXT" << false;
    QTest::newRow("a tilde in the middle") << "A~1B.TXT" << false;
    QTest::newRow("nothing before the tilde") << "~1.TXT" << false;
    QTest::newRow("an editor's copy") << "file.txt~" << false;
    QTest::newRow("nothing") << "" << false;
}

void TestShortName::areKnown()
{
    QFETCH(QString, path);
    QTEST(sfx::couldBeShortName(reinterpret_cast<const char16_t *>(path.utf16()),
                                static_cast<std::size_t>(path.size())),
          "couldBe");
}

QTEST_APPLESS_MAIN(TestShortName)
#include "tst_shortname.moc"
