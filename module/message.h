// The text of a failure on its way to PHP's warning.
#ifndef TEMPLATE_MODULE_MESSAGE_H
#define TEMPLATE_MODULE_MESSAGE_H

#include <string>
#include <string_view>

// The warning's text is the engine's format string itself, without arguments.
// Returns `message` with every conversion disarmed (its '%' doubled, so that it
// shows as it was written) that would fetch an argument nobody passed, or that
// has a width or precision beyond reason. All else is left to the formatter:
// "%%" becomes "%".
std::string disarmFormat(std::string_view message);

#endif
