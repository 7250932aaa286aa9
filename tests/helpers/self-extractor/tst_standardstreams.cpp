// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/standardstreams.h"

#include <QTest>

using sfx::StandardStream;
using sfx::StreamFacts;
using sfx::StreamSource;

// Which standard handles the module uses and passes on.
class TestStandardStreams : public QObject
{
    Q_OBJECT

private slots:
    void choosesTheHandle_data();
    void choosesTheHandle();
    void knowsWhatIsNoHandle_data();
    void knowsWhatIsNoHandle();
    void passesTheFlagsOn_data();
    void passesTheFlagsOn();
};

void TestStandardStreams::choosesTheHandle_data()
{
    QTest::addColumn<bool>("callersIsOpen");
    QTest::addColumn<bool>("hasConsole");
    QTest::addColumn<bool>("attachedIsOpen");
    QTest::addColumn<StreamSource>("source");
    QTest::newRow("redirected to a file, in a console")
        << true << true << true << StreamSource::Caller;
    QTest::newRow("redirected, and Windows has left it")
        << true << true << false << StreamSource::Caller;
    QTest::newRow("redirected, without a console")
        << true << false << false << StreamSource::Caller;
    QTest::newRow("missing, in a console") << false << true << true << StreamSource::Attached;
    QTest::newRow("missing, and Windows has opened none")
        << false << true << false << StreamSource::Device;
    QTest::newRow("missing, without a console") << false << false << false << StreamSource::None;
}

void TestStandardStreams::choosesTheHandle()
{
    QFETCH(bool, callersIsOpen);
    QFETCH(bool, hasConsole);
    QFETCH(bool, attachedIsOpen);
    QTEST(sfx::chooseStream(StreamFacts{callersIsOpen, hasConsole, attachedIsOpen}), "source");
}

void TestStandardStreams::knowsWhatIsNoHandle_data()
{
    QTest::addColumn<unsigned>("flags");
    QTest::addColumn<bool>("input");
    QTest::addColumn<bool>("output");
    QTest::newRow("from a prompt") << 0x000u << true << true;
    QTest::newRow("from a program that names the handles") << 0x101u << true << true;
    QTest::newRow("from the taskbar, with a monitor") << 0x401u << true << false;
    QTest::newRow("from a shortcut with a hot key") << 0xa01u << false << true;
    QTest::newRow("with both") << 0x601u << false << false;
}

void TestStandardStreams::knowsWhatIsNoHandle()
{
    QFETCH(unsigned, flags);
    QTEST(sfx::isMeantAsHandle(StandardStream::Input, flags), "input");
    QTEST(sfx::isMeantAsHandle(StandardStream::Output, flags), "output");
    QVERIFY(sfx::isMeantAsHandle(StandardStream::Error, flags));
}

void TestStandardStreams::passesTheFlagsOn_data()
{
    QTest::addColumn<unsigned>("own");
    QTest::addColumn<bool>("passesHandles");
    QTest::addColumn<unsigned>("program");
    QTest::newRow("nothing") << 0x000u << false << 0x000u;
    QTest::newRow("from a prompt: the handles are named") << 0x000u << true << 0x100u;
    QTest::newRow("with the way to show") << 0x001u << true << 0x101u;
    QTest::newRow("handles that are named but closed") << 0x101u << false << 0x001u;
    QTest::newRow("from the taskbar: the monitor too") << 0x401u << false << 0x401u;
    QTest::newRow("from the taskbar, in a console: no monitor") << 0x401u << true << 0x101u;
    QTest::newRow("from a shortcut: its name and its hot key") << 0xa01u << false << 0xa01u;
    QTest::newRow("from a shortcut, with handles: its name") << 0xa01u << true << 0x901u;
    QTest::newRow("an identity for the taskbar") << 0x3001u << false << 0x3001u;
}

void TestStandardStreams::passesTheFlagsOn()
{
    QFETCH(unsigned, own);
    QFETCH(bool, passesHandles);
    QFETCH(unsigned, program);
    QCOMPARE(sfx::flagsForProgram(own, passesHandles), static_cast<unsigned long>(program));
}

QTEST_APPLESS_MAIN(TestStandardStreams)
#include "tst_standardstreams.moc"
