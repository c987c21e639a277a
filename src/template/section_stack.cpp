#include "template/section_stack.h"

void SectionStack::close()
{
    const DynamicBlock* closed = sections_.back();
    sections_.pop_back();
    if (UNEXPECTED(registered_ > sections_.size())) {
        --registered_;
        const auto found = outermost_.find(closed->name);
        if (found != outermost_.end() && found->second == closed) {
            outermost_.erase(found);
        }
    }
}

const DynamicBlock* SectionStack::find(std::string_view name)
{
    if (name.empty()) {
        return sections_.empty() ? nullptr : sections_.back();
    }
    // Few sections are compared faster than looked up.
    constexpr size_t FEW = 16;
    if (EXPECTED(sections_.size() <= FEW)) {
        for (const DynamicBlock* section : sections_) {
            if (section->name == name) {
                return section;
            }
        }
        return nullptr;
    }
    for (; registered_ < sections_.size(); ++registered_) {
        const DynamicBlock* section = sections_[registered_];
        outermost_.try_emplace(section->name, section);
    }
    const auto found = outermost_.find(name);
    return found != outermost_.end() ? found->second : nullptr;
}
