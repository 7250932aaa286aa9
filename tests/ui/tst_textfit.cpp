// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/stylesheet.h"
#include "tests/support/waiting.h"
#include "tests/ui/support/windowfixture.h"
#include "ui/aboutdialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QToolButton>

// No text is cut off with the style sheet and a Chinese font.
class TestTextFit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(loadStyleSheet(*qApp)); }

    void windowShowsItsTextsWhole_data()
    {
        QTest::addColumn<QByteArray>("tab");
        QTest::addColumn<int>("texts");
        QTest::newRow("basic page") << QByteArray("basicTabButton") << 11;
        QTest::newRow("advanced page") << QByteArray("advancedTabButton") << 13;
    }

    void windowShowsItsTextsWhole()
    {
        QFETCH(QByteArray, tab);
        WindowFixture fixture;
        fixture.open();
        fixture.click(tab.constData());
        QCOMPARE(fixture.window->size(), QSize(436, 536)); // the sheet does not enlarge the window
        int texts = 0;
        const auto widgets = fixture.window->findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            const QString text = widget->property("text").toString();
            if (!widget->isVisible() || text.isEmpty() || qobject_cast<const QLineEdit *>(widget)) {
                continue;
            }
            ++texts;
            verifyRoom(*widget, text);
            QVERIFY2(widget->parentWidget()->rect().contains(widget->geometry()),
                     qPrintable(widget->objectName()));
        }
        QTEST(texts, "texts");
    }

    void listsShowTheirItemsWhole()
    {
        WindowFixture fixture;
        fixture.open();
        fixture.click("advancedTabButton");
        for (const char *name : {"cmbCompression", "cmbMethod", "cmbDictSize"}) {
            const auto *combo = fixture.find<QComboBox>(name);
            QVERIFY(combo->isVisible());
            QVERIFY2(combo->width() >= combo->sizeHint().width(), name);
            QVERIFY2(combo->height() >= combo->sizeHint().height(), name);
        }
    }

    void aboutDialogShowsItsTextsWhole()
    {
        AboutDialog dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog, patience));
        const auto labels = dialog.findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            const int needed = label->hasHeightForWidth() ? label->heightForWidth(label->width())
                                                          : label->sizeHint().height();
            QVERIFY2(label->height() >= needed,
                     qPrintable(QStringLiteral("%1: %2 of %3 pixels")
                                    .arg(label->objectName())
                                    .arg(label->height())
                                    .arg(needed)));
            QVERIFY2(label->wordWrap() || label->width() >= label->sizeHint().width(),
                     qPrintable(label->objectName()));
        }
        QCOMPARE(labels.size(), 6);
    }

private:
    // The size hint includes the text and everything that the sheet puts around it. The sheet makes
    // tabs lower than their size hint, so there only the icon and the visible part of the text must
    // fit.
    static QSize neededSize(const QWidget &widget, const QString &text)
    {
        if (const auto *tab = qobject_cast<const QToolButton *>(&widget)) {
            const QSize ink = widget.fontMetrics().tightBoundingRect(text).size();
            return {ink.width(), tab->iconSize().height() + ink.height()};
        }
        if (qobject_cast<const QProgressBar *>(
                &widget)) { // its hint is only a style's default length
            return widget.fontMetrics().size(Qt::TextSingleLine, text);
        }
        return widget.sizeHint();
    }

    static void verifyRoom(const QWidget &widget, const QString &text)
    {
        const QSize hint = neededSize(widget, text);
        QVERIFY2(widget.width() >= hint.width() && widget.height() >= hint.height(),
                 qPrintable(QStringLiteral("\"%1\": %2x%3 of %4x%5")
                                .arg(text)
                                .arg(widget.width())
                                .arg(widget.height())
                                .arg(hint.width())
                                .arg(hint.height())));
        QVERIFY(widget.fontMetrics().horizontalAdvance(text) <= widget.width());
    }
};

QTEST_MAIN(TestTextFit)

#include "tst_textfit.moc"
