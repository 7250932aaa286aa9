// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/programedit.h"

#include "helpers/pe/programheader.h"
#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

Q_DECLARE_METATYPE(petest::Recipe)
Q_DECLARE_METATYPE(pe::ProgramEdit)
using Keys = QStringList;

namespace {

pe::ResourceKey id(std::uint32_t number)
{
    return {std::nullopt, number};
}

pe::ResourceKey name(const char16_t *text)
{
    return {text, 0};
}

pe::Bytes bytes(const char *text)
{
    const QByteArray content(text);
    return {content.begin(), content.end()};
}

// PE32 and PE32+ have it at the same place.
quint16 subsystemOf(const QByteArray &program)
{
    return qFromLittleEndian<quint16>(program.constData() + 0x98 + 68);
}

} // namespace

class TestProgramEdit : public QObject
{
    Q_OBJECT

private slots:
    void allShapes_data();
    void allShapes();
    void edits_data();
    void edits();
    void theSubsystemAlone();
    void nothingToChange_data();
    void nothingToChange();
    void aResourceThatIsSetTwiceIsThereOnce();
    void anotherFile();

private:
    // Applies the edit to a program and returns the new bytes.
    QByteArray edited(const QByteArray &program, const pe::ProgramEdit &edit,
                      pe::EditOutcome expected = pe::EditOutcome::Changed) const
    {
        const QString path = m_dir.filePath("a.exe");
        if (!writeFile(path, program)) {
            qFatal("the program could not be written");
        }
        const auto native = nativePathOf(path);
        const auto outcome = pe::editProgram(native, native, edit);
        return !outcome.hasError() && outcome.value() == expected ? readFile(path) : QByteArray();
    }

    QTemporaryDir m_dir;
};

void TestProgramEdit::allShapes_data()
{
    QTest::addColumn<petest::Recipe>("recipe");
    using petest::Recipe;
    QTest::newRow("64 bits") << Recipe{.overlay = 100001};
    QTest::newRow("32 bits") << Recipe{.pe32Plus = false};
    QTest::newRow("without resources") << Recipe{.resources = false, .icons = false, .overlay = 99};
    QTest::newRow("relocations after the resources") << Recipe{.relocBehind = true, .overlay = 50};
    QTest::newRow("another section after the resources") << Recipe{.foreignBehind = true};
}

// A large resource, so that the section has to grow, and a small one.
void TestProgramEdit::allShapes()
{
    QFETCH(const petest::Recipe, recipe);
    const QByteArray before = petest::makeProgram(recipe);
    const pe::Bytes large(50000, 0x5a);
    pe::ProgramEdit edit;
    edit.subsystem = pe::subsystemConsole;
    edit.resources = {{id(10), name(u"Settings"), 0, large}, {id(77), id(1), 1033, bytes("x")}};
    const QByteArray after = edited(before, edit);
    const petest::PeFacts facts = petest::lookAt(after);
    QCOMPARE(facts.fault, QString());
    QCOMPARE(subsystemOf(after), pe::subsystemConsole);
    QCOMPARE(facts.checkSum, 0U);
    const petest::PeFacts old = petest::lookAt(before);
    QCOMPARE(after.mid(facts.imageEnd), before.mid(old.imageEnd));
    petest::Resources expected = old.resources;
    expected["10/\"SETTINGS\"/0"] = {QByteArray(50000, 0x5a), 0};
    expected["77/1/1033"] = {"x", 0};
    QCOMPARE(facts.resources, expected);
}

void TestProgramEdit::edits_data()
{
    QTest::addColumn<pe::ProgramEdit>("edit");
    QTest::addColumn<Keys>("removed");
    QTest::addColumn<Keys>("added");
    const auto row = [](const char *title, const pe::ProgramEdit &edit, const Keys &removed,
                        const Keys &added) {
        QTest::newRow(title) << edit << removed << added;
    };
    row("a new one", {.resources = {{id(10), id(5), 7, bytes("new")}}}, {}, {"10/5/7"});
    row("another language", {.resources = {{id(10), id(100), 1031, bytes("new")}}}, {},
        {"10/100/1031"});
    row("replaced in one language", {.resources = {{id(10), id(100), 1033, bytes("new")}}},
        {"10/100/1033"}, {"10/100/1033"});
    row("replaced by its name in small letters",
        {.resources = {{id(10), name(u"data"), 0, bytes("new")}}}, {"10/\"DATA\"/0"},
        {"10/\"DATA\"/0"});
    row("a new type with a name", {.resources = {{name(u"TeXt"), id(1), 0, bytes("new")}}}, {},
        {"\"TEXT\"/1/0"});
    row("removed in one language", {.resources = {{id(10), id(100), 1033, {}}}}, {"10/100/1033"},
        {});
    row("removed in the last language", {.resources = {{id(6), id(7), 1031, {}}}}, {"6/7/1031"},
        {});
    row("a type removed", {.removedTypes = {id(10)}},
        {"10/\"DATA\"/0", "10/100/1033", "10/100/2052"}, {});
    row("a type removed and one of it set",
        {.removedTypes = {id(16)}, .resources = {{id(16), id(1), 2052, bytes("new")}}},
        {"16/1/1033"}, {"16/1/2052"});
}

void TestProgramEdit::edits()
{
    QFETCH(const pe::ProgramEdit, edit);
    QFETCH(const Keys, removed);
    QFETCH(const Keys, added);
    const QByteArray before = petest::makeProgram({.overlay = 1000});
    const petest::PeFacts facts = petest::lookAt(edited(before, edit));
    QCOMPARE(facts.fault, QString());
    petest::Resources expected = petest::lookAt(before).resources;
    for (const QString &key : removed) {
        QCOMPARE(expected.remove(key), 1);
    }
    for (const QString &key : added) {
        expected[key] = {"new", 0};
    }
    QCOMPARE(facts.resources, expected);
}

// The subsystem and the check sum: no other byte changes, and no section is added.
void TestProgramEdit::theSubsystemAlone()
{
    for (const bool resources : {true, false}) {
        const QByteArray before = petest::makeProgram(
            {.resources = resources, .icons = resources, .headerRoom = false, .overlay = 77});
        QByteArray expected = before;
        expected.replace(0x98 + 64, 6, QByteArray("\0\0\0\0\3\0", 6));
        QCOMPARE(edited(before, {.subsystem = pe::subsystemConsole}), expected);
    }
}

void TestProgramEdit::nothingToChange_data()
{
    QTest::addColumn<pe::ProgramEdit>("edit");
    QTest::newRow("an empty edit") << pe::ProgramEdit();
    QTest::newRow("the subsystem that it has") << pe::ProgramEdit{.subsystem = 2};
    QTest::newRow("a type that is not there") << pe::ProgramEdit{.removedTypes = {id(99)}};
    QTest::newRow("a resource that is not there")
        << pe::ProgramEdit{.resources = {{id(10), id(100), 5, {}}}};
}

void TestProgramEdit::nothingToChange()
{
    QFETCH(const pe::ProgramEdit, edit);
    const QByteArray before = petest::makeProgram({.overlay = 1000});
    QCOMPARE(subsystemOf(before), 2);
    QCOMPARE(edited(before, edit, pe::EditOutcome::Unchanged), before);
}

void TestProgramEdit::aResourceThatIsSetTwiceIsThereOnce()
{
    const QByteArray before = petest::makeProgram({});
    const pe::ProgramEdit edit{
        .resources = {{id(10), name(u"S"), 0, bytes("a")}, {id(10), name(u"s"), 0, bytes("b")}}};
    const QByteArray once = edited(before, edit);
    QCOMPARE(petest::lookAt(once).resources.value("10/\"S\"/0").content, "b");
    QCOMPARE(edited(once, edit).size(), once.size()); // nothing is left over
}

void TestProgramEdit::anotherFile()
{
    const QString path = m_dir.filePath("b.exe");
    const QString made = m_dir.filePath("made.exe");
    const QByteArray before = petest::makeProgram({});
    QVERIFY(writeFile(path, before));
    QVERIFY(!pe::editProgram(nativePathOf(path), nativePathOf(made), {.removedTypes = {id(10)}})
                 .hasError());
    QCOMPARE(readFile(path), before);
    QCOMPARE(petest::lookAt(readFile(made)).fault, QString());
}

QTEST_APPLESS_MAIN(TestProgramEdit)

#include "tst_programedit.moc"
