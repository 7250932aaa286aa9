// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/damagedproduct.h"
#include "tests/helpers/self-extractor/moduletest.h"

#include <QTest>

#include <algorithm>

using namespace sfx;

namespace {

// The module's whole exit code, as the program that starts it tells it.
quint32 endOf(const Run &run)
{
    return run.value("ended").toUInt();
}

bool isRefusal(quint32 exitCode)
{
    const auto refusals = {ExitCode::Damaged, ExitCode::Unsupported, ExitCode::UnsafeName,
                           ExitCode::NoMemory, ExitCode::ProgramMissing};
    return std::any_of(refusals.begin(), refusals.end(), [exitCode](ExitCode refusal) {
        return static_cast<quint32>(refusal) == exitCode;
    });
}

} // namespace

/// Starts produced files that were cut or altered: the program in them runs only if all of it is as
/// packed.
class TestDamagedStart : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void startsTheWholeFile();
    void startsNothingCut();
    void startsNothingAltered();

private:
    Run runBytes(const QByteArray &bytes) const { return m_run.run(m_run.write(bytes)); }

    Tree m_tree;
    QByteArray m_product;
    QByteArray m_stored; // the same, with nothing compressed: check sums alone tell
};

void TestDamagedStart::initTestCase()
{
    QVERIFY(m_run.setUp());
    m_tree = {{QStringLiteral("main.exe"), ModuleRun::programBytes()},
              {QStringLiteral("data/"), QByteArray()},
              {QStringLiteral("data/a.txt"), QByteArray("text ").repeated(2000)}};
    const QByteArray front = m_run.module() + ModuleRun::blockFor(QStringLiteral("main.exe"));
    m_product = front + packTree(m_tree, {QStringLiteral("-mx=5")});
    m_stored = front + packTree(m_tree, {QStringLiteral("-mx=0")});
}

void TestDamagedStart::startsTheWholeFile()
{
    for (const QByteArray &product : {m_product, m_stored}) {
        const Run result = runBytes(product);
        QCOMPARE(endOf(result), 7u);
        QVERIFY(!result.value("program").isEmpty());
    }
}

void TestDamagedStart::startsNothingCut()
{
    const qsizetype begin = m_run.module().size();
    for (int tenth = 0; tenth < 10; ++tenth) {
        const qsizetype length = begin + (m_product.size() - begin) * tenth / 10;
        const Run result = runBytes(m_product.left(length));
        QCOMPARE(result.value("program"), QString());
        QCOMPARE(endOf(result), static_cast<quint32>(ExitCode::Damaged));
        QVERIFY(!result.errors.isEmpty());
    }
}

// What may run is what unpacks to the same natively: a letter of the title may be another one.
void TestDamagedStart::startsNothingAltered()
{
    constexpr quint32 seed = 20261121;
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    int started = 0;
    for (int i = 0; i < 50; ++i) {
        QByteArray altered = i % 2 == 0 ? m_product : m_stored;
        // A third of the changes is in block and start header, which are short.
        qsizetype at = 0;
        if (i % 3 == 0) {
            QByteArray front = altered.left(m_run.module().size() + 260);
            at = flipByte(front, m_run.module().size(), random);
            altered.replace(0, front.size(), front);
        } else {
            at = flipByte(altered, m_run.module().size(), random);
        }
        Tree unpacked;
        const bool isWhole = unpackProduct(altered, unpacked) == Status::Ok && unpacked == m_tree;
        const Run result = runBytes(altered);
        QVERIFY2(isWhole == !result.value("program").isEmpty(), qPrintable(QString::number(at)));
        QVERIFY2(isWhole ? endOf(result) == 7 : isRefusal(endOf(result)),
                 qPrintable(QString::number(at)));
        started += isWhole ? 1 : 0;
    }
    QVERIFY2(started < 25, qPrintable(QString::number(started)));
}

QTEST_GUILESS_MAIN(TestDamagedStart)
#include "tst_damagedstart.moc"
