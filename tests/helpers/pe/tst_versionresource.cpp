// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/versionresource.h"

#include <QByteArray>
#include <QTest>

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

QByteArray resource(const QByteArray &strings)
{
    const QByteArray table = node("080404b0", {}, 0, strings);
    const QByteArray other = node("VarFileInfo", {}, 0, node("Translation", QByteArray(4, 1), 4));
    return node("VS_VERSION_INFO", QByteArray(52, 7), 52,
                padded(other) + node("StringFileInfo", {}, 0, table));
}

pe::ByteView view(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

} // namespace

class TestVersionResource : public QObject
{
    Q_OBJECT

private slots:
    void stringsInTheirOrder();
    void withoutStrings();
    void damaged_data();
    void damaged();
    void everyTruncationIsSafe();
};

void TestVersionResource::stringsInTheirOrder()
{
    const QByteArray bytes = resource(string("ProductName", "应用")
                                      + string("FileDescription", "My app")
                                      + string("Comments", ""));
    const auto read = pe::readVersionStrings(view(bytes));
    QVERIFY(!read.hasError());
    QCOMPARE(read.value().size(), 3u);
    QCOMPARE(QString::fromStdU16String(read.value()[0].name), "ProductName");
    QCOMPARE(QString::fromStdU16String(read.value()[0].value), "应用");
    QCOMPARE(QString::fromStdU16String(read.value()[1].value), "My app");
    QCOMPARE(read.value()[2].value, std::u16string());
}

void TestVersionResource::withoutStrings()
{
    const auto read = pe::readVersionStrings(view(node("VS_VERSION_INFO", QByteArray(52, 7), 52)));
    QVERIFY(!read.hasError());
    QVERIFY(read.value().empty());
}

void TestVersionResource::damaged_data()
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

void TestVersionResource::damaged()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(pe::readVersionStrings(view(bytes)).hasError());
}

// AddressSanitizer would notice a read after the end of the copy.
void TestVersionResource::everyTruncationIsSafe()
{
    const QByteArray bytes = resource(string("FileDescription", "My app"));
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        const std::vector<std::uint8_t> cut(bytes.begin(), bytes.begin() + size);
        QVERIFY(pe::readVersionStrings(cut).hasError());
    }
}

QTEST_APPLESS_MAIN(TestVersionResource)

#include "tst_versionresource.moc"
