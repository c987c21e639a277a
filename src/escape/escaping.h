// The four escaping tags' functions. A string at the top level of the user data is
// escaped in the charset of the request; what a section prints is escaped byte by
// byte, as ISO-8859-1. The two differ for text that is not ASCII, and pages depend
// on either, so neither may follow the other.
#ifndef TEMPLATE_ESCAPE_ESCAPING_H
#define TEMPLATE_ESCAPE_ESCAPING_H

#include "escape/byte_escaper.h"

enum class Escaping { ADDSLASHES, HTMLENTITIES, HTMLSPECIALCHARS, RAWURLENCODE };

// Appends a whole PHP string, escaped in the charset of the request, up to the first
// NUL of that. Text that is not valid in the charset comes to nothing in HTML.
void appendEscaped(Text& out, zend_string* text, Escaping escaping);

// The function for text that is escaped byte by byte. Made at its first use and kept
// for the life of the process.
const ByteEscaper& byteEscaper(Escaping escaping);

#endif
