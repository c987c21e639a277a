PHP_ARG_ENABLE([template],
  [whether to enable the template engine],
  [AS_HELP_STRING([--enable-template],
    [Enable the template engine])],
  [yes])

if test "$PHP_TEMPLATE" != "no"; then
  AC_LANG_PUSH([C])
  dnl The module is built for one engine interface, and says so before the
  dnl compiler does.
  AC_MSG_CHECKING([for PHP 8.4 (API 20240924), non-thread-safe, non-debug])
  old_CPPFLAGS=$CPPFLAGS
  CPPFLAGS="$CPPFLAGS $INCLUDES -I$phpincludedir"
  AC_PREPROC_IFELSE([AC_LANG_SOURCE([
#include <main/php_config.h>
#include <Zend/zend_modules.h>
#if ZEND_MODULE_API_NO != 20240924 || defined(ZTS) || ZEND_DEBUG
#error other PHP
#endif
  ])],
    [AC_MSG_RESULT([yes])],
    [AC_MSG_RESULT([no])
     AC_MSG_ERROR([this extension needs PHP 8.4 (API 20240924), built non-thread-safe (NTS) and without debugging; name its php-config with --with-php-config])])
  CPPFLAGS=$old_CPPFLAGS
  AC_LANG_POP([C])

  PHP_REQUIRE_CXX()
  TEMPLATE_CXXFLAGS="-std=c++23 -fvisibility=hidden -fvisibility-inlines-hidden"

  AC_LANG_PUSH([C++])
  AC_MSG_CHECKING([whether $CXX has what we use of C++23])
  old_CXXFLAGS=$CXXFLAGS
  CXXFLAGS="$CXXFLAGS $TEMPLATE_CXXFLAGS"
  AC_COMPILE_IFELSE([AC_LANG_SOURCE([
#include <string>
#ifndef __cpp_lib_string_resize_and_overwrite
#error too old
#endif
  ])],
    [AC_MSG_RESULT([yes])],
    [AC_MSG_RESULT([no])
     AC_MSG_ERROR([this extension needs a C++23 compiler and library: g++ 12, clang 16 or newer; name yours with CXX])])
  CXXFLAGS=$old_CXXFLAGS
  AC_LANG_POP([C++])

  TEMPLATE_SOURCES="
    input/input.cpp
    input/plain_file.cpp
    module/engine.cpp
    module/fiber_guard.cpp
    module/message.cpp
    module/module.cpp
    module/php_interface.cpp
    render/compiled_path.cpp
    render/dynamic_block.cpp
    render/escaping_block.cpp
    render/lookup.cpp
    render/optional_block.cpp
    render/render.cpp
    render/value_text.cpp
    render/variable_block.cpp
    template/dynamic_block.cpp
    template/error.cpp
    template/escaping_block.cpp
    template/include_block.cpp
    template/optional_block.cpp
    template/reference.cpp
    template/tag.cpp
    template/template.cpp
    template/variable_block.cpp
  "

  PHP_NEW_EXTENSION([template],
    [$TEMPLATE_SOURCES],
    [$ext_shared],,
    [$TEMPLATE_CXXFLAGS -I@ext_srcdir@ -I@ext_builddir@],
    [cxx])
  dnl PHP loads modules with RTLD_GLOBAL: everything but the module's own four
  dnl symbols stays inside it.
  TEMPLATE_SHARED_LIBADD="-Wl,--version-script=$ext_srcdir/module/exports.map"
  PHP_SUBST([TEMPLATE_SHARED_LIBADD])
  PHP_ADD_BUILD_DIR([$ext_builddir/input])
  PHP_ADD_BUILD_DIR([$ext_builddir/module])
  PHP_ADD_BUILD_DIR([$ext_builddir/render])
  PHP_ADD_BUILD_DIR([$ext_builddir/template])
fi
