// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QMap>

// A file of many gigabytes that consists mostly of zeros. Its archives are small and are made at
// once: the zeros are packed once and repeated, which LZMA2's chunks allow.
class LargeFile
{
public:
    void appendZeros(int times);                // of 2 MiB each
    void appendSample(const QByteArray &bytes); // at most 64 KiB

    quint64 size() const { return m_size; }
    // The samples by offset.
    const QMap<quint64, QByteArray> &samples() const { return m_samples; }
    // An archive of two files, this one and the program. Returns an empty array on failure.
    QByteArray archiveWith(const QByteArray &program, const QString &programName,
                           const QString &name) const;

    static constexpr qsizetype zerosAtOnce = 2 << 20;

private:
    quint64 m_size = 0;
    quint32 m_crc = 0xffffffff;
    QByteArray m_packed;
    QMap<quint64, QByteArray> m_samples;
};
