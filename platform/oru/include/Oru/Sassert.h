// Message assertions: a helper that collects the message; the caller aborts after it.
#pragma once

#include <Oru/String.h>

#include <functional>
#include <sstream>
#include <string>

namespace Oru {

// Collects the message of a failed assertion; its destructor passes expression and message to the
// sink. It does not abort: the caller then calls __assert_fail. Exceptions from a sink are dropped.
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
