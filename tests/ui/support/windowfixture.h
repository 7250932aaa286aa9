// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/support/testfiles.h"
#include "tests/support/waiting.h"
#include "tests/ui/support/settingssandbox.h"
#include "ui/mainwindow.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include <memory>
#include <optional>

// The window with a private temporary directory, settings store and platform. The folder "source"
// contains my.exe; "output" is empty.
class WindowFixture
{
public:
    WindowFixture()
    {
        // A program cannot operate the system's own dialogs.
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        const QDir dir(temp.path());
        if (!dir.mkpath("source") || !dir.mkpath("output")
            || !writeFile(source("my.exe"), "program")) {
            qFatal("the surroundings could not be made");
        }
    }

    PrivateTemp temp;
    SettingsSandbox settings;
    std::optional<FakePlatform> platform{std::in_place}; // reset() selects the system's platform
    std::unique_ptr<MainWindow> window;

    QString source(const QString &name = {}) const { return temp.filePath("source/" + name); }
    QString sourceFolder() const { return temp.filePath("source"); }
    QString outputFolder() const { return temp.filePath("output"); }

    MainWindow &open()
    {
        window = std::make_unique<MainWindow>();
        window->show();
        if (!QTest::qWaitForWindowExposed(window.get(), patience)) {
            qFatal("the window does not appear");
        }
        return *window;
    }

    void close() { window.reset(); }

    // Finds a widget by its object name. Ends the program if it is missing.
    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = window->findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr) {
            qFatal("there is no %s", name);
        }
        return widget;
    }

    void click(const char *button) const
    {
        QTest::mouseClick(find<QAbstractButton>(button), Qt::LeftButton);
    }

    void type(const char *lineEdit, const QString &text) const
    {
        auto *edit = find<QLineEdit>(lineEdit);
        edit->setFocus();
        edit->selectAll();
        if (text.isEmpty()) {
            QTest::keyClick(edit, Qt::Key_Delete);
        } else {
            QTest::keyClicks(edit, text);
        }
    }

    void choose(const char *comboBox, int index) const
    {
        auto *combo = find<QComboBox>(comboBox);
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Home);
        for (int step = 0; step < index; ++step) {
            QTest::keyClick(combo, Qt::Key_Down);
        }
    }

    QString text(const char *lineEdit) const { return find<QLineEdit>(lineEdit)->text(); }
    QString log() const { return find<QTextEdit>("logTextEdit")->toPlainText(); }
    int progress() const { return find<QProgressBar>("progressBar")->value(); }
    QComboBox *programs() const { return find<QComboBox>("mainExeComboBox"); }

    QStringList programNames() const
    {
        QStringList names;
        for (int i = 0; i < programs()->count(); ++i) {
            names.append(programs()->itemText(i));
        }
        return names;
    }

    // Valid inputs, typed and chosen without a dialog.
    void fillIn() const
    {
        find<QLineEdit>("folderLineEdit")->setText(sourceFolder());
        find<QLineEdit>("outputLineEdit")->setText(outputFolder());
        programs()->addItem("my.exe");
    }
};
