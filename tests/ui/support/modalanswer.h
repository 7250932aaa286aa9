// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/waiting.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

// Does what a person does with a modal widget. `open` shows it and returns when it is closed.
// Before that, `act` receives it, looks at it and closes it. The same happens for each further
// modal widget. Returns their number. If `act` leaves one open, it is closed by force and the
// function returns -1, so the test fails and does not hang.
inline int whileModal(const std::function<void()> &open, const std::function<void(QWidget *)> &act)
{
    int seen = 0;
    bool leftOpen = false;
    const QWidget *handled = nullptr;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget *modal = QApplication::activePopupWidget();
        if (modal == nullptr) {
            modal = QApplication::activeModalWidget();
        }
        if (modal == nullptr || modal == handled) {
            return;
        }
        ++seen;
        handled = modal;
        QObject::connect(modal, &QObject::destroyed, &poll, [&handled] { handled = nullptr; });
        QTimer::singleShot(patience, modal, [modal, &leftOpen] {
            leftOpen = true;
            modal->close();
        });
        // Separate from the poll, which must go on if `act` opens another one.
        QTimer::singleShot(0, modal, [modal, &act] { act(modal); });
    });
    poll.start(1);
    open();
    return leftOpen ? -1 : seen;
}

// The content of a message box as plain values. The title is empty if there was no box.
struct SeenBox
{
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;
    QWidget *parent = nullptr;
    // Set only if there is a choice: a single button is always the default.
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;

    bool operator==(const SeenBox &) const = default;
};

inline char *toString(const SeenBox &box)
{
    return QTest::toString(QStringLiteral("\"%1\" / \"%2\", icon %3, buttons %4, parent %5, "
                                          "default %6")
                               .arg(box.title, box.text)
                               .arg(box.icon)
                               .arg(box.buttons.toInt(), 0, 16)
                               .arg(box.parent ? box.parent->objectName() : QString("none"))
                               .arg(box.defaultButton, 0, 16));
}

// Looks at the box and clicks `answer`. For NoButton it presses Escape; for Close it closes the
// box.
inline SeenBox useBox(QWidget *modal, QMessageBox::StandardButton answer)
{
    auto *box = qobject_cast<QMessageBox *>(modal);
    if (box == nullptr) {
        modal->close();
        return {"no message box", modal->objectName()};
    }
    SeenBox seen{box->windowTitle(), box->text(), box->icon(), box->standardButtons(),
                 box->parentWidget()};
    if (box->buttons().size() > 1) {
        seen.defaultButton = box->standardButton(box->defaultButton());
    }
    if (answer == QMessageBox::NoButton) {
        QTest::keyClick(box, Qt::Key_Escape);
    } else if (answer == QMessageBox::Close) {
        box->close();
    } else {
        QTest::mouseClick(box->button(answer), Qt::LeftButton);
    }
    return seen;
}

using Answers = QList<QMessageBox::StandardButton>;

// Answers the boxes that `open` shows one after another. Runs `meanwhile` before each answer.
inline QList<SeenBox> answerBoxes(
    const std::function<void()> &open, const Answers &answers,
    const std::function<void()> &meanwhile = [] {})
{
    QList<SeenBox> seen;
    const int count = whileModal(open, [&](QWidget *modal) {
        meanwhile();
        seen.append(useBox(modal, answers.value(seen.size(), QMessageBox::NoButton)));
    });
    return count < 0 ? QList<SeenBox>{SeenBox{"left open", QString()}} : seen;
}

// The same for one box. Returns an empty SeenBox if there was no box.
inline SeenBox answerBox(
    const std::function<void()> &open, QMessageBox::StandardButton answer = QMessageBox::Ok,
    const std::function<void()> &meanwhile = [] {})
{
    return answerBoxes(open, {answer}, meanwhile).value(0);
}

// The request that a file dialog received. The title is empty if there was no dialog.
struct SeenFileDialog
{
    QString title;
    QStringList filters;
    QString directory;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    QFileDialog::Options options;
    QWidget *parent = nullptr;
};

// Looks at the dialog, types `choice` and accepts it. If `choice` is empty, presses Escape.
inline SeenFileDialog useFileDialog(QWidget *modal, const QString &choice)
{
    auto *dialog = qobject_cast<QFileDialog *>(modal);
    if (dialog == nullptr) {
        modal->close();
        return {};
    }
    const SeenFileDialog seen{
        dialog->windowTitle(), dialog->nameFilters(), dialog->directory().absolutePath(),
        dialog->fileMode(),    dialog->options(),     dialog->parentWidget()};
    if (choice.isEmpty()) {
        QTest::keyClick(dialog, Qt::Key_Escape);
    } else {
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(choice);
        auto *buttons = dialog->findChild<QDialogButtonBox *>();
        QTest::mouseClick(buttons->button(QDialogButtonBox::Open), Qt::LeftButton);
    }
    return seen;
}

inline SeenFileDialog answerFileDialog(const std::function<void()> &open, const QString &choice)
{
    SeenFileDialog seen;
    const int count
        = whileModal(open, [&](QWidget *modal) { seen = useFileDialog(modal, choice); });
    return count == 1 ? seen : SeenFileDialog();
}
