// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/sfxtest.h"

#include <QMutex>
#include <QSet>

// Files and folders that several sinks write at the same time, like the file system for the module's.
class SharedTree
{
public:
    // The first sink; it creates the others.
    sfx::Owned<sfx::UnpackSink> sink();

    // The files and folders that are complete.
    const Tree &tree() const { return m_done; }
    // The first rule that was broken, in words; empty if none.
    QString mistake() const { return m_mistake; }
    int sinks() const { return m_sinks; }
    int writes() const { return m_writes; }
    // After this many writes the disk is full.
    void failAfter(int writes) { m_writesLeft = writes; }

private:
    class Sink;

    void expect(bool isRight, const char *rule);

    QMutex m_mutex; // for all that follows
    QSet<QString> m_begun;
    bool m_isFinishing = false;
    Tree m_done;
    QString m_mistake;
    int m_sinks = 0;
    int m_writes = 0;
    int m_writesLeft = -1;
};

// Opens, checks and unpacks the archive that `bytes` is.
sfx::Status unpackShared(const QByteArray &bytes, SharedTree &tree,
                         const sfx::UnpackLimits &limits);
