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

} // namespace

class TestPrivateName : public QObject
{
    Q_OBJECT

private slots:
    void spellsAllBytes();
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
