// The engine's headers, in one place and as system headers: their warnings are
// not ours to mend. The C++ library's headers come first, because some of the
// engine's C headers are wrapped in extern "C" and would drag templates into it.
#ifndef TEMPLATE_ENGINE_HEADERS_H
#define TEMPLATE_ENGINE_HEADERS_H

#pragma GCC system_header

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "php.h"
#include "zend_call_stack.h"
#include "zend_exceptions.h"
#include "zend_fibers.h"

extern "C" {
#include "ext/standard/file.h"
#include "ext/standard/html.h"
#include "ext/standard/php_string.h"
#include "ext/standard/url.h"
}

#endif
