// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

/// 7-Zip's own small module in place of ours: produced files work as well, but the block is not for
/// it, so it chooses the program by a rule of its own.
class TestStockModule : public ModuleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void startsTheProgram_data();
    void startsTheProgram();

private:
    QString pack(const Tree &tree, bool withStockModule) const;

    int m_packs = 0;
};

namespace {

// Ends with its own code if it is started with nothing to do.
constexpr int startersCode = 98;

} // namespace

void TestStockModule::initTestCase()
{
    QVERIFY(m_run.setUp());
    QVERIFY(QFile::exists(QStringLiteral(KESTRELPACK_STOCK_MODULE)));
}

void TestStockModule::init()
{
    QVERIFY(m_run.renewTemporaryFolder());
    ++m_packs;
}

void TestStockModule::startsTheProgram_data()
{
    QTest::addColumn<bool>("hasSetup");
    QTest::addColumn<bool>("withStockModule");
    QTest::addColumn<int>("code");
    QTest::newRow("one program, the stock module") << false << true << 7;
    QTest::newRow("one program, our module") << false << false << 7;
    QTest::newRow("the stock module takes setup.exe") << true << true << startersCode;
    QTest::newRow("our module takes the one that was chosen") << true << false << 7;
}

void TestStockModule::startsTheProgram()
{
    QFETCH(bool, hasSetup);
    QFETCH(bool, withStockModule);
    Tree tree{{u"main.exe"_s, ModuleRun::programBytes()}, {u"data/file.txt"_s, "x"}};
    if (hasSetup) {
        tree[u"setup.exe"_s] = ModuleRun::starterBytes();
    }
    const QString file = pack(tree, withStockModule);
    QVERIFY(!file.isEmpty());
    const QByteArray stock = contentOf(QStringLiteral(KESTRELPACK_STOCK_MODULE));
    QCOMPARE(contentOf(file).startsWith(stock), withStockModule);
    QTEST(m_run.run(file).exitCode, "code");
}

// The terminal program takes a module that lies in the temporary directory already.
QString TestStockModule::pack(const Tree &tree, bool withStockModule) const
{
    const QString place = m_run.path(u"pack-%1/"_s.arg(m_packs));
    if (!writeTree(place + u"source"_s, tree) || !writeTree(place, {{u"temp/"_s, {}}})) {
        return QString();
    }
    if (withStockModule
        && !QFile::copy(QStringLiteral(KESTRELPACK_STOCK_MODULE), place + u"temp/7zS2.sfx"_s)) {
        return QString();
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TMPDIR"_s, place + u"temp"_s);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KESTRELPACK_CLI),
                  {u"-m"_s, u"main.exe"_s, u"-o"_s, place + u"output"_s, place + u"source"_s});
    if (!process.waitForFinished(120000) || process.exitCode() != 0) {
        qWarning("%s", process.readAllStandardError().constData());
        return QString();
    }
    return place + u"output/main.exe"_s;
}

QTEST_GUILESS_MAIN(TestStockModule)
#include "tst_stockmodule.moc"
