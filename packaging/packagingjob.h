// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The inputs of one packaging run, all texts, in the order of Worker::createPortableApp().
struct PackagingJob
{
    QString folderPath;        // folder whose whole content is packed
    QString archivePath;       // where the intermediate 7z archive goes; the caller removes it
    QString outputDir;         // existing folder that receives the executable
    QString mainExeName;       // file name, inside folderPath, of the program to run
    QString iconPath;          // an .ico file, or empty
    QString compressionLevel;  // a digit, "0" to "9"
    QString compressionMethod; // "LZMA" or "LZMA2"
    QString dictionarySize;    // such as "16M"; has no effect

    // The files of the job that the inputs do not name.
    QString mainExePath() const { return folderPath + '/' + mainExeName; }
    // The executable that the job makes.
    QString outputPath() const;
    // The icon as a file for the resource editor. It exists only while the editor works; all jobs of a user
    // share this name in the temporary directory.
    static QString temporaryIconPath();
};
