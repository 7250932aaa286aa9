// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/resourceedit.h"

#include "helpers/pe/editplan.h"
#include "helpers/pe/pechecksum.h"
#include "helpers/pe/replacement.h"

#include <algorithm>
#include <optional>

namespace pe {

namespace {

// Reading a larger file only to sum it would cost as much time again as copying it.
constexpr std::uint64_t alwaysSummed = 64U << 20;

// The sum of the old file without its CheckSum field.
Result<WordSum> oldSum(const File &file, const PeHeaders &headers)
{
    if (file.size() > alwaysSummed) {
        return WordSum::fromCheckSum(headers.checkSum(), file.size());
    }
    auto sum = sumOfFile(file, {0, file.size()});
    if (!sum.hasError()) {
        const std::uint64_t offset = headers.checkSumOffset();
        sum.value().remove(ByteView(headers.bytes()).subspan(offset, 4), offset);
    }
    return sum;
}

// Takes the old bytes under a patch out of the sum. Inserted bytes are zero and have no share.
Result<Done> removeOldBytes(WordSum &sum, const File &file, const EditPlan &plan,
                            const Patch &patch)
{
    const std::uint64_t begin = patch.offset;
    const std::uint64_t end = begin + patch.bytes.size();
    const std::uint64_t insertEnd = plan.insertAt + plan.insertLength;
    const FileRange before{begin, std::min(end, plan.insertLength != 0 ? plan.insertAt : end)};
    const FileRange behind{std::max(begin, insertEnd), end};
    if (before.begin < before.end) {
        const auto bytes = file.readAt(before.begin, before.end - before.begin);
        if (bytes.hasError()) {
            return bytes.error();
        }
        sum.remove(bytes.value(), before.begin);
    }
    if (plan.insertLength != 0 && behind.begin < behind.end) {
        const auto bytes = file.readAt(behind.begin - plan.insertLength, behind.end - behind.begin);
        if (bytes.hasError()) {
            return bytes.error();
        }
        sum.remove(bytes.value(), behind.begin);
    }
    return Done{};
}

Result<Done> replaceInSum(WordSum &sum, const File &file, const EditPlan &plan, const Patch &patch)
{
    auto removed = removeOldBytes(sum, file, plan, patch);
    sum.add(patch.bytes, patch.offset);
    return removed;
}

Result<Done> setCheckSum(const File &file, const PeHeaders &old, EditPlan &plan)
{
    if (old.checkSum() == 0) {
        return Done{};
    }
    if (file.size() > alwaysSummed && !WordSum::isPlausible(old.checkSum(), file.size())) {
        plan.headers.setCheckSum(0);
        return Done{};
    }
    auto sum = oldSum(file, old);
    if (sum.hasError()) {
        return sum.error();
    }
    if (plan.insertLength % 2 != 0) {
        const auto head = sumOfFile(file, {0, plan.insertAt});
        if (head.hasError()) {
            return head.error();
        }
        WordSum headWithoutField = head.value();
        headWithoutField.remove(ByteView(old.bytes()).subspan(old.checkSumOffset(), 4),
                                old.checkSumOffset());
        sum.value().moveByOddLength(headWithoutField);
    }
    PeHeaders before = old;
    before.setCheckSum(0);
    plan.headers.setCheckSum(0);
    sum.value().remove(before.bytes(), 0);
    sum.value().add(plan.headers.bytes(), 0);
    for (const Patch &patch : plan.content) {
        if (auto replaced = replaceInSum(sum.value(), file, plan, patch); replaced.hasError()) {
            return replaced;
        }
    }
    if (auto replaced = replaceInSum(sum.value(), file, plan, plan.root); replaced.hasError()) {
        return replaced;
    }
    plan.headers.setCheckSum(sum.value().checkSum(file.size() + plan.insertLength));
    return Done{};
}

Result<Done> writeContent(File &file, const EditPlan &plan)
{
    for (const Patch &patch : plan.content) {
        if (auto written = file.writeAt(patch.offset, patch.bytes); written.hasError()) {
            return written;
        }
    }
    return Done{};
}

// The order is what keeps the file whole: unused bytes, then the headers, which may come to cover
// more than before, then in one write the root table, by which the new resources replace the old.
Result<Done> writeInPlace(File &file, const PeHeaders &old, const EditPlan &plan)
{
    if (auto written = writeContent(file, plan); written.hasError()) {
        return written;
    }
    if (plan.headers.bytes() != old.bytes()) {
        if (auto written = file.writeAt(0, plan.headers.bytes()); written.hasError()) {
            return written;
        }
    }
    auto written = file.writeAt(plan.root.offset, plan.root.bytes);
    if (written.hasError()) {
        // The old tree still counts: so should its checksum.
        static_cast<void>(file.writeAt(0, old.bytes()));
    }
    return written;
}

Result<Done> writeAnew(File file, const EditPlan *plan, const std::filesystem::path &save)
{
    auto made = Replacement::beside(save);
    if (made.hasError()) {
        return made.error();
    }
    Replacement &replacement = made.value();
    const std::uint64_t at = plan != nullptr ? plan->insertAt : 0;
    const std::uint64_t length = plan != nullptr ? plan->insertLength : 0;
    if (auto copied = replacement.copyFrom(file, {0, at}, 0); copied.hasError()) {
        return copied;
    }
    if (auto copied = replacement.copyFrom(file, {at, file.size()}, at + length);
        copied.hasError()) {
        return copied;
    }
    // Not before: a file that grows as it is written is filled faster than one that has its size.
    if (auto sized = replacement.resize(file.size() + length); sized.hasError()) {
        return sized;
    }
    if (plan != nullptr) {
        if (auto written = writeContent(replacement.file(), *plan); written.hasError()) {
            return written;
        }
        for (const Patch &patch : {plan->root, Patch{0, plan->headers.bytes()}}) {
            if (auto written = replacement.file().writeAt(patch.offset, patch.bytes);
                written.hasError()) {
                return written;
            }
        }
    }
    return replacement.commit(std::move(file));
}

bool isSameFile(const std::filesystem::path &left, const std::filesystem::path &right)
{
    std::error_code ignored;
    return left == right || std::filesystem::equivalent(left, right, ignored);
}

Result<ResourceTree> readTree(const File &file, const PeHeaders &headers)
{
    auto read = readResourceTree(file, headers);
    if (read.hasError()) {
        return read.error();
    }
    if (read.value()) {
        return std::move(*read.value());
    }
    ResourceTree none;
    none.root.header.assign(12, 0);
    return none;
}

} // namespace

Result<EditOutcome> editResources(const std::filesystem::path &open,
                                  const std::filesystem::path &save, const TreeChange &change)
{
    const bool sameFile = isSameFile(open, save);
    auto file = File::open(open, sameFile ? File::Access::Edit : File::Access::Read);
    if (file.hasError()) {
        return file.error();
    }
    const auto headers = PeHeaders::read(file.value());
    if (headers.hasError()) {
        return headers.error();
    }
    const auto checked = headers.value().checkForEditing(file.value().size());
    if (checked.hasError()) {
        return checked.error();
    }
    auto tree = readTree(file.value(), headers.value());
    if (tree.hasError()) {
        return tree.error();
    }
    const OldPlace old = OldPlace::of(tree.value());
    const auto changed = change(tree.value(), file.value(), headers.value());
    if (changed.hasError()) {
        return changed.error();
    }
    std::optional<EditPlan> plan;
    if (changed.value()) {
        auto planned = planEdit(file.value(), headers.value(), tree.value(), old);
        if (planned.hasError()) {
            return planned.error();
        }
        plan = std::move(planned.value());
        if (auto sum = setCheckSum(file.value(), headers.value(), *plan); sum.hasError()) {
            return sum.error();
        }
    } else if (sameFile) {
        return EditOutcome::Unchanged;
    }
    const bool inPlace = sameFile && plan && plan->inPlace;
    const auto written = inPlace
        ? writeInPlace(file.value(), headers.value(), *plan)
        : writeAnew(std::move(file.value()), plan ? &*plan : nullptr, save);
    if (written.hasError()) {
        return written.error();
    }
    return inPlace ? EditOutcome::InPlace : EditOutcome::Rewritten;
}

} // namespace pe
