// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// 7-Zip's header parser calls SzAr_DecodeFolder() for packed headers. 7-Zip's own function decodes
// whole solid blocks in memory and supports fewer combinations of methods. This one uses the
// decoders that unpack the files.

#include "helpers/self-extractor/archive/archive.h"
#include "helpers/self-extractor/archive/lookstream.h"
#include "helpers/self-extractor/decoding/decoderchain.h"

#include "7zCrc.h"

using namespace sfx;

extern "C" SRes SzAr_DecodeFolder(const CSzAr *streams, UInt32 folderIndex, ILookInStreamPtr stream,
                                  UInt64 startPos, Byte *outBuffer, size_t outSize, ISzAllocPtr)
{
    LookStream &look = LookStream::of(stream);
    Owned<Stream> chain;
    std::size_t got = 0;
    CoderGraph graph;
    Status status
        = readCoderGraph(*streams, folderIndex, look.source(), look.offset() + startPos, graph);
    if (status == Status::Ok) {
        status = checkCoderGraph(graph, Archive::headerBudget);
    }
    if (status == Status::Ok) {
        status = openDecoderChain(graph, false, chain);
    }
    if (status == Status::Ok) {
        status = readFully(*chain, outBuffer, outSize, got);
    }
    switch (status) {
    case Status::Ok:
        break;
    case Status::Unsupported:
        return SZ_ERROR_UNSUPPORTED;
    case Status::NoMemory:
        return SZ_ERROR_MEM;
    case Status::ReadFailed:
        return SZ_ERROR_READ;
    default:
        return SZ_ERROR_DATA;
    }
    if (got != outSize) {
        return SZ_ERROR_DATA;
    }
    // Archives always contain this CRC; without it the header would not be checked.
    return SzBitWithVals_Check(&streams->FolderCRCs, folderIndex)
            && CrcCalc(outBuffer, outSize) == streams->FolderCRCs.Vals[folderIndex]
        ? SZ_OK
        : SZ_ERROR_CRC;
}
