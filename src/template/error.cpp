#include "template/error.h"

void throwError(std::string_view prefix, std::string_view file)
{
    throw Failure({prefix, file});
}

void throwError(std::string_view prefix, std::string_view argument, std::string_view suffix,
    std::string_view file)
{
    throw Failure({prefix, argument, suffix, file});
}

void throwTooDeep(std::string_view file)
{
    throwError("Template nesting is too deep in ", file);
}
