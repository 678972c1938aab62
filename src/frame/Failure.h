// Broken contracts: assertions with the exact texts that callers and tests rely on.
#pragma once

#include "ClassData.h"
#include "Text.h"

#include <Hardware/FieldId.h>
#include <Oru/Sassert.h>

namespace Hardware::Frame {

// The catalogue's row of an identifier that is in use.
const CatalogueRow& catalogueRowOf( U32 identifier );

// The function's full text, "void Hardware::TcamActionTable::actionIs(U32)".
Text signatureOf( const ClassData& data, Site site );
// The name alone, "actionIs".
Text shortNameOf( const ClassData& data, Site site );
// The chip type as its stream output prints it.
Text printed( U8 chipType );

// Plain assertion: the expression text as it is.
[[noreturn, gnu::cold]] void fail( const char* expression, int line, const char* signature );
// Message assertion: `write` gives the message to Oru::SassertHelper's stream; the expression text
// is then "\"<expression>\" == nullptr".
template<class Write>
[[noreturn, gnu::cold]] void failWithMessage( const char* expression, int line,
                                              const char* signature, Write write ) {
   {
      Oru::SassertHelper helper( expression );
      write( helper.stream() );
   }
   fail( Text( "\"", expression, "\" == nullptr" ).c_str(), line, signature );
}

[[noreturn, gnu::cold]] void fail( const ClassData& data, Site site, const char* expression );
[[noreturn, gnu::cold]] void failWithMessage( const ClassData& data, Site site,
                                              const char* expression, const char* message );

// "len_ >= <bytes>"
[[noreturn, gnu::cold]] void failLength( const ClassData& data, Site site, unsigned bytes );
// "<f> <= 0x<max>"
[[noreturn, gnu::cold]] void failBound( const ClassData& data, Site site, U64 maximum );
// A pair without the field: "0", or "variant_ == V" if the chip type has it in V alone; from
// `<f>Len()` the message "<chip type> does not have field <hardware name>".
[[noreturn, gnu::cold]] void failAbsent( const ClassData& data, Site site, U8 chipType );
// An invalid pair passed as arguments: "0", or "variant == 0".
[[noreturn, gnu::cold]] void failPair( const ClassData& data, Site site, U32 chipType );
// An invalid pair of a view: "0", or "variant_ == V".
[[noreturn, gnu::cold]] void failViewPair( const ClassData& data, Site site, U8 chipType );
// A pair that the constructor doesn't know.
[[noreturn, gnu::cold]] void failConstruction( const ClassData& data, Site site, U8 chipType,
                                               U8 variant );
// A tag field that doesn't hold its value.
[[noreturn, gnu::cold]] void failTag( const ClassData& data, Site site, Cell cell, U8 value );

} // namespace Hardware::Frame
