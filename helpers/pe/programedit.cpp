// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/programedit.h"

namespace pe {

namespace {

bool applyTo(ResourceTree &tree, const ResourceEdit &edit)
{
    if (!edit.content) {
        return removeResource(tree, edit.type, edit.name, edit.language);
    }
    setResource(tree, edit.type, edit.name, edit.language, *edit.content);
    return true;
}

} // namespace

Result<EditOutcome> editProgram(const NativePath &open, const NativePath &save,
                                const ProgramEdit &edit)
{
    return editResources(open, save, [&](ResourceTree &tree, const File &, PeHeaders &headers) {
        if (edit.subsystem) {
            headers.setSubsystem(*edit.subsystem);
        }
        bool isChanged = false;
        for (const ResourceKey &type : edit.removedTypes) {
            isChanged = removeEntry(tree.root, type) || isChanged;
        }
        for (const ResourceEdit &resource : edit.resources) {
            isChanged = applyTo(tree, resource) || isChanged;
        }
        return Result<bool>(isChanged);
    });
}

} // namespace pe
