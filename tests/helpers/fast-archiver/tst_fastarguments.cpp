// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/arguments.h"
#include "helpers/fast-archiver/progress.h"
#include "helpers/fast-archiver/progressline.h"

#include <QTest>

#include <cstdio>

using namespace fast;

namespace {

Arguments nativeArguments(const QStringList &texts)
{
    Arguments arguments;
    for (const QString &text : texts) {
#ifdef Q_OS_WIN
        arguments.push_back(text.toStdWString());
#else
        arguments.push_back(text.toStdString());
#endif
    }
    return arguments;
}

QString meaning(const QStringList &texts)
{
    const auto request = parseArguments(nativeArguments(texts));
    if (request.hasFailed()) {
        return QStringLiteral("%1: %2")
            .arg(static_cast<int>(request.failure().status))
            .arg(QString::fromStdString(request.failure().message));
    }
    const PackOptions &options = request.value().options;
    return QStringLiteral("%1 from %2, level %3, window %4, block %5, filter %6, threads %7")
        .arg(QString::fromStdString(pe::utf8Of(request.value().archive)),
             QString::fromStdString(pe::utf8Of(request.value().folder)))
        .arg(options.level)
        .arg(options.windowLog)
        .arg(options.blockSize)
        .arg(options.filtersPrograms)
        .arg(options.threads);
}

QStringList usual(const QString &method = "ZSTD", const QString &level = "5")
{
    return {"a",     "-t7z", "out.7z", "folder/*", "-r", "-mx=" + level, "-m0=" + method,
            "-bsp1", "-ssc"};
}

QStringList with(qsizetype index, const QString &argument)
{
    QStringList arguments = usual();
    arguments[index] = argument;
    return arguments;
}

} // namespace

// The archiver's nine arguments, and what it prints while it works.
class TestFastArguments : public QObject
{
    Q_OBJECT

private slots:
    void argumentsAreUnderstood_data();
    void argumentsAreUnderstood();
    void wrongArgumentsAreRefused_data();
    void wrongArgumentsAreRefused();
    void theLineIsThatOf7Zip();
    void aLineReplacesTheEarlierOne();
};

void TestFastArguments::argumentsAreUnderstood_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    const PackOptions usually;
    const QString start = "out.7z from folder/, ";
    const QString rest
        = QStringLiteral(", window %1, block 0, filter 1, threads 0").arg(usually.windowLog);
    QTest::newRow("the usual ones")
        << usual() << start + "level " + QString::number(usually.level) + rest;
    QTest::newRow("the lowest level") << usual("ZSTD", "0") << start + "level 1" + rest;
    QTest::newRow("the highest level") << usual("ZSTD", "9") << start + "level 22" + rest;
    QTest::newRow("every parameter")
        << usual("ZSTD:x=3:w=20:b=8:f=0:mt=4")
        << start + "level 3, window 20, block 8388608, filter 0, threads 4";
    QTest::newRow("the last one counts") << usual("ZSTD:x=3:x=4") << start + "level 4" + rest;
    QTest::newRow("the root folder")
        << with(3, "/*") << "out.7z from /, level " + QString::number(usually.level) + rest;
    QTest::newRow("letters beyond ASCII")
        << with(3, "文件夹/*")
        << "out.7z from 文件夹/, level " + QString::number(usually.level) + rest;
}

void TestFastArguments::argumentsAreUnderstood()
{
    QFETCH(QStringList, arguments);
    QTEST(meaning(arguments), "expected");
}

void TestFastArguments::wrongArgumentsAreRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << QStringList() << "7: there must be nine arguments";
    QTest::newRow("one more") << usual() + QStringList("x") << "7: there must be nine arguments";
    QTest::newRow("another command") << with(0, "x") << "7: expected a";
    QTest::newRow("another type") << with(1, "-tzip") << "7: expected -t7z";
    QTest::newRow("not recursive") << with(4, "-r0") << "7: expected -r";
    QTest::newRow("no progress") << with(7, "-bsp0") << "7: expected -bsp1";
    QTest::newRow("another last one") << with(8, "-ssc-") << "7: expected -ssc";
    const QString noFolder = "7: expected an archive and a folder with a separator and * after it";
    QTest::newRow("no archive") << with(2, "") << noFolder;
    QTest::newRow("no pattern") << with(3, "folder") << noFolder;
    QTest::newRow("only a pattern") << with(3, "*") << noFolder;
    QTest::newRow("another pattern") << with(3, "folder*") << noFolder;
    QTest::newRow("no level") << with(5, "-mx=") << "7: expected -mx= with a digit instead of -mx=";
    QTest::newRow("a long level") << with(5, "-mx=55")
                                  << "7: expected -mx= with a digit instead of -mx=55";
    QTest::newRow("a letter as level")
        << with(5, "-mx=x") << "7: expected -mx= with a digit instead of -mx=x";
    for (const char *method :
         {"LZMA", "ZSTDX", "ZSTD:", "ZSTD:x", "ZSTD:x=", "ZSTD:x=0", "ZSTD:x=23", "ZSTD:x=1x",
          "ZSTD:w=19", "ZSTD:w=28", "ZSTD:b=0", "ZSTD:f=2", "ZSTD:mt=0", "ZSTD:y=1", "ZSTD:x=1:"}) {
        QTest::newRow(method) << usual(method) << QString("7: no such method: -m0=") + method;
    }
}

void TestFastArguments::wrongArgumentsAreRefused()
{
    QFETCH(QStringList, arguments);
    QTEST(meaning(arguments), "expected");
}

void TestFastArguments::theLineIsThatOf7Zip()
{
    std::atomic<bool> stopped = false;
    Progress progress(stopped);
    QCOMPARE(progress.line(), std::string("  0%"));
    progress.setTotal(1000);
    progress.beginFile("folder/\xe6\x96\x87.txt");
    progress.addBytes(129);
    QCOMPARE(progress.line(), std::string(" 12% 1 + folder/\xe6\x96\x87.txt"));
    progress.beginFile("a\nb");
    progress.addBytes(870);
    QCOMPARE(progress.line(), std::string(" 99% 2 + a_b"));
    progress.beginFile(std::string(200, 'x'));
    progress.addBytes(1);
    QCOMPARE(progress.line(), std::string("100% 3 +"));
    progress.addBytes(1); // a file has grown
    QCOMPARE(progress.percentage(), 100U);
}

// The times are those of the arguments, so this test needs no clock.
void TestFastArguments::aLineReplacesTheEarlierOne()
{
    std::FILE *const stream = std::tmpfile();
    QVERIFY(stream);
    const ProgressLine::Clock::time_point start;
    using std::chrono::milliseconds;
    ProgressLine line(stream);
    line.show("  0%", start);
    line.show("  0%", start + milliseconds(2999));
    line.show("  0%", start + milliseconds(3000));
    line.show("  1%", start + milliseconds(3001));
    line.show("  1%", start + milliseconds(6000));
    line.hide();
    line.hide();
    std::rewind(stream);
    char printed[200] = {};
    const std::size_t size = std::fread(printed, 1, sizeof printed, stream);
    std::fclose(stream);
    const std::string gone = removalOf("  0%");
    QCOMPARE(std::string(printed, size), "  0%" + gone + "  0%" + gone + "  1%" + gone);
    QCOMPARE(removalOf({}), std::string());
}

QTEST_APPLESS_MAIN(TestFastArguments)
#include "tst_fastarguments.moc"
