// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "packaging/archiveroutput.h"
#include "tests/fuzz/require.h"

#include <climits>

namespace {

bool isDigit(QChar letter)
{
    return letter >= u'0' && letter <= u'9';
}

// A second way to find the first percentage: backwards from the sign.
std::optional<int> expected(const QString &text)
{
    for (qsizetype sign = text.indexOf(u'%'); sign >= 0; sign = text.indexOf(u'%', sign + 1)) {
        qint64 value = 0;
        qint64 weight = 1;
        qsizetype at = sign;
        for (; at > 0 && isDigit(text[at - 1]); --at) {
            const int digit = text[at - 1].unicode() - u'0';
            value = digit == 0 || value > INT_MAX ? value
                : weight > INT_MAX                ? qint64(INT_MAX) + 1
                                                  : value + digit * weight;
            weight = weight > INT_MAX ? weight : weight * 10;
        }
        if (at != sign) {
            return value > INT_MAX ? 0 : static_cast<int>(value);
        }
    }
    return std::nullopt;
}

} // namespace

// The archiver's output. The first byte says where the output is cut in two; the rest is the
// output.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1),
                           static_cast<qsizetype>(size - 1));
    const QString text = QString::fromUtf8(bytes);
    const auto percentage = firstPercentage(text);
    require(percentage == expected(text), "a percentage is the digits before the first sign");

    const qsizetype cut = text.isEmpty() ? 0 : data[0] % text.size();
    const bool cutsNumber = cut > 0 && isDigit(text[cut - 1])
        && (isDigit(text[cut]) || text[cut] == u'%');
    // Half a surrogate pair is not text and cannot come from bytes.
    const bool cutsLetter = cut > 0 && text[cut - 1].isHighSurrogate();
    if (!cutsNumber && !cutsLetter) {
        const auto left = firstPercentage(text.left(cut));
        require(percentage == (left ? left : firstPercentage(text.mid(cut))),
                "pieces have the percentages of the whole");
    }

    const QByteArray left = bytes.left(data[0]);
    const QByteArray rest = bytes.mid(data[0]);
    require(archiverErrorText(left, rest) == QString::fromLocal8Bit(left.isEmpty() ? rest : left),
            "an error is told by standard error, or else by standard output");
    return 0;
}
