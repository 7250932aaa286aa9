// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "cli/language.h"

#include "cli/enginetexts.h"
#include "cli/messagetexts.h"

#include <QCoreApplication>
#include <QHash>
#include <QLocale>
#include <QTranslator>

namespace {

Language current = Language::English;

// The programs have two small tables of texts, which also say of what kind a line of the log is
// (enginetexts.h). Files of Qt's translation tools could not say that.
class TableTranslator final : public QTranslator
{
public:
    void fill(Language language)
    {
        m_texts.clear();
        if (language == Language::English) {
            for (const EngineText &text : engineTexts()) {
                m_texts.insert(text.chinese, QString::fromLatin1(text.english));
            }
            return;
        }
        for (const MessageText &text : messageTexts()) {
            m_texts.insert(text.english, QString::fromUtf8(text.chinese));
        }
    }

    bool isEmpty() const override { return false; }

    QString translate(const char *, const char *source, const char *, int) const override
    {
        return m_texts.value(QByteArray::fromRawData(source, qsizetype(qstrlen(source))));
    }

private:
    QHash<QByteArray, QString> m_texts;
};

} // namespace

Language systemLanguage()
{
    const QString first = QLocale::system().uiLanguages().value(0);
    return QLocale(first).language() == QLocale::Chinese ? Language::Chinese : Language::English;
}

std::optional<Language> languageNamed(const QString &name)
{
    if (name.compare(QLatin1String("en"), Qt::CaseInsensitive) == 0) {
        return Language::English;
    }
    return name.compare(QLatin1String("zh"), Qt::CaseInsensitive) == 0
        ? std::optional(Language::Chinese)
        : std::nullopt;
}

void setLanguage(Language language)
{
    static TableTranslator translator;
    QCoreApplication::removeTranslator(&translator);
    translator.fill(language);
    QCoreApplication::installTranslator(&translator);
    current = language;
}

Language language()
{
    return current;
}

QString textOfFinding(const QString &english)
{
    const QString whole = text(english.toUtf8().constData());
    const qsizetype colon = english.indexOf(": ");
    return whole != english || colon < 0
        ? whole
        : text(english.left(colon).toUtf8().constData()) + english.mid(colon);
}

QString text(const char *english)
{
    return QCoreApplication::translate("kestrelpack-cli", english);
}

QString text(const Message &message)
{
    return textOf(message, text(message.sentence));
}
