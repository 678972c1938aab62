// vorn in this process, and what has to hold of whatever it prints.
#pragma once

#include "support/Bits.h"
#include "support/Lines.h"

#include <Io.h>
#include <Vorn/Layout.h>
#include <verbs/Encode.h>
#include <verbs/Program.h>

#include <fuzzer/FuzzedDataProvider.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Fuzz {

using Json = nlohmann::ordered_json;

struct Outcome {
   std::string out;
   std::string error; // the line on standard error, empty where there is none
   int status;

   bool operator==( const Outcome& ) const = default;
};

// What the part of vorn does with this standard input. Of what it throws, an Error is an outcome;
// all else is passed on. What it prints ends at a megabyte, as on a full device.
Outcome outcomeOf( const std::function<void( Vorn::Output& )>& part, std::string_view input = {} );

// Whether vorn takes the bytes as they are: compressed ones are for another fuzzer.
bool isPlain( std::string_view input );

// The outcome of `vorn encode`.
Outcome encoded( const Vorn::EncodeArguments& arguments );

// The outcome of `vorn program -` with this input, where repeats are allowed.
Outcome programmed( Vorn::ProgramArguments arguments, std::string_view input );

using Testing::linesOf;

// The lines of what is printed, each of which has to have an end.
std::vector<std::string> linesPrinted( const std::string& text );

// The objects that lines of JSON write. What is no JSON throws.
std::vector<Json> objectsIn( const std::string& lines );

// The input up to the line that the error names, in which there has to be such a column.
std::string linesBefore( const std::string& error, const std::string& input );

// Any of all pairs.
const Vorn::PairText& somePair( FuzzedDataProvider& input );
const Vorn::Layout& someLayout( FuzzedDataProvider& input );

// Any of the items.
template<class Items>
auto& someOf( FuzzedDataProvider& input, Items& items ) {
   return items[input.ConsumeIntegralInRange( std::size_t( 0 ), std::size( items ) - 1 )];
}

// The pair that an object of JSON names.
Vorn::PairText pairIn( const Json& object );

// The bytes that pairs of hexadecimal digits write, and the digits again.
Testing::Image imageIn( const std::string& digits );
std::string digitsOf( const Testing::Image& image );

// An image of the layout with these bytes, as far as there are any, and its tag.
Testing::Image tagged( const Vorn::Layout& layout, Testing::Image image );

// A field's value in an object of JSON as the forms for people have it: 0x and digits.
std::string valueText( const Json& value );

// The number that a text writes in any notation, which vorn has taken; nothing where that is a
// decimal one beyond 64 bits.
std::optional<Testing::Bits> numberIn( std::string text );

// Requires that the fields in a line of `vorn decode --json` are those of the image in it, and that
// `vorn encode` makes the same image of them.
void requireRoundTrip( const Json& decoded );

} // namespace Fuzz
