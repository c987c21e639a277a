// The dynamic sections that are open, while their bodies are analysed or rendered,
// and references to their elements.
#ifndef TEMPLATE_TEMPLATE_SECTION_STACK_H
#define TEMPLATE_TEMPLATE_SECTION_STACK_H

#include <string_view>
#include <unordered_map>

#include "data/path.h"
#include "template/block.h"

// Outermost first. The sections are not owned.
class SectionStack final {
public:
    // Opens a section, and closes it when it goes away.
    class Opened final {
    public:
        Opened(SectionStack& stack, const DynamicBlock& section) : stack_(stack)
        {
            stack_.sections_.push_back(&section);
        }
        Opened(const Opened&) = delete;
        Opened& operator=(const Opened&) = delete;
        ~Opened() { stack_.close(); }

    private:
        SectionStack& stack_;
    };

    bool empty() const { return sections_.empty(); }

    // The section of that name, the outermost of several; the innermost one for an
    // empty name; null when there is none.
    const DynamicBlock* find(std::string_view name);

private:
    using ByName = std::unordered_map<std::string_view, const DynamicBlock*,
        std::hash<std::string_view>, std::equal_to<std::string_view>,
        BlockAllocator<std::pair<const std::string_view, const DynamicBlock*>>>;

    void close();

    LastingVector<const DynamicBlock*> sections_;
    // Of the first `registered_` sections, the outermost of each name; filled when
    // many are open. The names are the sections' own.
    ByName outermost_;
    size_t registered_ = 0;
};

// A reference to the element of an open section, for as long as the section is. The
// path's text must live as long.
struct SectionReference {
    SectionReference() = default;
    template <class Keys>
    SectionReference(SectionStack& sections, std::string_view name, const Keys& path)
        : section(sections.find(name)),
          path(path)
    {
    }

    // Null when there is no such value.
    [[gnu::always_inline]] const zval* find(PHPInterface& data) const
    {
        return path.walk(data, section->currentData);
    }

    // Null when no such section is open: nothing can be found then.
    const DynamicBlock* section = nullptr;
    Path path;
};

#endif
