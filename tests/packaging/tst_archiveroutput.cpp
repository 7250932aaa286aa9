// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/archiveroutput.h"
#include "tests/support/builtfile.h"

#include <QDir>
#include <QFile>
#include <QTest>

Q_DECLARE_METATYPE(std::optional<int>)

class TestArchiverOutput : public QObject
{
    Q_OBJECT

private slots:
    void firstPercentageOfAChunk_data()
    {
        QTest::addColumn<QString>("chunk");
        QTest::addColumn<std::optional<int>>("percentage");
        const std::optional<int> none;
        QTest::newRow("blanks, percentage, count and file name")
            << "  37% 12 + data/a.bin" << std::optional(37);
        QTest::newRow("only the first of several counts")
            << "  3%\b\b\b\b    \b\b\b\b 42%\b\b\b\b 99%" << std::optional(3);
        QTest::newRow("nothing done yet") << "  0%" << std::optional(0);
        QTest::newRow("all done") << "100%" << std::optional(100);
        QTest::newRow("digits right before the sign are taken whole")
            << "v12345%" << std::optional(12345);
        QTest::newRow("a number beyond int counts as 0") << "99999999999%" << std::optional(0);
        QTest::newRow("the largest int") << "2147483647%" << std::optional(2147483647);
        QTest::newRow("one more than the largest int") << "2147483648%" << std::optional(0);
        QTest::newRow("a blank before the sign") << "37 %" << none;
        QTest::newRow("a percent sign in a file name before the percentage")
            << "a%b 12% c" << std::optional(12);
        QTest::newRow("no percent sign") << "Everything is Ok" << none;
        QTest::newRow("a lone percent sign") << "%" << none;
        QTest::newRow("nothing") << "" << none;
        QTest::newRow("a minus is not looked at") << "-5%" << std::optional(5);
        QTest::newRow("full-width digits are none") << "３７%" << none;
    }
    void firstPercentageOfAChunk()
    {
        QFETCH(QString, chunk);
        QTEST(firstPercentage(chunk), "percentage");
    }

    // The recorded output of a real archiver, read in chunks of several sizes.
    void recordedOutputGivesRisingPercentages_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("chunkSize");
        const QDir data(builtFile(KESTRELPACK_TEST_DATA) + "/archiver");
        for (const QString &name : data.entryList({"7zr-*.txt"}, QDir::Files)) {
            for (const int size : {64, 256, 512}) {
                QTest::addRow("%s in chunks of %d", qUtf8Printable(name), size)
                    << data.filePath(name) << size;
            }
        }
    }
    void recordedOutputGivesRisingPercentages()
    {
        QFETCH(QString, file);
        QFETCH(int, chunkSize);
        QFile recording(file);
        QVERIFY(recording.open(QIODevice::ReadOnly));
        QList<int> percentages;
        while (!recording.atEnd()) {
            const auto percentage
                = firstPercentage(QString::fromLocal8Bit(recording.read(chunkSize)));
            // A number that is cut by the end of a chunk may be too small.
            if (percentage && (percentages.isEmpty() || *percentage >= percentages.constLast())) {
                percentages << *percentage;
            }
        }
        QVERIFY2(percentages.size() >= 2, "the recording holds too few percentages");
        QVERIFY(percentages.constLast() <= 100);
        QVERIFY(percentages.constLast() > percentages.constFirst());
    }

    void errorText_data()
    {
        QTest::addColumn<QByteArray>("standardError");
        QTest::addColumn<QByteArray>("standardOutput");
        QTest::addColumn<QString>("text");
        QTest::newRow("standard error goes first, untrimmed")
            << QByteArray("\nERROR: disk\n") << QByteArray("rest") << "\nERROR: disk\n";
        QTest::newRow("an empty standard error gives way to what is left of standard output")
            << QByteArray() << QByteArray(" rest\n") << " rest\n";
        QTest::newRow("both empty") << QByteArray() << QByteArray() << "";
        const QString accented = "é"; // in Western and Chinese code pages, and in UTF-8
        QTest::newRow("in the system's encoding")
            << accented.toLocal8Bit() << QByteArray() << accented;
    }
    void errorText()
    {
        QFETCH(QByteArray, standardError);
        QFETCH(QByteArray, standardOutput);
        QTEST(archiverErrorText(standardError, standardOutput), "text");
    }
};

QTEST_GUILESS_MAIN(TestArchiverOutput)
#include "tst_archiveroutput.moc"
