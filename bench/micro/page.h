// What the micro-benchmarks work on: user data written as PHP code, and a
// template over it whose members can be called one by one.
#ifndef TEMPLATE_BENCH_MICRO_PAGE_H
#define TEMPLATE_BENCH_MICRO_PAGE_H

#include <string>

#include "module/php_interface.h"
#include "template/template.h"

// The value of a PHP expression.
class Value final {
public:
    explicit Value(const std::string& expression);
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { zval_ptr_dtor(&value_); }

    const zval* get() const { return &value_; }

private:
    zval value_;
};

// A string template over the user data that `expression` makes; not analysed yet.
class Page final {
public:
    explicit Page(const std::string& expression, const std::string& text = "")
        : data(expression), phpInterface(text, data.get()), page(text, phpInterface, true)
    {
    }

    Value data;
    PHPInterface phpInterface;
    Template page;
};

// Opens a section called "row" whose current element is $data['rows'][0], as
// while its body is being rendered.
class OpenSection final {
public:
    explicit OpenSection(Page& page);
    OpenSection(const OpenSection&) = delete;
    OpenSection& operator=(const OpenSection&) = delete;
    ~OpenSection() { template_.dynamicStack.pop_back(); }

    const zval* element() const { return section_.currentData; }

private:
    Template& template_;
    bool reversed_ = false;
    DynamicBlock section_;
};

#endif
