// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QTest>

using namespace Qt::StringLiterals;

// A start with administrator's rights: the same user's other programs cannot write to its folder.
class TestElevation : public ModuleTest
{
    Q_OBJECT

private slots:
    void letsTheUserOnlyRead();
};

// Wine stores no label and only a part of the access list, so this compares what the module asks for.
void TestElevation::letsTheUserOnlyRead()
{
    m_run.pretendElevation(true);
    const Run result = m_run.run(assembleWithData(), u" --launch=0"_s);
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 7);
    QCOMPARE(result.value("data"), u"still here"_s);
    const QString rights = result.value("rights");
    const QString user = rights.section(u"(A;OICI;FRFX;;;"_s, 1).section(u')', 0, 0);
    QVERIFY2(user.startsWith(u"S-1-5-21-"_s), qPrintable(rights));
    QCOMPARE(rights,
             u"D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FRFX;;;%1)S:(ML;OICI;NW;;;HI)"_s.arg(
                 user));
}

QTEST_GUILESS_MAIN(TestElevation)
#include "tst_elevation.moc"
