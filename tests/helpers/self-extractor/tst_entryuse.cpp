// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/entryuse.h"

#include <QTest>

using namespace sfx;

// Whether something that is to be removed is in use.
class TestEntryUse : public QObject
{
    Q_OBJECT

private slots:
    void judgesTheSystemsAnswer_data();
    void judgesTheSystemsAnswer();
    void knowsPrograms_data();
    void knowsPrograms();
};

void TestEntryUse::judgesTheSystemsAnswer_data()
{
    QTest::addColumn<quint32>("status");
    QTest::addColumn<EntryUse>("use");
    QTest::newRow("opened") << 0u << EntryUse::Free;
    QTest::newRow("opened, with a remark") << 0x40000000u << EntryUse::Free;
    QTest::newRow("open without sharing") << 0xc0000043u << EntryUse::InUse;
    QTest::newRow("a running program") << 0xc0000121u << EntryUse::InUse;
    QTest::newRow("too many open files") << 0xc000011fu << EntryUse::InUse;
    QTest::newRow("no memory") << 0xc0000017u << EntryUse::InUse;
    QTest::newRow("the network is gone") << 0xc00000c4u << EntryUse::InUse;
    QTest::newRow("a warning") << 0x80000005u << EntryUse::InUse;
    QTest::newRow("gone") << 0xc0000034u << EntryUse::Gone;
    QTest::newRow("gone with its folder") << 0xc000003au << EntryUse::Gone;
    QTest::newRow("gone when it is closed") << 0xc0000056u << EntryUse::Gone;
    QTest::newRow("no right to remove it") << 0xc0000022u << EntryUse::NotForUs;
    QTest::newRow("a file instead of a folder") << 0xc0000103u << EntryUse::NotForUs;
    QTest::newRow("a folder instead of a file") << 0xc00000bau << EntryUse::NotForUs;
}

void TestEntryUse::judgesTheSystemsAnswer()
{
    QFETCH(quint32, status);
    QTEST(useByOpening(status), "use");
}

void TestEntryUse::knowsPrograms_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isProgram");
    QTest::newRow("a program") << "main.exe" << true;
    QTest::newRow("a library in large letters") << "QT6CORE.DLL" << true;
    QTest::newRow("nothing but the extension") << ".exe" << true;
    QTest::newRow("data") << "icons.dat" << false;
    QTest::newRow("an extension that begins like it") << "main.exe1" << false;
    QTest::newRow("no dot") << "aexe" << false;
    QTest::newRow("short") << "exe" << false;
    QTest::newRow("nothing") << "" << false;
}

void TestEntryUse::knowsPrograms()
{
    QFETCH(QString, name);
    QTEST(isProgramName(reinterpret_cast<const char16_t *>(name.utf16()),
                        static_cast<std::size_t>(name.size())),
          "isProgram");
}

QTEST_APPLESS_MAIN(TestEntryUse)
#include "tst_entryuse.moc"
