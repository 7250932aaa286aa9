# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT

# Everything the modules do except talking to Windows, as libraries. They are built on every platform
# and tested natively. README.md says what each folder contains.
#
# The small module lacks what only some produced files need. The choice is between files: where the full
# module links <name>.cpp, the small one links <name>_none.cpp.

kestrelpack_add_sevenzip_decoder(kestrelpack_sevenzip_decoder)

add_library(kestrelpack_sfx_common OBJECT
    base/crc32.cpp
    base/memory.cpp
    base/text.cpp
    $<IF:$<BOOL:${WIN32}>,base/thread_win.cpp,base/thread_posix.cpp>
    base/threads.cpp
    decoding/bcj2stream.cpp
    decoding/codergraph.cpp
    decoding/decoderchain.cpp
    decoding/decodermemory.cpp
    decoding/filterstream.cpp
    decoding/lzmastream.cpp
    decoding/readahead.cpp
    decoding/stream.cpp
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
    start/hexadecimal.cpp
    start/keylines.cpp
    start/nextstart.cpp
    start/notice.cpp
    start/peimage.cpp
    start/privatename.cpp
    start/settings.cpp
    start/settingsresource.cpp
    start/settingvalues.cpp
    start/sizetext.cpp
    start/standardstreams.cpp
    start/startplan.cpp
    start/systemtext.cpp
    start/winpath.cpp)

# Without Zstandard and without kept folders.
add_library(kestrelpack_sfx_small STATIC EXCLUDE_FROM_ALL
    decoding/zstdmethod_none.cpp
    start/keptsettings_none.cpp)

# With everything.
add_library(kestrelpack_sfx_core STATIC
    base/sha256.cpp
    decoding/zstdheader.cpp
    decoding/zstdmethod.cpp
    decoding/zstdstream.cpp
    start/keptname.cpp
    start/keptrecord.cpp
    start/keptrules.cpp
    start/keptsettings.cpp
    start/kepttable.cpp
    start/pathindex.cpp
    start/processrights.cpp)

target_include_directories(kestrelpack_sfx_common PUBLIC "${root}")
target_include_directories(kestrelpack_sfx_common SYSTEM PUBLIC
    $<TARGET_PROPERTY:kestrelpack_sevenzip_decoder,INTERFACE_INCLUDE_DIRECTORIES>)
target_compile_features(kestrelpack_sfx_common PUBLIC cxx_std_20)
target_link_libraries(kestrelpack_sfx_common PRIVATE kestrelpack_warnings)
if(NOT WIN32)
    set(THREADS_PREFER_PTHREAD_FLAG ON)
    find_package(Threads REQUIRED)
    target_link_libraries(kestrelpack_sfx_common PUBLIC Threads::Threads)
endif()
# 7-Zip's objects are in both: the linker takes from a library what is used.
foreach(library kestrelpack_sfx_small kestrelpack_sfx_core)
    target_sources(${library} PRIVATE
        $<TARGET_OBJECTS:kestrelpack_sevenzip_decoder>
        $<TARGET_PROPERTY:kestrelpack_sevenzip_decoder,KESTRELPACK_ASSEMBLED>)
    target_link_libraries(${library} PUBLIC kestrelpack_sfx_common PRIVATE kestrelpack_warnings)
endforeach()
