// A section's body as it is rendered: the blocks become a flat list of steps, made
// once and gone through for each element. A step writes the literal text before a
// value and the value, or decides where to go on. What is the same for every element
// is settled when the list is made: the sections that references mean, the keys of
// their paths, the parts of a tag.
#ifndef TEMPLATE_RENDER_STEPS_H
#define TEMPLATE_RENDER_STEPS_H

#include "template/template.h"

struct Step final {
    enum Kind : uint8_t {
        TEXT,          // nothing but the text
        VALUE,         // a value of a section's element
        KEY,           // a section's key
        ROOT_VALUE,    // a value at the top level of the user data
        ESCAPED_VALUE, // as VALUE and KEY, escaped
        ESCAPED_KEY,
        VALUE_CONDITION, // goes on behind the body that is not to show
        KEY_CONDITION,
        SECTION, // a dynamic section
        BLOCK,   // any other block, through the dispatch table
        FAULT,   // a malformed reference: says so
    };

    Kind kind = TEXT;
    // Of a condition.
    bool negated = false;
    // Where to go on: behind the tag when this has printed, or behind the body.
    uint32_t next = 0;
    // Written first.
    std::string_view text;
    // What a value or key is compared with; a malformed reference.
    std::string_view argument;
    SectionReference reference;
    const zval* value = nullptr;
    const ByteEscaper* escaper = nullptr;
    Block* block = nullptr;
};

class Steps final {
public:
    // Goes through the list once. `data` is the current element.
    void render(Template& page, Text& out, const zval* data) const;

    Vector<Step> list;
};

// Makes the steps of blocks that stand inside of the sections that are open now.
// The blocks and their texts must outlive the steps.
class StepMaker final {
public:
    StepMaker(Template& page, Steps& steps) : page_(page), steps_(steps) {}

    // All of a body.
    void addBody(Blocks& blocks);
    // One source file for each of these.
    void add(MultiVariableBlock& block);
    void add(const VariableBlock& block, Escaping escaping);
    void add(OptionalBlock& block);
    void add(DynamicBlock& block);

    void addText(std::string_view text);
    // To be called at the end, and where steps go on at other times.
    void flushText();
    // A step with the text before it. Valid until the next one.
    Step& addStep(Step::Kind kind);
    // The step of a reference; without one, where no such section is open, null.
    template <class Keys>
    Step* addReference(Step::Kind kind, std::string_view name, const Keys& path)
    {
        SectionReference reference(page_.dynamicStack, name, path);
        if (reference.section == nullptr) {
            return nullptr;
        }
        Step& step = addStep(kind);
        step.reference = std::move(reference);
        return &step;
    }
    uint32_t position() const { return static_cast<uint32_t>(steps_.list.size()); }
    Step& at(uint32_t position) { return steps_.list[position]; }
    Template& page() { return page_; }

private:
    void add(Block& block);

    Template& page_;
    Steps& steps_;
    // Written with the next step.
    std::string_view text_;
};

// Renders one block where it stands outside of every list.
template <class Add>
void renderAlone(const Template& page, Text& out, const zval* data, Add add)
{
    // Values that are printed change nothing of the page.
    auto& changeable = const_cast<Template&>(page);
    Steps steps;
    StepMaker maker(changeable, steps);
    add(maker);
    maker.flushText();
    steps.render(changeable, out, data);
}

// Renders a dynamic section over a value, which may be null or no array.
void renderSection(
    Template& page, DynamicBlock& block, Text& out, const zval* value, bool reversed);

#endif
