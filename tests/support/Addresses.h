// Where an entry lies, as one value that can be compared and printed.
#pragma once

#include <Hardware/ChipType.h>
#include <Kelvar/Types.h>

#include <gtest/gtest.h>

#include <ostream>
#include <utility>

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

// Whether getSchanAddress refuses the pair softly, and leaves its outputs alone.
template<class View>
bool hasNoAddress( Hardware::ChipType chipType, unsigned variant ) {
   U32 address = 0xdeadbeef;
   U8 accessType = 0xaa;
   U8 destBlock = 0xbb;
   const bool found = View::getSchanAddress( chipType, static_cast<U8>( variant ), address,
                                             accessType, destBlock, 0, 0, 0 );
   return !found && address == 0xdeadbeef && accessType == 0xaa && destBlock == 0xbb;
}

// The hardware block of an instance: memories of one block agree in both numbers.
template<class View>
std::pair<unsigned, unsigned> blockOf( Hardware::ChipType chipType, unsigned variant,
                                       unsigned identifier ) {
   const Address where = addressOf<View>( chipType, variant, identifier, 0 );
   return { where.accessType, where.destBlock };
}

} // namespace Testing
