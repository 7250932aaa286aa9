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

QString inherited(const QString &path, const QString &name, const QString &own)
{
    Text program;
    Text bareName;
    Text line;
    if (!program.append(units(path)) || !bareName.append(units(name))
        || !inheritCommandLine(program, bareName, units(own), line)) {
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
    QTEST(inherited(QStringLiteral("c:\\a b\\c.exe"), QStringLiteral("c.exe"), own), "line");
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
