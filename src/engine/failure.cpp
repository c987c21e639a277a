#include "engine/failure.h"

Failure::Failure(std::initializer_list<std::string_view> pieces) : std::runtime_error("")
{
    size_t size = 0;
    for (const std::string_view piece : pieces) {
        size += piece.size();
    }
    Text text;
    text.reserve(size);
    for (const std::string_view piece : pieces) {
        text.append(piece);
    }
    message_ = text.release();
}
