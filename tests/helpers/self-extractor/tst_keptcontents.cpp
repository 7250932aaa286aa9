// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keptname.h"
#include "helpers/self-extractor/start/kepttable.h"
#include "tests/helpers/self-extractor/archivewriter.h"
#include "tests/helpers/self-extractor/sfxtest.h"

#include <QTest>

#include <functional>
#include <memory>

using namespace sfx;
using namespace Qt::StringLiterals;

namespace {

// What a product is made of, as far as it matters here.
struct Product
{
    QList<forge::File> files{{u"bin"_s, {}, true}, {u"bin/a.dll"_s, "one"}, {u"main.exe"_s, "two"}};
    QByteArray settings = "Keep=\"30\"\nProduct=\"p\"\n";
    const char16_t *folder = u"main";
};

QByteArray digestOf(const Product &product)
{
    MemorySource source(forge::archiveOf(forge::ArchivePlan(product.files)));
    Archive archive(source);
    StartPlan plan;
    Digest digest;
    if (archive.open(0) != Status::Ok || !plan.block.folderName.append(product.folder)
        || parseSettings(product.settings.constData(),
                         static_cast<std::size_t>(product.settings.size()), plan.settings)
            != Status::Ok
        || identifyContent(archive, plan, digest) != Status::Ok) {
        return QByteArray();
    }
    return QByteArray(reinterpret_cast<const char *>(digest), sizeof digest).toHex();
}

std::uint64_t hashOf(const QString &path)
{
    return hashPath(emptyPathHash, reinterpret_cast<const char16_t *>(path.utf16()),
                    static_cast<std::size_t>(path.size()));
}

KeptEntry entryOf(std::uint64_t size, std::uint64_t modified, bool isFolder = false)
{
    return {size, modified, 0, isFolder, false, 0};
}

} // namespace

// What identifies the content of a kept folder, and what is compared with it.
class TestKeptContents : public QObject
{
    Q_OBJECT

private slots:
    void isIdentifiedByEverything_data();
    void isIdentifiedByEverything();
    void staysTheSame_data();
    void staysTheSame();
    void namesTheProduct();
    void knowsLockFiles_data();
    void knowsLockFiles();
    void matches_data();
    void matches();
    void findsEntriesByTheirPaths();
    void countsTheEntriesOfFolders_data();
    void countsTheEntriesOfFolders();
    void findsManyPaths();
    void skipsWhatIsThere_data();
    void skipsWhatIsThere();
};

void TestKeptContents::isIdentifiedByEverything_data()
{
    QTest::addColumn<Product>("product");
    const auto row = [](const char *name, const std::function<void(Product &)> &change) {
        Product product;
        change(product);
        QTest::newRow(name) << product;
    };
    row("a path", [](Product &one) { one.files[1].name = u"bin/b.dll"_s; });
    row("capitals in a path", [](Product &one) { one.files[1].name = u"bin/A.dll"_s; });
    row("a content", [](Product &one) { one.files[1].content = "ONE"; });
    row("a length", [](Product &one) { one.files[1].content = "one more"; });
    row("an attribute", [](Product &one) { one.files[1].attributes = 1; });
    row("one file more", [](Product &one) { one.files += forge::File{u"x"_s, "x"}; });
    row("one empty file more", [](Product &one) { one.files += forge::File{u"x"_s, ""}; });
    row("one folder more", [](Product &one) { one.files += forge::File{u"x"_s, {}, true}; });
    row("the name of the folder", [](Product &one) { one.folder = u"main2"; });
    row("the days", [](Product &one) { one.settings.replace("30", "31"); });
    row("the product", [](Product &one) { one.settings.replace("\"p\"", "\"q\""); });
    row("no product", [](Product &one) { one.settings = "Keep=\"30\"\n"; });
}

void TestKeptContents::isIdentifiedByEverything()
{
    QFETCH(Product, product);
    const QByteArray usual = digestOf(Product());
    const QByteArray changed = digestOf(product);
    QCOMPARE(usual.size(), 64);
    QCOMPARE(changed.size(), 64);
    QVERIFY(usual != changed);
}

void TestKeptContents::staysTheSame_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::newRow("the same") << QByteArray();
    QTest::newRow("other arguments") << QByteArray("Arguments=\"-x\"\n");
    QTest::newRow("another title") << QByteArray("Title=\"x\"\n");
    QTest::newRow("contents are compared") << QByteArray("KeepVerify=\"1\"\n");
}

// What is in the folder does not depend on these.
void TestKeptContents::staysTheSame()
{
    QFETCH(QByteArray, settings);
    Product product;
    product.settings += settings;
    QCOMPARE(digestOf(product), digestOf(Product()));
}

void TestKeptContents::namesTheProduct()
{
    Settings settings;
    Digest none;
    Digest one;
    Digest other;
    identifyProduct(settings, none);
    QVERIFY(settings.product.append(u"one"));
    identifyProduct(settings, one);
    QVERIFY(settings.product.append(u"other"));
    identifyProduct(settings, other);
    constexpr Digest zeros = {};
    QVERIFY(std::memcmp(none, zeros, sizeof zeros) == 0);
    QVERIFY(std::memcmp(one, zeros, sizeof zeros) != 0);
    QVERIFY(std::memcmp(one, other, sizeof one) != 0);
}

void TestKeptContents::knowsLockFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isOne");
    const QString digits = u"0123456789abcdef"_s.repeated(4);
    QTest::newRow("a lock file") << digits + u".lock"_s << true;
    QTest::newRow("the kept folder") << digits << false;
    QTest::newRow("the record") << digits + u".used"_s << false;
    QTest::newRow("more after it") << digits + u".lock2"_s << false;
    QTest::newRow("a digit less") << digits.mid(1) + u".lock"_s << false;
    QTest::newRow("a digit more") << digits + u"0.lock"_s << false;
    QTest::newRow("large letters") << digits.toUpper() + u".lock"_s << false;
    QTest::newRow("an empty name") << QString() << false;
}

void TestKeptContents::knowsLockFiles()
{
    QFETCH(QString, name);
    QTEST(isKeptLockName(reinterpret_cast<const char16_t *>(name.utf16())), "isOne");
}

void TestKeptContents::matches_data()
{
    QTest::addColumn<KeptEntry>("kept");
    QTest::addColumn<FoundEntry>("found");
    QTest::addColumn<Match>("match");
    QTest::addColumn<Match>("withContents");
    const auto row
        = [](const char *name, KeptEntry kept, FoundEntry found, Match match, Match withContents) {
              QTest::newRow(name) << kept << found << match << withContents;
          };
    row("the same", entryOf(5, 9), {false, false, 5, 9}, Match::Right, Match::ByContent);
    row("longer", entryOf(5, 9), {false, false, 6, 9}, Match::Wrong, Match::Wrong);
    row("shorter", entryOf(5, 9), {false, false, 4, 9}, Match::Wrong, Match::Wrong);
    row("later", entryOf(5, 9), {false, false, 5, 10}, Match::Wrong, Match::Wrong);
    row("earlier", entryOf(5, 9), {false, false, 5, 8}, Match::Wrong, Match::Wrong);
    row("empty", entryOf(0, 9), {false, false, 0, 9}, Match::Right, Match::Right);
    row("no time in the archive", entryOf(5, 0), {false, false, 5, 9}, Match::ByContent,
        Match::ByContent);
    row("empty, no time in the archive", entryOf(0, 0), {false, false, 0, 9}, Match::Right,
        Match::Right);
    row("a folder", entryOf(0, 9, true), {true, false, 0, 3}, Match::Right, Match::Right);
    row("a file in place of a folder", entryOf(0, 9, true), {false, false, 0, 9}, Match::Wrong,
        Match::Wrong);
    row("a folder in place of a file", entryOf(0, 9), {true, false, 0, 9}, Match::Wrong,
        Match::Wrong);
    row("a link in place of a file", entryOf(5, 9), {false, true, 5, 9}, Match::Wrong,
        Match::Wrong);
    row("a link in place of a folder", entryOf(0, 9, true), {false, true, 0, 9}, Match::Wrong,
        Match::Wrong);
}

void TestKeptContents::matches()
{
    QFETCH(KeptEntry, kept);
    QFETCH(FoundEntry, found);
    QTEST(matchEntry(kept, found, false), "match");
    QTEST(matchEntry(kept, found, true), "withContents");
}

void TestKeptContents::findsEntriesByTheirPaths()
{
    const QByteArray bytes = packTree(mixedTree(), {u"-mx=1"_s});
    MemorySource source(bytes);
    Archive archive(source);
    QCOMPARE(archive.open(0), Status::Ok);
    KeptTable table;
    QCOMPARE(table.read(archive, u"app"), Status::Ok);
    QCOMPARE(table.beginning(), hashOf(u"app/"_s));
    QCOMPARE(table.missing(), archive.entryCount());
    std::uint64_t bytesOfAll = 0;
    for (std::uint32_t i = 0; i < archive.entryCount(); ++i) {
        Entry entry;
        QCOMPARE(archive.entry(i, entry), Status::Ok);
        bytesOfAll += entry.size;
        KeptEntry *kept = table.find(hashOf(u"app/"_s + pathOf(entry)));
        QVERIFY(kept != nullptr);
        QCOMPARE(kept->size, entry.size);
        QCOMPARE(kept->modified, entry.modified);
        QCOMPARE(kept->isFolder, entry.isFolder);
        QVERIFY(table.newest() >= kept->modified || kept->isFolder);
        QVERIFY(table.longestPath() >= entry.pathSize);
        kept->isRight = i % 2 == 0;
    }
    Array<bool> right;
    QVERIFY(table.listRight(right));
    QCOMPARE(right.size(), archive.entryCount());
    for (std::uint32_t i = 0; i < archive.entryCount(); ++i) {
        QCOMPARE(right[i], i % 2 == 0);
    }
    QCOMPARE(table.missing(), archive.entryCount() / 2);
    QVERIFY(table.find(hashOf(u"app"_s)) == nullptr); // known, but no entry
    QVERIFY(table.find(hashOf(u"app/other"_s)) == nullptr);
    QVERIFY(table.find(hashOf(u"main.exe"_s)) == nullptr);
    QCOMPARE(table.hashes().size(), archive.entryCount() + 1);
    table.forget();
    QCOMPARE(table.missingBytes(), bytesOfAll);
}

void TestKeptContents::countsTheEntriesOfFolders_data()
{
    QTest::addColumn<QString>("folder"); // empty: the application's
    QTest::addColumn<std::uint32_t>("children");
    QTest::newRow("the application's folder") << QString() << 5U; // with lost/file
    QTest::newRow("files and folders") << u"bin"_s << 3U;
    QTest::newRow("a folder in a folder") << u"bin/x64"_s << 1U;
    QTest::newRow("an empty folder") << u"empty"_s << 0U;
    QTest::newRow("a name that another one begins with") << u"bin2"_s << 1U;
}

// In whatever order they are: "bin" comes after what it contains.
void TestKeptContents::countsTheEntriesOfFolders()
{
    QFETCH(QString, folder);
    const QList<forge::File> files{{u"bin/x64"_s, {}, true},     {u"bin/x64/a.dll"_s, "one"},
                                   {u"bin/a.dll"_s, "two"},      {u"bin/empty.txt"_s, ""},
                                   {u"bin"_s, {}, true},         {u"empty"_s, {}, true},
                                   {u"bin2"_s, {}, true},        {u"bin2/a.dll"_s, "three"},
                                   {u"lost/file.txt"_s, "four"}, {u"main.exe"_s, "five"}};
    MemorySource source(forge::archiveOf(forge::ArchivePlan(files)));
    Archive archive(source);
    QCOMPARE(archive.open(0), Status::Ok);
    KeptTable table;
    QCOMPARE(table.read(archive, u"app"), Status::Ok);
    const KeptEntry *kept = table.find(hashOf(u"app/"_s + folder));
    QVERIFY(folder.isEmpty() || kept != nullptr);
    QTEST(folder.isEmpty() ? table.children() : kept->children, "children");
}

void TestKeptContents::findsManyPaths()
{
    constexpr std::size_t count = 20000;
    Array<std::uint64_t> hashes;
    QVERIFY(hashes.allocate(count));
    for (std::size_t i = 0; i < count; ++i) {
        hashes[i] = hashOf(u"folder/%1.txt"_s.arg(i));
    }
    hashes[7] = hashes[3]; // the first one is found
    PathIndex empty;
    QCOMPARE(empty.find(5), PathIndex::none);
    PathIndex index;
    QVERIFY(index.build(std::move(hashes)));
    for (std::size_t i = 0; i < count; ++i) {
        QCOMPARE(index.find(index.hashes()[i]), static_cast<std::uint32_t>(i == 7 ? 3 : i));
    }
    QCOMPARE(index.find(hashOf(u"folder/x.txt"_s)), PathIndex::none);
    QCOMPARE(index.find(0), PathIndex::none);
}

void TestKeptContents::skipsWhatIsThere_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::newRow("one block") << QStringList{u"-mx=1"_s};
    QTest::newRow("a block for each file") << QStringList{u"-mx=1"_s, u"-ms=off"_s};
}

// Every entry alone, then every second one, all, and none.
void TestKeptContents::skipsWhatIsThere()
{
    QFETCH(QStringList, switches);
    const Tree tree = mixedTree();
    const QByteArray bytes = packTree(tree, switches);
    MemorySource source(bytes);
    Archive archive(source);
    QCOMPARE(archive.open(0), Status::Ok);
    const std::uint32_t count = archive.entryCount();
    for (std::uint32_t round = 0; round < count + 3; ++round) {
        TreeSink sink;
        Tree expected;
        const auto skipped = std::make_unique<bool[]>(count);
        std::uint64_t bytesOfThese = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            Entry entry;
            QCOMPARE(archive.entry(i, entry), Status::Ok);
            if (round == i || (round == count && i % 2 == 0) || round == count + 1) {
                const QString path = pathOf(entry) + (entry.isFolder ? u"/"_s : QString());
                expected[path] = tree[path];
                bytesOfThese += entry.size;
            } else {
                skipped[i] = true;
            }
        }
        UnpackLimits limits;
        limits.skipped = skipped.get();
        QCOMPARE(unpack(archive, sink, bytesOfThese, limits), Status::Ok);
        QCOMPARE(sink.tree, expected);
        QVERIFY(sink.isConsistent);
    }
}

QTEST_APPLESS_MAIN(TestKeptContents)
#include "tst_keptcontents.moc"
