// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/identity.h"

#include <QTest>

using Fields = QList<IdentityField>;
Q_DECLARE_METATYPE(Fields)

namespace {

pe::VersionResource resource(std::uint16_t language, const std::u16string &table)
{
    pe::VersionResource made;
    made.name.id = 1;
    made.language = language;
    made.info.fixed.emplace();
    made.info.fixed->file = {1, 2, 3, 4};
    made.info.fixed->product = {5, 6, 7, 8};
    made.info.tables = {{table,
                         {{u"FileDescription", u"Tone"},
                          {u"FileVersion", u"1.2.3.4"},
                          {u"Comments", u"a comment"},
                          {u"originalfilename", u"tone.exe"}}}};
    made.info.translations = {{language, 1200}};
    return made;
}

std::vector<pe::VersionResource> twoLanguages()
{
    return {resource(0x409, u"040904b0"), resource(0x804, u"080404b0")};
}

std::vector<pe::VersionResource>
made(const std::variant<std::vector<pe::VersionResource>, Message> &identity)
{
    const auto *resources = std::get_if<std::vector<pe::VersionResource>>(&identity);
    return resources != nullptr ? *resources : std::vector<pe::VersionResource>();
}

QString valueOf(const pe::VersionInfo &info, const std::u16string &name)
{
    for (const pe::VersionString &string : info.tables.at(0).strings) {
        if (string.name == name) {
            return QString::fromStdU16String(string.value);
        }
    }
    return QStringLiteral("none");
}

} // namespace

class TestIdentity : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheFileNameChanges();
    void fieldsAreSetInEveryLanguage();
    void anEmptyTextRemovesAField();
    void rareStringsHaveFlags();
    void withoutFixedPart();
    void withoutVersionResource();
    void refused_data();
    void refused();
    void tooLarge();
    void theProductHasACompanyAndAName();
};

void TestIdentity::onlyTheFileNameChanges()
{
    const auto resources = made(identityOf(twoLanguages(), "tone-3.4.6.exe", {}));
    auto expected = twoLanguages();
    for (pe::VersionResource &each : expected) {
        each.info.tables[0].strings[3].value = u"tone-3.4.6.exe";
    }
    QVERIFY(resources == expected);
}

void TestIdentity::fieldsAreSetInEveryLanguage()
{
    const Fields fields{{"filedescription", "音 maker"},
                        {"COMPANYNAME", "Example & Sons"},
                        {"FileVersion", "9.8"},
                        {"ProductVersion", "7.6.5.4"},
                        {"OriginalFilename", "other.exe"}};
    QVERIFY(!reasonToRefuse(fields));
    const auto resources = made(identityOf(twoLanguages(), "tone.exe", fields));
    QCOMPARE(resources.size(), 2u);
    for (const pe::VersionResource &each : resources) {
        QCOMPARE(valueOf(each.info, u"FileDescription"), "音 maker");
        QCOMPARE(valueOf(each.info, u"CompanyName"), "Example & Sons");
        QCOMPARE(valueOf(each.info, u"FileVersion"), "9.8");
        QCOMPARE(valueOf(each.info, u"Comments"), "a comment");
        QCOMPARE(valueOf(each.info, u"originalfilename"), "other.exe");
        QCOMPARE(each.info.fixed->file, (pe::VersionNumber{9, 8, 0, 0}));
        QCOMPARE(each.info.fixed->product, (pe::VersionNumber{7, 6, 5, 4}));
    }
}

void TestIdentity::anEmptyTextRemovesAField()
{
    const auto resources = made(identityOf(twoLanguages(), "tone.exe", {{"Comments", ""}}));
    QCOMPARE(resources.size(), 2u);
    QCOMPARE(valueOf(resources[1].info, u"Comments"), "none");
    QCOMPARE(valueOf(resources[1].info, u"FileDescription"), "Tone");
}

void TestIdentity::rareStringsHaveFlags()
{
    const auto set = made(identityOf(twoLanguages(), "a.exe",
                                     {{"PrivateBuild", "of Ada"}, {"SpecialBuild", "for Bob"}}));
    QCOMPARE(set.size(), 2u);
    QCOMPARE(set[0].info.fixed->flags, 0x28U);
    const auto removed = made(identityOf(set, "a.exe", {{"PrivateBuild", ""}}));
    QCOMPARE(removed[0].info.fixed->flags, 0x20U);
}

void TestIdentity::withoutFixedPart()
{
    auto resources = twoLanguages();
    resources[0].info.fixed.reset();
    QVERIFY(!made(identityOf(resources, "a.exe", {}))[0].info.fixed);
    const auto versioned = made(identityOf(resources, "a.exe", {{"FileVersion", "1"}}));
    QCOMPARE(versioned[0].info.fixed->file, (pe::VersionNumber{1, 0, 0, 0}));
}

void TestIdentity::withoutVersionResource()
{
    QVERIFY(made(identityOf({}, "tone-3.4.exe", {})).empty());
    const auto resources
        = made(identityOf({}, "tone-3.4.exe", {{"ProductName", "Tone"}, {"FileVersion", "3.4"}}));
    QCOMPARE(resources.size(), 1u);
    const pe::VersionResource &only = resources.front();
    QCOMPARE(only.name.id, 1U);
    QCOMPARE(only.language, 0);
    QCOMPARE(only.info.fixed->file, (pe::VersionNumber{3, 4, 0, 0}));
    const std::vector<pe::VersionString> strings{{u"InternalName", u"tone-3.4"},
                                                 {u"OriginalFilename", u"tone-3.4.exe"},
                                                 {u"ProductName", u"Tone"},
                                                 {u"FileVersion", u"3.4"}};
    QVERIFY(only.info.tables == (std::vector<pe::VersionTable>{{u"000004b0", strings}}));
}

void TestIdentity::refused_data()
{
    QTest::addColumn<Fields>("fields");
    QTest::addColumn<QString>("reason"); // its beginning
    QTest::newRow("an unknown field") << Fields{{"Name", "Tone"}}
                                      << "there is no field \"Name\"; the fields are Comments, "
                                         "CompanyName, FileDescription, FileVersion, ";
    QTest::newRow("no name") << Fields{{"", "Tone"}} << "there is no field \"\"";
    QTest::newRow("a field twice")
        << Fields{{"Comments", "a"}, {"comments", "b"}} << "the field Comments is set twice";
    QTest::newRow("no version") << Fields{{"fileversion", "1.2 beta"}}
                                << "\"1.2 beta\" is no version: FileVersion takes one to four ";
    QTest::newRow("no version at all")
        << Fields{{"ProductVersion", ""}} << "\"\" is no version: ProductVersion takes ";
    QTest::newRow("a number too large")
        << Fields{{"FileVersion", "1.65536"}} << "\"1.65536\" is no version";
    QTest::newRow("a line end") << Fields{{"Comments", "a\nb"}}
                                << "the text of Comments contains a line end";
    QTest::newRow("half a character")
        << Fields{{"Comments", QString(QChar(0xdc00))}} << "the text of Comments contains";
    QTest::newRow("too long") << Fields{{"Comments", QString(1025, u'x')}}
                              << "the text of Comments has 1025 characters; at most 1024 are";
}

void TestIdentity::refused()
{
    QFETCH(const Fields, fields);
    QFETCH(const QString, reason);
    const auto refusal = reasonToRefuse(fields);
    QVERIFY(refusal);
    QVERIFY2(textOf(*refusal).startsWith(reason), qPrintable(textOf(*refusal)));
    const auto identity = identityOf(twoLanguages(), "a.exe", fields);
    QCOMPARE(textOf(std::get<Message>(identity)), textOf(*refusal));
}

void TestIdentity::tooLarge()
{
    auto resources = twoLanguages();
    resources[0].info.tables[0].strings[0].value.append(32500, u'x');
    QVERIFY(!made(identityOf(resources, "a.exe", {})).empty());
    const auto refused = identityOf(resources, "a.exe", {{"Comments", QString(1024, u'x')}});
    QVERIFY(std::holds_alternative<Message>(refused));
}

void TestIdentity::theProductHasACompanyAndAName()
{
    QCOMPARE(productOf({}, "a.exe"), QString());
    QCOMPARE(productOf(twoLanguages(), "a.exe"), QString()); // no name
    auto resources = twoLanguages();
    auto &strings = resources[0].info.tables[0].strings;
    strings.push_back({u"ProductName", u"Tone \u97f3"});
    QCOMPARE(productOf(resources, "bin/a.exe"), QString::fromUtf8(" | Tone 音 | bin/a.exe"));
    strings.push_back({u"CompanyName", u"Example & Sons "});
    QCOMPARE(productOf(resources, "bin/a.exe"),
             QString::fromUtf8("Example & Sons | Tone 音 | bin/a.exe"));
    strings.back().value = u"two\nlines";
    QCOMPARE(productOf(resources, "bin/a.exe"), QString::fromUtf8(" | Tone 音 | bin/a.exe"));
    strings.back().value = std::u16string(5000, u'x');
    QVERIFY(productOf(resources, "bin/a.exe").size() < 2000);
    resources[0].info.tables.clear();
    QCOMPARE(productOf(resources, "a.exe"), QString());
}

QTEST_APPLESS_MAIN(TestIdentity)

#include "tst_identity.moc"
