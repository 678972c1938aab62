// The one exception of the program: bad input, told in one line for a person.
#pragma once

#include <stdexcept>
#include <string>

namespace Vorn {

// Ends the program with status 1 and its message on standard error, after "vorn: " or, where it
// has a place such as "entries.jsonl:3", after that place.
class Error : public std::runtime_error {
public:
   explicit Error( const std::string& message )
      : std::runtime_error( "vorn: " + message ), message_( message ) {}
   Error( const std::string& place, const std::string& message )
      : std::runtime_error( place + ": " + message ), message_( message ) {}

   // The message without what stands before it.
   const std::string& message() const { return message_; }

private:
   std::string message_;
};

} // namespace Vorn
