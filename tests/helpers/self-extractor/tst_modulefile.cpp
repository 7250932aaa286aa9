// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/testfiles.h"

#include <QMap>
#include <QSet>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

// The 64-bit image of a Windows program (Microsoft, "PE Format").
class Image
{
public:
    explicit Image(QByteArray bytes) : m_bytes(std::move(bytes)), m_header(number<quint32>(0x3c)) {}

    // The imported functions of each library. Imports by number are "#" and the number.
    QMap<QString, QSet<QString>> imports() const
    {
        QMap<QString, QSet<QString>> found;
        const auto directory = number<quint32>(m_header + 0x90);
        for (qsizetype entry = offsetOf(directory); number<quint32>(entry + 12) != 0; entry += 20) {
            const QString library = text(offsetOf(number<quint32>(entry + 12)));
            qsizetype name = offsetOf(number<quint32>(entry));
            for (quint64 value = 0; (value = number<quint64>(name)) != 0; name += 8) {
                const bool byNumber = (value >> 63) != 0;
                found[library.toUpper()] += byNumber
                    ? u'#' + QString::number(value & 0xffff)
                    : text(offsetOf(static_cast<quint32>(value)) + 2);
            }
        }
        return found;
    }

private:
    template <typename Number>
    Number number(qsizetype offset) const
    {
        return offset + static_cast<qsizetype>(sizeof(Number)) <= m_bytes.size()
            ? qFromLittleEndian<Number>(m_bytes.constData() + offset)
            : Number(0);
    }

    QString text(qsizetype offset) const
    {
        return QString::fromLatin1(m_bytes.mid(offset, m_bytes.indexOf('\0', offset) - offset));
    }

    qsizetype offsetOf(quint32 address) const
    {
        const qsizetype sections = m_header + 24 + number<quint16>(m_header + 20);
        for (int i = 0; i < number<quint16>(m_header + 6); ++i) {
            const qsizetype section = sections + 40 * i;
            const auto begin = number<quint32>(section + 12);
            if (address >= begin && address - begin < number<quint32>(section + 16)) {
                return number<quint32>(section + 20) + (address - begin);
            }
        }
        return m_bytes.size();
    }

    QByteArray m_bytes;
    qsizetype m_header;
};

} // namespace

// What can be read from the module's file.
class TestModuleFile : public QObject
{
    Q_OBJECT

private slots:
    void importsNothingThatCanBePlanted();
    void hasAProgressBarThatScreenReadersKnow();
};

// Windows loads the imported libraries before the module's first instruction. It looks for them in
// the folder of the produced file first, unless they are known libraries or loaded already. KERNEL32
// and ADVAPI32 are known, NTDLL is in every process; but a function may be forwarded to another
// library that is not.
void TestModuleFile::importsNothingThatCanBePlanted()
{
    const auto imports = Image(contentOf(QStringLiteral(KESTRELPACK_TEST_MODULE))).imports();
    // All functions of these two are their own, or are forwarded to libraries that are loaded already.
    const QStringList libraries{u"KERNEL32.DLL"_s, u"NTDLL.DLL"_s};
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
                || (library.key() == u"ADVAPI32.DLL"_s && functions.contains(function));
            if (!isKnown) {
                others += library.key() + u'!' + function;
            }
        }
    }
    QVERIFY2(others.isEmpty(), qPrintable(others.join(u' ')));
    QVERIFY(imports[u"KERNEL32.DLL"_s].contains(u"SetDefaultDllDirectories"_s));
}

// The system's own control tells screen readers its role and its value.
void TestModuleFile::hasAProgressBarThatScreenReadersKnow()
{
    const QByteArray module = contentOf(QStringLiteral(KESTRELPACK_TEST_MODULE));
    const QString bar = u"msctls_progress32"_s;
    const QByteArray inDialog(reinterpret_cast<const char *>(bar.utf16()), 2 * bar.size());
    QCOMPARE(module.toLower().count(inDialog), 2); // the dialog of each language
    QVERIFY(module.contains("Microsoft.Windows.Common-Controls"));
}

QTEST_APPLESS_MAIN(TestModuleFile)
#include "tst_modulefile.moc"
