// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/worker.h"

#include "icons/resourceeditorcommand.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/builtfile.h"
#include "tests/support/knownpermissions.h"
#include "tests/support/onwindows.h"
#include "tests/support/testfiles.h"
#include "tests/support/testicons.h"

#include <QElapsedTimer>
#include <QTest>

#include <functional>

namespace {

const QString deleteWarning = "警告：ResourceHacker删除旧图标失败，可能原本没有图标";
const QString addError = "错误：ResourceHacker添加新图标失败";
const QString loadWarning = "警告：无法从EXE加载图标，可能需要重启资源管理器";
const QString completed = "图标替换完成，已强制更新图标缓存";

} // namespace

class TestIconReplacement : public QObject
{
    Q_OBJECT

private:
    // An executable in its own folder, and a fake editor that runs `script`.
    struct Replacement
    {
        explicit Replacement(const QByteArray &script)
        {
            temp.plantEditor(script);
            if (!writeFile(executable(), "the executable")) {
                qFatal("the executable could not be made");
            }
        }

        bool run()
        {
            Worker worker;
            QObject::connect(&worker, &Worker::logMessage, &worker, [this](const QString &text) {
                lines << text;
                seen(text);
            });
            return worker.replaceExeIcon(executable(), "the icon's bytes");
        }

        QString executable() const { return output.filePath("my app.exe"); }
        QString temporaryIcon() const { return temp.filePath("temp_icon.ico"); }
        QString backup() const { return executable() + ".bak"; }
        bool isTidy() const { return !QFile::exists(temporaryIcon()) && !QFile::exists(backup()); }

        PrivateTemp temp;
        QTemporaryDir output;
        FakePlatform platform;
        QStringList lines;
        // Called with each line when it is logged.
        std::function<void(const QString &line)> seen = [](const QString &) {
        };
    };

    static QByteArray toFile(const QTemporaryDir &dir, const char *name)
    {
        return dir.filePath(name).toUtf8();
    }

private slots:
    void aSuccessFromBeginningToEnd()
    {
        QTemporaryDir kept;
        Replacement r("record " + toFile(kept, "arguments") + "\nif addoverwrite\ncopy @8 "
                      + toFile(kept, "icon") + "\n");
        QVERIFY(r.run());
        QCOMPARE(r.lines, QStringList({loadWarning, completed}));
        QCOMPARE(QString::fromUtf8(readFile(kept.filePath("arguments"))),
                 deleteIconsArguments(r.executable()).join('\n') + "\n\n"
                     + addIconArguments(r.executable(), r.temporaryIcon()).join('\n') + "\n\n");
        QCOMPARE(readFile(kept.filePath("icon")), QByteArray("the icon's bytes"));
        QVERIFY(r.isTidy());
        QVERIFY(QFile::exists(r.temp.filePath("ResourceHacker.exe")));
    }

    void theCacheIsRefreshedInOrder()
    {
        Replacement r("");
        QVERIFY(r.run());
        QCOMPARE(r.platform.events,
                 QStringList({"detached: ie4uinit.exe -ClearIconCache", "pause: 500 ms",
                              "detached: ie4uinit.exe -show", "pause: 500 ms",
                              "detached: taskkill /F /IM explorer.exe & start explorer.exe",
                              "pause: 1000 ms", "shell told"}));
    }

    void theEditorsExitCodeAndOutputAreNotLookedAt()
    {
        Replacement r("print lots\ncomplain of words\nexit 5\n");
        QVERIFY(r.run());
        QCOMPARE(r.lines, QStringList({loadWarning, completed}));
    }

    void anOldBackupIsReplacedBeforeAnythingElse()
    {
        QTemporaryDir kept;
        Replacement r("");
        QVERIFY(QFile::rename(r.executable(), r.output.filePath("app.exe")));
        QVERIFY(writeFile(r.output.filePath("app.exe.bak"), "an old backup"));
        r.temp.plantEditor("if delete\ncopy " + toFile(r.output, "app.exe.bak") + ' '
                           + toFile(kept, "backup") + "\n");
        Worker worker;
        QVERIFY(worker.replaceExeIcon(r.output.filePath("app.exe"), "icon"));
        QCOMPARE(readFile(kept.filePath("backup")), QByteArray("the executable"));
        QVERIFY(!QFile::exists(r.output.filePath("app.exe.bak")));
    }

    void aLeftoverTemporaryIconIsWrittenAfresh()
    {
        QTemporaryDir kept;
        Replacement r("if addoverwrite\ncopy @8 " + toFile(kept, "icon") + "\n");
        QVERIFY(writeFile(r.temporaryIcon(), QByteArray(1000, 'x')));
        QVERIFY(r.run());
        QCOMPARE(readFile(kept.filePath("icon")), QByteArray("the icon's bytes"));
    }

    void aBackupThatCannotBeMadeFails()
    {
        QTemporaryDir kept;
        Replacement r("record " + toFile(kept, "started") + "\n");
        QVERIFY(QDir(r.output.path()).mkpath("my app.exe.bak/in the way"));
        QVERIFY(!r.run());
        QCOMPARE(r.lines, QStringList{"错误：无法创建备份文件"});
        QCOMPARE(r.platform.events, QStringList());
        QVERIFY(!QFile::exists(kept.filePath("started")));
    }

    void aMissingExecutableFailsInTheBackup()
    {
        Replacement r("");
        QVERIFY(QFile::remove(r.executable()));
        QVERIFY(!r.run());
        QCOMPARE(r.lines, QStringList{"错误：无法创建备份文件"});
    }

    void anEditorThatCannotBeCopiedFailsAndLeavesTheBackup()
    {
        if (onWindows) {
            QSKIP(PrivateTemp::cannotBlockCopies);
        }
        Replacement r("");
        r.temp.blockCopyTo("ResourceHacker.exe");
        QVERIFY(!r.run());
        QCOMPARE(r.lines, QStringList{"错误：无法复制ResourceHacker到临时目录"});
        QCOMPARE(readFile(r.backup()), QByteArray("the executable"));
        QCOMPARE(readFile(r.executable()), QByteArray("the executable"));
    }

    void aTemporaryIconThatCannotBeWrittenFailsAndLeavesTheBackup()
    {
        Replacement r("");
        QVERIFY(QDir(r.temp.path()).mkpath("temp_icon.ico"));
        QVERIFY(!r.run());
        QCOMPARE(r.lines, QStringList{"错误：无法创建临时图标文件"});
        QVERIFY(QFile::exists(r.backup()));
        QCOMPARE(r.platform.events, QStringList());
    }

    void aLaterCallRemovesABackupThatWasLeft()
    {
        Replacement r("");
        QVERIFY(QDir(r.temp.path()).mkpath("temp_icon.ico"));
        QVERIFY(!r.run());
        QVERIFY(QDir(r.temp.path()).rmdir("temp_icon.ico"));
        QVERIFY(r.run());
        QVERIFY(r.isTidy());
    }

    void withoutOneTheBundlesEditorIsCopiedAndIsTheOwnersToRun()
    {
        Replacement r("");
        QVERIFY(QFile::remove(r.temp.filePath("ResourceHacker.exe")));
        r.platform.refusal = "not here"; // only the copy is tested here
        r.run();
        const QString copy = r.temp.filePath("ResourceHacker.exe");
        QCOMPARE(readFile(copy), readFile(":/resources/ResourceHacker.exe"));
        QVERIFY(QFileInfo(copy).size() > 0);
        QCOMPARE(known(QFile::permissions(copy) & QFile::Permissions::fromInt(0x7077)),
                 known(QFile::Permissions::fromInt(0x7000)));
    }

    void anEditorThatIsThereIsUsedAsItIs()
    {
        Replacement r("");
        const QString planted = r.temp.filePath("ResourceHacker.exe");
        QFile::setPermissions(planted, QFile::Permissions::fromInt(0x5040));
        const auto before = QFile::permissions(planted);
        QVERIFY(r.run());
        QCOMPARE(QFile::permissions(planted), before);
        QCOMPARE(QFileInfo(planted).size(), QFileInfo(builtFile(KESTRELPACK_FAKE_TOOL)).size());
    }

    // Neither run starts, so neither ends in time.
    void anEditorThatDoesNotStartFailsBothRuns()
    {
        Replacement r("");
        r.platform.refusal = "not this one";
        QVERIFY(!r.run());
        QCOMPARE(r.lines, QStringList({deleteWarning, addError}));
        QVERIFY(r.isTidy());
        QCOMPARE(r.platform.events, QStringList());
    }

    void aSlowAddRunFailsAndLeavesTheExecutableAsTheEditorLeftIt()
    {
        Replacement r("if addoverwrite\nwrite @2 10\nsleep 3600000\n");
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!r.run());
        QVERIFY(timer.elapsed() >= 5000);
        QCOMPARE(r.lines, QStringList{addError});
        QVERIFY(r.isTidy());
        QCOMPARE(QFileInfo(r.executable()).size(), 10);
        QCOMPARE(r.platform.events, QStringList());
    }

    // The delete run needs more than its time, but ends during the wait for the add run. So the add
    // run never starts, and the end of the delete run counts as its end.
    void aSlowDeleteRunTakesTheAddRunsPlace()
    {
        QTemporaryDir kept;
        Replacement r("record " + toFile(kept, "arguments") + "\nwait " + toFile(kept, "go")
                      + '\n');
        r.seen = [&kept](const QString &line) {
            if (line == deleteWarning) {
                QVERIFY(writeFile(kept.filePath("go"), ""));
            }
        };
        QVERIFY(r.run());
        QCOMPARE(r.lines, QStringList({deleteWarning, loadWarning, completed}));
        QCOMPARE(QString::fromUtf8(readFile(kept.filePath("arguments"))),
                 deleteIconsArguments(r.executable()).join('\n') + "\n\n");
    }

    void aDeleteRunThatOutlastsBothWaitsFails()
    {
        Replacement r("sleep 3600000\n");
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!r.run());
        QVERIFY(timer.elapsed() >= 8000);
        QCOMPARE(r.lines, QStringList({deleteWarning, addError}));
        QVERIFY(r.isTidy());
    }

    // Only a fake editor makes an executable that Qt can read as an image.
    void finalLook_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<QStringList>("lines");
        QImage opaque(20, 10, QImage::Format_RGB32);
        opaque.fill(Qt::red);
        QImage filled(20, 10, QImage::Format_ARGB32);
        filled.fill(Qt::red);
        const QString noAlpha = "警告：图标不包含透明通道";
        QTest::newRow("translucent") << translucentImage(20, 10)
                                     << QStringList({"最终EXE图标尺寸: 20x10", "图标包含透明通道"});
        QTest::newRow("without an alpha channel")
            << opaque << QStringList({"最终EXE图标尺寸: 20x10", noAlpha});
        QTest::newRow("with an alpha channel that leaves all opaque")
            << filled << QStringList({"最终EXE图标尺寸: 20x10", noAlpha});
        const QStringList hasAlpha{"最终EXE图标尺寸: 20x10", "图标包含透明通道"};
        for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8}) {
            QImage image(20, 10, format);
            image.setColorTable({qRgb(255, 0, 0), qRgba(0, 0, 0, 0)});
            image.fill(0);
            QTest::addRow("%d bits, with a transparent colour that is not used", image.depth())
                << image << hasAlpha;
        }
        QImage deep(20, 10, QImage::Format_RGBA64);
        deep.fill(Qt::red);
        QTest::newRow("16 bits a channel, all opaque")
            << deep << QStringList({"最终EXE图标尺寸: 20x10", noAlpha});
        deep.setPixelColor(0, 0, QColor::fromRgba64(0xffff, 0, 0, 0xfffe));
        QTest::newRow("16 bits a channel, one pixel hardly translucent") << deep << hasAlpha;
    }
    void finalLook()
    {
        QFETCH(QImage, image);
        QFETCH(QStringList, lines);
        QTemporaryDir kept;
        QVERIFY(writeFile(kept.filePath("image"), encoded(image, "PNG")));
        Replacement r("if addoverwrite\ncopy " + toFile(kept, "image") + " @2\n");
        QVERIFY(r.run());
        QCOMPARE(r.lines, lines + QStringList{completed});
    }
};

QTEST_GUILESS_MAIN(TestIconReplacement)
#include "tst_iconreplacement.moc"
