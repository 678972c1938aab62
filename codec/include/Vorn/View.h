// The fields of a view of the library, for code that has only a `Kelvar::AsicBase&`.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>
#include <Vorn/Value.h>

#include <Kelvar/AsicBase.h>
#include <Kelvar/Types.h>

#include <span>
#include <string_view>

namespace Vorn {

// The layout of the view's entries, which lives as long as the program. A view of none of the
// classes is an Error.
//
//    void show( const Kelvar::AsicBase& view ) {
//       for( const Vorn::Field& field : Vorn::layoutOf( view ).fields() ) {
//          std::cout << field.name << ' ' << hexOf( Vorn::valueOf( view, field.name ) ) << '\n';
//       }
//    }
VORN_API const Layout& layoutOf( const Kelvar::AsicBase& view );

// The view's entry: the bytes that it stands over, as many as it was given.
VORN_API std::span<const U8> entryOf( const Kelvar::AsicBase& view );

// The value of a field of any width, by its name or its identifier. A field that the pair lacks,
// and an entry that ends before the field does, are Errors.
VORN_API Value valueOf( const Kelvar::AsicBase& view, std::string_view field );
VORN_API Value valueOf( const Kelvar::AsicBase& view, U32 identifier );

// Sets a field of any width in the view's entry. A value too large for it, a read-only field, one
// that the pair lacks, and an entry that ends before the field does are Errors.
VORN_API void setValue( Kelvar::AsicBase& view, std::string_view field, const Value& value );
VORN_API void setValue( Kelvar::AsicBase& view, U32 identifier, const Value& value );

// These functions access the bits of the entry directly, not through the view: nothing asserts,
// nothing traces, and no primitive of the platform is called.

} // namespace Vorn
