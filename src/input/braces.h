// The search for braces: plain text is most of a template, and this is all that is
// done to it.
#ifndef TEMPLATE_INPUT_BRACES_H
#define TEMPLATE_INPUT_BRACES_H

// The first brace of either kind in [from, end), or `end`.
const char* findBrace(const char* from, const char* end);

// A blank behind a brace in the text makes the brace literal. Form feed and vertical tab are
// no such blanks: they open a tag, and templates may rely on it.
inline bool isLiteralBehindBrace(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

// The first brace in [from, end) that is not simply text together with the byte
// behind it: a tag, two braces that stand for one, or a brace at the end.
const char* findBraceInText(const char* from, const char* end);

#endif
