// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/privatename.h"

#include <QTest>

using namespace sfx;

namespace {

const char16_t *units(const QString &text)
{
    return reinterpret_cast<const char16_t *>(text.utf16());
}

QString stableName(const QString &path, quint64 size, quint64 modified, const QString &rights)
{
    Text pathText;
    Text rightsText;
    Text name;
    unsigned char bytes[privateNameBytes];
    if (!pathText.append(units(path)) || !rightsText.append(units(rights))) {
        return QString();
    }
    hashProducedFile({pathText, size, modified, rightsText}, bytes);
    return makePrivateName(bytes, name) ? QString::fromUtf16(name.data()) : QString();
}

} // namespace

class TestPrivateName : public QObject
{
    Q_OBJECT

private slots:
    void spellsAllBytes();
    void staysTheSame_data();
    void staysTheSame();
    void knowsLockFiles_data();
    void knowsLockFiles();
};

void TestPrivateName::spellsAllBytes()
{
    Text name;
    QVERIFY(makePrivateName({0x00, 0x01, 0x10, 0x7f, 0x80, 0xff, 0xab, 0xcd, 0xef, 0x9a}, name));
    QCOMPARE(QString::fromUtf16(name.data()), QStringLiteral("kp-0001107f80ffabcdef9a"));
    QVERIFY(name.append(lockSuffix));
    QVERIFY(isLockName(name.data()));
}

void TestPrivateName::staysTheSame_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<quint64>("size");
    QTest::addColumn<quint64>("modified");
    QTest::addColumn<QString>("rights");
    QTest::addColumn<bool>("isSame");
    const auto row = [](const char *name, const char *path, quint64 size, quint64 modified,
                        const char *rights, bool isSame) {
        QTest::newRow(name) << path << size << modified << rights << isSame;
    };
    constexpr quint64 time = 133000000000000000;
    row("the same file", "C:\\Tools\\Made.exe", 5000, time, "D:P(A)", true);
    row("in other letters", "c:\\tools\\made.EXE", 5000, time, "D:P(A)", true);
    row("another name", "C:\\Tools\\Made2.exe", 5000, time, "D:P(A)", false);
    row("another folder", "D:\\Tools\\Made.exe", 5000, time, "D:P(A)", false);
    row("a byte longer", "C:\\Tools\\Made.exe", 5001, time, "D:P(A)", false);
    row("4 GiB longer", "C:\\Tools\\Made.exe", 5000 + (1ull << 32), time, "D:P(A)", false);
    row("made later", "C:\\Tools\\Made.exe", 5000, time + 1, "D:P(A)", false);
    row("as an administrator", "C:\\Tools\\Made.exe", 5000, time, "D:P(B)", false);
    row("path and rights divided elsewhere", "C:\\Tools\\Made.exeD", 5000, time, ":P(A)", false);
}

void TestPrivateName::staysTheSame()
{
    QFETCH(QString, path);
    QFETCH(quint64, size);
    QFETCH(quint64, modified);
    QFETCH(QString, rights);
    const QString name = stableName(path, size, modified, rights);
    const QString reference = stableName(QStringLiteral("C:\\Tools\\Made.exe"), 5000,
                                         133000000000000000, QStringLiteral("D:P(A)"));
    QVERIFY(isLockName(units(name + QString::fromUtf16(lockSuffix))));
    QTEST(name == reference, "isSame");
}

void TestPrivateName::knowsLockFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isOurs");
    QTest::newRow("one of ours") << "kp-0123456789abcdef0123.lock" << true;
    QTest::newRow("too few digits") << "kp-0123456789abcdef012.lock" << false;
    QTest::newRow("too many digits") << "kp-0123456789abcdef01234.lock" << false;
    QTest::newRow("large letters") << "kp-0123456789ABCDEF0123.lock" << false;
    QTest::newRow("no digit") << "kp-0123456789abcdefg123.lock" << false;
    QTest::newRow("another prefix") << "kq-0123456789abcdef0123.lock" << false;
    QTest::newRow("another suffix") << "kp-0123456789abcdef0123.lokk" << false;
    QTest::newRow("a longer suffix") << "kp-0123456789abcdef0123.lock1" << false;
    QTest::newRow("the folder") << "kp-0123456789abcdef0123" << false;
    QTest::newRow("nothing") << "" << false;
}

void TestPrivateName::knowsLockFiles()
{
    QFETCH(QString, name);
    QTEST(isLockName(units(name)), "isOurs");
}

QTEST_APPLESS_MAIN(TestPrivateName)
#include "tst_privatename.moc"
