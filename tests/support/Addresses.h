// Where an entry lies, as one value that can be compared and printed.
#pragma once

#include <Hardware/ChipType.h>
#include <Kelvar/Types.h>

#include <gtest/gtest.h>

#include <ostream>

namespace Testing {

struct Address {
   U32 address = 0;
   unsigned accessType = 0;
   unsigned destBlock = 0;

   bool operator==( const Address& ) const = default;
};

inline std::ostream& operator<<( std::ostream& out, const Address& where ) {
   return out << "{ 0x" << std::hex << where.address << std::dec << ", " << where.accessType << ", "
              << where.destBlock << " }";
}

// The address of an entry in element 0, which must exist.
template<class View>
Address addressOf( Hardware::ChipType chipType, unsigned variant, unsigned identifier,
                   U32 tableEntry ) {
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;
   EXPECT_TRUE( View::getSchanAddress( chipType, static_cast<U8>( variant ), address, accessType,
                                       destBlock, static_cast<U16>( identifier ), tableEntry, 0 ) );
   return { address, accessType, destBlock };
}

} // namespace Testing
