// The notations in which people write the values of fields.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Value.h>

#include <Kelvar/Types.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

enum class Notation : U8 { decimal, hexadecimal, binary, ipv4, ipv6, mac };

// Their names for people, in this order: "decimal", "hexadecimal", "binary", "IPv4", "IPv6", "MAC".
VORN_API std::span<const std::string_view> notationNames();

// The notation of that name; else an Error.
VORN_API Notation notationNamed( std::string_view name );

// The notations for a field of that width in bits: always those of numbers, and that of an address
// if the field is exactly as wide.
VORN_API std::vector<Notation> notationsOf( unsigned width );

// The value in the notation, so that parseValue() reads the same value again: "10", "0xa",
// "0b1010", "0.0.0.10", "::a", "00:00:00:00:00:0a". A value too wide for an address is an Error.
VORN_API std::string textOf( const Value& value, Notation notation );

} // namespace Vorn
