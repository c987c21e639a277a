// The module and its function: the boundary where failures become PHP warnings,
// and where calls that PHP itself has put an end to are handed back to it.
#include "engine/failure.h"
#include "engine/fiber_guard.h"
#include "engine/stack.h"
#include "engine/stream_memory.h"
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
};

enum class Ending {
    RETURNED, // with a result, or with null and the warning to raise
    FATAL,    // a fatal error is to go on
};

EngineString render(const Arguments& arguments, bool& started)
{
    if (!arguments.valid) {
        throw std::runtime_error("Error while parsing parameters");
    }
    if (UNEXPECTED(!Stack::hasRoom(Stack::CALL))) {
        throw NestingTooDeep();
    }
    PHPInterface phpInterface(String(arguments.fileName), arguments.userData);
    EngineString result;
    {
        Template page(phpInterface.fileName, phpInterface, arguments.stringMode);
        started = true;
        page.analyzeTemplate();
        result = page.getResultString();
    }
    // Closing the template's stream may have run user code.
    EngineCall::current().leaveIfAbandoned();
    return result;
}

// The result, or the warning that a failed call is to raise. Neither when PHP has
// something to tell itself.
EngineString renderOrFail(const Arguments& arguments, EngineString& warning)
{
    bool started = false;
    try {
        try {
            return render(arguments, started);
        } catch (const NestingTooDeep&) {
            throwTooDeep(arguments.fileName);
        }
    } catch (const std::exception& failure) {
        // What PHP has thrown meanwhile says more. Bad arguments and a file that
        // cannot be opened are told by both.
        if (!started || EG(exception) == nullptr) {
            warning = disarmFormat(failure.what());
        }
    }
    return EngineString();
}

// All C++ objects of the call are gone when it returns.
Ending call(const Arguments& arguments, zend_string** result, zend_string** warning) noexcept
{
    EngineCall engineCall;
    FiberStack fiberStack(engineCall);
    // Most mails need no more than this.
    alignas(std::max_align_t) char first[2048];
    try {
        const CallMemory memory(engineCall, first);
        EngineString text;
        EngineString failure;
        text = renderOrFail(arguments, failure);
        *warning = failure.release();
        *result = text.release();
    } catch (const CallAbandoned&) {
        // The result is null.
    }
    return engineCall.fatal() ? Ending::FATAL : Ending::RETURNED;
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

// Another warning would call its handler again, and so on without end.
void refuseRecursion(void*)
{
    zend_throw_error(nullptr, "Maximum call stack size reached. Infinite recursion?");
}

// The whole call, the warning included.
Ending callAndWarn(const Arguments& arguments, zend_string** result)
{
    if (UNEXPECTED(Stack::reserveIsUsed())) {
        return runGuarded(refuseRecursion, nullptr) ? Ending::RETURNED : Ending::FATAL;
    }
    const FiberGuard fiber;
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
    const bool valid
        = zend_parse_parameters(ZEND_NUM_ARGS(), "sa|b", &fileName, &length, &userData, &stringMode)
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

static zend_result afterRequest()
{
    StreamMemory::afterRequest();
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
    NO_MODULE_GLOBALS,
    afterRequest,
    STANDARD_MODULE_PROPERTIES_EX,
};

ZEND_GET_MODULE(template)
}
