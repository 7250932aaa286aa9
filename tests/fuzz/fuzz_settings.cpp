// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/startplan.h"
#include "tests/fuzz/inputsource.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/windowsnames.h"
#include "tests/helpers/self-extractor/settingsimage.h"

#include <QList>
#include <QMap>
#include <QRegularExpression>
#include <QString>
#include <QStringDecoder>

#include <algorithm>
#include <optional>

using namespace sfx;
using namespace Qt::StringLiterals;

namespace {

using Values = QMap<QByteArray, QString>;

// Strict UTF-8 without control characters, except tabs.
std::optional<QString> decoded(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::ConvertInitialBom
                               | QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    const bool isClean = std::all_of(text.begin(), text.end(), [](QChar character) {
        return character == u'\t' || character.category() != QChar::Other_Control;
    });
    return decoder.hasError() || !isClean ? std::nullopt : std::optional(text);
}

// A second way to read the lines: each must be one of the nine keys with quotes.
std::optional<Values> valuesOf(const QByteArray &text)
{
    static const QByteArrayList keys{"Program",   "Folder",        "Title",
                                     "Arguments", "WorkingFolder", "Silent",
                                     "Keep",      "KeepVerify",    "Product"};
    QByteArrayList lines = text.split('\n');
    if (text.size() > 65536 || !lines.takeLast().isEmpty()) {
        return std::nullopt;
    }
    Values values;
    for (QByteArray line : lines) {
        if (line.endsWith('\r')) {
            line.chop(1);
        }
        const auto key = std::find_if(keys.begin(), keys.end(), [&line](const QByteArray &name) {
            return line.startsWith(name + "=\"") && line.endsWith('"')
                && line.size() >= name.size() + 3;
        });
        if (key == keys.end() || values.contains(*key)) {
            return std::nullopt;
        }
        const auto value = decoded(line.mid(key->size() + 2).chopped(1));
        if (!value) {
            return std::nullopt;
        }
        values.insert(*key, *value);
    }
    return values;
}

bool isDays(const QString &number)
{
    static const QRegularExpression form(u"\\A[1-9][0-9]{0,3}\\z"_s);
    return form.match(number).hasMatch() && number.toUInt() <= maxKeepDays;
}

bool areAllowed(const Values &values)
{
    const auto isSwitch = [](const QString &word) {
        return word == u"0" || word == u"1";
    };
    const auto is = [&values](const char *key, auto allowed) {
        return !values.contains(key) || allowed(values.value(key));
    };
    return is("Program",
              [](const QString &path) {
                  return windowsnames::isRelativePath(path.toStdU16String());
              })
        && is("Folder",
              [](const QString &name) { return windowsnames::isName(name.toStdU16String()); })
        && is("Arguments", [](const QString &text) { return text.size() <= 8191; })
        && is("WorkingFolder",
              [](const QString &word) {
                  return QStringList({"app", "caller", "exe"}).contains(word);
              })
        && is("Silent", isSwitch) && is("Keep", isDays) && is("KeepVerify", isSwitch)
        && (values.value("KeepVerify") != u"1" || values.contains("Keep"));
}

QString textOf(const Text &text)
{
    return QStringView(text.data(), static_cast<qsizetype>(text.size())).toString();
}

void checkPlan(const StartPlan &plan, const Values &values)
{
    const auto valueOr = [&values](const char *key, const char *other) {
        return values.value(key, QString::fromLatin1(other));
    };
    require(textOf(plan.program()) == valueOr("Program", "block.exe"), "the program is right");
    require(textOf(plan.folderName()) == valueOr("Folder", "block"), "the folder is right");
    require(textOf(plan.title()) == valueOr("Title", "block"), "the title is right");
    require(textOf(plan.settings.arguments) == valueOr("Arguments", ""), "arguments are right");
    require(textOf(plan.settings.product) == valueOr("Product", ""), "the product is right");
    require(plan.settings.keepDays == valueOr("Keep", "0").toUInt(), "the days are right");
    require(plan.settings.keepVerify == (valueOr("KeepVerify", "0") == u"1"),
            "the comparison of contents is right");
    require(plan.isSilent() == (valueOr("Silent", "1") == u"1"), "silent is right");
    const QString folder = valueOr("WorkingFolder", "app");
    const WorkingFolder expected = folder == u"caller" ? WorkingFolder::Caller
        : folder == u"exe"                             ? WorkingFolder::Executable
                                                       : WorkingFolder::Application;
    require(plan.settings.workingFolder == expected, "the working folder is right");
}

} // namespace

// Any text as the settings of a produced file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QByteArray file = settingsimage::withText(text)
        + ";!@Install@!UTF-8!\nTitle=\"block\"\nRunProgram=\"block.exe\"\n"
          "InstallPath=\"%%T\\block\"\nSilent=\"1\"\n;!@InstallEnd@!\n";
    InputSource source(reinterpret_cast<const std::uint8_t *>(file.constData()),
                       static_cast<std::size_t>(file.size()));
    StartPlan plan;
    std::uint64_t offset = 0;
    const Status status = readStartPlan(source, plan, offset);
    const auto values = valuesOf(text);
    const bool isRight = values && areAllowed(*values);
    require(status == (isRight ? Status::Ok : Status::Damaged), "settings are right or damaged");
    if (isRight) {
        require(offset == static_cast<std::uint64_t>(file.size()), "the block is read to its end");
        checkPlan(plan, *values);
    }
    return 0;
}
