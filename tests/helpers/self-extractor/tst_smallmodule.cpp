// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/decoding/codergraph.h"
#include "helpers/self-extractor/start/settings.h"
#include "tests/helpers/self-extractor/archivewriter.h"
#include "tests/helpers/self-extractor/memorysource.h"

#include <QTest>

using namespace sfx;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(Status)

// What the small module lacks is refused like something that no module knows.
class TestSmallModule : public QObject
{
    Q_OBJECT

private slots:
    void method_data();
    void method();
    void setting_data();
    void setting();
};

void TestSmallModule::method_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<Status>("expected");
    QTest::newRow("Copy") << QByteArray(1, '\0') << Status::Ok;
    QTest::newRow("Zstandard") << QByteArray("\x04\xf7\x11\x01") << Status::Unsupported;
    QTest::newRow("no method's number") << QByteArray("\x04\xf7\x11\x7f") << Status::Unsupported;
}

void TestSmallModule::method()
{
    QFETCH(QByteArray, id);
    forge::ArchivePlan plan(QList<forge::File>{{u"main.exe"_s, "program"}});
    plan.folders[0].coders[0].method = id;
    MemorySource source(forge::archiveOf(plan));
    Archive archive(source);
    CoderGraph graph;
    Status status = archive.open(0);
    if (status == Status::Ok) {
        status = archive.coderGraph(0, graph);
    }
    if (status == Status::Ok) {
        status = checkCoderGraph(graph, 1 << 20);
    }
    QTEST(status, "expected");
}

void TestSmallModule::setting_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<Status>("expected");
    QTest::newRow("one that both modules know") << QByteArray("Silent=\"1\"\n") << Status::Ok;
    QTest::newRow("days") << QByteArray("Keep=\"30\"\n") << Status::Damaged;
    QTest::newRow("a comparison") << QByteArray("KeepVerify=\"0\"\n") << Status::Damaged;
    QTest::newRow("a product") << QByteArray("Product=\"p\"\n") << Status::Damaged;
}

void TestSmallModule::setting()
{
    QFETCH(QByteArray, text);
    Settings settings;
    QTEST(parseSettings(text.constData(), static_cast<std::size_t>(text.size()), settings),
          "expected");
    QCOMPARE(settings.keepDays, 0u);
}

QTEST_APPLESS_MAIN(TestSmallModule)
#include "tst_smallmodule.moc"
