// A reference that is relative to a dynamic section, as rendering follows it.
#ifndef TEMPLATE_RENDER_SECTION_PATH_H
#define TEMPLATE_RENDER_SECTION_PATH_H

#include "render/compiled_path.h"

class DynamicBlock;

struct SectionPath {
    template <class Path>
    explicit SectionPath(const Path& path) : path(path)
    {
    }

    CompiledPath path;
    // The section that the reference means, once it was found: a block has one
    // place in the tree, so the sections around it are the same at every
    // rendering. Not owned.
    const DynamicBlock* section = nullptr;
};

#endif
