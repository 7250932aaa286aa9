// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "preparation/sourceentry.h"

#include <deque>
#include <functional>

// The part of listFolder() that is the same on every system: which folder comes next, and what
// becomes of one that cannot be read. `Path` is the system's type for a path.
template <typename Path>
class FolderWalk
{
protected:
    struct OpenFolder
    {
        Path path;           // on the disk
        QString inside;      // from the folder to pack; empty for itself
        qsizetype entry = 0; // its number in the listing; -1 for the folder to pack
    };

    // Calls `list` for the folder to pack and then for each that `list` has added to `m_waiting`.
    void walk(const Path &root, const std::function<bool()> &isStopped,
              const std::function<void(const OpenFolder &)> &list)
    {
        m_waiting.push_back({root, {}, -1});
        while (!m_waiting.empty()) {
            if (isStopped()) {
                m_listing.error = QStringLiteral("stopped");
                return;
            }
            const OpenFolder folder = m_waiting.front();
            m_waiting.pop_front();
            list(folder);
        }
    }

    // The folder cannot be read; `reason` is the system's text.
    void fail(const OpenFolder &folder, const QString &reason)
    {
        if (folder.entry < 0) {
            m_listing.error = reason;
            return;
        }
        SourceEntry &entry = m_listing.entries[folder.entry];
        entry.kind = SourceEntry::Kind::Unreadable;
        entry.problem = reason;
    }

    std::deque<OpenFolder> m_waiting;
    SourceListing m_listing;
};
