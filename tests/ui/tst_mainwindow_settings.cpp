// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"

#include <QCheckBox>

namespace {

const QStringList allKeys = {"adminRequired",     "cleanupEnabled", "compressionLevel",
                             "compressionMethod", "dictionarySize", "encryptContent",
                             "folderPath",        "iconPath",       "lastExe",
                             "outputPath",        "tempExtraction"};

} // namespace

// Tests what the window remembers, as a person sees it: by starting it again.
class TestMainWindowSettings : public QObject
{
    Q_OBJECT

private slots:
    void firstStartShowsTheDefaults()
    {
        WindowFixture fixture;
        fixture.open();
        QCOMPARE(fixture.text("folderLineEdit"), "");
        QCOMPARE(fixture.text("outputLineEdit"), "");
        QCOMPARE(fixture.text("iconLineEdit"), "");
        QCOMPARE(fixture.programs()->count(), 0);
        QCOMPARE(fixture.find<QComboBox>("cmbCompression")->currentText(), "标准");
        QCOMPARE(fixture.find<QComboBox>("cmbMethod")->currentText(), "LZMA");
        QCOMPARE(fixture.find<QComboBox>("cmbDictSize")->currentText(), "16 MB");
        QVERIFY(fixture.window->isCleanupEnabled());
        QVERIFY(fixture.window->isTempExtractionEnabled());
        QVERIFY(!fixture.window->isEncryptionEnabled());
        QVERIFY(!fixture.window->isAdminRequired());
        QCOMPARE(fixture.settings.keys(), QStringList());
    }

    void storedValuesAreShown_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("widget");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("shown");

        QTest::newRow("source folder") << "folderPath" << QVariant("/a b/源") << "folderLineEdit"
                                       << QByteArray("text") << QVariant("/a b/源");
        QTest::newRow("output directory") << "outputPath" << QVariant("/out") << "outputLineEdit"
                                          << QByteArray("text") << QVariant("/out");
        QTest::newRow("icon") << "iconPath" << QVariant("/i.ico") << "iconLineEdit"
                              << QByteArray("text") << QVariant("/i.ico");
        QTest::newRow("the last program cannot be shown in an empty list")
            << "lastExe" << QVariant("my.exe") << "mainExeComboBox" << QByteArray("currentText")
            << QVariant("");
        QTest::newRow("level") << "compressionLevel" << QVariant(5) << "cmbCompression"
                               << QByteArray("currentText") << QVariant("极限");
        QTest::newRow("level beyond the list")
            << "compressionLevel" << QVariant(9) << "cmbCompression" << QByteArray("currentIndex")
            << QVariant(-1);
        QTest::newRow("level that is no number")
            << "compressionLevel" << QVariant("high") << "cmbCompression"
            << QByteArray("currentText") << QVariant("存储");
        QTest::newRow("method") << "compressionMethod" << QVariant(1) << "cmbMethod"
                                << QByteArray("currentText") << QVariant("LZMA2");
        QTest::newRow("dictionary") << "dictionarySize" << QVariant(0) << "cmbDictSize"
                                    << QByteArray("currentText") << QVariant("64 KB");
        QTest::newRow("cleaning up") << "cleanupEnabled" << QVariant(false) << "chkCleanup"
                                     << QByteArray("checked") << QVariant(false);
        QTest::newRow("encryption") << "encryptContent" << QVariant(true) << "chkEncrypt"
                                    << QByteArray("checked") << QVariant(true);
        QTest::newRow("administrator") << "adminRequired" << QVariant(true) << "chkAdmin"
                                       << QByteArray("checked") << QVariant(true);
        QTest::newRow("temporary directory") << "tempExtraction" << QVariant(false) << "chkTemp"
                                             << QByteArray("checked") << QVariant(false);
    }

    void storedValuesAreShown()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, stored);
        QFETCH(QString, widget);
        QFETCH(QByteArray, property);

        WindowFixture fixture;
        fixture.settings.set(key, stored);
        fixture.open();
        QTEST(fixture.find<QWidget>(qPrintable(widget))->property(property.constData()), "shown");
    }

    void closingStoresEverything()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.type("folderLineEdit", "/typed/folder");
        fixture.type("outputLineEdit", "/typed/output");
        fixture.programs()->addItem("My App.exe");
        fixture.click("advancedTabButton");
        fixture.type("iconLineEdit", "/typed/icon.ico");
        fixture.choose("cmbCompression", 4);
        fixture.choose("cmbMethod", 1);
        fixture.choose("cmbDictSize", 3);
        for (const char *box : {"chkCleanup", "chkEncrypt", "chkAdmin", "chkTemp"}) {
            QTest::keyClick(fixture.find<QCheckBox>(box), Qt::Key_Space);
        }
        QCOMPARE(fixture.settings.keys(), QStringList()); // the store is empty until now

        fixture.close();
        QCOMPARE(fixture.settings.keys(), allKeys);
        QCOMPARE(fixture.settings.value("folderPath"), "/typed/folder");
        QCOMPARE(fixture.settings.value("outputPath"), "/typed/output");
        QCOMPARE(fixture.settings.value("iconPath"), "/typed/icon.ico");
        QCOMPARE(fixture.settings.value("lastExe"), "My App.exe");
        QCOMPARE(fixture.settings.value("compressionLevel").toInt(), 4);
        QCOMPARE(fixture.settings.value("compressionMethod").toInt(), 1);
        QCOMPARE(fixture.settings.value("dictionarySize").toInt(), 3);
        QCOMPARE(fixture.settings.value("cleanupEnabled").toString(), "false");
        QCOMPARE(fixture.settings.value("encryptContent").toString(), "true");
        QCOMPARE(fixture.settings.value("adminRequired").toString(), "true");
        QCOMPARE(fixture.settings.value("tempExtraction").toString(), "false");
    }

    void chosenFolderComesBackWithoutItsPrograms()
    {
        WindowFixture fixture;
        fixture.open();
        answerFileDialog([&] { fixture.click("selectFolderButton"); }, fixture.sourceFolder());
        QCOMPARE(fixture.programNames(), QStringList{"my.exe"});
        fixture.close();

        fixture.open();
        QCOMPARE(fixture.text("folderLineEdit"), fixture.sourceFolder());
        QCOMPARE(fixture.programs()->count(), 0);
    }

    void selectionOfNothingSurvives()
    {
        WindowFixture fixture;
        fixture.settings.set("compressionLevel", 9);
        fixture.open();
        fixture.close();
        QCOMPARE(fixture.settings.value("compressionLevel").toInt(), -1);
    }

    void resetEmptiesStoreAndInputs()
    {
        WindowFixture fixture;
        prepareReset(fixture);
        fixture.settings.set("ofAnOlderVersion", 1);
        QStringList keys;
        const auto boxes = answerBoxes([&] { fixture.click("resetButton"); },
                                       {QMessageBox::Yes, QMessageBox::Ok},
                                       [&] { keys = fixture.settings.keys(); });
        QCOMPARE(boxes.size(), 2);
        QCOMPARE(boxes[0],
                 (SeenBox{"重置确认", "确定要重置所有设置吗？此操作无法撤销！",
                          QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                          fixture.window.get()}));
        QCOMPARE(boxes[1],
                 (SeenBox{"重置成功", "所有设置已恢复为默认值。", QMessageBox::Information,
                          QMessageBox::Ok, fixture.window.get()}));
        QCOMPARE(keys, QStringList()); // the store is empty before the notice says so
        QCOMPARE(fixture.settings.keys(), QStringList());

        for (const char *edit : {"folderLineEdit", "outputLineEdit", "iconLineEdit"}) {
            QCOMPARE(fixture.text(edit), "");
        }
        QCOMPARE(fixture.programs()->count(), 0);
        QCOMPARE(fixture.log(), "");
        QCOMPARE(fixture.progress(), 0);
    }

    void resetKeepsTheOptionsOnTheScreen()
    {
        WindowFixture fixture;
        prepareReset(fixture);
        answerBoxes([&] { fixture.click("resetButton"); }, {QMessageBox::Yes, QMessageBox::Ok});
        QCOMPARE(fixture.find<QComboBox>("cmbCompression")->currentIndex(), 5);
        QVERIFY(!fixture.window->isCleanupEnabled());

        fixture.close(); // closing writes them to the store again
        QCOMPARE(fixture.settings.keys(), allKeys);
        for (const char *key : {"folderPath", "outputPath", "iconPath", "lastExe"}) {
            QCOMPARE(fixture.settings.value(key), "");
        }
        QCOMPARE(fixture.settings.value("compressionLevel").toInt(), 5);
        QCOMPARE(fixture.settings.value("cleanupEnabled").toBool(), false);
    }

    void refusedResetChangesNothing_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("answer");
        QTest::newRow("No") << QMessageBox::No;
        QTest::newRow("Escape") << QMessageBox::NoButton;
        QTest::newRow("closing the box") << QMessageBox::Close;
    }

    void refusedResetChangesNothing()
    {
        QFETCH(QMessageBox::StandardButton, answer);
        WindowFixture fixture;
        prepareReset(fixture);
        QCOMPARE(answerBoxes([&] { fixture.click("resetButton"); }, {answer}).size(), 1);
        QCOMPARE(fixture.settings.keys(), allKeys);
        QCOMPARE(fixture.text("folderLineEdit"), fixture.sourceFolder());
        QCOMPARE(fixture.text("outputLineEdit"), fixture.outputFolder());
        QCOMPARE(fixture.text("iconLineEdit"), "/my.ico");
        QCOMPARE(fixture.programs()->count(), 1);
        QCOMPARE(fixture.log(), "a line");
        QCOMPARE(fixture.progress(), 30);
    }

    void storeThatCannotBeWrittenIsNoFailure()
    {
        WindowFixture fixture;
        const QString file = fixture.temp.filePath("no folder");
        QVERIFY(writeFile(file, "a file where a folder is wanted"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, file);
        fixture.open();
        QCOMPARE(fixture.find<QComboBox>("cmbCompression")->currentIndex(), 3);
        answerFileDialog([&] { fixture.click("selectFolderButton"); }, fixture.sourceFolder());
        QCOMPARE(fixture.text("folderLineEdit"), fixture.sourceFolder());
        fixture.close();
        QCOMPARE(readFile(file), "a file where a folder is wanted");
    }

private:
    // A window in which every value differs from a first start, with a filled store.
    static void prepareReset(WindowFixture &fixture)
    {
        fixture.settings.set("compressionLevel", 5);
        fixture.settings.set("cleanupEnabled", false);
        fixture.open();
        fixture.type("outputLineEdit", fixture.outputFolder());
        fixture.find<QLineEdit>("iconLineEdit")->setText("/my.ico");
        answerFileDialog([&] { fixture.click("selectFolderButton"); }, fixture.sourceFolder());
        fixture.window->onWorkerLog("a line");
        fixture.window->onWorkerProgress(30);
        fixture.click("advancedTabButton");
    }
};

QTEST_MAIN(TestMainWindowSettings)

#include "tst_mainwindow_settings.moc"
