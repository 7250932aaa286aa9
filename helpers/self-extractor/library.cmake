# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Everything the module does except talking to Windows, as a library. It is built on every platform
# and tested natively. README.md says what each folder contains.

kestrelpack_add_sevenzip_decoder(kestrelpack_sevenzip_decoder)

add_library(kestrelpack_sfx_core STATIC
    base/memory.cpp
    base/text.cpp
    $<IF:$<BOOL:${WIN32}>,base/thread_win.cpp,base/thread_posix.cpp>
    decoding/bcj2stream.cpp
    decoding/codergraph.cpp
    decoding/decoderchain.cpp
    decoding/decodermemory.cpp
    decoding/filterstream.cpp
    decoding/lzmastream.cpp
    decoding/readahead.cpp
    decoding/stream.cpp
    decoding/zstdheader.cpp
    decoding/zstdstream.cpp
    archive/archive.cpp
    archive/contents.cpp
    archive/entryname.cpp
    archive/headerdecoder.cpp
    archive/headermemory.cpp
    archive/lookstream.cpp
    archive/pathset.cpp
    archive/shortname.cpp
    unpacking/unpacker.cpp
    unpacking/unpackthreads.cpp
    start/accessrights.cpp
    start/applicationfolder.cpp
    start/blockreader.cpp
    start/commandline.cpp
    start/entryuse.cpp
    start/filesystem.cpp
    start/heldfile.cpp
    start/keylines.cpp
    start/nextstart.cpp
    start/notice.cpp
    start/peimage.cpp
    start/privatename.cpp
    start/settings.cpp
    start/settingsresource.cpp
    start/sizetext.cpp
    start/standardstreams.cpp
    start/startplan.cpp
    start/systemtext.cpp
    start/winpath.cpp
    $<TARGET_OBJECTS:kestrelpack_sevenzip_decoder>
    $<TARGET_PROPERTY:kestrelpack_sevenzip_decoder,KESTRELPACK_ASSEMBLED>)
target_include_directories(kestrelpack_sfx_core PUBLIC "${root}")
target_include_directories(kestrelpack_sfx_core SYSTEM PUBLIC
    $<TARGET_PROPERTY:kestrelpack_sevenzip_decoder,INTERFACE_INCLUDE_DIRECTORIES>)
target_compile_features(kestrelpack_sfx_core PUBLIC cxx_std_20)
target_link_libraries(kestrelpack_sfx_core PRIVATE kestrelpack_warnings)
if(NOT WIN32)
    set(THREADS_PREFER_PTHREAD_FLAG ON)
    find_package(Threads REQUIRED)
    target_link_libraries(kestrelpack_sfx_core PUBLIC Threads::Threads)
endif()
