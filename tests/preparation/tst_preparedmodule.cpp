// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/settings.h"
#include "preparation/preparedmodule.h"

#include "inspection/programfacts.h"
#include "platform/nativepath.h"
#include "preparation/identity.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(ModulePlan)

namespace {

std::vector<pe::VersionResource> identity()
{
    const auto program = readMainProgram(builtFile(KESTRELPACK_IDENTIFIED));
    return std::get<std::vector<pe::VersionResource>>(
        identityOf(std::get<MainProgram>(program).identity, "tone.exe", {}));
}

std::optional<ProgramFacts> factsOf(const QString &path)
{
    const auto file = pe::File::open(toNativePath(path), pe::File::Access::Read);
    return file.hasError() ? std::nullopt : programFactsOf(file.value());
}

} // namespace

class TestPreparedModule : public QObject
{
    Q_OBJECT

private slots:
    void aPlanThatChangesNothing();
    void changed_data();
    void changed();
    void theIdentityIsThere();
    void theSettingsAreThere();
    void manyLanguages();
    void samePlanSameBytes();
    void refused_data();
    void refused();
    void aFileThatIsThereIsKept();
};

void TestPreparedModule::aPlanThatChangesNothing()
{
    const QTemporaryDir dir;
    QVERIFY(!writePreparedModule({}, dir.path()));
    QCOMPARE(readFile(dir.filePath("7zS2.sfx")), readFile(":/resources/7zS2.sfx"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList("7zS2.sfx"));
}

void TestPreparedModule::changed_data()
{
    QTest::addColumn<ModulePlan>("plan");
    QTest::newRow("a console") << ModulePlan{.kind = ProgramKind::Console};
    QTest::newRow("settings") << ModulePlan{.settings = {{"Title", "音"}, {"Silent", "1"}}};
    QTest::newRow("an identity") << ModulePlan{.identity = identity()};
    const Setting longest{"Arguments", QString(qsizetype(sfx::maxArguments), u'音')};
    QTest::newRow("all of it") << ModulePlan{ProgramKind::Console, {longest}, identity()};
}

// Whatever changes, code and data are the bundle's, and the file is sound.
void TestPreparedModule::changed()
{
    QFETCH(const ModulePlan, plan);
    const QTemporaryDir dir;
    const QString path = dir.filePath("7zS2.sfx");
    QVERIFY(!writePreparedModule(plan, dir.path()));
    const QByteArray before = readFile(":/resources/7zS2.sfx");
    const QByteArray after = readFile(path);
    QVERIFY(after != before);
    const petest::PeFacts facts = petest::lookAt(after);
    QCOMPARE(facts.fault, QString());
    QCOMPARE(facts.checkSum, 0U);
    QCOMPARE(facts.imageEnd, after.size()); // the engine appends to it
    const auto programFacts = factsOf(path);
    QVERIFY(programFacts);
    QVERIFY(programFacts->hasOwnModule);
    QCOMPARE(programFacts->subsystem, plan.kind == ProgramKind::Console ? "console" : "windows");
    // The module's own resources stay.
    const petest::Resources old = petest::lookAt(before).resources;
    for (auto resource = old.begin(); resource != old.end(); ++resource) {
        QVERIFY2(facts.resources.value(resource.key()) == resource.value(),
                 qPrintable(resource.key()));
    }
    const int added = static_cast<int>(plan.identity.size()) + (plan.settings.isEmpty() ? 0 : 1);
    QCOMPARE(facts.resources.size(), old.size() + added);
}

void TestPreparedModule::theIdentityIsThere()
{
    const QTemporaryDir dir;
    QVERIFY(!writePreparedModule({.identity = identity()}, dir.path()));
    const auto program = readMainProgram(dir.filePath("7zS2.sfx"));
    QVERIFY(std::get<MainProgram>(program).identity == identity());
    const auto facts = factsOf(dir.filePath("7zS2.sfx"));
    QVERIFY(facts);
    QVERIFY(facts->identity.contains({"FileDescription", "Tone generator"}));
    QVERIFY(facts->identity.contains({"OriginalFilename", "tone.exe"}));
}

void TestPreparedModule::theSettingsAreThere()
{
    const QTemporaryDir dir;
    QVERIFY(!writePreparedModule({.settings = {{"Title", "a \"b\""}}}, dir.path()));
    const petest::PeFacts facts = petest::lookAt(readFile(dir.filePath("7zS2.sfx")));
    QCOMPARE(facts.resources.value("10/\"SETTINGS\"/0").content, "Title=\"a \"b\"\"\n");
}

void TestPreparedModule::manyLanguages()
{
    ModulePlan plan;
    for (std::uint16_t language = 1; language <= 60; ++language) {
        plan.identity.push_back(identity().front());
        plan.identity.back().language = language;
    }
    const QTemporaryDir dir;
    QVERIFY(!writePreparedModule(plan, dir.path()));
    QCOMPARE(petest::lookAt(readFile(dir.filePath("7zS2.sfx"))).fault, QString());
    const auto program = readMainProgram(dir.filePath("7zS2.sfx"));
    QVERIFY(std::get<MainProgram>(program).identity == plan.identity);
}

void TestPreparedModule::samePlanSameBytes()
{
    const ModulePlan plan{ProgramKind::Console, {{"Silent", "1"}}, identity()};
    const QTemporaryDir first;
    const QTemporaryDir second;
    QVERIFY(!writePreparedModule(plan, first.path()));
    QVERIFY(!writePreparedModule(plan, second.path()));
    QCOMPARE(readFile(first.filePath("7zS2.sfx")), readFile(second.filePath("7zS2.sfx")));
}

void TestPreparedModule::refused_data()
{
    QTest::addColumn<ModulePlan>("plan");
    QTest::addColumn<QString>("reason");
    QTest::newRow("an unknown setting") << ModulePlan{.settings = {{"Colour", "red"}}}
                                        << "the self-extractor does not know the setting Colour";
    pe::VersionResource large;
    large.info.tables = {{u"000004b0", {{u"Comments", std::u16string(40000, u'x')}}}};
    QTest::newRow("an identity that is too large")
        << ModulePlan{.identity = {large}}
        << "the version information cannot be written: the version information is larger than 64 KiB";
}

void TestPreparedModule::refused()
{
    QFETCH(const ModulePlan, plan);
    const QTemporaryDir dir;
    const auto message = writePreparedModule(plan, dir.path());
    QVERIFY(message);
    QTEST(textOf(*message), "reason");
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
}

void TestPreparedModule::aFileThatIsThereIsKept()
{
    const QTemporaryDir dir;
    QVERIFY(writeFile(dir.filePath("7zS2.sfx"), "planted"));
    const auto message = writePreparedModule({}, dir.path());
    QVERIFY(message);
    QVERIFY(textOf(*message).startsWith("the self-extractor module cannot be written to "));
    QCOMPARE(readFile(dir.filePath("7zS2.sfx")), "planted");
    QVERIFY(writePreparedModule({}, dir.filePath("missing")));
}

QTEST_GUILESS_MAIN(TestPreparedModule)

#include "tst_preparedmodule.moc"
