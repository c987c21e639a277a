// The module and its function: the boundary where failures become PHP warnings,
// and where calls that PHP itself has put an end to are handed back to it.
#include <stdexcept>
#include <string>

#include "module/fiber_guard.h"
#include "module/message.h"
#include "module/php_interface.h"
#include "template/error.h"
#include "template/template.h"

namespace {

struct Arguments {
    bool valid;
    std::string_view fileName;
    zval* userData;
    bool stringMode;
    // Calls have been made inside of each other without end.
    bool tooDeep = false;
};

enum class Ending {
    RETURNED, // with a result, or with null and the warning to raise
    FATAL,    // a fatal error is to go on
};

// Copies of the template's text that are made outside the engine's allocator:
// the interface's, the template's, and the reader's.
constexpr size_t COPIES_OF_TEMPLATE = 3;

EngineString render(const Arguments& arguments, PHPInterface& phpInterface, bool& started)
{
    if (arguments.stringMode) {
        phpInterface.engineCall.charge(COPIES_OF_TEMPLATE * arguments.fileName.size());
    }
    Template page(phpInterface.fileName, phpInterface, arguments.stringMode);
    started = true;
    page.analyzeTemplate();
    return page.getResultString();
}

// What the warning is to say when there is no memory left to make a text of it.
constexpr const char* NO_MEMORY = "std::bad_alloc";

// The text of the warning that a failed call is to raise; empty when PHP has
// something to tell itself.
std::string renderOrFail(const Arguments& arguments, PHPInterface& phpInterface,
    EngineString& result)
{
    bool started = false;
    try {
        if (!arguments.valid) {
            throw std::runtime_error("Error while parsing parameters");
        }
        if (arguments.tooDeep) {
            throwError("Template nesting is too deep in ", arguments.fileName);
        }
        result = render(arguments, phpInterface, started);
        // Closing the template's stream may have run user code.
        phpInterface.engineCall.leaveIfAbandoned();
    } catch (const std::exception& failure) {
        // What PHP has thrown meanwhile says more. Bad arguments and a file that
        // cannot be opened are told by both.
        if (!started || EG(exception) == nullptr) {
            return disarmFormat(failure.what());
        }
    } catch (const CallAbandoned&) {
        result = EngineString();
    }
    return {};
}

// Renders into `result`, or leaves the warning to raise, if any, in `warning`.
// All C++ objects of the call are gone when it returns.
Ending call(const Arguments& arguments, zend_string** result, zend_string** warning) noexcept
{
    try {
        PHPInterface phpInterface(std::string(arguments.fileName), arguments.userData);
        EngineCall& engineCall = phpInterface.engineCall;
        EngineString text;
        const std::string failure = renderOrFail(arguments, phpInterface, text);
        if (!failure.empty()) {
            engineCall.attempt(
                [&] { *warning = zend_string_init(failure.data(), failure.size(), false); });
        }
        *result = text.release();
        return engineCall.fatal() ? Ending::FATAL : Ending::RETURNED;
    } catch (const std::exception&) {
        // Not even the call's own objects could be made.
        return runGuarded(
                   [](void* made) {
                       *static_cast<zend_string**>(made)
                           = zend_string_init(NO_MEMORY, std::strlen(NO_MEMORY), false);
                   },
                   warning)
            ? Ending::RETURNED
            : Ending::FATAL;
    }
}

// The message itself is the format: that is how a '%' in a file name or in a
// template has always come out, and it has been disarmed where it could harm.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
void raiseWarning(void* message)
{
    zend_error(E_WARNING, static_cast<const char*>(message));
}
#pragma GCC diagnostic pop

// The whole call, the warning included.
Ending callAndWarn(Arguments arguments, zend_string** result)
{
    const NestingLevel level(NestingLevel::CALL);
    const FiberGuard fiber;
    if (UNEXPECTED(level.beyondTooDeep())) {
        // Another warning would call its handler again, and so on without end.
        zend_throw_error(nullptr, "Maximum call stack size reached. Infinite recursion?");
        return Ending::RETURNED;
    }
    arguments.tooDeep = level.tooDeep();
    zend_string* warning = nullptr;
    Ending ending = call(arguments, result, &warning);
    // The warning may run user code that ends the request, so it is raised here,
    // where nothing is left to destroy.
    if (warning != nullptr) {
        if (ending == Ending::RETURNED && !EngineCall::outOfMemory()
            && !runGuarded(raiseWarning, ZSTR_VAL(warning))) {
            ending = Ending::FATAL;
        }
        zend_string_release(warning);
    }
    return ending;
}

}

extern "C" {

ZEND_DLEXPORT ZEND_FUNCTION(template);
ZEND_DLEXPORT PHP_MINIT_FUNCTION(template);
extern ZEND_DLEXPORT zend_module_entry template_module_entry;

#include "template_arginfo.h"

ZEND_FUNCTION(template)
{
    char* fileName = nullptr;
    size_t length = 0;
    zval* userData = nullptr;
    bool stringMode = false;
    const bool valid = zend_parse_parameters(ZEND_NUM_ARGS(), "sa|b", &fileName, &length,
                           &userData, &stringMode)
        == SUCCESS;
    zend_string* result = nullptr;
    if (callAndWarn({valid, valid ? std::string_view(fileName, length) : std::string_view(),
                        userData, stringMode},
            &result)
        == Ending::FATAL) {
        zend_bailout();
    }
    if (result == nullptr) {
        RETURN_NULL();
    }
    RETURN_STR(result);
}

PHP_MINIT_FUNCTION(template)
{
    (void) type;
    (void) module_number;
    return SUCCESS;
}

zend_module_entry template_module_entry = {
    STANDARD_MODULE_HEADER,
    "template",
    ext_functions,
    PHP_MINIT(template),
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    "2.0.0",
    STANDARD_MODULE_PROPERTIES,
};

ZEND_GET_MODULE(template)
}
