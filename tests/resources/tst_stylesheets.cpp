// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/testfiles.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFrame>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QToolButton>

namespace {

QStringList messages;

void keepMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    messages += text;
}

QByteArray sheet(const QString &theme)
{
    return contentOf(":/qss/" + theme + ".css");
}

// Returns Qt's messages while \a text is applied to the whole program and a widget is drawn.
QStringList messagesOfApplying(const QString &text)
{
    messages.clear();
    const auto previous = qInstallMessageHandler(keepMessage);
    qApp->setStyleSheet(text);
    QPushButton button("按钮");
    button.grab();
    qInstallMessageHandler(previous);
    return messages;
}

QColor pixel(QWidget &widget, const QPoint &point)
{
    return widget.grab().toImage().pixelColor(point);
}

} // namespace

class TestStyleSheets : public QObject
{
    Q_OBJECT

private slots:
    void init() { qApp->setStyleSheet(QString::fromUtf8(sheet("default"))); }

    void sheetIsPlainUtf8OfTheExpectedSize_data()
    {
        QTest::addColumn<QString>("theme");
        QTest::addColumn<int>("size");
        QTest::newRow("default") << "default" << 19842;
        QTest::newRow("dark") << "dark" << 21994;
    }

    void sheetIsPlainUtf8OfTheExpectedSize()
    {
        QFETCH(QString, theme);
        QFETCH(int, size);
        const QByteArray text = sheet(theme);
        QCOMPARE(text.size(), size);
        QCOMPARE(QString::fromUtf8(text).toUtf8(), text);
        QVERIFY(!text.contains('\r'));
        QVERIFY(!text.startsWith("\xef\xbb\xbf"));
    }

    void qtTakesTheSheetWithoutAWord()
    {
        QCOMPARE(messagesOfApplying(sheet("default")), QStringList());
        QCOMPARE(messagesOfApplying(sheet("dark")), QStringList());
    }

    void aBrokenSheetWouldBeNoticed()
    {
        QVERIFY(!messagesOfApplying(sheet("default") + "QLabel { color: ").isEmpty());
    }

    void onlyTheTitleBarTemplateRefersToMissingImages()
    {
        const QStringList missing = {":/images/title_close.png", ":/images/title_maximize.png",
                                     ":/images/title_minimize.png", ":/images/title_restore.png"};
        const QRegularExpression reference("url\\(\"([^\"]*)\"\\)");
        for (const QString &theme : {QStringLiteral("default"), QStringLiteral("dark")}) {
            const QString text = sheet(theme);
            QStringList absent;
            int count = 0;
            for (const auto &match : reference.globalMatch(text)) {
                ++count;
                if (!QFile::exists(match.captured(1)))
                    absent += match.captured(1);
            }
            QCOMPARE(count, text.count("url("));
            absent.sort();
            QCOMPARE(absent, missing);
        }
    }

    void everyImageIsReferredTo()
    {
        const QByteArray text = sheet("default");
        for (const QString &name : QDir(":/qss/default").entryList()) {
            QVERIFY2(text.contains("url(\":/qss/default/" + name.toUtf8() + "\")"),
                     qPrintable(name));
        }
    }

    void windowAndStripHaveTheirColors()
    {
        QFrame window;
        window.setObjectName("frameMain");
        window.resize(80, 80);
        QCOMPARE(pixel(window, {40, 40}).name(), QString("#f9f9f9"));

        QFrame strip;
        strip.setObjectName("frameMenu");
        strip.resize(60, 80);
        QCOMPARE(pixel(strip, {30, 40}).name(), QString("#ffffff"));
        QCOMPARE(pixel(strip, {59, 40}).name(), QString("#eeeeee"));
    }

    void progressGoesFromGreyToTheAccent()
    {
        QProgressBar bar;
        bar.resize(200, 45);
        bar.setValue(0);
        QCOMPARE(pixel(bar, {20, 22}).name(), QString("#e8e8e8"));
        bar.setValue(50);
        QCOMPARE(pixel(bar, {20, 22}).name(), QString("#00b688"));
        QCOMPARE(pixel(bar, {180, 22}).name(), QString("#e8e8e8"));
    }

    void tabButtonIs48PixelsHighAndFillsTheStrip()
    {
        QFrame strip;
        strip.setObjectName("frameMenu");
        strip.setMaximumWidth(60);
        auto *layout = new QHBoxLayout(&strip);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *tab = new QToolButton;
        tab->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        tab->setIcon(QIcon(":/icons/foundation.svg"));
        tab->setIconSize({24, 24});
        tab->setText("基础");
        tab->setCheckable(true);
        tab->setChecked(true);
        layout->addWidget(tab);
        strip.grab();
        QCOMPARE(tab->size(), QSize(59, 48));
        QCOMPARE(pixel(*tab, {2, 2}).name(), QString("#eeeeee"));
    }

    void theFormsMinimumHeightOfALargeButtonIsKept()
    {
        QPushButton button("开始制作");
        button.setObjectName("startButton");
        button.setMinimumHeight(45);
        button.ensurePolished();
        QCOMPARE(button.minimumHeight(), 45);
    }

    void browseButtonIsAsHighAsItsField()
    {
        QPushButton button("选择");
        button.setObjectName("selectFolderButton");
        QLineEdit field;
        button.ensurePolished();
        field.ensurePolished();
        QVERIFY2(
            qAbs(button.sizeHint().height() - field.sizeHint().height()) <= 1,
            qPrintable(
                QString("%1 %2").arg(button.sizeHint().height()).arg(field.sizeHint().height())));
    }

    void checkedIndicatorIsDrawnInTheAccent()
    {
        QCheckBox box;
        box.setChecked(true);
        box.resize(box.sizeHint());
        QCOMPARE(pixel(box, {10, box.height() / 2 + 3}).name(), QString("#00b688"));
    }
};

QTEST_MAIN(TestStyleSheets)
#include "tst_stylesheets.moc"
