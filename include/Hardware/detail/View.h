// What the headers of the views share: base class, exports, identifiers, and the types of
// arguments, whole entries and fields.
#pragma once

#include <Hardware/ChipType.h>
#include <Hardware/Export.h>
#include <Hardware/FieldId.h>
#include <Hardware/detail/WholeEntry.h>
#include <Kelvar/BcmAsicBase.h>
#include <Kelvar/Types.h>
#include <Oru/String.h>

#include <string_view>
#include <type_traits>

namespace Hardware {
namespace Detail {

// How a setter takes its value: up to 32 bits by value, anything larger by reference.
template<class Value>
using Argument = std::conditional_t<( sizeof( Value ) <= sizeof( U32 ) ), Value, const Value&>;

// What the fields of all classes have: the base of `Fields::<Class>::<f>`.
template<class View_, class Value_, U32 identifier_, bool readOnly_>
struct Field {
   using View = View_;   // the class
   using Value = Value_; // the getter's type
   static constexpr U32 identifier = identifier_;
   static constexpr bool readOnly = readOnly_; // a tag field
   static constexpr bool wide = sizeof( Value ) > sizeof( U64 );
};

} // namespace Detail
} // namespace Hardware
