// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/icofile.h"
#include "icons/firstimage.h"
#include "icons/iconvalidation.h"
#include "tests/fuzz/require.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

void checkValidation(const QByteArray &file)
{
    int lines = 0;
    const bool usable = isUsableIcon(file, [&lines](const QString &) { ++lines; });
    require(lines == 1, "the check of an icon says one line");
    require(!usable || (file.size() >= 6 && file.startsWith(QByteArray::fromHex("00000100"))),
            "only what begins as an icon is usable");
}

void checkPlainReader(pe::ByteView file)
{
    const auto size = sizeOfFirstImage(file);
    require(!size || (size->width > 0 && size->height > 0), "an image has a size");
}

void checkImage(const pe::IconImage &image, pe::ByteView file)
{
    require(image.data.data() >= file.data()
                && image.data.data() + image.data.size() <= file.data() + file.size(),
            "an image lies in its file");
    require(image.width > 0 && image.width <= 0x7fff && image.height > 0 && image.height <= 0x7fff,
            "an image has a size");
    const pe::Bytes alone = pe::icoFileOf({image});
    const auto again = pe::parseIcoFile(alone);
    require(!again.hasError() && again.value().size() == 1, "one image makes an icon file");
    const pe::IconImage &same = again.value().front();
    require(same.width == image.width && same.height == image.height
                && same.bitCount == image.bitCount && same.colorCount == image.colorCount
                && std::ranges::equal(same.data, image.data),
            "an image stays what it is in a file of its own");
}

void checkParser(pe::ByteView file)
{
    const auto images = pe::parseIcoFile(file);
    if (images.hasError()) {
        require(images.error().kind == pe::ErrorKind::BadIcon && !images.error().what.empty(),
                "a refusal says why");
        return;
    }
    require(!images.value().empty() && images.value().size() <= pe::maxIconImages,
            "the number of images has its bounds");
    std::size_t bytes = 0;
    std::vector<std::uint16_t> ids;
    for (const pe::IconImage &image : images.value()) {
        checkImage(image, file);
        bytes += image.data.size();
        ids.push_back(static_cast<std::uint16_t>(ids.size() * 7 + 1));
    }
    require(bytes <= file.size(), "no bytes are counted twice");
    const pe::Bytes group = pe::iconGroupOf(images.value(), ids);
    require(group.size() <= pe::maxIconGroupSize && pe::imageIdsOfGroup(group) == ids,
            "a group refers to its images");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argumentCount, char ***arguments)
{
    // Qt searches for its icon plugin in the folders that the application object names.
    static QCoreApplication application(*argumentCount, *arguments);
    qInstallMessageHandler(ignoreMessage);
    return 0;
}

// Icon files of any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    checkValidation(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    checkPlainReader({data, size});
    checkParser({data, size});
    return 0;
}
