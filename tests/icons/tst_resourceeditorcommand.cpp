// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/resourceeditorcommand.h"

#include <QTest>

class TestResourceEditorCommand : public QObject
{
    Q_OBJECT

private slots:
    void deletingTakesTenArguments()
    {
        QCOMPARE(deleteIconsArguments("/o/my app.exe"),
                 QStringList({"-open", "/o/my app.exe", "-save", "/o/my app.exe", "-action",
                              "delete", "-mask", "ICONGROUP,", "-log", "NUL"}));
    }

    void addingTakesTwelveArguments()
    {
        QCOMPARE(addIconArguments("/o/my app.exe", "/t/temp_icon.ico"),
                 QStringList({"-open", "/o/my app.exe", "-save", "/o/my app.exe", "-action",
                              "addoverwrite", "-resource", "/t/temp_icon.ico", "-mask",
                              "ICONGROUP,MAINICON,", "-log", "NUL"}));
    }
};

QTEST_APPLESS_MAIN(TestResourceEditorCommand)
#include "tst_resourceeditorcommand.moc"
