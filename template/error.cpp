#include "template/error.h"

#include <stdexcept>
#include <string>

void throwError(std::string_view prefix, std::string_view file)
{
    throwError(prefix, {}, {}, file);
}

void throwError(std::string_view prefix, std::string_view argument, std::string_view suffix,
    std::string_view file)
{
    std::string message;
    message.reserve(prefix.size() + argument.size() + suffix.size() + file.size());
    message.append(prefix).append(argument).append(suffix).append(file);
    throw std::runtime_error(message);
}
