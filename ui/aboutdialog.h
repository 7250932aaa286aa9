// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class AboutDialog;
}

// Shows what the program is and who makes it. Run it with exec(); Escape closes it.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutDialog(QWidget *parent = nullptr);
    ~AboutDialog() override;

public slots:
    void on_buttonBox_accepted();

private:
    void fillIn();

    std::unique_ptr<Ui::AboutDialog> ui;
};
