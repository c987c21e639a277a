// The text of a failure on its way to PHP's warning.
#ifndef TEMPLATE_MODULE_MESSAGE_H
#define TEMPLATE_MODULE_MESSAGE_H

#include "engine/text.h"

// The warning's text is the engine's format string itself, without arguments.
// Returns `message`, as a PHP string, with every conversion disarmed (its '%' doubled, so that it
// shows as it was written) that would fetch an argument nobody passed, or that
// has a width or precision beyond reason. All else is left to the formatter:
// "%%" becomes "%".
EngineString disarmFormat(std::string_view message);

#endif
