// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/support/modalanswer.h"
#include "tests/ui/support/windowfixture.h"
#include "ui/aboutdialog.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QTranslator>

namespace {

// Puts the context before each text of the program. Does not change Qt's own texts.
class ContextShower : public QTranslator
{
    Q_OBJECT

public:
    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *source, const char *, int) const override
    {
        const QByteArray name(context);
        return name == "MainWindow" || name == "AboutDialog"
            ? QStringLiteral("[%1]%2").arg(context, QString::fromUtf8(source))
            : QString();
    }
};

} // namespace

// Every visible text can be translated, under the name of its class.
class TestTranslation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(QCoreApplication::installTranslator(&m_translator)); }
    void cleanupTestCase() { QCoreApplication::removeTranslator(&m_translator); }

    void textsOfTheWindow()
    {
        WindowFixture fixture;
        QStringList texts{fixture.open().windowTitle()};
        const auto widgets = fixture.window->findChildren<QWidget *>();
        for (const QWidget *widget : widgets) {
            if (qobject_cast<const QAbstractButton *>(widget)
                || qobject_cast<const QLabel *>(widget)) {
                texts.append(widget->property("text").toString());
            }
        }
        for (const char *name : {"cmbCompression", "cmbMethod", "cmbDictSize"}) {
            const auto *list = fixture.find<QComboBox>(name);
            for (int i = 0; i < list->count(); ++i) {
                texts.append(list->itemText(i));
            }
        }
        texts.append(fixture.window->findChild<QMenu *>()->actions()[0]->text());
        texts.removeAll(QString()); // buttons that show only an icon
        QCOMPARE(texts.size(), 35); // title, 12 buttons, 8 labels, 13 items, action
        verifyContext(texts, "MainWindow");
    }

    void textsOfTheAboutDialog()
    {
        const AboutDialog dialog;
        QVERIFY(dialog.windowTitle().startsWith("[AboutDialog]"));
        const auto labels = dialog.findChildren<QLabel *>();
        int texts = 0;
        for (const QLabel *label : labels) {
            if (!label->text().isEmpty()) {
                ++texts;
                QVERIFY2(label->text().contains("[AboutDialog]"), qPrintable(label->objectName()));
            }
        }
        QCOMPARE(texts, 5);
    }

    void textsOfTheBoxes()
    {
        WindowFixture fixture;
        fixture.open();
        auto boxes = answerBoxes([&] { fixture.click("closeButton"); }, {QMessageBox::No});
        boxes += answerBoxes([&] { fixture.click("startButton"); }, {QMessageBox::Ok});
        fixture.click("advancedTabButton");
        boxes += answerBoxes([&] { fixture.click("resetButton"); },
                             {QMessageBox::Yes, QMessageBox::Ok});
        QCOMPARE(boxes.size(), 4);
        for (const SeenBox &box : std::as_const(boxes)) {
            verifyContext({box.title, box.text}, "MainWindow");
        }
    }

    void textsOfTheFileDialogs_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<bool>("hasFilter");
        QTest::newRow("folder") << QByteArray("selectFolderButton") << false;
        QTest::newRow("program") << QByteArray("mainExeButton") << true;
        QTest::newRow("output") << QByteArray("outputButton") << false;
        QTest::newRow("icon") << QByteArray("iconButton") << true;
    }

    void textsOfTheFileDialogs()
    {
        QFETCH(QByteArray, button);
        QFETCH(bool, hasFilter);
        WindowFixture fixture;
        fixture.open();
        if (button == "iconButton") {
            fixture.click("advancedTabButton");
        }
        const auto dialog = answerFileDialog([&] { fixture.click(button.constData()); }, QString());
        verifyContext({dialog.title}, "MainWindow");
        if (hasFilter) {
            verifyContext(dialog.filters, "MainWindow");
        }
    }

private:
    static void verifyContext(const QStringList &texts, const QString &context)
    {
        QVERIFY(!texts.isEmpty());
        for (const QString &text : texts) {
            QVERIFY2(text.startsWith("[" + context + "]"), qPrintable(text));
        }
    }

    ContextShower m_translator;
};

QTEST_MAIN(TestTranslation)

#include "tst_translation.moc"
