// What the tests are written with: PHP values made by PHP expressions, a page
// over a template and its data, and the block tree as one compact line.
#ifndef TEMPLATE_TESTS_UNIT_FIXTURE_H
#define TEMPLATE_TESTS_UNIT_FIXTURE_H

#include <functional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "template/template.h"

// Runs PHP code in the embedded interpreter; a test fails when it throws.
void runPhp(const std::string& code);

// The value of a PHP expression, for as long as the object lives.
class Value final {
public:
    explicit Value(const std::string& expression);
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { zval_ptr_dtor(&value_); }

    zval* get() { return &value_; }
    // The element of an array as stored.
    const zval* at(std::string_view key) const
    {
        return zend_hash_str_find(Z_ARRVAL(value_), key.data(), key.size());
    }
    std::string text();

private:
    zval value_;
};

// A call without a template, for what needs one to be going on.
struct Call {
    EngineCall engine;
    CallMemory memory{engine};
};

// One call of the engine over a template and a PHP expression for its data.
class Page final {
public:
    explicit Page(
        const std::string& source, const std::string& data = "[]", bool stringMode = true);

    Template* operator->() { return &page_; }
    Template& operator*() { return page_; }
    const zval* data() { return data_.get(); }
    Page& analyze();
    // Analyses the template and renders the tree.
    std::string render();

private:
    Value data_;
    Call call_;
    PHPInterface phpInterface_;
    Template page_;
};

// 'text'  var[reference|reference]='default'  htmlentities(section/key/key)
// addslashes(section[*])  optional(analyzed/key =comparison)[body]
// !optional(value section/key)[]  optional(key section =comparison)[]
// dynamic(name: 2 elements)[]  dynamic(name: section/key)[]  dynamic(off)[]
std::string dump(const Blocks& blocks);
std::string keys(const Deque<String>& path);

// What `action` returns, or the message of the failure that it ends in.
std::string outcome(const std::function<std::string()>& action);

#endif
