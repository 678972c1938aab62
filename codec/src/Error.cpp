// Bad input, reported in one line for a person.
#include <Vorn/Error.h>

namespace Vorn {

Error::Error( const std::string& message ) : std::runtime_error( message ), message_( message ) {}

Error::Error( const std::string& place, const std::string& message )
   : std::runtime_error( place + ": " + message ), place_( place ), message_( message ) {}

Error::~Error() = default;

} // namespace Vorn
