// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/windowsname.h"

#include <QTest>

namespace {

QString problemOf(const QString &path)
{
    const auto problem = windowsNameProblem(path);
    return problem ? textOf(*problem) : QString();
}

} // namespace

class TestWindowsName : public QObject
{
    Q_OBJECT

private slots:
    void faults_data();
    void faults();
    void pathsAreCheckedByTheirLastName();
    void shownPathsHaveOneLine();
};

void TestWindowsName::faults_data()
{
    const QString character = "on Windows a name must not have control characters or any of "
                              "\" * / : < > ? \\ |";
    const QString end = "on Windows a name must not end with a space or a dot";
    const QString device = "on Windows that is the name of a device";
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fault");
    QTest::newRow("a plain name") << "app.exe" << QString();
    QTest::newRow("a dot at the beginning") << ".git" << QString();
    QTest::newRow("Chinese") << QString::fromUtf8("文件.txt") << QString();
    QTest::newRow("a letter of two units") << QString::fromUtf8("😀.png") << QString();
    QTest::newRow("half of one") << QString(QChar(0xd83d)) + ".png"
                                 << "its name has half of a surrogate pair, which is no character";
    QTest::newRow("empty") << ""
                           << "a name must not be empty";
    QTest::newRow("a colon") << "a:b" << character;
    QTest::newRow("a backslash") << "a\\b" << character;
    QTest::newRow("a line break") << "a\nb" << character;
    QTest::newRow("a star") << "a*b" << character;
    QTest::newRow("a dot at the end") << "a." << end;
    QTest::newRow("a space at the end") << "a " << end;
    QTest::newRow("two dots") << ".." << end;
    QTest::newRow("a device") << "nul" << device;
    QTest::newRow("a device with an extension") << "Aux.c" << device;
    QTest::newRow("a port") << "COM1" << device;
    QTest::newRow("a port with a superscript digit") << "lpt" + QString(QChar(0xb9)) << device;
    QTest::newRow("no port") << "com10" << QString();
    QTest::newRow("the longest") << QString(255, 'x') << QString();
    QTest::newRow("too long") << QString(256, 'x')
                              << "on Windows a name may have at most 255 characters";
}

void TestWindowsName::faults()
{
    QFETCH(const QString, name);
    QFETCH(const QString, fault);
    QCOMPARE(problemOf(name),
             fault.isEmpty() ? QString() : shownPath(name) + " cannot be packed: " + fault);
}

void TestWindowsName::pathsAreCheckedByTheirLastName()
{
    QCOMPARE(problemOf("a/b.txt"), QString());
    QCOMPARE(problemOf("a/con"), "a/con cannot be packed: on Windows that is the name of a device");
    QCOMPARE(problemOf("con/a"), QString());
    const QString longest = QString(QString(99, 'x') + '/').repeated(300);
    QCOMPARE(problemOf(longest.left(29999) + "x"), QString());
    QVERIFY(problemOf(longest + "x").endsWith("a path may have at most 30000 characters"));
}

void TestWindowsName::shownPathsHaveOneLine()
{
    QCOMPARE(shownPath("a/b"), "a/b");
    QCOMPARE(shownPath("a\n\x1b[31mb"), "a\\x0a\\x1b[31mb");
}

QTEST_GUILESS_MAIN(TestWindowsName)
#include "tst_windowsname.moc"
