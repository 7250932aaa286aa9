// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/shelldocuments.h"

#include "cli/options.h"

namespace {

// Hyphens that are typed need a backslash, and a line must not begin with a dot or quote.
QString manual(QString text)
{
    text.replace('\\', "\\e").replace('-', "\\-");
    return text.startsWith('.') || text.startsWith('\'') ? "\\&" + text : text;
}

QString manualOption(const OptionInfo &option)
{
    QString names;
    if (option.shortName) {
        names = QStringLiteral("\\fB\\-%1\\fR, ").arg(option.shortName);
    }
    names += "\\fB" + manual(QStringLiteral("--") + option.name) + "\\fR";
    if (*option.valueName) {
        names += " \\fI" + manual(option.valueName) + "\\fR";
    }
    return ".TP\n" + names + '\n' + manual(QString::fromLatin1(option.english)) + ".\n";
}

QStringList namesOf(const OptionInfo &option)
{
    QStringList names{QStringLiteral("--") + option.name};
    if (option.shortName) {
        names.prepend(QStringLiteral("-%1").arg(option.shortName));
    }
    return names;
}

// The case of bash's function for an option with a value.
QString bashCase(const OptionInfo &option)
{
    const QString start = "        " + namesOf(option).join('|') + ") ";
    switch (option.valueKind) {
    case ValueKind::Word:
        return start + "COMPREPLY=($(compgen -W '" + wordsOf(option).join(' ')
            + "' -- \"$word\")); return ;;\n";
    case ValueKind::File:
        return start + "mapfile -t COMPREPLY < <(compgen -f -- \"$word\"); return ;;\n";
    case ValueKind::Folder:
        return start + "mapfile -t COMPREPLY < <(compgen -d -- \"$word\"); return ;;\n";
    case ValueKind::Text:
        break;
    }
    return start + "return ;;\n";
}

QString zshAction(const OptionInfo &option)
{
    switch (option.valueKind) {
    case ValueKind::Word:
        return '(' + wordsOf(option).join(' ') + ')';
    case ValueKind::File:
        return QStringLiteral("_files");
    case ValueKind::Folder:
        return QStringLiteral("_files -/");
    case ValueKind::Text:
        break;
    }
    return QStringLiteral(" ");
}

QString zshSpecification(const OptionInfo &option)
{
    QString help = QString::fromLatin1(option.english);
    help.replace(':', "\\:").replace('[', "\\[").replace(']', "\\]").replace('\'', "'\\''");
    const bool isList = option.kind == OptionKind::List;
    QString lines;
    for (const QString &name : namesOf(option)) {
        const QString value = option.kind == OptionKind::Switch
            ? QString()
            : QStringLiteral(":%1:%2").arg(QLatin1String(option.valueName), zshAction(option));
        const QString equals = !value.isEmpty() && name.startsWith("--") ? "=" : QString();
        lines += QStringLiteral("    '%1%2%3[%4]%5' \\\n")
                     .arg(QString(isList ? "*" : ""), name, equals, help, value);
    }
    return lines;
}

} // namespace

QString manualPage()
{
    QString page = QStringLiteral(
        ".\\\" Made by the build from the table of the options.\n"
        ".TH KESTRELPACK\\-CLI 1 \"\" \"Kestrelpack " KESTRELPACK_VERSION "\" \"User Commands\"\n"
        ".SH NAME\n"
        "kestrelpack\\-cli \\- pack a folder with a Windows application into one executable\n"
        ".SH SYNOPSIS\n"
        ".B kestrelpack\\-cli\n[\\fIoptions\\fR] \\fIFOLDER\\fR\n.br\n"
        ".B kestrelpack\\-cli inspect\n[\\fB\\-\\-json\\fR] \\fIFILE\\fR\n.br\n"
        ".B kestrelpack\\-cli verify\n\\fIFILE\\fR\n.br\n"
        ".B kestrelpack\\-cli extract\n[\\fB\\-\\-output\\fR \\fIDIR\\fR] \\fIFILE\\fR\n"
        ".SH DESCRIPTION\n"
        "Packs FOLDER, a folder with a Windows application, into one executable that unpacks\n"
        "itself and runs. The commands read an executable that was made so: inspect shows what\n"
        "is in it, verify decodes all of it and compares every checksum, extract unpacks it into\n"
        "a new folder.\n"
        ".SH OPTIONS\n");
    for (const OptionInfo &option : options()) {
        page += manualOption(option);
    }
    return page
        + QStringLiteral(".SH \"EXIT STATUS\"\n"
                         ".TP\n0\nThe executable is complete.\n"
                         ".TP\n1\nThe job failed, or the executable that was read would not "
                         "start.\n"
                         ".TP\n2\nNothing was started: wrong usage, or another job is making the "
                         "same file.\n"
                         ".PP\nAn interrupted job leaves nothing behind, and ends as the signal "
                         "ends a program.\n");
}

QString bashCompletion()
{
    QString cases;
    QStringList names;
    for (const OptionInfo &option : options()) {
        names << namesOf(option);
        if (option.kind != OptionKind::Switch) {
            cases += bashCase(option);
        }
    }
    return QStringLiteral("# Made by the build from the table of the options.\n"
                          "_kestrelpack_cli() {\n"
                          "    local word=${COMP_WORDS[COMP_CWORD]}\n"
                          "    local option=${COMP_WORDS[COMP_CWORD - 1]}\n"
                          "    # --level=fast is three words for bash.\n"
                          "    if [[ $word == = ]]; then\n        word=\n"
                          "    elif [[ $option == = ]]; then\n"
                          "        option=${COMP_WORDS[COMP_CWORD - 2]}\n    fi\n"
                          "    COMPREPLY=()\n"
                          "    case $option in\n")
        + cases + "    esac\n    if [[ $word == -* ]]; then\n        COMPREPLY=($(compgen -W '"
        + names.join(' ')
        + "' -- \"$word\"))\n    elif ((COMP_CWORD == 1)); then\n"
          "        mapfile -t COMPREPLY < <(compgen -W 'inspect verify extract' -- \"$word\"\n"
          "            compgen -f -- \"$word\")\n    else\n"
          "        mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n    fi\n}\n"
          "complete -o filenames -F _kestrelpack_cli kestrelpack-cli\n";
}

QString zshCompletion()
{
    QString text = QStringLiteral("#compdef kestrelpack-cli\n"
                                  "# Made by the build from the table of the options.\n"
                                  "_arguments -s \\\n");
    for (const OptionInfo &option : options()) {
        text += zshSpecification(option);
    }
    return text
        + "    '1:folder or command: _alternative "
          "\"commands:command:(inspect verify extract)\" "
          "\"folders:folder:_files\"' \\\n    '2:file:_files'\n";
}
