// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The functions of 7-Zip's C part that the module uses. The compiler reads this file before each of 7-Zip's files
// and drops every other function (-fwhole-program). A function that is missing here is an error of the linker.

#ifndef KESTRELPACK_SELF_EXTRACTOR_SEVENZIPUSES_H
#define KESTRELPACK_SELF_EXTRACTOR_SEVENZIPUSES_H

#include <7z.h>
#include <7zBuf.h>
#include <7zCrc.h>
#include <Bcj2.h>
#include <Bra.h>
#include <CpuArch.h>
#include <Delta.h>
#include <Lzma2Dec.h>
#include <LzmaDec.h>
#include <Xxh64.h>
#include <ZstdDec.h>

// clang-format off
#define KESTRELPACK_USES(function) extern __typeof__(function) function __attribute__((externally_visible))

// In no header of 7-Zip.
void LzmaDec_InitDicAndState(CLzmaDec *decoder, BoolInt initDic, BoolInt initState);

KESTRELPACK_USES(Bcj2Dec_Decode);
KESTRELPACK_USES(Bcj2Dec_Init);
KESTRELPACK_USES(Buf_Create);
KESTRELPACK_USES(Buf_Free);
KESTRELPACK_USES(Buf_Init);
KESTRELPACK_USES(CrcCalc);
KESTRELPACK_USES(CrcGenerateTable);
KESTRELPACK_USES(CrcUpdate);
KESTRELPACK_USES(Delta_Decode);
KESTRELPACK_USES(LookInStream_Read);
KESTRELPACK_USES(LookInStream_Read2);
KESTRELPACK_USES(LookInStream_SeekTo);
KESTRELPACK_USES(Lzma2Dec_AllocateProbs);
KESTRELPACK_USES(Lzma2Dec_DecodeToDic);
KESTRELPACK_USES(Lzma2Dec_Init);
KESTRELPACK_USES(LzmaDec_AllocateProbs);
KESTRELPACK_USES(LzmaDec_DecodeToDic);
KESTRELPACK_USES(LzmaDec_FreeProbs);
KESTRELPACK_USES(LzmaDec_Init);
KESTRELPACK_USES(LzmaDec_InitDicAndState);
KESTRELPACK_USES(SzArEx_Free);
KESTRELPACK_USES(SzArEx_GetFileNameUtf16);
KESTRELPACK_USES(SzArEx_Init);
KESTRELPACK_USES(SzArEx_Open);
KESTRELPACK_USES(SzGetNextFolderItem);
KESTRELPACK_USES(Xxh64State_Digest);
KESTRELPACK_USES(Xxh64State_Init);
KESTRELPACK_USES(Xxh64State_UpdateBlocks);
KESTRELPACK_USES(ZstdDec_Create);
KESTRELPACK_USES(ZstdDec_Decode);
KESTRELPACK_USES(ZstdDec_Destroy);
KESTRELPACK_USES(ZstdDec_Init);
KESTRELPACK_USES(z7_BranchConvSt_X86_Dec);
KESTRELPACK_USES(z7_BranchConv_ARM64_Dec);
KESTRELPACK_USES(z7_BranchConv_ARMT_Dec);
KESTRELPACK_USES(z7_BranchConv_ARM_Dec);
KESTRELPACK_USES(z7_BranchConv_IA64_Dec);
KESTRELPACK_USES(z7_BranchConv_PPC_Dec);
KESTRELPACK_USES(z7_BranchConv_RISCV_Dec);
KESTRELPACK_USES(z7_BranchConv_SPARC_Dec);

// clang-format on
#undef KESTRELPACK_USES

#endif // KESTRELPACK_SELF_EXTRACTOR_SEVENZIPUSES_H
