// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/commandline.h"

#include <QTest>

using namespace sfx;

namespace {

const char16_t *units(const QString &text)
{
    return reinterpret_cast<const char16_t *>(text.utf16());
}

QString inherited(const QString &path, const QString &name, const QString &first,
                  const QString &own)
{
    Text program;
    Text bareName;
    Text firstArguments;
    Text line;
    if (!program.append(units(path)) || !bareName.append(units(name))
        || !firstArguments.append(units(first))
        || !inheritCommandLine(program, bareName, firstArguments, units(own), line)) {
        return QStringLiteral("no memory");
    }
    return QString::fromUtf16(line.data(), static_cast<qsizetype>(line.size()));
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void keepsArgumentsVerbatim_data();
    void keepsArgumentsVerbatim();
    void namesTheProgramAsFarAsThereIsRoom_data();
    void namesTheProgramAsFarAsThereIsRoom();
    void putsOtherArgumentsFirst_data();
    void putsOtherArgumentsFirst();
};

void TestCommandLine::keepsArgumentsVerbatim_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("tail");
    QTest::newRow("no arguments") << "a.exe"
                                  << "";
    QTest::newRow("one argument") << "a.exe b"
                                  << " b";
    QTest::newRow("a quoted program") << "\"c:\\x y\\a.exe\"  b \"c d\""
                                      << "  b \"c d\"";
    QTest::newRow("quotes within the program") << "c:\\\"x y\"\\a.exe b\\\""
                                               << " b\\\"";
    QTest::newRow("a backslash before the quote") << "\"c:\\x\\\" b"
                                                  << " b";
    QTest::newRow("a tab") << "a.exe\tb"
                           << "\tb";
    QTest::newRow("an open quote") << "\"a.exe b"
                                   << "";
    QTest::newRow("nothing") << ""
                             << "";
}

void TestCommandLine::keepsArgumentsVerbatim()
{
    QFETCH(QString, line);
    const auto *tail = argumentTail(reinterpret_cast<const char16_t *>(line.utf16()));
    QTEST(QString::fromUtf16(tail), "tail");
}

void TestCommandLine::namesTheProgramAsFarAsThereIsRoom_data()
{
    QTest::addColumn<QString>("own");
    QTest::addColumn<QString>("line");
    const QString path = QStringLiteral("\"c:\\a b\\c.exe\"");
    const QString name = QStringLiteral("\"c.exe\"");
    // The limit is 32766 characters. The path takes 14, the name 7, and the outer file in "o" takes
    // 1.
    const auto tail = [](qsizetype size) {
        return u' ' + QString(size - 1, u'x');
    };
    QTest::newRow("no arguments") << "o" << path;
    QTest::newRow("arguments") << "\"o\"  x \"\" " << path + "  x \"\" ";
    QTest::newRow("just room for the path") << u'o' + tail(32752) << path + tail(32752);
    QTest::newRow("one too many for the path") << u'o' + tail(32753) << name + tail(32753);
    QTest::newRow("just room for the name") << u'o' + tail(32759) << name + tail(32759);
    QTest::newRow("one too many for the name") << u'o' + tail(32760) << u'o' + tail(32760);
    QTest::newRow("the longest line of all") << u'o' + tail(32765) << u'o' + tail(32765);
}

void TestCommandLine::namesTheProgramAsFarAsThereIsRoom()
{
    QFETCH(QString, own);
    QTEST(inherited(QStringLiteral("c:\\a b\\c.exe"), QStringLiteral("c.exe"), QString(), own),
          "line");
}

void TestCommandLine::putsOtherArgumentsFirst_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("own");
    QTest::addColumn<QString>("line");
    const QString path = QStringLiteral("\"c:\\a b\\c.exe\"");
    const QString name = QStringLiteral("\"c.exe\"");
    const auto tail = [](qsizetype size) {
        return u' ' + QString(size - 1, u'x');
    };
    QTest::newRow("none of the caller's") << "-a \"b c\""
                                          << "o" << path + " -a \"b c\"";
    QTest::newRow("before the caller's") << "-a"
                                         << "\"o\"  b \"\"" << path + " -a  b \"\"";
    QTest::newRow("before a tab") << "-a"
                                  << "o\tb" << path + " -a\tb";
    QTest::newRow("with blanks around them") << " -a "
                                             << "o b" << path + "  -a  b";
    QTest::newRow("just room for the path")
        << "-a" << u'o' + tail(32749) << path + " -a" + tail(32749);
    QTest::newRow("one too many for the path")
        << "-a" << u'o' + tail(32750) << name + " -a" + tail(32750);
    QTest::newRow("just room for the name")
        << "-a" << u'o' + tail(32756) << name + " -a" + tail(32756);
    QTest::newRow("one too many for the name: the program cannot start without them")
        << "-a" << u'o' + tail(32757) << "";
}

void TestCommandLine::putsOtherArgumentsFirst()
{
    QFETCH(QString, first);
    QFETCH(QString, own);
    QTEST(inherited(QStringLiteral("c:\\a b\\c.exe"), QStringLiteral("c.exe"), first, own), "line");
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
