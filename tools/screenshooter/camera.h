// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QString>

#include <functional>

class QWidget;

// Takes pictures of all windows of the program, on a plain background.
class Camera
{
public:
    explicit Camera(const QString &folder);

    // Takes a picture and writes it to `name`.png in the folder. Ends the program if it cannot.
    void shoot(const QString &name) const;

    // Calls `open`, which opens a box, dialog or menu and returns when that is closed. Takes a
    // picture of it and closes it with Escape. Before that, `passBy` may close a window and return
    // true; that window is not in the picture.
    void shootWhatOpens(const QString &name, const std::function<void()> &open,
                        const std::function<bool(QWidget *)> &passBy = {}) const;

private:
    QDir m_folder;
};
