// Bad input, reported in one line for a person.
#pragma once

#include <Vorn/Export.h>

#include <stdexcept>
#include <string>

namespace Vorn {

// Thrown by every function of this library for bad input. what() says in one line what is wrong and
// what would be right, as `vorn` prints it after its own name:
//
//    no field "vlanDomian" in EgressPerPortTable on BCM88690_B0; did you mean vlanDomain?
//
// If the input has a place, such as a line of a file, the message begins with it:
//
//    images.txt:3:17: bad digit "g" in "0g"; write two hexadecimal digits for each byte, ...
//
// A function that throws an Error has written nothing.
class VORN_API Error : public std::runtime_error {
public:
   explicit Error( const std::string& message );
   Error( const std::string& place, const std::string& message );
   ~Error() override;

   // The line without its place.
   const std::string& message() const { return message_; }

   // "images.txt:3:17", or nothing.
   const std::string& place() const { return place_; }

private:
   std::string place_;
   std::string message_;
};

} // namespace Vorn
