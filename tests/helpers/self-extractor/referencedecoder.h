// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LzmaDec.h"

// 7-Zip's LZMA decoder, twice.
struct LzmaFunctions
{
    decltype(&LzmaDec_AllocateProbs) allocateProbs;
    decltype(&LzmaDec_FreeProbs) freeProbs;
    decltype(&LzmaDec_Init) init;
    decltype(&LzmaDec_DecodeToDic) decodeToDic;
};

// The version in the self-extractor core.
extern const LzmaFunctions ownDecoder;
// The version written entirely in C.
extern const LzmaFunctions referenceDecoder;

extern const ISzAlloc testMemory;
