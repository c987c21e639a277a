#include "bench/micro/page.h"

#include <deque>
#include <stdexcept>

Value::Value(const std::string& expression)
{
    if (zend_eval_string(expression.c_str(), &value_, "micro-benchmark") == FAILURE) {
        throw std::logic_error("PHP does not take: " + expression);
    }
}

OpenSection::OpenSection(Page& page)
    : template_(page.page), section_("row", "", std::deque<std::string>(), reversed_)
{
    section_.currentKey = "0";
    section_.currentData = template_.findVariable({"rows", "0"}, nullptr);
    template_.dynamicStack.push_back(&section_);
}
