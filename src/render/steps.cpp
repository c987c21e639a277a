#include "render/steps.h"

#include "engine/stack.h"
#include "template/error.h"

void StepMaker::addBody(Blocks& blocks)
{
    if (UNEXPECTED(!Stack::hasRoom(Stack::LEVEL))) {
        throwTooDeep(page_.currentFile());
    }
    for (const Owner<Block>& block : blocks) {
        EngineCall::current().checkTime();
        add(*block);
    }
    flushText();
}

void StepMaker::add(Block& block)
{
    switch (block.type) {
    case Block::TEXT:
        return addText(static_cast<TextBlock&>(block).text);
    case Block::MULTI_VARIABLE:
        return add(static_cast<MultiVariableBlock&>(block));
    case Block::ADDSLASHES:
        return add(static_cast<VariableBlock&>(block), Escaping::ADDSLASHES);
    case Block::HTMLENTITIES:
        return add(static_cast<VariableBlock&>(block), Escaping::HTMLENTITIES);
    case Block::HTMLSPECIALCHARS:
        return add(static_cast<VariableBlock&>(block), Escaping::HTMLSPECIALCHARS);
    case Block::RAWURLENCODE:
        return add(static_cast<VariableBlock&>(block), Escaping::RAWURLENCODE);
    case Block::OPTIONAL:
    case Block::NOT_OPTIONAL:
        return add(static_cast<OptionalBlock&>(block));
    case Block::DYNAMIC:
    case Block::RDYNAMIC:
        return add(static_cast<DynamicBlock&>(block));
    default:
        addStep(Step::BLOCK).block = &block;
    }
}

void StepMaker::addText(std::string_view text)
{
    flushText();
    text_ = text;
}

void StepMaker::flushText()
{
    if (!text_.empty()) {
        addStep(Step::TEXT);
    }
}

Step& StepMaker::addStep(Step::Kind kind)
{
    Step& step = steps_.list.emplace_back();
    step.kind = kind;
    step.next = position();
    step.text = std::exchange(text_, {});
    return step;
}

namespace {

// Where the text ends while steps are written, and where its room ends. It stays in
// registers: the text is told before anybody else writes to it.
struct Cursor {
    explicit Cursor(Text& out) : to(out.room(0)), limit(out.limit()) {}

    char* to;
    char* limit;
};

// Goes through a list of steps. What every value needs is compiled into one piece, what
// takes longer is not.
class Renderer final {
public:
    Renderer(Template& page, Text& out, const zval* data) : page_(page), out_(out), data_(data) {}

    [[gnu::flatten]] void render(const Vector<Step>& steps)
    {
        EngineCall& call = EngineCall::current();
        Cursor cursor(out_);
        const Step* const begin = steps.data();
        const Step* const end = begin + steps.size();
        for (const Step* step = begin; step != end;) {
            call.checkTime();
            step = goOn(*step, cursor) ? begin + step->next : step + 1;
        }
        out_.finish(cursor.to);
    }

private:
    // Whether `next` says where to go on; else the step behind it is next.
    [[gnu::always_inline]] bool goOn(const Step& step, Cursor& cursor)
    {
        Digits digits;
        switch (step.kind) {
        case Step::TEXT:
            write(step.text, cursor);
            return false;
        case Step::VALUE:
            return writeValue(step, step.reference.find(page_.phpInterface), cursor);
        case Step::KEY:
            write(step.text, cursor, step.reference.section->currentKey.printed(digits));
            return false;
        case Step::ROOT_VALUE:
            return writeValue(step, step.value, cursor);
        case Step::ESCAPED_VALUE:
            writeEscaped(step, step.reference.find(page_.phpInterface), cursor);
            return false;
        case Step::ESCAPED_KEY:
            writeEscapedText(step, step.reference.section->currentKey.printed(digits), cursor);
            return false;
        case Step::VALUE_CONDITION:
            write(step.text, cursor);
            return page_.checkIfOptionalIsVisible(
                       step.reference.find(page_.phpInterface), step.argument)
                == step.negated;
        case Step::KEY_CONDITION:
            write(step.text, cursor);
            // Quotes around the comparison text are part of it here.
            return (step.reference.section->currentKey.view(digits) == step.argument)
                == step.negated;
        default:
            cursor = renderElsewhere(step, cursor);
            return false;
        }
    }

    // Room for `bytes`, and for what is copied in whole blocks.
    [[gnu::always_inline]] void makeRoom(size_t bytes, Cursor& cursor)
    {
        if (UNEXPECTED(static_cast<size_t>(cursor.limit - cursor.to) < bytes + SHORT_TEXT)) {
            cursor = grow(bytes + SHORT_TEXT, cursor);
        }
    }

    [[gnu::always_inline]] void write(
        std::string_view text, Cursor& cursor, std::string_view value = {})
    {
        makeRoom(text.size() + value.size(), cursor);
        cursor.to = copyText(value, copyPadded(text, cursor.to));
    }

    [[gnu::always_inline]] bool writeValue(const Step& step, const zval* value, Cursor& cursor)
    {
        if (EXPECTED(value != nullptr)) {
            if (EXPECTED(Z_TYPE_P(value) == IS_STRING)) {
                if (EXPECTED(isShortWithoutNul(Z_STR_P(value)))) {
                    makeRoom(step.text.size(), cursor);
                    cursor.to = copyShortString(Z_STR_P(value), copyPadded(step.text, cursor.to));
                } else {
                    write(step.text, cursor, stringText(value));
                }
                return true;
            }
            if (Z_TYPE_P(value) == IS_LONG) {
                Digits digits;
                write(step.text, cursor, decimal(Z_LVAL_P(value), digits));
                return true;
            }
        }
        bool printed = false;
        cursor = writeOther(step, value, printed, cursor);
        return printed;
    }

    [[gnu::always_inline]] void writeEscaped(const Step& step, const zval* value, Cursor& cursor)
    {
        if (UNEXPECTED(value == nullptr)) {
            write(step.text, cursor);
        } else if (UNEXPECTED(Z_TYPE_P(value) != IS_STRING)) {
            cursor = escapeOther(step, value, cursor);
        } else if (EXPECTED(isShortWithoutNul(Z_STR_P(value)))) {
            makeRoom(step.text.size() + step.escaper->mostOf(Z_STRLEN_P(value)), cursor);
            cursor.to = step.escaper->escapeShort(Z_STR_P(value), copyPadded(step.text, cursor.to));
        } else {
            writeEscapedText(step, stringText(value), cursor);
        }
    }

    [[gnu::always_inline]] void writeEscapedText(
        const Step& step, std::string_view text, Cursor& cursor)
    {
        // For a longer text the room could be much too large.
        constexpr size_t SHORT = 256;
        if (UNEXPECTED(text.size() > SHORT)) {
            cursor = escapeLong(step, text, cursor);
            return;
        }
        makeRoom(step.text.size() + step.escaper->mostOf(text.size()), cursor);
        cursor.to = step.escaper->escape(
            text, text.data() + text.size(), copyPadded(step.text, cursor.to));
    }

    [[gnu::noinline]] Cursor grow(size_t bytes, Cursor cursor)
    {
        out_.finish(cursor.to);
        out_.room(bytes);
        return Cursor(out_);
    }

    // A value that takes longer, or none.
    [[gnu::noinline]] Cursor writeOther(
        const Step& step, const zval* value, bool& printed, Cursor cursor)
    {
        write(step.text, cursor);
        out_.finish(cursor.to);
        printed = value != nullptr && appendValue(out_, value);
        return Cursor(out_);
    }

    [[gnu::noinline]] Cursor escapeLong(const Step& step, std::string_view text, Cursor cursor)
    {
        write(step.text, cursor);
        out_.finish(cursor.to);
        step.escaper->append(out_, text);
        return Cursor(out_);
    }

    [[gnu::noinline]] Cursor escapeOther(const Step& step, const zval* value, Cursor cursor)
    {
        const ValueText text(value);
        return escapeLong(step, text.view(), cursor);
    }

    [[gnu::noinline]] Cursor renderElsewhere(const Step& step, Cursor cursor)
    {
        write(step.text, cursor);
        out_.finish(cursor.to);
        if (step.kind == Step::SECTION) {
            auto& section = static_cast<DynamicBlock&>(*step.block);
            renderSection(page_, section, out_, valueToIterate(step, section),
                section.type == Block::RDYNAMIC);
        } else if (step.kind == Step::BLOCK) {
            page_.renderBlock(*step.block, out_, data_);
        } else {
            parseReference(step.argument, page_.currentFile());
        }
        return Cursor(out_);
    }

    // The array, or through "num" the object, that a section is about. Other than the
    // array found while analysing, it is not reached through a PHP reference.
    const zval* valueToIterate(const Step& step, const DynamicBlock& section) const
    {
        if (section.data != nullptr) {
            return section.data;
        }
        const zval* value = step.reference.find(page_.phpInterface);
        return value != nullptr && Z_TYPE_P(value) == IS_ARRAY ? numOf(page_.phpInterface, value)
                                                               : nullptr;
    }

    Template& page_;
    Text& out_;
    const zval* const data_;
};

}

void Steps::render(Template& page, Text& out, const zval* data) const
{
    Renderer(page, out, data).render(list);
}
