#include "render/value_text.h"

ValueText::ValueText(EngineCall& call, const zval* value)
{
    if (UNEXPECTED(Z_TYPE_P(value) == IS_INDIRECT)) {
        value = Z_INDIRECT_P(value);
    }
    ZVAL_DEREF(value);
    exists_ = true;
    switch (Z_TYPE_P(value)) {
    case IS_UNDEF:
        exists_ = false;
        break;
    case IS_STRING:
        text_ = stringText(value);
        break;
    case IS_LONG:
        text_ = decimal(Z_LVAL_P(value), digits_);
        break;
    case IS_NULL:
    case IS_FALSE:
        break;
    case IS_TRUE:
        text_ = "1";
        break;
    default:
        convert(call, value);
    }
}

void ValueText::convert(EngineCall& call, const zval* value)
{
    converted_ = call.makeString([value] {
        // The user code that runs may drop the value that is being converted.
        zval held;
        ZVAL_COPY(&held, value);
        zend_string* text = zval_get_string(&held);
        zval_ptr_dtor(&held);
        return text;
    });
    text_ = converted_.text();
}
