// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/e2e/productrun.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/testfiles.h"

#include <QTest>
#include <QtEndian>

namespace {

// The place where a PE32+ file names its signature: the fifth of its data directories.
struct SignatureTable
{
    qint64 offset;
    qint64 size;
};

SignatureTable signatureTable(const QByteArray &program)
{
    const quint32 header = qFromLittleEndian<quint32>(program.constData() + 0x3c);
    const char *entry = program.constData() + header + 24 + 112 + 4 * 8;
    return {qFromLittleEndian<quint32>(entry), qFromLittleEndian<quint32>(entry + 4)};
}

} // namespace

// Signs a produced file after packing, as its author would, with a certificate made for the test.
class TestSigning : public QObject
{
    Q_OBJECT

private:
    PrivateTemp m_temp;
    QString m_plain;
    QString m_signed;
    QString m_certificate;

    bool makeCertificate(const QString &name) const
    {
        return runProgram("openssl",
                          {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                           "/CN=Kestrelpack test", "-addext", "extendedKeyUsage=codeSigning",
                           "-keyout", m_temp.filePath(name + ".key"), "-out",
                           m_temp.filePath(name + ".pem")})
                   .exitCode
            == 0;
    }

    ProgramRun verify(const QString &file) const { return verify(file, m_certificate); }
    static ProgramRun verify(const QString &file, const QString &authority)
    {
        return runProgram("osslsigncode", {"verify", "-CAfile", authority, "-in", file});
    }

private slots:
    void initTestCase()
    {
        m_plain = m_temp.filePath("out/hello.exe");
        m_signed = m_temp.filePath("signed.exe");
        m_certificate = m_temp.filePath("own.pem");
        const ProgramRun packed
            = runProgram(KESTRELPACK_CLI,
                         {"-q", "-o", m_temp.filePath("out"), KESTRELPACK_HELLO_FOLDER});
        QVERIFY2(packed.exitCode == 0, qPrintable(packed.errors));
        QVERIFY2(makeCertificate("own") && makeCertificate("other"), "is openssl installed?");
        const ProgramRun signing
            = runProgram("osslsigncode",
                         {"sign", "-certs", m_certificate, "-key", m_temp.filePath("own.key"), "-h",
                          "sha256", "-in", m_plain, "-out", m_signed});
        QVERIFY2(signing.exitCode == 0, qPrintable(signing.output + signing.errors));
    }

    void theSignatureLiesBehindTheArchiveAndVerifies()
    {
        const QByteArray plain = readFile(m_plain);
        const QByteArray withSignature = readFile(m_signed);
        QCOMPARE(signatureTable(plain).size, 0);
        const SignatureTable table = signatureTable(withSignature);
        QVERIFY(table.offset >= plain.size());
        QCOMPARE(table.offset + table.size, withSignature.size());

        const ProgramRun verified = verify(m_signed);
        QVERIFY2(verified.exitCode == 0, qPrintable(verified.output + verified.errors));
        QVERIFY(verify(m_plain).exitCode != 0);
        QVERIFY(verify(m_signed, m_temp.filePath("other.pem")).exitCode != 0);
    }

    void aSignedProductGetsItsArgumentsAndPassesItsExitCodeOn()
    {
        const ProgramRun started = startProduct(m_signed, {"one", "two three", "--exit", "42"});
        QVERIFY2(started.exitCode == 42, qPrintable(started.output + started.errors));
        QVERIFY2(started.output.contains("Argument 1: one\r\nArgument 2: two three\r\n"),
                 qPrintable(started.output));
        QCOMPARE(unpackedFolders(), QStringList());
    }

    void aSignedProductThatWasChangedDoesNotVerify_data()
    {
        QTest::addColumn<QByteArray>("near"); // the byte after the first of these is changed
        QTest::newRow("in the module") << QByteArray(".text");
        QTest::newRow("in the name of the program to run") << QByteArray("RunProgram=\"");
        QTest::newRow("in the archive") << QByteArray(";!@InstallEnd@!\n7z\xbc\xaf\x27\x1c");
    }
    void aSignedProductThatWasChangedDoesNotVerify()
    {
        QFETCH(QByteArray, near);
        QByteArray bytes = readFile(m_signed);
        const auto at = bytes.indexOf(near);
        QVERIFY(at > 0);
        const auto changed = at + near.size();
        bytes[changed] = static_cast<char>(bytes[changed] ^ 1);
        const QString file = m_temp.filePath("changed.exe");
        QVERIFY(writeFile(file, bytes));

        const ProgramRun verified = verify(file);
        QVERIFY(verified.exitCode != 0);
        // It fails for this reason, and not because the file could not be read.
        QVERIFY2(verified.output.contains("MISMATCH"),
                 qPrintable(verified.output + verified.errors));
    }
};

QTEST_GUILESS_MAIN(TestSigning)
#include "tst_signing.moc"
