// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/packoptions.h"

#include "cli/language.h"
#include "preparation/controlcharacters.h"
#include "preparation/settingstext.h"
#include "preparation/timerule.h"

#include <algorithm>

namespace {

constexpr QLatin1String noIcon("none");
constexpr int ultraIndex = 5; // in the list of levels

// Returns the index of the option's value in its list of words, or `byDefault` if the option was
// not given. parseCommandLine() and the configuration file have refused other words.
int wordIndex(const OptionValues &values, OptionId id, int byDefault)
{
    const QString value = lastValue(values, id);
    const QStringList words = wordsOf(option(id));
    const auto found = std::find_if(words.begin(), words.end(), [&value](const QString &word) {
        return word.compare(value, Qt::CaseInsensitive) == 0;
    });
    return found == words.end() ? byDefault : static_cast<int>(found - words.begin());
}

// The lists of words have the order of these arrays.
ConsoleChoice consoleChoice(const OptionValues &values)
{
    static constexpr ConsoleChoice choices[]
        = {ConsoleChoice::Auto, ConsoleChoice::Yes, ConsoleChoice::No};
    return choices[wordIndex(values, OptionId::Console, 0)];
}

WorkingFolderChoice workingFolderChoice(const OptionValues &values)
{
    static constexpr WorkingFolderChoice choices[]
        = {WorkingFolderChoice::App, WorkingFolderChoice::Caller, WorkingFolderChoice::Exe,
           WorkingFolderChoice::Auto};
    return choices[wordIndex(values, OptionId::Cwd, 3)];
}

// A profile other than the default one decides on level and method. Returns a message if the user
// has decided, too.
QString readProfile(const OptionValues &values, PackOptions &pack)
{
    static constexpr Profile profiles[] = {Profile::Default, Profile::FastStart, Profile::Small};
    pack.profile = profiles[wordIndex(values, OptionId::Profile, 0)];
    if (pack.profile == Profile::Default) {
        return {};
    }
    for (const OptionId id : {OptionId::Level, OptionId::Method}) {
        if (values.contains(id)) {
            return text("--profile %1 and --%2 contradict each other")
                .arg(lastValue(values, OptionId::Profile), QLatin1String(option(id).name));
        }
    }
    if (pack.profile == Profile::Small) {
        pack.levelIndex = ultraIndex;
    }
    return {};
}

QString wordMessage(const OptionInfo &option, const QString &value)
{
    const QString words = wordsOf(option).join(", ");
    if (option.id == OptionId::Level) {
        return text("no such compression level: %1 (available: %2)").arg(value, words);
    }
    if (option.id == OptionId::Method) {
        return text("no such compression method: %1 (available: %2)").arg(value, words);
    }
    return text("no such value for --%1: %2 (available: %3)")
        .arg(QLatin1String(option.name), value, words);
}

QString readFields(const QStringList &values, PackOptions &pack)
{
    for (const QString &value : values) {
        const qsizetype sign = value.indexOf('=');
        if (sign < 1 || sign + 1 == value.size()) {
            return text("--set needs FIELD=TEXT, not %1").arg(value);
        }
        pack.fields.append({value.left(sign), value.mid(sign + 1)});
    }
    const auto reason = reasonToRefuse(pack.fields);
    return reason ? text(*reason) : QString();
}

// Sets the days and returns an empty text, or returns why the value is refused.
QString readDays(const OptionValues &values, PackOptions &pack)
{
    const QString value = lastValue(values, OptionId::Keep);
    pack.keepVerify = values.contains(OptionId::KeepVerify);
    if (value.isEmpty()) {
        return pack.keepVerify ? text("--keep-verify needs --keep") : QString();
    }
    bool isNumber = false;
    pack.keepDays = value.toInt(&isNumber);
    return isNumber && pack.keepDays >= 1 && pack.keepDays <= maxKeepDays
        ? QString()
        : text("--keep needs a number of days from 1 to %1, not %2")
              .arg(QString::number(maxKeepDays), value);
}

QString withExe(const QString &name)
{
    return name.isEmpty() || name.endsWith(".exe", Qt::CaseInsensitive) ? name : name + ".exe";
}

} // namespace

QString wrongValue(const OptionValues &values)
{
    for (const OptionInfo &option : options()) {
        for (const QString &value : values.value(option.id)) {
            const auto name = QLatin1String(option.name);
            if (option.kind == OptionKind::Switch) {
                continue;
            }
            if (value.isEmpty()) { // mostly a shell variable that is not set
                return text("--%1 needs a non-empty value").arg(name);
            }
            if (option.valueKind == ValueKind::Word
                && !wordsOf(option).contains(value, Qt::CaseInsensitive)) {
                return wordMessage(option, value);
            }
            if (option.valueKind == ValueKind::Text && !isCleanText(value)) {
                return text("the value of --%1 has a control character in it").arg(name);
            }
        }
    }
    return {};
}

std::variant<PackOptions, QString> packOptionsFrom(const OptionValues &values,
                                                   const QString &folder)
{
    if (const QString message = wrongValue(values); !message.isEmpty()) {
        return message;
    }
    PackOptions pack;
    pack.folder = folder;
    pack.mainProgram = lastValue(values, OptionId::Main);
    if (values.contains(OptionId::Output)) {
        pack.output = lastValue(values, OptionId::Output);
    }
    pack.name = withExe(lastValue(values, OptionId::Name));
    pack.noIcon = lastValue(values, OptionId::Icon) == noIcon;
    pack.iconPath = pack.noIcon ? QString() : lastValue(values, OptionId::Icon);
    pack.levelIndex = wordIndex(values, OptionId::Level, pack.levelIndex);
    pack.methodIndex = wordIndex(values, OptionId::Method, pack.methodIndex);
    if (const QString message = readProfile(values, pack); !message.isEmpty()) {
        return message;
    }
    pack.console = consoleChoice(values);
    pack.workingFolder = workingFolderChoice(values);
    pack.arguments = lastValue(values, OptionId::Arguments);
    pack.title = lastValue(values, OptionId::Title);
    pack.silent = values.contains(OptionId::Silent);
    if (const QString message = readDays(values, pack); !message.isEmpty()) {
        return message;
    }
    pack.excludes = values.value(OptionId::Exclude);
    pack.reproducible = values.contains(OptionId::Reproducible);
    pack.verify = !values.contains(OptionId::NoVerify);
    pack.quiet = values.contains(OptionId::Quiet);
    pack.json = values.contains(OptionId::Json);
    if (pack.json && pack.quiet) {
        return text("--json and --quiet contradict each other");
    }
    pack.latestTime = lastValue(values, OptionId::Mtime);
    const auto times = timeRuleOf(pack.latestTime, {}, pack.reproducible);
    if (const auto *reason = std::get_if<Message>(&times)) {
        return text(*reason);
    }
    const QString message = readFields(values.value(OptionId::Set), pack);
    return message.isEmpty() ? std::variant<PackOptions, QString>(pack) : message;
}
