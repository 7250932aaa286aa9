// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/temporaryvariable.h"
#include "tests/ui/support/jobfixture.h"
#include "tests/ui/support/modalanswer.h"

#include <QPointer>
#include <QRegularExpression>
#include <QThread>

// The window's start and end: its temporary directory, its thread, its stored settings.
class TestMainWindowTeardown : public QObject
{
    Q_OBJECT

private slots:
    void temporaryDirectoryIsNamedAfterTheMoment()
    {
        WindowFixture fixture;
        const auto before
            = QDateTime::currentDateTime().addMSecs(-1000); // names have whole seconds
        fixture.open();
        const auto after = QDateTime::currentDateTime();
        const QStringList names = directories(fixture);
        QCOMPARE(names.size(), 1);
        const auto match = QRegularExpression("^Kestrelpack_(\\d{14})$").match(names[0]);
        QVERIFY2(match.hasMatch(), qPrintable(names[0]));
        const auto moment = QDateTime::fromString(match.captured(1), "yyyyMMddhhmmss");
        QVERIFY2(before <= moment && moment <= after, qPrintable(names[0]));
    }

    void temporaryDirectoryIsRemovedWithWhatIsInIt()
    {
        WindowFixture fixture;
        fixture.open();
        const QDir directory(fixture.temp.filePath(directories(fixture).value(0)));
        QVERIFY(directory.mkpath("a/b"));
        QVERIFY(writeFile(directory.filePath("a/b/temp.7z"), "x"));
        fixture.close();
        QCOMPARE(directories(fixture), QStringList());
        QVERIFY(QFile::exists(fixture.source("my.exe")));
    }

    void windowsOfOneSecondShareTheirDirectory()
    {
        WindowFixture fixture;
        // A new second can begin between the two. Then the next attempt makes a new pair.
        for (int attempt = 0; attempt < 3; ++attempt) {
            const auto second = QDateTime::currentSecsSinceEpoch();
            const MainWindow first;
            const MainWindow other;
            if (QDateTime::currentSecsSinceEpoch() == second) {
                QCOMPARE(directories(fixture).size(), 1);
                return;
            }
        }
        QFAIL("no two windows were made within one second");
    }

    void temporaryDirectoryThatCannotBeMadeIsNoFailure()
    {
        WindowFixture fixture;
        const QByteArray previous = qgetenv(temporaryDirectoryVariable);
        const QString file = fixture.temp.filePath("file");
        QVERIFY(writeFile(file, "x"));
        qputenv(temporaryDirectoryVariable, file.toUtf8());
        const auto restore
            = qScopeGuard([&previous] { qputenv(temporaryDirectoryVariable, previous); });
        QCOMPARE(QDir::tempPath(), file);
        fixture.open();
        fixture.close();
        QCOMPARE(readFile(file), "x");
    }

    void runningJobIsFinishedBeforeTheSettingsAreStored()
    {
        JobFixture fixture;
        fixture.startAndHold();
        const QPointer<QProcess> process(fixture.window->findChild<QProcess *>());
        const QString output = fixture.outputFolder() + "/my.exe";

        // Another thread watches while the destructor waits in this one.
        struct Seen
        {
            bool waited = false;
            bool storeWasEmpty = false;
            bool directoryWasThere = false;
        } seen;
        const std::unique_ptr<QThread> onlooker(QThread::create([&] {
            seen.waited = !QFile::exists(output);
            seen.storeWasEmpty = fixture.settings.keys().isEmpty();
            seen.directoryWasThere = !directories(fixture).isEmpty();
            fixture.release();
        }));
        onlooker->start();
        fixture.close();
        QVERIFY(onlooker->wait());

        QVERIFY(seen.waited);
        QVERIFY(seen.storeWasEmpty);
        QVERIFY(seen.directoryWasThere);
        QVERIFY(QFile::exists(output)); // the job ran to its end
        QCOMPARE(fixture.settings.value("folderPath"), fixture.sourceFolder());
        QCOMPARE(directories(fixture), QStringList());
        QVERIFY(process.isNull());
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }

    void settingsAreStoredBeforeTheDirectoryGoes()
    {
        WindowFixture fixture;
        fixture.open();
        // The store is inside the directory. If it is written first, it is removed with the
        // directory.
        const QString directory = fixture.temp.filePath(directories(fixture).value(0));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, directory);
        fixture.close();
        QCOMPARE(directories(fixture), QStringList());
        QVERIFY(!QFile::exists(directory + "/Vexo"));
    }

    void windowDisappearsWhileItWaits()
    {
        JobFixture fixture;
        fixture.startAndHold();
        const QString output = fixture.outputFolder() + "/my.exe";
        bool wasVisible = true;
        bool jobHadEnded = true;
        connect(fixture.window->windowHandle(), &QWindow::visibleChanged, this, [&](bool visible) {
            wasVisible = visible;
            jobHadEnded = QFile::exists(output);
            fixture.release();
        });
        fixture.close();
        QVERIFY(!wasVisible);
        QVERIFY(!jobHadEnded);
        QVERIFY(QFile::exists(output));
    }

    void versionInformationHasItsFiveLines()
    {
        WindowFixture fixture;
        fixture.open();
        QCOMPARE(fixture.window->versionInfoText(),
                 "ProductName=Portable Application\nProductVersion=1.0\nCompanyName=Halvorsoft\n"
                 "FileVersion=1.0.2.32\nFileDescription=Portable Application");
    }

private:
    static QStringList directories(const WindowFixture &fixture)
    {
        return QDir(fixture.temp.path()).entryList({"Kestrelpack_*"}, QDir::Dirs);
    }
};

QTEST_MAIN(TestMainWindowTeardown)

#include "tst_mainwindow_teardown.moc"
