// The fuzz targets: one PHP request for each input. FUZZ_TARGET says which: in
// render and modes (harness.php) the engine's own memory is in reach of the
// sanitizer, in limits (limits.php) memory and time are as in any PHP.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "engine/headers.h"
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>

#include "tests/memory/fibers.h"
#endif

extern "C" {
#include "SAPI.h"
#include "main/php_main.h"
#include "sapi/embed/php_embed.h"

extern zend_module_entry template_module_entry;
}

namespace {

// A time limit well below the fuzzer's, so that a template that runs away must
// end by it, and a hard one that ends the process if it does not.
constexpr char INI[] = "error_reporting=-1\n"
                       "display_errors=0\n"
                       "log_errors=0\n"
                       "html_errors=0\n"
                       "memory_limit=32M\n"
                       "max_execution_time=1\n"
                       "hard_timeout=10\n"
                       // The same PHP script serves each request: compiled once.
                       "zend_extension=opcache\n"
                       "opcache.enable=1\n"
                       "opcache.enable_cli=1\n"
                       "opcache.validate_timestamps=0\n"
                       "opcache.jit=off\n";

// Ends the process so that the fuzzer keeps the input.
PHP_FUNCTION(abort)
{
    ZEND_PARSE_PARAMETERS_NONE();
    std::abort();
}

ZEND_BEGIN_ARG_INFO_EX(arginfo_abort, 0, 0, 0)
ZEND_END_ARG_INFO()

const zend_function_entry FUNCTIONS[] = {PHP_FE(abort, arginfo_abort) PHP_FE_END};

size_t discard(const char*, size_t length)
{
    return length;
}

int startUp(sapi_module_struct* sapi)
{
    const int started = php_module_startup(sapi, &template_module_entry);
#if __has_feature(address_sanitizer)
    fibers::watch();
#endif
    return started;
}

void setVariable(const char* name, const char* data, size_t size)
{
    zval value;
    ZVAL_STRINGL(&value, data, size);
    zend_hash_str_update(&EG(symbol_table), name, std::strlen(name), &value);
}

}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
#if __has_feature(address_sanitizer)
    // Each allocation of the engine's is one of malloc's; those that a fatal
    // error leaves behind are still freed with the request, and the limit holds.
    setenv("USE_ZEND_ALLOC", "0", 1);
    setenv("USE_TRACKED_ALLOC", "1", 1);
#endif
    zend_signal_startup();
    sapi_module_struct& sapi = php_embed_module;
    sapi_startup(&sapi);
    sapi.name = const_cast<char*>("cli");
    sapi.php_ini_ignore = 1;
    sapi.ini_entries = INI;
    sapi.ub_write = discard;
    sapi.additional_functions = FUNCTIONS;
    sapi.startup = startUp;
    // What PHP keeps until its end is no leak; it is not shut down here.
#if __has_feature(address_sanitizer)
    __lsan_disable();
#endif
    const int started = sapi.startup(&sapi);
#if __has_feature(address_sanitizer)
    __lsan_enable();
#endif
    if (started == FAILURE) {
        std::fputs("PHP does not start.\n", stderr);
        std::exit(1);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (php_request_startup() == FAILURE) {
        std::abort();
    }
    zend_first_try {
        setVariable("input", reinterpret_cast<const char*>(data), size);
        setVariable("target", FUZZ_TARGET, std::strlen(FUZZ_TARGET));
        zend_file_handle script;
        zend_stream_init_filename(&script, FUZZ_FOLDER "/request.php");
        php_execute_script(&script);
        zend_destroy_file_handle(&script);
    } zend_end_try();
    php_request_shutdown(nullptr);
    return 0;
}
