// Hash and output of the run time's string.
#include <Oru/String.h>

#include <functional>
#include <ostream>

namespace Oru {

namespace Impl {

std::size_t StringData<char>::hash() const { return std::hash<std::string_view>()( text_ ); }

} // namespace Impl

std::ostream& operator<<( std::ostream& out, const String& text ) { return out << text.view(); }

} // namespace Oru
