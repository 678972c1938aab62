// The fields of an entry in bit order, and the bits that belong to none.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace Vorn {

// The fields of a layout, sorted by their place in the entry.
//
//    const Vorn::BitOrder order( Vorn::Layout( "LifTable", 10 ) );
//    for( const auto& field : order.fields() ) { ... field.offset, field.lane ... }
class VORN_API BitOrder {
public:
   struct Field : Vorn::Field {
      std::size_t lane; // fields in one lane don't overlap; lane 0 has the most fields
   };

   // Adjacent bits that belong to no field, as many as possible.
   struct Run {
      unsigned offset;
      unsigned width;

      bool operator==( const Run& ) const = default;
   };

   explicit BitOrder( const Layout& layout );

   // In order of the offset; of two at the same offset, the wider first.
   std::span<const Field> fields() const { return fields_; }
   std::span<const Run> unused() const { return unused_; }
   unsigned unusedBits() const;

   // The largest number of fields that share a bit; at least 1.
   std::size_t lanes() const { return lanes_; }

   // The size of an entry in 32-bit words.
   unsigned words() const { return words_; }

   // The same fields at the same bits of an entry of the same size.
   bool operator==( const BitOrder& other ) const;

private:
   void findUnused();
   void assignLanes();

   unsigned words_;
   std::vector<Field> fields_;
   std::vector<Run> unused_;
   std::size_t lanes_ = 1;
};

} // namespace Vorn
