// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

struct PackagingJob;

// Runs packaging jobs, one after another, on the thread to which this object belongs. It keeps no
// state. It reports results only by its signals, in the order of events.
class Worker : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    // A percentage, 0 to 100. It rises twice: while the archiver runs, and then from 50 to 100
    // while the output is written.
    void progressChanged(int value);

    // One line (or block) of the job log. Failures begin with "错误：", warnings with "警告：".
    void logMessage(QString message);

    // The last signal of every job; `success` means that the executable exists.
    void finished(bool success);

public slots:
    // Packs `folderPath` into one executable in `outputDir` that unpacks itself and runs
    // `mainExeName`. PackagingJob explains the parameters. Blocks the thread for the whole job,
    // which cannot be cancelled.
    void createPortableApp(const QString &folderPath, const QString &archivePath,
                           const QString &outputDir, const QString &mainExeName,
                           const QString &iconPath, const QString &compressionLevel,
                           const QString &compressionMethod, const QString &dictionarySize);

public:
    // Does the same, with the inputs in one object.
    void run(const PackagingJob &job);

    // These call isUsableIcon(), iconOfExecutable() and replaceIconOfExecutable() of icons/, and
    // emit logMessage() for each line of their log. Call them on the worker's thread only.
    bool validateIconData(const QByteArray &data);
    QByteArray extractIconFromExe(const QString &executable);
    bool replaceExeIcon(const QString &executable, const QByteArray &icon);

private:
    bool runSteps(const PackagingJob &job);
    bool checkInputs(const PackagingJob &job);
    QByteArray chooseIcon(const PackagingJob &job);
    QByteArray userIcon(const QString &iconPath);
    void installIcon(const QString &executable, const QByteArray &icon);
    bool finishOutput(const QString &executable);
};
