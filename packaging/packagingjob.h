// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The inputs of one job, all of them texts, in the order of Worker::createPortableApp().
struct PackagingJob
{
    QString folderPath;        // the folder to pack, with everything inside
    QString archivePath;       // path of the intermediate 7z archive; the caller removes the file
    QString outputDir;         // existing folder for the executable
    QString mainExeName;       // file name, inside folderPath, of the program to run
    QString iconPath;          // an .ico file, or empty
    QString compressionLevel;  // a digit, "0" to "9"
    QString compressionMethod; // "LZMA" or "LZMA2"
    QString dictionarySize;    // such as "16M"; has no effect

    // The paths of the job's other files.
    QString mainExePath() const { return folderPath + '/' + mainExeName; }
    // The executable that the job creates.
    QString outputPath() const;
    // The icon as a file for the resource editor, in the temporary directory. It exists only while
    // the editor works. All jobs of a user share this name.
    static QString temporaryIconPath();
};
