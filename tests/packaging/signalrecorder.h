// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/worker.h"

#include <QStringList>

// Records every signal of a worker in the test's thread: "log TEXT", "progress 37", "finished
// true".
class SignalRecorder
{
public:
    explicit SignalRecorder(Worker &worker)
    {
        QObject::connect(&worker, &Worker::logMessage, &worker,
                         [this](const QString &text) { signalsSeen << "log " + text; });
        QObject::connect(&worker, &Worker::progressChanged, &worker, [this](int value) {
            signalsSeen << QStringLiteral("progress %1").arg(value);
        });
        QObject::connect(&worker, &Worker::finished, &worker, [this](bool success) {
            signalsSeen << (success ? "finished true" : "finished false");
        });
    }

    QStringList signalsSeen;
};
