// Message assertions: a helper that gathers the message; the caller aborts behind it.
#pragma once

#include <Oru/String.h>

#include <functional>
#include <sstream>
#include <string>

namespace Oru {

// Gathers the message of a failed assertion; its end hands expression and message to the sink.
// It does not abort: its maker calls __assert_fail afterwards. What a sink throws is dropped.
class ORU_API SassertHelper {
public:
   explicit SassertHelper( const char* expression );
   ~SassertHelper();
   SassertHelper( const SassertHelper& ) = delete;
   SassertHelper& operator=( const SassertHelper& ) = delete;

   std::ostream& stream() { return message_; }

private:
   const char* expression_;
   std::ostringstream message_;
};

// Where messages go; an empty function restores the default, which writes
// "assertion <expression>: <message>" to standard error.
ORU_API void sassertSinkIs(
   std::function<void( const std::string& expression, const std::string& message )> sink );

} // namespace Oru
