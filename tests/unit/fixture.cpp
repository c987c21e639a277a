#include "fixture.h"

#include <sapi/embed/php_embed.h>

void runPhp(const std::string& code)
{
    EXPECT_EQ(zend_eval_string(code.c_str(), nullptr, "test"), SUCCESS) << code;
    EXPECT_EQ(EG(exception), nullptr) << code;
}

Value::Value(const std::string& expression)
{
    EXPECT_EQ(zend_eval_string(expression.c_str(), &value_, "test"), SUCCESS) << expression;
}

std::string Value::text()
{
    const EngineString text(zval_get_string(&value_));
    return {ZSTR_VAL(text.get()), ZSTR_LEN(text.get())};
}

Page::Page(const std::string& source, const std::string& data, bool stringMode)
    : data_(data),
      phpInterface_(String(source), data_.get()),
      page_(String(source), phpInterface_, stringMode)
{
}

Page& Page::analyze()
{
    page_.analyzeTemplate();
    return *this;
}

std::string Page::render()
{
    page_.analyzeTemplate();
    return page_.getResult();
}

namespace {

std::string plain(std::string_view text)
{
    return std::string(text);
}

}

std::string keys(const Deque<String>& path)
{
    std::string text;
    for (const String& key : path) {
        text += "/" + plain(key);
    }
    return text;
}

namespace {

std::string dumpVariable(const VariableBlock& block)
{
    static const char* const NAMES[]
        = {"addslashes", "htmlentities", "htmlspecialchars", "rawurlencode"};
    return NAMES[block.type - Block::ADDSLASHES] + ("(" + plain(block.namespaceName))
        + (block.isKey ? "[*]" : "") + keys(block.path) + ")";
}

std::string dumpMultiVariable(const MultiVariableBlock& block)
{
    std::string text;
    for (const String& variable : block.variables) {
        text += (text.empty() ? "var[" : "|") + plain(variable);
    }
    return text + "]" + (block.hasDefaultValue ? "='" + plain(block.defaultValue) + "'" : "");
}

std::string dumpOptional(const OptionalBlock& block)
{
    static const char* const TYPES[] = {"analyzed", "value ", "key "};
    EXPECT_EQ(block.data, nullptr);
    return std::string(block.type == Block::NOT_OPTIONAL ? "!optional(" : "optional(")
        + TYPES[block.optionalType] + plain(block.namespaceName) + keys(block.path)
        + (block.compareValue.empty() ? "" : " =" + plain(block.compareValue)) + ")["
        + dump(block.blocks) + "]";
}

std::string dumpDynamic(const DynamicBlock& block)
{
    std::string about = "off";
    if (block.data != nullptr) {
        about = plain(block.name) + ": "
            + std::to_string(zend_hash_num_elements(Z_ARRVAL_P(block.data))) + " elements";
    } else if (block.isActive) {
        about = plain(block.name) + ": " + plain(block.namespaceName) + keys(block.path);
    } else {
        EXPECT_EQ(plain(block.name) + plain(block.namespaceName) + keys(block.path), "");
    }
    return (block.type == Block::RDYNAMIC ? "rdynamic(" : "dynamic(") + about + ")["
        + dump(block.blocks) + "]";
}

std::string dump(const Block& block)
{
    if (const auto* text = dynamic_cast<const TextBlock*>(&block)) {
        return "'" + plain(text->text) + "'";
    }
    if (const auto* variable = dynamic_cast<const MultiVariableBlock*>(&block)) {
        return dumpMultiVariable(*variable);
    }
    if (const auto* variable = dynamic_cast<const VariableBlock*>(&block)) {
        return dumpVariable(*variable);
    }
    if (const auto* section = dynamic_cast<const OptionalBlock*>(&block)) {
        return dumpOptional(*section);
    }
    return dumpDynamic(dynamic_cast<const DynamicBlock&>(block));
}

}

std::string dump(const Blocks& blocks)
{
    std::string text;
    for (const auto& block : blocks) {
        text += (text.empty() ? "" : " ") + dump(*block);
    }
    return text;
}

std::string outcome(const std::function<std::string()>& action)
{
    try {
        return action();
    } catch (const std::exception& failure) {
        return failure.what();
    } catch (const CallAbandoned&) {
        return "abandoned";
    }
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    php_embed_module.php_ini_ignore = 1;
    if (php_embed_init(0, nullptr) == FAILURE) {
        return 2;
    }
    runPhp("error_reporting(0);");
    const int result = RUN_ALL_TESTS();
    php_embed_shutdown();
    return result;
}
