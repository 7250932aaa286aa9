// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/damagedproduct.h"

#include "helpers/self-extractor/start/startplan.h"

using namespace sfx;

Status unpackProduct(const QByteArray &product, Tree &tree)
{
    MemorySource source(product);
    StartPlan plan;
    std::uint64_t archiveOffset = 0;
    const Status status = readStartPlan(source, plan, archiveOffset);
    if (status != Status::Ok) {
        return status;
    }
    const QString program
        = QString::fromUtf16(plan.program().data(), static_cast<qsizetype>(plan.program().size()));
    return unpackBytes(product, archiveOffset, tree, program);
}

qsizetype flipByte(QByteArray &bytes, qsizetype begin, QRandomGenerator &random)
{
    const qsizetype at = begin + random.bounded(bytes.size() - begin);
    bytes[at] = static_cast<char>(bytes[at] ^ static_cast<char>(1 + random.bounded(255)));
    return at;
}
