// One reference of a variable tag, worked out for rendering.
#ifndef TEMPLATE_RENDER_CANDIDATE_H
#define TEMPLATE_RENDER_CANDIDATE_H

#include <string_view>

#include "render/section_path.h"
#include "template/reference.h"

struct Candidate {
    Candidate(const ReferenceText& reference, const zval* value)
        : kind(reference.kind),
          value(value),
          namespaceName(reference.namespaceName),
          path(reference.path),
          sectionPath(reference.path)
    {
    }

    VariableKind kind;
    // Found at the root, borrowed; null for the other kinds.
    const zval* value;
    // Both point into the reference's text, which the tag's block owns.
    std::string_view namespaceName;
    PathText path;
    SectionPath sectionPath;
};

#endif
