// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/programedit.h"
#include "platform/nativepath.h"
#include "tests/cli/clirun.h"
#include "tests/helpers/pe/petest.h"
#include "tests/inspection/forgedproduct.h"

#include <QMap>
#include <QTest>

#include <functional>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using Forge = std::function<void(ForgedProduct &)>;
Q_DECLARE_METATYPE(Forge)

namespace {

// The rows of the table of refusals in docs/self-extractor.md, by their first words.
constexpr auto damaged = "an image, block or archive that is truncated";
constexpr auto settings = "settings with an unknown key";
constexpr auto inTheBlock = "in the block, if the settings do not replace it";
constexpr auto content = "a file whose checksum is wrong";
constexpr auto methods = "methods that are not listed";
constexpr auto links = "symbolic links as Unix stores them";
constexpr auto names = "names that are absolute";
constexpr auto sameNames = "two names that are the same";
constexpr auto tables = "tables that need more memory";
constexpr auto withoutProgram = "an archive without the program";

// A file that `verify` has to refuse.
struct Forgery
{
    QString row;
    QString what;
    Forge change;
};

// What packing has to refuse: a file of this name in the folder, or an option.
struct Packing
{
    QString row;
    QString name; // of a new file; empty: none
    QString kind; // "file", "pipe", "socket", or where a link leads
    QStringList options;
    QStringList expected; // parts of the message: the thing and the rule
};

// What packing cannot show.
const QMap<QString, QString> notSeenAtPacking{
    {damaged, "the job makes no such file; tst_productcheck has an archiver that does"},
    {content, "the same"},
    {methods, "the options offer only methods that the self-extractor has"},
    {tables, "it takes some millions of files"},
};

// Numbers of exit codes that no file leads to.
const QMap<int, QString> onlyAtAStart{
    {205, "a disk that fails"},
    {206, "the folder for temporary files"},
    {207, "a disk that cannot be written to"},
    {208, "a full disk"},
    {210, "Windows decides; what it never starts is refused at packing (tst_packrefusals)"},
    {211, "the user"},
    {212, "the console"},
};

Forge withPlan(const std::function<void(forge::ArchivePlan &)> &change)
{
    return [change](ForgedProduct &product) {
        forge::ArchivePlan plan(forgedFiles());
        change(plan);
        product.archive = forge::archiveOf(plan);
    };
}

Forge withFile(const forge::File &file)
{
    return [file](ForgedProduct &product) {
        product.setFiles(forgedFiles() << file);
    };
}

Forge withSettings(const QByteArray &text)
{
    return [text](ForgedProduct &product) {
        product.setSettings(text);
    };
}

Forge inBlock(const QByteArray &before, const QByteArray &after)
{
    return [before, after](ForgedProduct &product) {
        product.block.replace(before, after);
    };
}

// All files in one solid block with these coders, one after the other.
Forge withCoders(const QList<forge::Coder> &coders, std::optional<quint64> size = std::nullopt)
{
    return withPlan([coders, size](forge::ArchivePlan &plan) {
        forge::Folder &folder = plan.folders[0];
        const quint64 unpacked = size.value_or(folder.unpackSizes[0]);
        folder.coders = coders;
        folder.unpackSizes = QList<quint64>(coders.size(), unpacked);
        for (qsizetype i = 1; i < coders.size(); ++i) {
            folder.bonds << std::pair(quint64(i - 1), quint64(i));
        }
    });
}

// The same resource in two languages.
void addSecondSettings(ForgedProduct &product)
{
    product.setSettings("Title=\"A\"\n");
    const QTemporaryDir folder;
    const QString path = folder.filePath("module");
    pe::ProgramEdit edit;
    edit.resources.push_back(
        {{std::nullopt, pe::rcDataType}, {u"SETTINGS", 0}, 0x804, pe::Bytes(4, '\n')});
    if (!writeFile(path, product.module)
        || pe::editProgram(toNativePath(path), toNativePath(path), edit).hasError()) {
        qFatal("the module cannot be edited");
    }
    product.module = readFile(path);
}

QByteArray headerInAHeader()
{
    QByteArray packed;
    QByteArray header = forge::headerOf(forge::ArchivePlan(forgedFiles()));
    for (int i = 0; i < 2; ++i) {
        const auto size = static_cast<quint64>(header.size());
        const auto offset = static_cast<quint64>(packed.size());
        packed += header;
        header
            = forge::encodedHeader({.unpackSizes = {size}}, offset, size, forge::checkSum(header));
    }
    return forge::archiveOf(packed, header);
}

QList<Forgery> damagedFiles()
{
    return {
        {damaged, "no program",
         [](ForgedProduct &p) {
             p.module = "text";
         }},
        {damaged, "a truncated image",
         [](ForgedProduct &p) {
             p.module.chop(1);
         }},
        {damaged, "no block",
         [](ForgedProduct &p) {
             p.block.clear();
         }},
        {damaged, "no end of the block", inBlock(";!@InstallEnd@!", ";")},
        {damaged, "a key twice", inBlock("Title=", "RunProgram=\"main.exe\"\nTitle=")},
        {damaged, "a block over 64 KiB", inBlock("Title=", QByteArray(65536, '\n') + "Title=")},
        {damaged, "no archive",
         [](ForgedProduct &p) {
             p.archive.clear();
         }},
        {damaged, "a truncated archive",
         [](ForgedProduct &p) {
             p.archive.chop(1);
         }},
        {damaged, "a header beyond the end",
         [](ForgedProduct &p) {
             p.archive = forge::startHeader(1 << 20, 16, 0, p.archive);
         }},
        {damaged, "a wrong checksum of the header",
         [](ForgedProduct &p) {
             p.archive.back() = static_cast<char>(~p.archive.back());
         }},
        {damaged, "counts that do not match",
         withPlan([](forge::ArchivePlan &p) { ++p.fileCount; })},
        {damaged, "coders in a circle", withPlan([](forge::ArchivePlan &p) {
             const quint64 size = p.folders[0].unpackSizes[0];
             p.folders[0] = {QList<forge::Coder>(3), {{0, 1}, {1, 0}}, {}, {size, size, size}};
         })},
        {settings, "an unknown key", withSettings("Colour=\"red\"\n")},
        {settings, "a key twice", withSettings("Title=\"a\"\nTitle=\"b\"\n")},
        {settings, "another line", withSettings("; a remark\n")},
        {settings, "a control character", withSettings("Title=\"a\x01\"\n")},
        {settings, "a value that is not allowed", withSettings("WorkingFolder=\"temp\"\n")},
        {settings, "a program that leads out", withSettings("Program=\"../main.exe\"\n")},
        {settings, "over 64 KiB", withSettings("Title=\"" + QByteArray(65536, 'a') + "\"\n")},
        {settings, "two languages", addSecondSettings},
        {inTheBlock, "a program in a folder", inBlock("main.exe", "data/main.exe")},
        {inTheBlock, "a program above", inBlock("main.exe", "..\\\\main.exe")},
        {inTheBlock, "a folder that leads out", inBlock("%%T\\folder", "%%T\\..\\folder")},
        {inTheBlock, "a folder elsewhere", inBlock("%%T\\folder", "C:\\folder")},
        {content, "a byte is changed",
         [](ForgedProduct &p) {
             p.archive.replace("the program", "The program");
         }},
        {content, "a wrong checksum", withPlan([](forge::ArchivePlan &p) { p.checkSums[0] ^= 1; })},
        {content, "a missing checksum",
         withPlan([](forge::ArchivePlan &p) { p.checkSums.removeLast(); })},
        {content, "a file that ends too early",
         withPlan([](forge::ArchivePlan &p) { --p.packSizes[0]; })},
    };
}

QList<Forgery> unsupportedFiles()
{
    const auto coder = [](const char *method, const QByteArray &properties = {}) {
        return forge::Coder{QByteArray::fromHex(method), properties};
    };
    // LZMA with a dictionary of 1 GiB.
    const forge::Coder large = coder("030101", QByteArray::fromHex("5d00000040"));
    return {
        {methods, "PPMd", withCoders({coder("030401", QByteArray(5, 6))})},
        {methods, "encryption", withCoders({coder("06f10701", QByteArray(2, 0x13))})},
        {methods, "five coders", withCoders(QList<forge::Coder>(5))},
        {methods, "two dictionaries of 1 GiB", withCoders({large, large}, quint64(5) << 30)},
        {methods, "a Zstandard window of 144 MiB", withPlan([](forge::ArchivePlan &p) {
             p.packed = QByteArray::fromHex("28b52ffdc0890000004001000000");
             p.packSizes = {static_cast<quint64>(p.packed.size())};
             p.folders[0].coders[0].method = QByteArray::fromHex("04f71101");
             p.folders[0].unpackSizes = {quint64(5) << 30};
         })},
        {methods, "a packed header inside a packed header",
         [](ForgedProduct &p) {
             p.archive = headerInAHeader();
         }},
        {methods, "a header over 64 MiB",
         [](ForgedProduct &p) {
             p.archive = forge::archiveOf({}, QByteArray((64 << 20) + 1, '\0'));
         }},
        {methods, "too many files",
         withPlan([](forge::ArchivePlan &p) { p.fileCount = 2147483647; })},
        {links, "a symbolic link",
         withFile({"link", "to", false, false, 0120777u << 16 | 0x8000u})},
        {links, "a pipe", withFile({"pipe", "", false, false, 0010644u << 16 | 0x8000u})},
        {links, "a device", withFile({"disk", "", false, false, 0060644u << 16 | 0x8000u})},
        {links, "a socket", withFile({"socket", "", false, false, 0140644u << 16 | 0x8000u})},
        {tables, "a packed header of 1 GiB",
         [](ForgedProduct &p) {
             p.archive
                 = forge::archiveOf("x",
                                    forge::encodedHeader({.unpackSizes = {1u << 30}}, 0, 1, 0));
         }},
        {tables, "very many solid blocks",
         withPlan([](forge::ArchivePlan &p) { p.folderCount = 1u << 30; })},
        {withoutProgram, "another program",
         [](ForgedProduct &p) {
             p.setFiles({{"other.exe", "x"}});
         }},
        {withoutProgram, "a folder of that name",
         [](ForgedProduct &p) {
             p.setFiles({{"main.exe", {}, true}});
         }},
        {withoutProgram, "settings with another program", withSettings("Program=\"bin/a.exe\"\n")},
    };
}

QList<Forgery> namesThatAreRefused()
{
    const QList<std::pair<const char *, QString>> refused{
        {"an absolute name", "/a"},
        {"a name above", "../a"},
        {"a drive", "c:/a"},
        {"a stream", "a:b"},
        {"a wildcard", "a*"},
        {"a control character", "a\x01"},
        {"a backslash", "a\\b"},
        {"a device", "nul"},
        {"a device with an extension", "com1.txt"},
        {"an empty name", "a//b"},
        {"a space at the end", "a "},
        {"a dot at the end", "a."},
        {"a name of 256 characters", QString(256, 'a')},
        {"a path over 30,000 characters", QString("abcdefghi/").repeated(3001) + "a"},
    };
    QList<Forgery> forgeries{
        {sameNames, "another case", withFile({"MAIN.EXE", "x"})},
        {sameNames, "twice", withFile({"main.exe", "x"})},
        {sameNames, "another case, not in ASCII",
         [](ForgedProduct &p) {
             p.setFiles({{"main.exe", "x"}, {"ä.txt", "x"}, {"Ä.txt", "x"}});
         }},
        {sameNames, "a file that is also a folder", withFile({"fixed.ini/a", "x"})},
    };
    for (const auto &[what, name] : refused) {
        forgeries.append({names, what, withFile({name, "x"})});
    }
    return forgeries;
}

QList<Forgery> forgeries()
{
    return damagedFiles() + unsupportedFiles() + namesThatAreRefused();
}

QList<Packing> packings()
{
    QList<Packing> packings{
        {links, "out", "/etc", {}, {"out", "leads out of the folder"}},
        {links, "nothing", "missing", {}, {"nothing", "does not exist"}},
        {links, "circle", "circle", {}, {"circle", "leads back to itself"}},
        {links, "pipe", "pipe", {}, {"pipe", "is a pipe, not a file"}},
        {links, "socket", "socket", {}, {"socket", "is a socket, not a file"}},
        {sameNames, "APP.EXE", "file", {}, {"APP.EXE", "app.exe", "the same name"}},
        {sameNames, "data/TEXT.txt", "file", {}, {"data/TEXT.txt", "the same name"}},
        {sameNames, "DATA", "file", {}, {"DATA", "the same name"}},
        {withoutProgram, {}, {}, {"-m", "other.exe"}, {"other.exe"}},
        {withoutProgram, {}, {}, {"--exclude", "*.exe"}, {"*.exe", "app.exe"}},
        {inTheBlock, {}, {}, {"-m", "../app.exe"}, {"../app.exe"}},
        {inTheBlock, {}, {}, {"-m", "data"}, {"data"}},
        {settings, {}, {}, {"--arguments", QString(8192, 'a')}, {"Arguments", "8191"}},
        {settings, {}, {}, {"--title", "a\x01"}, {"title", "control character"}},
    };
    const QString ofADevice = "the name of a device";
    const QString endsSo = "must not end with a space or a dot";
    const QString characters = "must not have control characters";
    for (const auto &[name, rule] : QList<std::pair<QString, QString>>{{"con.txt", ofADevice},
                                                                       {"NUL", ofADevice},
                                                                       {"blank ", endsSo},
                                                                       {"dot.", endsSo},
                                                                       {"a:b", characters},
                                                                       {"a*", characters},
                                                                       {"a\\b", characters}}) {
        packings.append({names, name, "file", {}, {name, rule}});
    }
    packings.append({names, "a\x01", "file", {}, {"a\\x01", characters}});
    return packings;
}

// The rows of the document's first table with this heading: the first cell, and the second one.
QList<std::pair<QString, QString>> tableOf(const QString &heading)
{
    QList<std::pair<QString, QString>> rows;
    bool isInside = false;
    const QByteArray document = readFile(KESTRELPACK_SOURCES "/docs/self-extractor.md");
    for (const QString &line : QString::fromUtf8(document).split('\n')) {
        if (isInside && !line.startsWith('|')) {
            break;
        }
        if (isInside && !line.startsWith("| ---")) {
            const QStringList cells = line.mid(2).chopped(2).split(" | ");
            rows.append({cells.constFirst(), cells.constLast()});
        }
        isInside = isInside || line == heading;
    }
    return rows;
}

QList<std::pair<QString, QString>> refusalTable()
{
    return tableOf("| Refused | Exit code |");
}

template <typename Item>
bool anyOf(const QList<Item> &items, const QString &row)
{
    return std::any_of(items.begin(), items.end(),
                       [&row](const Item &item) { return row.startsWith(item.row); });
}

bool makeSocket(const QByteArray &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path) {
        return false;
    }
    std::copy(path.begin(), path.end(), address.sun_path);
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    const bool isThere = bind(made, reinterpret_cast<const sockaddr *>(&address), sizeof address)
        == 0;
    close(made);
    return isThere;
}

} // namespace

// Everything that a produced file refuses, by the document: at packing where the folder shows it,
// and by `verify` with the same number.
class TestRefusals : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_surroundings.reset(); }
    void everyRowOfTheTableIsReached();
    void everyExitCodeIsReached();
    void verifyRefuses_data();
    void verifyRefuses();
    void packingRefuses_data();
    void packingRefuses();

private:
    static CliResult run(const QStringList &arguments)
    {
        QProcess process;
        process.start(builtFile(KESTRELPACK_CLI), QStringList{"--language", "en"} + arguments);
        return CliSurroundings::resultOf(process);
    }
    bool make(const Packing &packing) const;

    std::unique_ptr<CliSurroundings> m_surroundings;
};

void TestRefusals::init()
{
    m_surroundings = std::make_unique<CliSurroundings>();
    m_surroundings->write("folder/app.exe", petest::makeProgram({.resources = false}));
    m_surroundings->write("folder/data/text.txt", "text");
}

void TestRefusals::everyRowOfTheTableIsReached()
{
    const auto rows = refusalTable();
    QVERIFY(rows.size() >= 10);
    for (const auto &row : rows) {
        const QString &refused = row.first;
        QVERIFY2(anyOf(forgeries(), refused), qPrintable(refused));
        const bool isExcused
            = std::any_of(notSeenAtPacking.keyBegin(), notSeenAtPacking.keyEnd(),
                          [&refused](const QString &start) { return refused.startsWith(start); });
        QVERIFY2(anyOf(packings(), refused) != isExcused, qPrintable(refused));
    }
}

void TestRefusals::everyExitCodeIsReached()
{
    QSet<QString> reached;
    for (const auto &[refused, number] : refusalTable()) {
        reached.insert(number);
    }
    const auto rows = tableOf("| Number | Failure |");
    QCOMPARE(rows.size(), 12);
    for (const auto &[number, failure] : rows) {
        QVERIFY2(reached.contains(number) != onlyAtAStart.contains(number.toInt()),
                 qPrintable(number));
    }
}

void TestRefusals::verifyRefuses_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<Forge>("change");
    for (const Forgery &forgery : forgeries()) {
        QTest::addRow("%s: %s", qPrintable(forgery.row), qPrintable(forgery.what))
            << forgery.row << forgery.change;
    }
}

void TestRefusals::verifyRefuses()
{
    QFETCH(QString, row);
    QFETCH(Forge, change);
    QString number;
    for (const auto &[refused, itsNumber] : refusalTable()) {
        number = refused.startsWith(row) ? itsNumber : number;
    }
    QVERIFY2(!number.isEmpty(), "the document has no such row");
    ForgedProduct product;
    const QByteArray before = product.bytes();
    change(product);
    QVERIFY(product.bytes() != before);
    m_surroundings->write("product.exe", product.bytes());
    const QString path = m_surroundings->path("product.exe");
    const CliResult result = run({"verify", path});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.startsWith("kestrelpack-cli: " + path + ": ")
                 && result.errors.endsWith(" (" + number + ")\n"),
             qPrintable(result.errors));
}

void TestRefusals::packingRefuses_data()
{
    QTest::addColumn<qsizetype>("index");
    const auto list = packings();
    for (qsizetype i = 0; i < list.size(); ++i) {
        QTest::addRow("%s: %s", qPrintable(list[i].row),
                      qPrintable(list[i].name.isEmpty() ? list[i].options.join(' ').left(30)
                                                        : list[i].name))
            << i;
    }
}

bool TestRefusals::make(const Packing &packing) const
{
    const QString path = m_surroundings->path("folder/" + packing.name);
    if (packing.name.isEmpty()) {
        return true;
    }
    if (packing.kind == "file") {
        return writeFile(path, "x");
    }
    if (packing.kind == "pipe") {
        return mkfifo(path.toUtf8().constData(), 0644) == 0;
    }
    return packing.kind == "socket" ? makeSocket(path.toUtf8()) : QFile::link(packing.kind, path);
}

void TestRefusals::packingRefuses()
{
    QFETCH(qsizetype, index);
    const Packing packing = packings()[index];
    QVERIFY(make(packing));
    const QStringList program = packing.options.contains("-m") ? QStringList()
                                                               : QStringList{"-m", "app.exe"};
    const CliResult result = run(program + packing.options
                                 + QStringList{"-o", m_surroundings->path("output/app.exe"),
                                               m_surroundings->path("folder")});
    QCOMPARE(result.exitStatus, 2);
    QCOMPARE(result.output, QString());
    for (const QString &part : packing.expected) {
        QVERIFY2(result.errors.contains(part), qPrintable(result.errors));
    }
    QCOMPARE(m_surroundings->namesIn("output"), QStringList());
}

QTEST_GUILESS_MAIN(TestRefusals)

#include "tst_refusals.moc"
