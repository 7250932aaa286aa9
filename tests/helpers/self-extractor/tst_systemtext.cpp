// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/systemtext.h"

#include <QTest>

class TestSystemText : public QObject
{
    Q_OBJECT

private slots:
    void insertsTheName_data();
    void insertsTheName();
};

void TestSystemText::insertsTheName_data()
{
    QTest::addColumn<QString>("system");
    QTest::addColumn<QString>("shown");
    QTest::newRow("without a name") << "Access is denied.\r\n"
                                    << "Access is denied.";
    QTest::newRow("with the name in front") << "%1 is not a valid Win32 application.\r\n"
                                            << "my 1%.exe is not a valid Win32 application.";
    QTest::newRow("with the name inside") << "The operating system cannot run %1.\r\n"
                                          << "The operating system cannot run my 1%.exe.";
    QTest::newRow("with the name twice, and at the end") << "%1 or %1"
                                                         << "my 1%.exe or my 1%.exe";
    QTest::newRow("with other inserts") << "%2 %10 100% %"
                                        << "%2 %10 100% %";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("nothing but a line end") << "\r\n"
                                            << "";
}

void TestSystemText::insertsTheName()
{
    QFETCH(QString, system);
    sfx::Text text;
    QVERIFY(text.append(u"> "));
    QVERIFY(sfx::appendSystemText(text, reinterpret_cast<const char16_t *>(system.utf16()),
                                  static_cast<std::size_t>(system.size()), u"my 1%.exe"));
    QTEST(QString::fromUtf16(text.data()).mid(2), "shown");
}

QTEST_APPLESS_MAIN(TestSystemText)
#include "tst_systemtext.moc"
