// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/testicons.h"
#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"

#include <QStandardPaths>

// The four dialogs in which a person chooses the window's inputs.
class TestMainWindowInput : public QObject
{
    Q_OBJECT

private slots:
    void folderDialogStartsAtItsOwnPlace()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.find<QLineEdit>("folderLineEdit")->setText(fixture.sourceFolder());
        const auto dialog
            = answerFileDialog([&] { fixture.click("selectFolderButton"); }, QString());
        QCOMPARE(dialog.title, "选择源文件夹");
        QCOMPARE(dialog.mode, QFileDialog::Directory);
        QCOMPARE(dialog.options, QFileDialog::Options(QFileDialog::ShowDirsOnly));
        QVERIFY(dialog.directory != fixture.sourceFolder());
        QCOMPARE(dialog.parent, fixture.window.get());
    }

    void chosenFolderFillsTheListAndIsStored()
    {
        WindowFixture fixture;
        for (const char *name : {"B.EXE", "a.exe", "z.exe", "m.exe", "k.exe", "c.exe", "x.exe"}) {
            QVERIFY(writeFile(fixture.source(name), "x"));
        }
        QVERIFY(writeFile(fixture.source("read.txt"), "x"));
        QVERIFY(writeFile(fixture.source(".hidden.exe"), "x"));
        QVERIFY(QDir(fixture.sourceFolder()).mkpath("folder.exe"));
        QVERIFY(QDir(fixture.sourceFolder()).mkpath("deeper"));
        QVERIFY(writeFile(fixture.source("deeper/inner.exe"), "x"));
        fixture.open();
        fixture.programs()->addItem("of an earlier folder.exe");

        answerFileDialog([&] { fixture.click("selectFolderButton"); }, fixture.sourceFolder());
        QCOMPARE(fixture.text("folderLineEdit"), fixture.sourceFolder());
        // Sorted by name: without a sorting flag, a QDir uses its own order.
        QCOMPARE(fixture.programNames(),
                 (QStringList{"a.exe", "B.EXE", "c.exe", "k.exe", "m.exe", "my.exe", "x.exe",
                              "z.exe"}));
        QCOMPARE(fixture.programs()->currentIndex(), 0);
        QVERIFY(fixture.programs()->itemIcon(0).isNull());
        QVERIFY(!fixture.programs()->itemData(0).isValid());
        QCOMPARE(fixture.settings.value("folderPath"), fixture.sourceFolder());
        QCOMPARE(fixture.settings.value("lastExe"), fixture.programs()->currentText());
        QCOMPARE(fixture.settings.keys().size(), 11);
    }

    void folderWithoutProgramsLeavesTheListEmpty()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.programs()->addItem("old.exe");
        answerFileDialog([&] { fixture.click("selectFolderButton"); }, fixture.outputFolder());
        QCOMPARE(fixture.programNames(), QStringList());
        QCOMPARE(fixture.programs()->currentText(), "");
    }

    void programDialogStartsInTheFolderField()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.type("folderLineEdit", fixture.sourceFolder());
        const auto dialog = answerFileDialog([&] { fixture.click("mainExeButton"); }, QString());
        QCOMPARE(dialog.title, "选择主程序");
        QCOMPARE(dialog.filters, QStringList{"可执行文件 (*.exe)"});
        QCOMPARE(dialog.mode, QFileDialog::ExistingFile);
        QCOMPARE(dialog.options, QFileDialog::Options());
        QCOMPARE(dialog.directory, fixture.sourceFolder());
        QCOMPARE(dialog.parent, fixture.window.get());
    }

    void chosenProgramIsKeptByItsName_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("list");
        QTest::addColumn<QString>("current");

        QTest::newRow("one of the list is not added again")
            << "source/my.exe" << QStringList{"other.exe", "my.exe"} << "my.exe";
        QTest::newRow("another letter case is another item")
            << "elsewhere/MY.exe" << QStringList{"other.exe", "my.exe", "MY.exe"} << "MY.exe";
        QTest::newRow("from another folder, by its bare name")
            << "elsewhere/new.exe" << QStringList{"other.exe", "my.exe", "new.exe"} << "new.exe";
    }

    void chosenProgramIsKeptByItsName()
    {
        QFETCH(QString, file);
        WindowFixture fixture;
        QVERIFY(QDir(fixture.temp.path()).mkpath("elsewhere"));
        QVERIFY(writeFile(fixture.temp.filePath("elsewhere/MY.exe"), "x"));
        QVERIFY(writeFile(fixture.temp.filePath("elsewhere/new.exe"), "x"));
        fixture.open();
        fixture.programs()->addItems({"other.exe", "my.exe"});

        answerFileDialog([&] { fixture.click("mainExeButton"); }, fixture.temp.filePath(file));
        QTEST(fixture.programNames(), "list");
        QTEST(fixture.programs()->currentText(), "current");
        QVERIFY(fixture.programs()->itemIcon(fixture.programs()->currentIndex()).isNull());
        QVERIFY(!fixture.programs()->currentData().isValid());
        QTEST(fixture.settings.value("lastExe").toString(), "current");
        QCOMPARE(fixture.settings.keys().size(), 11);
    }

    void outputDialogStartsAtTheOutputOrTheDesktop()
    {
        WindowFixture fixture;
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", fixture.temp.path().toUtf8()); // a private desktop
        const auto restore = qScopeGuard([&home] { qputenv("HOME", home); });
        fixture.open();
        const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
        QVERIFY(QDir().mkpath(desktop));
        auto dialog = answerFileDialog([&] { fixture.click("outputButton"); }, QString());
        QCOMPARE(dialog.title, "选择输出目录");
        QCOMPARE(dialog.mode, QFileDialog::Directory);
        QCOMPARE(dialog.options,
                 (QFileDialog::Options{QFileDialog::ShowDirsOnly,
                                       QFileDialog::DontResolveSymlinks}));
        QCOMPARE(dialog.directory, desktop);
        QCOMPARE(dialog.parent, fixture.window.get());

        fixture.type("outputLineEdit", fixture.outputFolder());
        dialog = answerFileDialog([&] { fixture.click("outputButton"); }, QString());
        QCOMPARE(dialog.directory, fixture.outputFolder());
    }

    void chosenOutputIsStored()
    {
        WindowFixture fixture;
        fixture.open();
        answerFileDialog([&] { fixture.click("outputButton"); }, fixture.outputFolder());
        QCOMPARE(fixture.text("outputLineEdit"), fixture.outputFolder());
        QCOMPARE(fixture.settings.value("outputPath"), fixture.outputFolder());
        QCOMPARE(fixture.settings.keys().size(), 11);
    }

    void iconDialogTakesReadableImages_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("accepted");

        QTest::newRow("icon") << icoBytes(32, 32) << true;
        QTest::newRow("PNG by the name of an icon")
            << encoded(translucentImage(8, 8), "PNG") << true;
        QTest::newRow("image without transparency")
            << encoded(QImage(8, 8, QImage::Format_RGB32), "BMP") << true;
        QTest::newRow("text") << QByteArray("no image") << false;
        QTest::newRow("empty file") << QByteArray() << false;
    }

    void iconDialogTakesReadableImages()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, accepted);
        WindowFixture fixture;
        const QString file = fixture.temp.filePath("my 图标.ico");
        QVERIFY(writeFile(file, content));
        fixture.open();
        fixture.click("advancedTabButton");
        fixture.find<QLineEdit>("iconLineEdit")->setText("before");

        SeenFileDialog dialog;
        QList<SeenBox> boxes;
        whileModal([&] { fixture.click("iconButton"); },
                   [&](QWidget *modal) {
                       if (qobject_cast<QFileDialog *>(modal) != nullptr) {
                           dialog = useFileDialog(modal, file);
                       } else {
                           boxes.append(useBox(modal, QMessageBox::Ok));
                       }
                   });
        QCOMPARE(dialog.title, "选择图标文件");
        QCOMPARE(dialog.filters, QStringList{"图标文件 (*.ico)"});
        QCOMPARE(dialog.mode, QFileDialog::ExistingFile);
        QCOMPARE(dialog.options, QFileDialog::Options());
        QCOMPARE(dialog.parent, fixture.window.get());
        if (accepted) {
            QCOMPARE(boxes, QList<SeenBox>());
            QCOMPARE(fixture.text("iconLineEdit"), file);
            QCOMPARE(fixture.settings.value("iconPath"), file);
            QCOMPARE(fixture.settings.keys().size(), 11);
        } else {
            QCOMPARE(boxes,
                     (QList<SeenBox>{{"错误", "无法加载图标文件！", QMessageBox::Warning,
                                      QMessageBox::Ok, fixture.window.get()}}));
            QCOMPARE(fixture.text("iconLineEdit"), "before");
            QCOMPARE(fixture.settings.keys(), QStringList());
        }
    }

    void iconDialogStartsAtItsOwnPlace()
    {
        WindowFixture fixture;
        QVERIFY(QDir(fixture.temp.path()).mkpath("pictures"));
        QVERIFY(writeFile(fixture.temp.filePath("pictures/my.ico"), icoBytes(32, 32)));
        fixture.open();
        fixture.fillIn();
        fixture.click("advancedTabButton");
        fixture.type("iconLineEdit", fixture.temp.filePath("pictures/my.ico"));
        const auto dialog = answerFileDialog([&] { fixture.click("iconButton"); }, QString());
        QCOMPARE(dialog.title, "选择图标文件");
        for (const char *field : {"pictures", "source", "output"}) {
            QVERIFY(dialog.directory != fixture.temp.filePath(field));
        }
    }

    void cancelledDialogChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("button");
        for (const char *button :
             {"selectFolderButton", "mainExeButton", "outputButton", "iconButton"}) {
            QTest::newRow(button) << QByteArray(button);
        }
    }

    void cancelledDialogChangesNothing()
    {
        QFETCH(QByteArray, button);
        WindowFixture fixture;
        fixture.open();
        fixture.fillIn();
        if (button == "iconButton") {
            fixture.click("advancedTabButton");
        }
        const auto dialog = answerFileDialog([&] { fixture.click(button.constData()); }, QString());
        QVERIFY(!dialog.title.isEmpty());
        QCOMPARE(fixture.text("folderLineEdit"), fixture.sourceFolder());
        QCOMPARE(fixture.text("outputLineEdit"), fixture.outputFolder());
        QCOMPARE(fixture.text("iconLineEdit"), "");
        QCOMPARE(fixture.programNames(), QStringList{"my.exe"});
        QCOMPARE(fixture.settings.keys(), QStringList());
    }
};

QTEST_MAIN(TestMainWindowInput)

#include "tst_mainwindow_input.moc"
