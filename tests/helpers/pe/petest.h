// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

// Makes small Windows programs and icons in memory. Also reads programs, without any code of the reader
// under test.
namespace petest {

// One resource as the reader finds it. The key in the map is "type/name/language", with names in
// quotes.
struct Resource
{
    QByteArray content;
    quint32 codePage = 0;
    bool operator==(const Resource &) const = default;
};
using Resources = QMap<QString, Resource>;

struct SectionRow
{
    QByteArray name;
    quint32 virtualSize = 0;
    quint32 virtualAddress = 0;
    quint32 rawSize = 0;
    quint32 rawPointer = 0;
};

// What the reader finds in a program. `fault` is the first thing that the loader would refuse or
// misread, or a directory that is not sorted. It is empty if there is no fault.
struct PeFacts
{
    QString fault;
    quint32 sizeOfImage = 0;
    quint32 checkSum = 0;
    quint32 symbolTable = 0;
    QList<SectionRow> sections;
    QList<QPair<quint32, quint32>> directories;
    Resources resources;
    qint64 imageEnd = 0; // appended data begin here
};
PeFacts lookAt(const QByteArray &program);

// The parts that makeProgram() puts into a program.
struct Recipe
{
    bool pe32Plus = true;
    bool resources = true; // a version-like block, a string table and RCDATA in two languages
    bool icons = true;     // groups 1 and "OTHER", sharing one image, and an image of no group
    bool relocBehind = false;
    bool foreignBehind = false;  // a section that must keep its address
    bool headerRoom = true;      // free space for another row of the section table
    bool checkSum = true;        // a number that is not 0
    bool symbols = false;        // a COFF symbol table after the sections
    bool debugDirectory = false; // one entry, whose 16 bytes of data lie after the sections
    int debugSize = 28;          // the size of that directory according to the header
    bool certificate = false;    // a security directory in the appended data
    int slack = 0;               // unused bytes at the end of .rsrc
    qsizetype overlay = 0;       // appended bytes
};
QByteArray makeProgram(const Recipe &recipe);
QByteArray overlayOf(qsizetype size); // the data that makeProgram() appends

// Images are `size` pixels wide and high, 32 bits deep; 256 and more are PNG files, others bitmaps.
QByteArray makeImage(int size);
QByteArray makeIcon(const QList<int> &sizes);

} // namespace petest
