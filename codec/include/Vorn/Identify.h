// Which pairs of a chip type an entry image may belong to, by its length and its tag.
#pragma once

#include <Vorn/Dump.h>
#include <Vorn/Export.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// Finds the pairs of a chip type that an image may belong to, with the reasons.
//
//    const Vorn::Identifier identifier( Vorn::chipOf( "BCM88690_B0" ) );
//    for( const Vorn::Layout& layout : identifier.layoutsOf( image ) ) { ... }
class VORN_API Identifier {
public:
   // A table that an image may belong to or can't, with the variants to which one reason applies.
   struct Verdict {
      std::string_view table;
      ChipVariants variants;
      std::string reason;
   };

   // Pairs with the same tag and length: nothing in an image distinguishes them.
   struct Group {
      std::vector<TagField> tag; // of the first pair
      std::vector<Verdict> members;
   };

   struct Verdicts {
      std::vector<Group>
         groups; // the one whose tag has the most bits first, one without a tag last
      std::vector<Verdict> ruledOut;
   };

   explicit Identifier( const Chip& chip ) : chip_( chip ), layouts_( layoutsOn( chip ) ) {}

   const Chip& chip() const { return chip_; }

   // All pairs of the chip type.
   std::span<const Layout> layouts() const { return layouts_; }

   // The pairs that the image may belong to: those with its length and its tag.
   std::vector<Layout> layoutsOf( std::span<const U8> image ) const;

   // The same with the reasons, and with the pairs that it can't belong to.
   Verdicts verdictsOn( std::span<const U8> image ) const;

   // Throws the reason why an image of that many bytes, for which there are no groups, belongs to
   // no pair.
   [[noreturn]] void refuse( std::size_t bytes ) const;

private:
   const Chip& chip_;
   std::vector<Layout> layouts_;
};

// Counts what the images of dumps may belong to, in memory that doesn't grow with them.
//
//    Vorn::DumpIdentifier counting( identifier );
//    counting.begin( bytes );
//    while( counting.next() ) {
//    }
//    counting.account().fits
class VORN_API DumpIdentifier {
public:
   // The pairs of one tag and length, and how many images may belong to them.
   struct Fit {
      std::size_t bytes;
      Identifier::Group group;
      U64 images;
   };

   struct Account {
      std::vector<Fit> fits; // those with a tag first; of these the one with the most images
      U64 images = 0;
      U64 empty = 0;      // all zeroes without a tag, though pairs of their length have one
      U64 byLength = 0;   // of which only the length fits
      U64 others = 0;     // that fit nothing
      std::string place;  // of the first of the others
      std::string reason; // why it fits nothing
   };

   // The identifier must outlive this object. What the images of dumps say of their own pairs is
   // ignored, except for the chip type. A stride that isn't 0 is the number of bytes from one entry
   // to the next in dumps of plain bytes; it is an Error if no entry is that short.
   explicit DumpIdentifier( const Identifier& identifier,
                            ImageFormat format = ImageFormat::automatic, std::size_t stride = 0 );
   DumpIdentifier( DumpIdentifier&& other ) noexcept;
   DumpIdentifier& operator=( DumpIdentifier&& other ) noexcept;
   ~DumpIdentifier();

   // Continues with these bytes, which must outlive the reading; counts from 0.
   void begin( ByteSource& bytes );

   // Looks at some more; false at the end. Bad input is an Error, as it is for DumpReader::next(),
   // and so is a dump where neither its length nor the tags in it decide how long its entries are.
   bool next();

   // What the images since begin() may belong to.
   Account account() const;

private:
   struct State;

   std::unique_ptr<State> state_;
};

} // namespace Vorn
