// What the registry knows of one pair of a table, asked once and kept for any number of entries.
#pragma once

#include "Chips.h"
#include "Values.h"

#include <Hardware/Registry.h>
#include <Kelvar/AsicBase.h>
#include <Kelvar/Types.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Vorn {

// A pair of a table as a person writes it.
struct PairText {
   std::string table;
   std::string chip; // name or number
   std::string variant = "0";
};

// Where an entry of a memory lies, as a caller says it.
struct Place {
   U64 entry = 0;
   U64 array = 0;
   U64 identifier = 0;

   bool operator==( const Place& ) const = default;
};

// Where it lies, as the chip's S-channel says it.
struct Address {
   U32 schanAddress = 0;
   U8 accessType = 0;
   U8 destBlock = 0;

   bool operator==( const Address& ) const = default;
};

class Plan {
public:
   // A field that exists for the pair.
   struct Field {
      U32 identifier;
      std::string_view name;
      U16 offset;
      U16 width;
      bool readOnly;
   };

   // A field whose value is the same in every entry of the pair.
   struct TagField {
      const Field* field; // among fields()
      U64 value;

      bool operator==( const TagField& ) const = default;
   };

   // An unknown table, chip type or variant and a pair that the table lacks are Errors.
   Plan( std::string_view table, const Chip& chip, U64 variant );
   explicit Plan( const PairText& pair );

   std::string_view table() const { return table_; }
   const Chip& chip() const { return chip_; }
   U8 variant() const { return variant_; }
   const Hardware::PairInfo& info() const { return info_; }

   // The fields of the pair in their declared order.
   std::span<const Field> fields() const { return fields_; }

   // The field's position in fields(). A field that the pair lacks and a read-only one are Errors.
   std::size_t settable( std::string_view name ) const;

   // Bytes of an entry as the hardware has it, and a fresh entry of at least that many.
   std::size_t imageBytes() const { return std::size_t( info_.width ) * 4; }
   std::span<const U8> blank() const { return { view_->buf(), view_->len() }; }

   // Nothing where the pair has no address. A place out of range is an Error.
   std::optional<Address> address( const Place& place ) const;

   // The constants that tell entries of the pair from others; none where a fresh entry is all zero.
   std::vector<TagField> tag() const;

   // "LifTable on BCM88690_B0 variant 3"; the variant is left out where there is no other.
   std::string pairText() const;

   // Its end alone, " variant 3" or nothing.
   std::string variantText() const;

private:
   [[noreturn]] void refuseField( std::string_view name ) const;

   std::string_view table_;
   const Chip& chip_;
   U8 variant_ = 0;
   Hardware::PairInfo info_;
   std::shared_ptr<Kelvar::AsicBase> view_;
   std::vector<Field> fields_;
   std::unordered_map<std::string_view, std::size_t> positions_;
};

// The plans of a chip type's pairs, in registry order.
std::vector<Plan> plansOn( const Chip& chip );

} // namespace Vorn
