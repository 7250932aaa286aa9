// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/sfxtest.h"

#include <QMutex>
#include <QSet>

// Files and folders that several sinks write at the same time, as the module's sinks write to the
// disk.
class SharedTree
{
public:
    // The first sink. It makes the others.
    sfx::Owned<sfx::UnpackSink> sink();

    // The ended files and the finished folders.
    const Tree &tree() const { return m_done; }
    // The first broken rule in words; empty if there is none.
    QString mistake() const { return m_mistake; }
    int sinks() const { return m_sinks; }
    int writes() const { return m_writes; }
    // After `writes` writes the disk is full.
    void failAfter(int writes) { m_writesLeft = writes; }

private:
    class Sink;

    void expect(bool isRight, const char *rule);

    QMutex m_mutex; // protects all members below
    QSet<QString> m_begun;
    bool m_isFinishing = false;
    Tree m_done;
    QString m_mistake;
    int m_sinks = 0;
    int m_writes = 0;
    int m_writesLeft = -1;
};

// Opens, checks and unpacks the archive in `bytes`.
sfx::Status unpackShared(const QByteArray &bytes, SharedTree &tree,
                         const sfx::UnpackLimits &limits);
