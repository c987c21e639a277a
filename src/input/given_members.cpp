// A member of Input that no call of template() reaches: it reads into a string.
#include "input/input.h"

bool Input::fillBufferTillMark(std::string& out, char mark)
{
    Text text;
    const bool found = fillBufferTillMark(text, mark);
    out += text.view();
    return found;
}
