// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/resourceedit.h"

#include "helpers/pe/atomicfile.h"
#include "helpers/pe/editplan.h"

#include <optional>

namespace pe {

namespace {

// Copies the file, with the plan's zero bytes put in.
Result<Done> copyWithGap(AtomicFile &made, const File &file, const EditPlan &plan)
{
    if (auto copied = made.copyFrom(file, {0, plan.insertAt}, 0); copied.hasError()) {
        return copied;
    }
    auto copied
        = made.copyFrom(file, {plan.insertAt, file.size()}, plan.insertAt + plan.insertLength);
    if (copied.hasError()) {
        return copied;
    }
    // Last: writing is faster while the file grows than after it has its full size.
    return made.resize(file.size() + plan.insertLength);
}

Result<Done> writePatches(File &file, const EditPlan &plan)
{
    for (const Patch &patch : plan.patches) {
        if (auto written = file.writeAt(patch.offset, patch.bytes); written.hasError()) {
            return written;
        }
    }
    return file.writeAt(0, plan.headers.bytes());
}

// Makes the new file beside `save` and then gives it that name. An empty plan makes a copy.
Result<Done> writeNewFile(File file, const EditPlan &plan, const NativePath &save)
{
    auto made = AtomicFile::beside(save);
    if (made.hasError()) {
        return made.error();
    }
    if (auto copied = copyWithGap(made.value(), file, plan); copied.hasError()) {
        return copied;
    }
    if (auto written = writePatches(made.value().file(), plan); written.hasError()) {
        return written;
    }
    return made.value().commit(std::move(file));
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

// The tree stays where it is.
std::optional<EditPlan> planForHeaders(const PeHeaders &headers)
{
    EditPlan plan;
    plan.headers = headers;
    plan.headers.clearCheckSum();
    return plan;
}

// Reads the tree, changes it and plans the edit. No plan: there was nothing to change.
Result<std::optional<EditPlan>> planChange(const File &file, const TreeChange &change)
{
    auto headers = PeHeaders::read(file);
    if (headers.hasError()) {
        return headers.error();
    }
    if (const auto checked = headers.value().checkForEditing(file.size()); checked.hasError()) {
        return checked.error();
    }
    auto tree = readTree(file, headers.value());
    if (tree.hasError()) {
        return tree.error();
    }
    const Bytes oldHeaders = headers.value().bytes();
    const auto changed = change(tree.value(), file, headers.value());
    if (changed.hasError()) {
        return changed.error();
    }
    if (!changed.value()) {
        return oldHeaders == headers.value().bytes() ? std::optional<EditPlan>()
                                                     : planForHeaders(headers.value());
    }
    auto plan = planEdit(file, headers.value(), tree.value());
    if (plan.hasError()) {
        return plan.error();
    }
    return std::optional(std::move(plan.value()));
}

} // namespace

Result<EditOutcome> editResources(const NativePath &open, const NativePath &save,
                                  const TreeChange &change)
{
    const bool sameFile = isSameFile(open, save);
    auto file = File::open(open, sameFile ? File::Access::Edit : File::Access::Read);
    if (file.hasError()) {
        return file.error();
    }
    auto plan = planChange(file.value(), change);
    if (plan.hasError()) {
        return plan.error();
    }
    if (!plan.value() && sameFile) {
        return EditOutcome::Unchanged;
    }
    const auto written
        = writeNewFile(std::move(file.value()), plan.value().value_or(EditPlan()), save);
    if (written.hasError()) {
        return written.error();
    }
    return plan.value() ? EditOutcome::Changed : EditOutcome::Unchanged;
}

} // namespace pe
