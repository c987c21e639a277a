// Lookup: single steps, paths, and what a block's reference prints.
#include "fixture.h"
#include "data/value_text.h"

namespace {

std::string text(const zval* value)
{
    return value != nullptr ? std::string(ValueText(value).view()) : "(none)";
}

// Gives an object an element under the integer key 3 of its property table.
const zval* withIndex(const zval* object)
{
    zval three;
    ZVAL_STRING(&three, "three");
    zend_hash_index_update(Z_OBJPROP_P(object), 3, &three);
    return object;
}

// A section that is open around what is rendered.
class OpenSection final {
public:
    OpenSection(Template& page, std::string_view name, const zval* data, std::string_view key)
        : key_(zend_string_init(key.data(), key.size(), false)),
          section_(make<DynamicBlock>(String(name), String(), Deque<String>(), reversed_)),
          opened_(page.dynamicStack, *section_)
    {
        section_->currentData = data;
        section_->currentKey.assign(key_.get(), 0);
    }

private:
    bool reversed_ = false;
    EngineString key_;
    Owner<DynamicBlock> section_;
    SectionStack::Opened opened_;
};

}

TEST(PHPInterface, FindsByKeyAndByIndex)
{
    runPhp("$unit = 'ref'; class Declared { public $p = 1; }");
    Page page("", R"(['a' => 'x', 0 => 'zero', "n\0l" => 'nul', 'r' => &$unit, 's' => 'str',
        'list' => [1 => 'one'], 'plain' => (object) ['0' => 'text'], 'declared' => new Declared])");
    PHPInterface& data = page->phpInterface;
    EXPECT_EQ(text(data.hashFind("a", nullptr)), "x");
    EXPECT_EQ(text(data.hashFind(std::string_view("n\0l", 3), nullptr)), "nul");
    EXPECT_EQ(text(data.hashFind(std::string_view("ab", 1), nullptr)), "x");
    EXPECT_EQ(data.hashFind("0", nullptr), nullptr);
    EXPECT_EQ(Z_TYPE_P(data.hashFind("r", nullptr)), IS_REFERENCE);
    EXPECT_EQ(data.hashIndexFind(0, nullptr), nullptr);
    EXPECT_EQ(text(data.hashIndexFind(0, page.data())), "zero");
    const auto in = [&](const char* key) { return data.hashFind(key, nullptr); };
    EXPECT_EQ(text(data.hashIndexFind(1, in("list"))), "one");
    // Numeric names of an object's properties are string keys, but the table may hold others.
    EXPECT_EQ(text(data.hashIndexFind(3, withIndex(in("plain")))), "three");
    for (const char* key : {"plain", "declared", "s", "r"}) {
        EXPECT_EQ(data.hashIndexFind(0, in(key)), nullptr) << key;
        EXPECT_EQ(data.hashFind("0", in(key)), nullptr) << key;
    }

    PHPInterface nothing(String("name"), nullptr);
    EXPECT_EQ(nothing.hashFind("a", nullptr), nullptr);
    EXPECT_EQ(nothing.hashIndexFind(0, nothing.userData), nullptr);
    EXPECT_EQ(Z_TYPE_P(nothing.userData), IS_ARRAY);
}

TEST(Lookup, WalksPaths)
{
    runPhp("$unit = ['k' => 'ref'];");
    Page page("", R"(['a' => ['5' => 'x', 'b' => ['c' => ['d' => 'deep']]],
        'items' => [['name' => 'first'], 'text', (object) ['name' => 1], null], 7 => 'seven',
        'r' => &$unit, 'o' => new stdClass, '18446744073709551615' => 'max', -1 => 'minus'])");
    withIndex(page->phpInterface.hashFind("o", nullptr));
    using Keys = Deque<String>;
    const struct {
        Keys path;
        const char* start;
        const char* found;
    } cases[] = {
        {{}, nullptr, "(none)"},
        {{"a", "5"}, nullptr, "x"},
        {{"a", "b", "c", "d"}, nullptr, "deep"},
        {{"a", "b", "c", "d", "e"}, nullptr, "(none)"},
        {{"items", "0", "name"}, nullptr, "first"},
        {{"items", "2", "name"}, nullptr, "(none)"},
        {{"items", "3"}, nullptr, ""},
        {{"7"}, "", "seven"},
        // The largest index and key -1 are one and the same.
        {{"18446744073709551615"}, "", "minus"},
        {{"k"}, "r", "(none)"},
        {{"o", "3"}, nullptr, "(none)"},
        {{"3"}, "o", "three"},
        {{"3", "x"}, "o", "(none)"},
        {{}, "items", "Array"},
    };
    for (const auto& [path, start, found] : cases) {
        const zval* from = nullptr;
        if (start != nullptr) {
            from = *start == '\0' ? page.data() : page->phpInterface.hashFind(start, nullptr);
            EXPECT_EQ(text(Path(path).walk(page->phpInterface, from)), found) << keys(path);
        }
        EXPECT_EQ(text(page->findVariable(path, from)), found) << keys(path);
    }
}

TEST(Lookup, TakesTheNamedSectionOrElseTheInnermost)
{
    Page page("");
    Value outer("['v' => 'outer']"), middle("['v' => 'middle', 'n' => \"a\\0b\", 'b' => true]"),
        inner("['v' => 'inner']");
    const auto resolve = [&](const char* name, Deque<String> path, bool isKey, const zval* data) {
        const AddslashesBlock block(String(name), std::move(path), isKey);
        const auto text = page->_getResultVariableStringValue(block, data);
        return std::string(text != nullptr ? text.get() : "(none)");
    };
    // Nothing is open.
    EXPECT_EQ(resolve("", {"v"}, false, inner.get()), "(none)");
    EXPECT_EQ(resolve("", {}, true, inner.get()), "(none)");

    const OpenSection first(*page, "r", outer.get(), "0");
    const OpenSection second(*page, "r", middle.get(), "1");
    const OpenSection third(*page, "s", middle.get(), std::string_view("k\0y", 3));
    const OpenSection fourth(*page, "", inner.get(), "3");
    EXPECT_EQ(resolve("r", {"v"}, false, inner.get()), "outer");
    EXPECT_EQ(resolve("r", {}, true, inner.get()), "0");
    EXPECT_EQ(resolve("s", {"n"}, false, inner.get()), "a");
    EXPECT_EQ(resolve("s", {"b"}, false, inner.get()), "1");
    EXPECT_EQ(resolve("s", {"ignored"}, true, inner.get()), "k");
    EXPECT_EQ(resolve("", {"v"}, false, inner.get()), "inner");
    EXPECT_EQ(resolve("", {"v"}, false, middle.get()), "middle");
    EXPECT_EQ(resolve("", {}, true, middle.get()), "3");
    EXPECT_EQ(resolve("t", {"v"}, false, inner.get()), "(none)");
    EXPECT_EQ(resolve("r", {"v"}, false, nullptr), "(none)");
    EXPECT_EQ(resolve("r", {}, true, nullptr), "(none)");
}

TEST(ValueText, ReadsASlotAsItsValue)
{
    const Call call;
    Value object("new Declared");
    // A declared property is met as a slot, when an object's table is iterated.
    const zval* slot = zend_hash_str_find(Z_OBJPROP_P(object.get()), "p", 1);
    ASSERT_EQ(Z_TYPE_P(slot), IS_INDIRECT);
    EXPECT_EQ(ValueText(slot).view(), "1");
    zend_unset_property(Z_OBJCE_P(object.get()), Z_OBJ_P(object.get()), "p", 1);
    EXPECT_FALSE(ValueText(slot).exists());
}
