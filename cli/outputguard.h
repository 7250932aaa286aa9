// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QTemporaryDir>

// Keeps the disk in order around one job of the terminal program: it owns the private directory for the
// job's archive, sets an older output file aside, and after a failure puts things back as they were.
// What the system does not let it remove or rename stays where it is. Used on one thread.
class OutputGuard
{
public:
    // `output` is the path of the executable to be made.
    explicit OutputGuard(const QString &output);

    // False when the private directory could not be made; errorString() then tells why.
    bool isValid() const;
    QString errorString() const;

    // Where the job's archive goes.
    QString archivePath() const;

    // Moves an existing output file out of the way, beside itself. One that cannot be moved stays, and
    // is then for the engine to write over.
    void setOldOutputAside();

    // Whether the output ends in the whole archive: the engine does not notice a disk that is full.
    bool outputIsWhole() const;

    // After a success: the older output is no longer needed.
    void keepOutput();

    // After a failure: removes what the job made, and brings the older output back. An older output that
    // could not be set aside is left alone.
    void undoOutput();

    // Removes the private directory.
    void removeArchive();

private:
    const QString m_output;
    const bool m_backupIsOurs;  // the engine's backup copy beside the output
    bool m_outputIsOurs = true; // nothing of the user's lies under the output's name
    QString m_oldOutput;        // where the older output lies; empty when there is none
    QTemporaryDir m_directory;
};
