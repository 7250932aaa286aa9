// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/versioninfo.h"

#include <QByteArray>
#include <QTest>

Q_DECLARE_METATYPE(pe::VersionInfo)

namespace {

QByteArray units(const QString &text)
{
    return QByteArray(reinterpret_cast<const char *>(text.utf16()), 2 * (text.size() + 1));
}

QByteArray padded(QByteArray bytes)
{
    return bytes.append((4 - bytes.size() % 4) % 4, '\0');
}

QByteArray number16(qsizetype value)
{
    return {QByteArray(1, static_cast<char>(value & 0xff)) + static_cast<char>(value >> 8)};
}

// A structure with a value and the structures inside it.
QByteArray node(const QString &key, const QByteArray &value, qsizetype valueLength,
                const QByteArray &inside = {})
{
    QByteArray rest = number16(valueLength) + number16(1) + units(key);
    rest = padded("xx" + rest).mid(2) + value;
    if (!inside.isEmpty()) {
        rest = padded("xx" + rest).mid(2) + inside;
    }
    return number16(rest.size() + 2) + rest;
}

QByteArray string(const QString &name, const QString &value)
{
    return padded(node(name, units(value), value.size() + 1));
}

QByteArray fixedPart()
{
    return QByteArray("\xbd\x04\xef\xfe\0\0\1\0\2\0\1\0\4\0\3\0\6\0\5\0\xff\xff\7\0", 24)
        + QByteArray("\x3f\0\0\0\x20\0\0\0\4\0\4\0\1\0\0\0\0\0\0\0\x11\0\x22\0\x33\0\x44\0", 28);
}

// A resource with one table, and the translations before it, as some compilers write it.
QByteArray resource(const QByteArray &strings)
{
    const QByteArray table = node("080404b0", {}, 0, strings);
    const QByteArray translations
        = node("Translation", QByteArray("\4\x08\xb0\4\x09\4\xe4\4", 8), 8);
    return node("VS_VERSION_INFO", fixedPart(), 52,
                padded(node("VarFileInfo", {}, 0, translations))
                    + node("StringFileInfo", {}, 0, table));
}

pe::ByteView view(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

pe::VersionInfo twoTables()
{
    pe::VersionInfo info;
    info.fixed.emplace();
    info.tables = {{u"040904b0", {{u"ProductName", u"Tone"}, {u"fileversion", u"1.2"}}},
                   {u"080404b0", {{u"ProductName", u"音"}}}};
    info.translations = {{0x409, 1200}, {0x804, 1200}};
    return info;
}

} // namespace

class TestVersionInfo : public QObject
{
    Q_OBJECT

private slots:
    void allPartsAreRead();
    void withoutStrings();
    void oddButIntact_data();
    void oddButIntact();
    void damaged_data();
    void damaged();
    void everyTruncationIsSafe();
    void whatIsWrittenIsReadAgain_data();
    void whatIsWrittenIsReadAgain();
    void tooLargeIsRefused();
    void settingAString();
    void aFirstTable();
    void removingAString();
    void versionNumbers_data();
    void versionNumbers();
};

void TestVersionInfo::allPartsAreRead()
{
    const QByteArray bytes = resource(string("ProductName", "应用")
                                      + string("FileDescription", "My app")
                                      + string("Comments", ""));
    const auto read = pe::readVersionInfo(view(bytes));
    QVERIFY(!read.hasError());
    const pe::VersionInfo &info = read.value();
    QVERIFY(info.fixed);
    QCOMPARE(info.fixed->file, (pe::VersionNumber{1, 2, 3, 4}));
    QCOMPARE(info.fixed->product, (pe::VersionNumber{5, 6, 7, 65535}));
    QCOMPARE(info.fixed->flags, 0x20U);
    QCOMPARE(info.fixed->system, 0x40004U);
    QCOMPARE(info.fixed->type, 1U);
    QCOMPARE(info.fixed->date, (pe::VersionNumber{0x22, 0x11, 0x44, 0x33}));
    const std::vector<pe::VersionString> strings{{u"ProductName", u"应用"},
                                                 {u"FileDescription", u"My app"},
                                                 {u"Comments", u""}};
    QVERIFY(info.tables == (std::vector<pe::VersionTable>{{u"080404b0", strings}}));
    QVERIFY(info.translations
            == (std::vector<pe::VersionTranslation>{{0x804, 1200}, {0x409, 1252}}));
}

void TestVersionInfo::withoutStrings()
{
    const auto read = pe::readVersionInfo(view(node("VS_VERSION_INFO", fixedPart(), 52)));
    QVERIFY(!read.hasError());
    QVERIFY(read.value().fixed);
    QVERIFY(read.value().tables.empty());
}

void TestVersionInfo::oddButIntact_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("value"); // of the only string
    const QByteArray plain = string("A", "b");
    QTest::newRow("zeros after the last string count to the table")
        << resource(plain + QByteArray(12, '\0')) << "b";
    QTest::newRow("a string of two NULs")
        << resource(padded(node("A", units("b") + QByteArray(2, '\0'), 3))) << "b";
    QTest::newRow("a string without NUL")
        << resource(padded(node("A", units("b").chopped(2), 1))) << "b";
    QTest::newRow("a value length in bytes") << resource(padded(node("A", units("b"), 4))) << "b";
    QTest::newRow("no fixed part")
        << node("VS_VERSION_INFO", {}, 0,
                node("StringFileInfo", {}, 0, node("040904b0", {}, 0, plain)))
        << "b";
    QTest::newRow("an unknown block")
        << node("VS_VERSION_INFO", {}, 0,
                padded(node("Other", {}, 0, plain))
                    + node("StringFileInfo", {}, 0, node("040904b0", {}, 0, plain)))
        << "b";
    QTest::newRow("two blocks of strings")
        << node("VS_VERSION_INFO", {}, 0,
                padded(node("StringFileInfo", {}, 0, node("040904b0", {}, 0, plain)))
                    + node("StringFileInfo", {}, 0, node("040704b0", {}, 0, plain)))
        << "b";
}

void TestVersionInfo::oddButIntact()
{
    QFETCH(const QByteArray, bytes);
    const auto read = pe::readVersionInfo(view(bytes));
    QVERIFY(!read.hasError());
    QVERIFY(!read.value().tables.empty());
    for (const pe::VersionTable &table : read.value().tables) {
        QCOMPARE(table.strings.size(), 1u);
        QTEST(QString::fromStdU16String(table.strings.front().value), "value");
    }
}

void TestVersionInfo::damaged_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("another structure") << node("SOMETHING", {}, 0);
    QByteArray longer = resource(string("A", "b"));
    longer[0] = static_cast<char>(longer.at(0) + 4);
    QTest::newRow("longer than the resource") << longer;
    QByteArray empty = resource(string("A", "b"));
    const auto inside = empty.indexOf(units("StringFileInfo")) - 6;
    empty[inside] = 0;
    empty[inside + 1] = 0;
    QTest::newRow("a structure of no length") << empty;
    QTest::newRow("a key without an end") << number16(8) + number16(0) + number16(1) + "V ";
}

void TestVersionInfo::damaged()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(pe::readVersionInfo(view(bytes)).hasError());
}

// AddressSanitizer would notice a read after the end of the copy.
void TestVersionInfo::everyTruncationIsSafe()
{
    const QByteArray bytes = resource(string("FileDescription", "My app"));
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        const std::vector<std::uint8_t> cut(bytes.begin(), bytes.begin() + size);
        QVERIFY(pe::readVersionInfo(cut).hasError());
    }
    // The same with lengths that say more than there is.
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        pe::Bytes changed(bytes.begin(), bytes.end());
        changed[static_cast<std::size_t>(at)] = 0xff;
        static_cast<void>(pe::readVersionInfo(changed));
    }
}

void TestVersionInfo::whatIsWrittenIsReadAgain_data()
{
    QTest::addColumn<pe::VersionInfo>("info");
    QTest::newRow("nothing at all") << pe::VersionInfo();
    QTest::newRow("two tables") << twoTables();
    pe::VersionInfo odd = twoTables();
    odd.fixed.reset();
    odd.tables.front().strings.push_back({u"", u"𝄞"});
    odd.tables.push_back({u"000004b0", {}});
    QTest::newRow("no fixed part, an empty table, an empty name") << odd;
    pe::VersionInfo numbers;
    numbers.fixed.emplace();
    numbers.fixed->file = {65535, 1, 0, 2};
    numbers.fixed->date = {1, 2, 3, 4};
    QTest::newRow("numbers only") << numbers;
}

void TestVersionInfo::whatIsWrittenIsReadAgain()
{
    QFETCH(const pe::VersionInfo, info);
    const auto bytes = pe::writeVersionInfo(info);
    QVERIFY(!bytes.hasError());
    const auto read = pe::readVersionInfo(bytes.value());
    QVERIFY(!read.hasError());
    QVERIFY(read.value() == info);
}

void TestVersionInfo::tooLargeIsRefused()
{
    pe::VersionInfo info = twoTables();
    info.translations.clear(); // the last string ends the resource
    const auto small = pe::writeVersionInfo(info);
    QVERIFY(!small.hasError());
    const std::size_t room = pe::maxVersionSize - small.value().size();
    info.tables.back().strings.back().value.append(room / 2, u'x');
    const auto largest = pe::writeVersionInfo(info);
    QVERIFY(!largest.hasError());
    QVERIFY(largest.value().size() + 2 > pe::maxVersionSize);
    QVERIFY(pe::readVersionInfo(largest.value()).value() == info);
    info.tables.back().strings.back().value.append(2, u'x');
    QVERIFY(pe::writeVersionInfo(info).hasError());
}

void TestVersionInfo::settingAString()
{
    pe::VersionInfo info = twoTables();
    pe::setVersionString(info, u"FileVersion", u"9");
    QVERIFY(info.tables[0].strings[1] == (pe::VersionString{u"fileversion", u"9"}));
    QVERIFY(info.tables[1].strings[1] == (pe::VersionString{u"FileVersion", u"9"}));
    QCOMPARE(info.tables[0].strings.size(), 2u);
    QVERIFY(info.translations == twoTables().translations);
}

void TestVersionInfo::aFirstTable()
{
    pe::VersionInfo info;
    pe::setVersionString(info, u"ProductName", u"Tone");
    QVERIFY(info.tables
            == (std::vector<pe::VersionTable>{{u"000004b0", {{u"ProductName", u"Tone"}}}}));
    QVERIFY(info.translations == (std::vector<pe::VersionTranslation>{{0, 1200}}));
}

void TestVersionInfo::removingAString()
{
    pe::VersionInfo info = twoTables();
    pe::removeVersionString(info, u"productname");
    QCOMPARE(info.tables[0].strings.size(), 1u);
    QVERIFY(info.tables[1].strings.empty());
    pe::VersionInfo empty;
    pe::removeVersionString(empty, u"ProductName");
    QVERIFY(empty == pe::VersionInfo());
}

void TestVersionInfo::versionNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<int>>("numbers"); // none: it is no version
    const QList<int> none;
    QTest::newRow("one") << "7" << QList<int>{7, 0, 0, 0};
    QTest::newRow("two") << "1.2" << QList<int>{1, 2, 0, 0};
    QTest::newRow("four") << "1.2.3.4" << QList<int>{1, 2, 3, 4};
    QTest::newRow("the largest") << "65535.0.65535.1" << QList<int>{65535, 0, 65535, 1};
    QTest::newRow("leading zeros") << "2026.01.05" << QList<int>{2026, 1, 5, 0};
    QTest::newRow("nothing") << "" << none;
    QTest::newRow("five") << "1.2.3.4.5" << none;
    QTest::newRow("too large") << "65536" << none;
    QTest::newRow("far too large") << "99999999999" << none;
    QTest::newRow("a dot at the end") << "1.2." << none;
    QTest::newRow("a dot at the end of four") << "1.2.3.4." << none;
    QTest::newRow("a dot in front") << ".1" << none;
    QTest::newRow("two dots") << "1..2" << none;
    QTest::newRow("a letter") << "1.2b" << none;
    QTest::newRow("a prefix") << "v1" << none;
    QTest::newRow("a sign") << "-1" << none;
    QTest::newRow("a blank") << "1. 2" << none;
    QTest::newRow("digits of another script") << "١" << none;
}

void TestVersionInfo::versionNumbers()
{
    QFETCH(const QString, text);
    QList<int> numbers;
    if (const auto version = pe::versionNumberOf(text.toStdU16String())) {
        numbers = QList<int>(version->begin(), version->end());
    }
    QTEST(numbers, "numbers");
}

QTEST_APPLESS_MAIN(TestVersionInfo)

#include "tst_versioninfo.moc"
