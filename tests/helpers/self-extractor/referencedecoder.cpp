// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/referencedecoder.h"

#include <cstdlib>

// LzmaDec.c is compiled a second time for this test, with other names.
extern "C" {
SRes Reference_AllocateProbs(CLzmaDec *p, const Byte *props, unsigned propsSize, ISzAllocPtr alloc);
void Reference_FreeProbs(CLzmaDec *p, ISzAllocPtr alloc);
void Reference_Init(CLzmaDec *p);
SRes Reference_DecodeToDic(CLzmaDec *p, SizeT dicLimit, const Byte *src, SizeT *srcLen,
                           ELzmaFinishMode finishMode, ELzmaStatus *status);
}

namespace {

void *allocate(ISzAllocPtr, std::size_t size)
{
    return std::malloc(size);
}

void release(ISzAllocPtr, void *memory)
{
    std::free(memory);
}

} // namespace

const LzmaFunctions ownDecoder
    = {LzmaDec_AllocateProbs, LzmaDec_FreeProbs, LzmaDec_Init, LzmaDec_DecodeToDic};
const LzmaFunctions referenceDecoder
    = {Reference_AllocateProbs, Reference_FreeProbs, Reference_Init, Reference_DecodeToDic};
const ISzAlloc testMemory = {allocate, release};
