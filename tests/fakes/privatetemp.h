// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/builtfile.h"
#include "tests/support/temporaryvariable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

// Makes a new, empty folder the system's temporary directory while the object exists, and puts fake
// helper programs into it.
class PrivateTemp
{
public:
    PrivateTemp() : m_previous(qgetenv(temporaryDirectoryVariable))
    {
        qputenv(temporaryDirectoryVariable, m_directory.path().toLocal8Bit());
    }

    ~PrivateTemp()
    {
        qputenv(temporaryDirectoryVariable, m_previous);
        qunsetenv("FAKE_7ZR");
        qunsetenv("FAKE_RESOURCEHACKER");
    }

    QString path() const { return m_directory.path(); }
    QString filePath(const QString &name) const { return m_directory.filePath(name); }

    // Puts the fake archiver or resource editor there; it runs `script` (see faketool.cpp).
    void plantArchiver(const QByteArray &script) { plant("7zr.exe", "FAKE_7ZR", script); }
    void plantEditor(const QByteArray &script)
    {
        plant("ResourceHacker.exe", "FAKE_RESOURCEHACKER", script);
    }

    // Puts a small self-extractor module there.
    void plantModule(const QByteArray &content)
    {
        QFile file(filePath("7zS2.sfx"));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("the module could not be planted");
        }
    }

    // Makes `name` a link to a path that does not exist: no file exists there, but none can be
    // copied to it. Not on Windows.
    void blockCopyTo(const QString &name)
    {
        QFile::remove(filePath(name));
        if (!QFile::link(filePath("missing/target"), filePath(name))) {
            qFatal("the link could not be made");
        }
    }
    static constexpr const char *cannotBlockCopies = "a link to nowhere is a shortcut file here";

    QStringList names() const
    {
        return QDir(path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                                      QDir::Name);
    }

private:
    void plant(const QString &name, const char *scriptVariable, const QByteArray &script)
    {
        if (!QFile::exists(filePath(name))
            && !QFile::copy(builtFile(KESTRELPACK_FAKE_TOOL), filePath(name))) {
            qFatal("the fake tool could not be planted");
        }
        QFile::setPermissions(filePath(name),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        // The program reads its environment in the system's encoding. The worker reads its output
        // so.
        qputenv(scriptVariable, QString::fromUtf8(script).toLocal8Bit());
    }

    QTemporaryDir m_directory;
    QByteArray m_previous;
};
