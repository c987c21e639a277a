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
  dnl The last line is beyond clang 16 and 17 with the library of g++ 14.
  AC_COMPILE_IFELSE([AC_LANG_PROGRAM([[
#include <string>
#include <string_view>
#include <unordered_map>
  ]], [[
    std::string text;
    text.resize_and_overwrite(8, [](char *, std::size_t most) { return most; });
    std::unordered_map<std::string_view, int>().try_emplace(std::string_view(text), 1);
  ]])],
    [AC_MSG_RESULT([yes])],
    [AC_MSG_RESULT([no])
     AC_MSG_ERROR([this extension needs a C++23 compiler and library: g++ 12, clang 18 or newer; name yours with CXX])])
  CXXFLAGS=$old_CXXFLAGS
  AC_LANG_POP([C++])

  dnl A folder for each part of the engine, and all that is in it.
  TEMPLATE_SOURCES=$(cd "PHP_EXT_SRCDIR([template])" && printf '%s ' src/*/*.cpp)

  PHP_NEW_EXTENSION([template],
    [$TEMPLATE_SOURCES],
    [$ext_shared],,
    [$TEMPLATE_CXXFLAGS -I@ext_srcdir@/src -I@ext_srcdir@ -I@ext_builddir@],
    [cxx])
  dnl PHP loads modules with RTLD_GLOBAL: everything but the module's own four
  dnl symbols stays inside it.
  TEMPLATE_SHARED_LIBADD="-Wl,--version-script=$ext_srcdir/src/module/exports.map"
  PHP_SUBST([TEMPLATE_SHARED_LIBADD])
  for TEMPLATE_FOLDER in $(printf '%s\n' $TEMPLATE_SOURCES | sed 's,/[[^/]]*$,,' | sort -u); do
    PHP_ADD_BUILD_DIR([$ext_builddir/$TEMPLATE_FOLDER])
  done
fi
