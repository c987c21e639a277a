// The module and its function: the boundary where failures become PHP warnings,
// and where calls that PHP itself has put an end to are handed back to it.
#include <stdexcept>
#include <string>
#include <utility>

#include "module/message.h"
#include "module/php_interface.h"
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

// Renders into `result`, or leaves the warning to raise, if any, in `warning`.
// All C++ objects of the call are gone when it returns.
Ending call(const Arguments& arguments, zend_string** result, zend_string** warning) noexcept
{
    PHPInterface phpInterface(std::string(arguments.fileName), arguments.userData);
    EngineCall& engineCall = phpInterface.engineCall;
    bool started = false;
    std::string failure;
    try {
        if (!arguments.valid) {
            throw std::runtime_error("Error while parsing parameters");
        }
        EngineString text = render(arguments, phpInterface, started);
        // Closing the template's stream may have run user code.
        engineCall.leaveIfAbandoned();
        *result = text.release();
    } catch (const std::exception& exception) {
        // What PHP has thrown meanwhile says more. Bad arguments and a file that
        // cannot be opened are told by both.
        if (!started || EG(exception) == nullptr) {
            failure = disarmFormat(exception.what());
        }
    } catch (const CallAbandoned&) {
        if (*result != nullptr) {
            zend_string_release(std::exchange(*result, nullptr));
        }
    }
    if (!failure.empty()) {
        engineCall.attempt(
            [&] { *warning = zend_string_init(failure.data(), failure.size(), false); });
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
    zend_string* warning = nullptr;
    Ending ending = call({valid, valid ? std::string_view(fileName, length) : std::string_view(),
                             userData, stringMode},
        &result, &warning);
    // The warning may run user code that ends the request, so it is raised here,
    // where nothing is left to destroy.
    if (warning != nullptr) {
        if (ending == Ending::RETURNED && !EngineCall::outOfMemory()
            && !runGuarded(raiseWarning, ZSTR_VAL(warning))) {
            ending = Ending::FATAL;
        }
        zend_string_release(warning);
    }
    if (ending == Ending::FATAL) {
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
