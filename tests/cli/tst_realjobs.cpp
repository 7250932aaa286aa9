// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/cli/clirun.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/onwindows.h"
#include "tests/support/testicons.h"
#include "tests/support/waiting.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <memory>
#include <vector>

// kestrelpack-cli itself, with the helpers of its bundle.
class TestRealJobs : public QObject
{
    Q_OBJECT

private:
    // A folder with a program, and an icon of its own.
    struct Source
    {
        QString folder;
        QString icon;
    };

    Source makeSource(int number) const
    {
        const QString folder = m_temp->filePath(QString("sources/%1").arg(number));
        const QString icon = folder + ".ico";
        QImage image(32, 32, QImage::Format_ARGB32);
        image.fill(QColor(number * 5, 255 - number * 5, 77));
        if (!QDir().mkpath(folder + "/data")
            || !writeFile(folder + QString("/app%1.exe").arg(number),
                          petest::makeProgram({.resources = false}))
            || !writeFile(folder + "/data/text", QByteArray(1000 * number, char('a' + number % 26)))
            || !writeFile(icon, encoded(image, "ICO"))) {
            qFatal("a source could not be made");
        }
        return {folder, icon};
    }

    static QStringList argumentsFor(const Source &source, const QString &output)
    {
        return {"--language", "en", "-q", "-i", source.icon, "-o", output, source.folder};
    }

    static CliResult pack(const QStringList &arguments)
    {
        QProcess process;
        process.start(builtFile(KESTRELPACK_CLI), arguments);
        return CliSurroundings::resultOf(process);
    }

    QByteArray product(const QString &output, int number) const
    {
        return contentOf(output + QString("/app%1.exe").arg(number));
    }

    static QList<QJsonObject> eventsOf(const CliResult &result)
    {
        QList<QJsonObject> events;
        for (const QString &line : result.outputLines()) {
            events << QJsonDocument::fromJson(line.toUtf8()).object();
        }
        return events;
    }

    std::unique_ptr<PrivateTemp> m_temp;

private slots:
    void init() { m_temp = std::make_unique<PrivateTemp>(); }
    void cleanup() { m_temp.reset(); }

    void aPlantedHelperIsNeverUsed_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"7zr.exe", "7zS2.sfx", "ResourceHacker.exe"}) {
            QTest::newRow(name) << name;
        }
    }
    void aPlantedHelperIsNeverUsed()
    {
        QFETCH(QString, name);
        const Source source = makeSource(1);
        QCOMPARE(pack(argumentsFor(source, m_temp->filePath("clean"))).exitStatus, 0);
        const QByteArray planted = encoded(translucentImage(40, 40), "BMP");
        QVERIFY(writeFile(m_temp->filePath(name), planted));
        QVERIFY(QFile::setPermissions(m_temp->filePath(name),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const CliResult result = pack(argumentsFor(source, m_temp->filePath("other")));
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.errors, QString());
        QVERIFY(!product(m_temp->filePath("clean"), 1).isEmpty());
        QCOMPARE(product(m_temp->filePath("other"), 1), product(m_temp->filePath("clean"), 1));
        QCOMPARE(readFile(m_temp->filePath(name)), planted);
    }

    // The product has the folder's files, whatever archiver has packed them.
    void everyProfileMakesARightProduct_data()
    {
        QTest::addColumn<QString>("profile");
        for (const QString profile : {"default", "fast-start", "small"}) {
            QTest::newRow(qPrintable(profile)) << profile;
        }
    }
    void everyProfileMakesARightProduct()
    {
        QFETCH(QString, profile);
        const Source source = makeSource(5);
        QVERIFY(QDir().mkpath(source.folder + "/empty"));
        QVERIFY(writeFile(source.folder + "/data/nothing", {}));
        QVERIFY(writeFile(source.folder + QStringLiteral("/文件😀"), QByteArray(3000000, 'x')));
        const QString output = m_temp->filePath("output");
        const CliResult result
            = pack(QStringList{"--profile", profile} + argumentsFor(source, output));
        QCOMPARE(result.errors, QString());
        QCOMPARE(result.exitStatus, 0);
        const QString product = output + "/app5.exe";
        QCOMPARE(pack({"verify", product}).exitStatus, 0);
        const QString unpacked = m_temp->filePath("unpacked");
        QCOMPARE(pack({"extract", "-o", unpacked, product}).exitStatus, 0);
        for (const char *name : {"/app5.exe", "/data/text", "/data/nothing", "/文件😀"}) {
            QCOMPARE(readFile(unpacked + name), readFile(source.folder + name));
        }
        QVERIFY(QFileInfo(unpacked + "/empty").isDir());
    }

    // Every product carries its module. The full one has the notice of its decoder for Zstandard.
    void onlyAFastStartHasTheFullModule_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<bool>("isFull");
        QTest::newRow("no options") << QStringList() << false;
        QTest::newRow("settings") << QStringList({"--title", "a title", "--silent"}) << false;
        QTest::newRow("small") << QStringList({"--profile", "small"}) << false;
        QTest::newRow("fast start") << QStringList({"--profile", "fast-start"}) << true;
        QTest::newRow("kept") << QStringList({"--keep", "30"}) << true;
        QTest::newRow("kept and compared") << QStringList({"--keep", "1", "--keep-verify"}) << true;
        QTest::newRow("both") << QStringList({"--profile", "fast-start", "--keep", "30"}) << true;
    }
    void onlyAFastStartHasTheFullModule()
    {
        QFETCH(QStringList, options);
        const Source source = makeSource(6);
        const QString output = m_temp->filePath("output");
        const CliResult result = pack(options + argumentsFor(source, output));
        QCOMPARE(result.errors, QString());
        QCOMPARE(result.exitStatus, 0);
        const QByteArray product = readFile(output + "/app6.exe");
        QVERIFY(product.contains("WorkingFolder"));
        QTEST(product.contains("Redistributions in binary form must reproduce"), "isFull");
    }

    void fiftyJobsAtOnceMakeFiftyRightProducts()
    {
        constexpr int count = onWindows ? 6 : 50; // under Wine each takes seconds
        std::vector<Source> sources;
        for (int i = 0; i < count; ++i) {
            sources.push_back(makeSource(i));
            QCOMPARE(pack(argumentsFor(sources.back(), m_temp->filePath("alone"))).exitStatus, 0);
        }
        const QString together = m_temp->filePath("together");
        std::vector<std::unique_ptr<QProcess>> jobs;
        for (const Source &source : sources) {
            jobs.push_back(std::make_unique<QProcess>());
            jobs.back()->start(builtFile(KESTRELPACK_CLI), argumentsFor(source, together));
        }
        for (int i = 0; i < count; ++i) {
            CliResult result = CliSurroundings::resultOf(*jobs[size_t(i)]);
            if (!result.errors.isEmpty()) {
                qInfo("%s", qPrintable(result.errors));
            }
            // The engine gives the archiver some seconds to start. Where the machine is too slow for
            // that, the job fails. A job that ends with 0 has made the right product, even if it was
            // too slow for the resource editor.
            if (result.exitStatus == 1) {
                result = pack(argumentsFor(sources[size_t(i)], together));
            }
            QCOMPARE(result.exitStatus, 0);
        }
        for (int i = 0; i < count; ++i) {
            QVERIFY(!product(together, i).isEmpty());
            QVERIFY2(product(together, i) == product(m_temp->filePath("alone"), i),
                     qPrintable(QString::number(i)));
        }
        QCOMPARE(m_temp->names(), QStringList({"alone", "sources", "together"}));
    }

    void eventsOfASuccess()
    {
        const Source source = makeSource(7);
        const QString output = m_temp->filePath("out");
        const CliResult result
            = pack({"--json", "--language", "en", "-i", source.icon, "-o", output, source.folder});
        QCOMPARE(result.exitStatus, 0);
        QCOMPARE(result.errors, QString());
        const QList<QJsonObject> events = eventsOf(result);
        QCOMPARE(events.constFirst()["event"].toString(), "start");
        QCOMPARE(events.constFirst()["main"].toString(), "app7.exe");
        QStringList names;
        for (const QJsonObject &event : events) {
            names << event["event"].toString();
            QVERIFY(names.constLast() == "start" || names.constLast() == "done"
                    || (names.constLast() == "log" && !event["text"].toString().isEmpty())
                    || (names.constLast() == "progress" && event["percent"].isDouble()));
            QVERIFY(!event["text"].toString().contains('\b'));
        }
        QVERIFY(names.contains("log") && names.contains("progress"));
        const QJsonObject &done = events.constLast();
        QCOMPARE(done["event"].toString(), "done");
        QCOMPARE(QFileInfo(done["path"].toString()).canonicalFilePath(),
                 QFileInfo(output + "/app7.exe").canonicalFilePath());
        QCOMPARE(done["size"].toInteger(), qint64(product(output, 7).size()));
        QCOMPARE(done["sha256"].toString().toLatin1(),
                 QCryptographicHash::hash(product(output, 7), QCryptographicHash::Sha256).toHex());
        QCOMPARE(done["seconds"].toObject().keys(),
                 QStringList({"archive", "assembly", "check", "icon"}));
    }

    void eventsOfARefusal()
    {
        const CliResult result = pack({"--json", "--language", "en", m_temp->filePath("nowhere")});
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.errors, QString());
        QCOMPARE(eventsOf(result),
                 QList{QJsonObject(
                     {{"event", "error"},
                      {"text", "the folder " + m_temp->filePath("nowhere") + " does not exist"}})});
    }

    void storedFilesAreNotCompressed()
    {
        const Source source = makeSource(49); // with 49,000 equal bytes
        QCOMPARE(
            pack({"-q", "-l", "store", "-o", m_temp->filePath("out"), source.folder}).exitStatus,
            0);
        QVERIFY(product(m_temp->filePath("out"), 49).contains(QByteArray(40000, 'a' + 49 % 26)));
    }

    void theProductGetsTheNameThatWasAsked()
    {
        const Source source = makeSource(3);
        QCOMPARE(pack({"-q", "-n", "app-3.4.6", "-o", m_temp->filePath("out"), source.folder})
                     .exitStatus,
                 0);
        QCOMPARE(pack({"-q", "-o", m_temp->filePath("out/a b.exe"), source.folder}).exitStatus, 0);
        QCOMPARE(QDir(m_temp->filePath("out")).entryList(QDir::Files),
                 QStringList({"a b.exe", "app-3.4.6.exe"}));
    }
};

QTEST_GUILESS_MAIN(TestRealJobs)
#include "tst_realjobs.moc"
