// Observing failed assertions without losing the process.
//
// The test programs define __assert_fail themselves: it throws an AssertionFailure, which the
// functions here catch. The message of a message assertion is picked up on its way to the sink.
#pragma once

#include "Action.h"

#include <optional>
#include <string>

namespace Testing {

// What the C library's __assert_fail was given, and the message delivered before it, if any.
struct AssertionFailure {
   std::string expression;
   std::string file;
   unsigned line = 0;
   std::string function;
   std::optional<std::string> message;
};

// Runs `action`; the assertion it failed, or nothing if it returned.
std::optional<AssertionFailure> failureOf( Action action );

// The expression of the assertion that `action` fails; "none" if it returned.
std::string expressionOf( Action action );

} // namespace Testing
