// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QString>

#include <functional>

class QWidget;

// Takes pictures of everything that the program has on the screen, on a plain ground.
class Camera
{
public:
    explicit Camera(const QString &folder);

    // Writes `name`.png into the folder.
    void shoot(const QString &name) const;

    // Does `open`, which opens a box, dialog or menu and returns when that is closed; takes its picture
    // and closes it with Escape. What `passBy` answers, by closing it, is not in the picture.
    void shootWhatOpens(const QString &name, const std::function<void()> &open,
                        const std::function<bool(QWidget *)> &passBy = {}) const;

private:
    QDir m_folder;
};
