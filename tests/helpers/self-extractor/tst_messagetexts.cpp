// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/messagetexts.h"

#include <QSet>
#include <QTest>

using sfx::ExitCode;
using sfx::Language;

// The module's sentences, in both languages.
class TestMessageTexts : public QObject
{
    Q_OBJECT

private slots:
    void hasASentenceForEveryFailure();
    void saysHowMuchIsMissing_data();
    void saysHowMuchIsMissing();
};

void TestMessageTexts::hasASentenceForEveryFailure()
{
    QSet<QString> sentences;
    const auto first = static_cast<quint32>(ExitCode::Damaged);
    const auto last = static_cast<quint32>(ExitCode::Interrupted);
    for (quint32 code = first; code <= last; ++code) {
        const auto exitCode = static_cast<ExitCode>(code);
        const QString english = QString::fromUtf16(sfx::messageText(exitCode, Language::English));
        const QString chinese = QString::fromUtf16(sfx::messageText(exitCode, Language::Chinese));
        QVERIFY2(english.endsWith(u'.') && english.size() > 10, qPrintable(english));
        QVERIFY2(chinese.endsWith(u'\u3002') && chinese.size() > 5, qPrintable(chinese));
        sentences << english << chinese;
    }
    // An unknown code has the sentence of another code.
    QCOMPARE(sentences.size(), static_cast<qsizetype>(2 * (last - first + 1)));
}

void TestMessageTexts::saysHowMuchIsMissing_data()
{
    QTest::addColumn<quint64>("bytes");
    QTest::addColumn<bool>("chinese");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("in English") << (quint64(12) << 20) + 5 << false
                                << " At least 13 MB more is needed.";
    QTest::newRow("in Chinese") << (quint64(3) << 30) << true
                                << QString("\u81f3\u5c11\u8fd8\u9700\u8981 3.0 GB\u3002");
}

void TestMessageTexts::saysHowMuchIsMissing()
{
    QFETCH(quint64, bytes);
    QFETCH(bool, chinese);
    sfx::Text text;
    QVERIFY(sfx::appendMissing(text, bytes, chinese ? Language::Chinese : Language::English));
    QTEST(QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())), "sentence");
}

QTEST_APPLESS_MAIN(TestMessageTexts)
#include "tst_messagetexts.moc"
