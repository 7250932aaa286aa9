// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/programs/programreader.h"
#include "tests/support/testfiles.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

// What can be read from the modules' files.
class TestModuleFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void importsNothingThatCanBePlanted();
    void hasAProgressBarThatScreenReadersKnow();
    void namesNoProduct();
    void bringsTheNoticeOfItsDecoder();

private:
    static bool isFull();
    static QByteArray module();
};

void TestModuleFile::initTestCase_data()
{
    QTest::addColumn<bool>("isFull");
    QTest::newRow("the small module") << false;
    QTest::newRow("the full module") << true;
}

bool TestModuleFile::isFull()
{
    QFETCH_GLOBAL(bool, isFull);
    return isFull;
}

QByteArray TestModuleFile::module()
{
    return readFile(isFull() ? KESTRELPACK_TEST_FULL_MODULE : KESTRELPACK_TEST_MODULE);
}

// Windows loads the imported libraries before the module's first instruction. It looks for them in
// the folder of the produced file first, unless they are known libraries or loaded already. KERNEL32
// and ADVAPI32 are known, NTDLL is in every process; but a function may be forwarded to another
// library that is not.
void TestModuleFile::importsNothingThatCanBePlanted()
{
    const auto imports = ProgramReader(TestModuleFile::module()).imports();
    // All functions of these two are their own, or are forwarded to libraries that are loaded already.
    const QStringList libraries{u"kernel32.dll"_s, u"ntdll.dll"_s};
    // Those of ADVAPI32 are checked one by one: they are its own, or come from such libraries.
    // SystemFunction036, which is also called RtlGenRandom, is forwarded to CRYPTBASE.
    const QSet<QString> functions{
        u"CheckTokenMembership"_s,
        u"ConvertSidToStringSidW"_s,
        u"ConvertStringSecurityDescriptorToSecurityDescriptorW"_s,
        u"CreateWellKnownSid"_s,
        u"EqualSid"_s,
        u"GetKernelObjectSecurity"_s,
        u"GetSecurityDescriptorOwner"_s,
        u"GetSidSubAuthority"_s,
        u"GetSidSubAuthorityCount"_s,
        u"GetTokenInformation"_s,
        u"IsTokenRestricted"_s,
        u"OpenProcessToken"_s,
    };
    QStringList others;
    for (auto library = imports.cbegin(); library != imports.cend(); ++library) {
        for (const QString &function : library.value()) {
            const bool isKnown = libraries.contains(library.key())
                || (library.key() == u"advapi32.dll"_s && functions.contains(function));
            if (!isKnown) {
                others += library.key() + u'!' + function;
            }
        }
    }
    QVERIFY2(others.isEmpty(), qPrintable(others.join(u' ')));
    QVERIFY(imports[u"kernel32.dll"_s].contains(u"SetDefaultDllDirectories"_s));
}

// The system's own control tells screen readers its role and its value.
void TestModuleFile::hasAProgressBarThatScreenReadersKnow()
{
    const QByteArray module = TestModuleFile::module();
    const QString bar = u"msctls_progress32"_s;
    const QByteArray inDialog(reinterpret_cast<const char *>(bar.utf16()), 2 * bar.size());
    QCOMPARE(module.toLower().count(inDialog), 2); // the dialog of each language
    QVERIFY(module.contains("Microsoft.Windows.Common-Controls"));
}

// Without version information Windows shows the name of the produced file. With a requested level of
// rights, Windows does not guess from names and texts whether a program is an installer.
void TestModuleFile::namesNoProduct()
{
    const QByteArray module = TestModuleFile::module();
    const QString version = u"VS_VERSION_INFO"_s;
    QVERIFY(!module.contains(
        QByteArray(reinterpret_cast<const char *>(version.utf16()), 2 * version.size())));
    QVERIFY(module.contains("requestedExecutionLevel level=\"asInvoker\""));
}

// The licence of 7-Zip's decoder for Zstandard asks for it. Only the full module has that decoder, and
// knows the settings of kept folders.
void TestModuleFile::bringsTheNoticeOfItsDecoder()
{
    const QByteArray module = TestModuleFile::module();
    for (const char *part : {"(c) Facebook", "Igor Pavlov", "Yann Collet",
                             "Redistributions in binary form must reproduce", "\"AS IS\""}) {
        QVERIFY2(module.contains(part) == isFull(), part);
    }
    QCOMPARE(module.contains("KeepVerify"), isFull());
}

QTEST_APPLESS_MAIN(TestModuleFile)
#include "tst_modulefile.moc"
