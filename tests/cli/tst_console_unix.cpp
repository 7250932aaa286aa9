// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/console.h"

#include <QFile>
#include <QTest>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

// What the terminal program sends to a terminal, which is the other end of this test's standard
// error.
class TestConsole : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_terminal = posix_openpt(O_RDWR | O_NOCTTY);
        QVERIFY(m_terminal != -1 && grantpt(m_terminal) == 0 && unlockpt(m_terminal) == 0);
        const int program = open(ptsname(m_terminal), O_RDWR | O_NOCTTY);
        m_usual = dup(STDERR_FILENO);
        QVERIFY(program != -1 && dup2(program, STDERR_FILENO) == STDERR_FILENO);
        close(program);
    }
    void cleanupTestCase() { dup2(m_usual, STDERR_FILENO); }

    void aBarIsDrawnAndRemoved()
    {
        Console console(Console::Style::Full);
        console.showProgress(25);
        QCOMPARE(sent(), "\r" + progressBarText(25));
        console.showProgress(50);
        QCOMPARE(sent(), "\r" + progressBarText(50));
        console.clearProgress();
        QCOMPARE(sent(), progressBarEraser());
        console.clearProgress();
        QCOMPARE(sent(), QString());
    }

    void aMessageTakesThePlaceOfTheBar()
    {
        Console console(Console::Style::Full);
        console.showProgress(75);
        console.showMessage("the end");
        // The terminal makes two characters of a line end.
        QCOMPARE(sent(),
                 "\r" + progressBarText(75) + progressBarEraser() + "kestrelpack-cli: the end\r\n");
    }

    void aQuietProgramDrawsNothing()
    {
        Console console(Console::Style::Quiet);
        console.showProgress(75);
        console.clearProgress();
        QCOMPARE(sent(), QString());
    }

private:
    // Everything that was sent since the last call. The system passes it on a moment later, so this
    // sends a mark after it and reads up to the mark.
    QString sent() const
    {
        constexpr char mark = '\x1f';
        QByteArray bytes;
        char byte = 0;
        if (write(STDERR_FILENO, &mark, 1) != 1) {
            return QStringLiteral("no terminal");
        }
        while (read(m_terminal, &byte, 1) == 1 && byte != mark) {
            bytes += byte;
        }
        return QString::fromUtf8(bytes);
    }

    int m_terminal = -1;
    int m_usual = -1;
};

QTEST_APPLESS_MAIN(TestConsole)
#include "tst_console_unix.moc"
