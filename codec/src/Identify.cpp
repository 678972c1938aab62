// Which pairs of a chip type an entry image may belong to, by its length and its tag.
#include <Vorn/Identify.h>

#include <Vorn/Bits.h>
#include <Vorn/Error.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace Vorn {

namespace {

using Tag = std::span<const TagField>;

bool sameTag( Tag left, Tag right ) {
   const auto same = []( const TagField& a, const TagField& b ) {
      return a.field.offset == b.field.offset && a.field.width == b.field.width &&
             a.value == b.value;
   };
   return std::equal( left.begin(), left.end(), right.begin(), right.end(), same );
}

unsigned bitsOf( Tag tag ) {
   unsigned bits = 0;
   for( const auto& [field, value] : tag ) {
      bits += field.width;
   }
   return bits;
}

std::string reasonOf( const Layout& layout ) {
   const Tag tag = layout.tag();
   if( tag.empty() ) {
      return "length alone, " + std::to_string( layout.bytes() ) + " bytes";
   }
   std::string text;
   for( const auto& [field, value] : tag ) {
      text.append( text.empty() ? "tag: " : ", " ).append( field.name ).append( " " );
      text.append( hexOf( value ) );
   }
   return text;
}

// Adds the pair to the variants of its table with this reason.
void add( std::vector<Identifier::Verdict>& verdicts, const Layout& layout,
          const std::string& reason ) {
   auto verdict = std::find_if( verdicts.begin(), verdicts.end(), [&]( const auto& other ) {
      return other.table == layout.table() && other.reason == reason;
   } );
   if( verdict == verdicts.end() ) {
      verdict = verdicts.emplace( verdict );
      verdict->table = layout.table();
      verdict->variants.chip = layout.chip().number;
      verdict->variants.any = !layout.info().hasVariants;
      verdict->reason = reason;
   }
   verdict->variants.variants.push_back( layout.variant() );
}

// Why the image is not of the pair; empty if it may be.
std::string flawOf( const Layout& layout, std::span<const U8> image ) {
   if( image.size() != layout.bytes() ) {
      return "an entry has " + std::to_string( layout.bytes() ) + " bytes";
   }
   for( const auto& [field, value] : layout.tag() ) {
      const U64 found = layout.get( image, field );
      if( found != value ) {
         return std::string( field.name ) + " is " + hexOf( found ) + ", not " + hexOf( value );
      }
   }
   return {};
}

} // namespace

std::vector<Layout> Identifier::layoutsOf( std::span<const U8> image ) const {
   std::vector<Layout> found;
   std::copy_if( layouts_.begin(), layouts_.end(), std::back_inserter( found ),
                 [&]( const Layout& layout ) { return flawOf( layout, image ).empty(); } );
   return found;
}

Identifier::Verdicts Identifier::verdictsOn( std::span<const U8> image ) const {
   Verdicts verdicts;
   auto& groups = verdicts.groups;
   for( const Layout& layout : layouts_ ) {
      const Tag tag = layout.tag();
      if( const auto flaw = flawOf( layout, image ); !flaw.empty() ) {
         add( verdicts.ruledOut, layout, flaw );
         continue;
      }
      auto group = std::find_if( groups.begin(), groups.end(),
                                 [&]( const Group& other ) { return sameTag( other.tag, tag ); } );
      if( group == groups.end() ) {
         group = groups.insert( group, { { tag.begin(), tag.end() }, {} } );
      }
      add( group->members, layout, reasonOf( layout ) );
   }
   std::stable_sort( groups.begin(), groups.end(), []( const Group& left, const Group& right ) {
      return bitsOf( left.tag ) > bitsOf( right.tag );
   } );
   return verdicts;
}

void Identifier::refuse( std::size_t bytes ) const {
   std::set<std::size_t> lengths;
   for( const Layout& layout : layouts_ ) {
      lengths.insert( layout.bytes() );
   }
   const std::string given = "the image has " + std::to_string( bytes ) + " bytes";
   if( lengths.contains( bytes ) ) {
      throw Error( given + ", but the tag of no such entry on " + chip_.name );
   }
   throw Error( given + "; an entry on " + chip_.name + " has " +
                rangesOf( std::vector<U32>( lengths.begin(), lengths.end() ) ) );
}

namespace {

// Counts the images of one length.
class LengthCount {
public:
   explicit LengthCount( std::size_t bytes ) : bytes_( bytes ) {}

   void addPair( const Layout& layout );

   // Whether the image fits anything, or is empty.
   bool add( std::span<const U8> image );

   // Adds what another one of the same pairs has counted.
   void add( const LengthCount& other );

   void appendTo( DumpIdentifier::Account& account ) const;

   std::size_t bytes() const { return bytes_; }
   U64 images() const { return images_; }
   U64 tagged() const { return tagged_; }
   U64 empty() const { return empty_; }

private:
   struct Pairs {
      std::vector<const Layout*> layouts; // of one tag
      U64 images = 0;
   };

   void appendTo( std::vector<DumpIdentifier::Fit>& fits, const Pairs& pairs, U64 images ) const;

   std::size_t bytes_;
   std::vector<Pairs> byTag_;
   Pairs untagged_;
   U64 images_ = 0;
   U64 tagged_ = 0; // images that have one of the tags
   U64 empty_ = 0;
};

void LengthCount::addPair( const Layout& layout ) {
   if( layout.tag().empty() ) {
      untagged_.layouts.push_back( &layout );
      return;
   }
   const auto found = std::find_if( byTag_.begin(), byTag_.end(), [&]( const Pairs& pairs ) {
      return sameTag( pairs.layouts.front()->tag(), layout.tag() );
   } );
   ( found == byTag_.end() ? byTag_.emplace_back() : *found ).layouts.push_back( &layout );
}

bool LengthCount::add( std::span<const U8> image ) {
   const auto hasTag = [&]( Tag tag ) {
      return std::all_of( tag.begin(), tag.end(), [&]( const TagField& one ) {
         return Detail::bitsAt( image.data(), image.size(), one.field.offset, one.field.width ) ==
                one.value;
      } );
   };
   ++images_;
   bool isTagged = false;
   for( Pairs& pairs : byTag_ ) {
      if( hasTag( pairs.layouts.front()->tag() ) ) {
         ++pairs.images;
         isTagged = true;
      }
   }
   const bool isEmpty =
      !isTagged && !byTag_.empty() &&
      std::all_of( image.begin(), image.end(), []( U8 byte ) { return byte == 0; } );
   tagged_ += isTagged ? 1 : 0;
   empty_ += isEmpty ? 1 : 0;
   return isTagged || isEmpty || !untagged_.layouts.empty();
}

void LengthCount::add( const LengthCount& other ) {
   images_ += other.images_;
   tagged_ += other.tagged_;
   empty_ += other.empty_;
   for( std::size_t i = 0; i < byTag_.size(); ++i ) {
      byTag_[i].images += other.byTag_[i].images;
   }
}

void LengthCount::appendTo( std::vector<DumpIdentifier::Fit>& fits, const Pairs& pairs,
                            U64 images ) const {
   if( images == 0 || pairs.layouts.empty() ) {
      return;
   }
   const Tag tag = pairs.layouts.front()->tag();
   auto& fit = fits.emplace_back(
      DumpIdentifier::Fit{ bytes_, { { tag.begin(), tag.end() }, {} }, images } );
   for( const Layout* const layout : pairs.layouts ) {
      Vorn::add( fit.group.members, *layout, reasonOf( *layout ) );
   }
}

void LengthCount::appendTo( DumpIdentifier::Account& account ) const {
   for( const Pairs& pairs : byTag_ ) {
      appendTo( account.fits, pairs, pairs.images );
   }
   appendTo( account.fits, untagged_, images_ - empty_ );
   account.images += images_;
   account.empty += empty_;
   ( untagged_.layouts.empty() ? account.others : account.byLength ) += images_ - tagged_ - empty_;
}

// Splits a dump into entries of one length, and counts these.
class Splitting {
public:
   Splitting( const LengthCount& pairs, std::size_t stride ) : count_( pairs ), stride_( stride ) {}

   void take( std::span<const U8> piece );

   const LengthCount& count() const { return count_; }

   // The bytes of an entry that isn't complete.
   std::size_t left() const { return entry_.size(); }

   // Where the first entry that fits nothing begins.
   const std::optional<U64>& firstOther() const { return firstOther_; }

   // Bytes of entries that have a tag, if most do that anybody has written.
   U64 explained() const {
      const bool areMost = 2 * count_.tagged() > count_.images() - count_.empty();
      return areMost ? count_.tagged() * count_.bytes() : 0;
   }

private:
   void add( std::span<const U8> image ) {
      if( !count_.add( image ) && !firstOther_ ) {
         firstOther_ = ( count_.images() - 1 ) * stride_;
      }
      skip_ = stride_ - count_.bytes();
   }

   LengthCount count_;
   std::size_t stride_;
   std::vector<U8> entry_; // as far as it is there
   std::size_t skip_ = 0;  // bytes up to the next one
   std::optional<U64> firstOther_;
};

void Splitting::take( std::span<const U8> piece ) {
   const auto taken = [&]( std::size_t most ) {
      const auto part = piece.first( std::min( most, piece.size() ) );
      piece = piece.subspan( part.size() );
      return part;
   };
   while( !piece.empty() ) {
      if( skip_ > 0 ) {
         skip_ -= taken( skip_ ).size();
      } else if( entry_.empty() && piece.size() >= count_.bytes() ) {
         add( taken( count_.bytes() ) );
      } else {
         const auto part = taken( count_.bytes() - entry_.size() );
         entry_.insert( entry_.end(), part.begin(), part.end() );
         if( entry_.size() == count_.bytes() ) {
            add( entry_ );
            entry_.clear();
         }
      }
   }
}

// The length that a dump's entries have; null if nothing decides. One that is cut may end anywhere.
const Splitting* chosenOf( const std::vector<Splitting>& splittings, U64 dumpBytes, bool isCut ) {
   const Splitting* best = nullptr;
   std::size_t possible = 0;
   for( const Splitting& one : splittings ) {
      if( one.count().bytes() == dumpBytes ) {
         return &one;
      }
      if( !isCut && one.left() > 0 ) {
         continue;
      }
      ++possible;
      if( !best || one.explained() >= best->explained() ) {
         best = &one;
      }
   }
   return best && ( possible == 1 || best->explained() > 0 ) ? best : nullptr;
}

DumpOptions anyOf( const Chip& chip, ImageFormat format ) {
   DumpOptions options;
   options.chip = &chip;
   options.format = format;
   return options;
}

} // namespace

struct __attribute__( ( visibility( "hidden" ) ) ) DumpIdentifier::State {
   State( const Identifier& given, ImageFormat format, std::size_t givenStride );

   void begin( ByteSource& bytes );
   bool next();
   void addImage( std::span<const U8> image, const std::string& place );
   void addOther( const std::string& place, std::size_t bytes );
   void takePiece( std::span<const U8> piece );
   void endDump( bool isCut );
   [[noreturn]] void refuseLength( const std::vector<Splitting>& ended ) const;

   const Identifier& identifier;
   std::size_t stride;
   DumpReader reader;
   std::vector<LengthCount> pairs; // by ascending length, with nothing counted
   std::vector<LengthCount> counts;
   std::vector<Splitting> splittings; // of a dump that isn't at its end
   U64 dumpBytes = 0;
   std::string name; // of the bytes
   U64 wrongLengths = 0;
   std::string place;
   std::string reason;
};

DumpIdentifier::State::State( const Identifier& given, ImageFormat format, std::size_t givenStride )
   : identifier( given ), stride( givenStride ), reader( anyOf( given.chip(), format ) ) {
   reader.takeAnyPair();
   for( const Layout& layout : identifier.layouts() ) {
      auto found = std::find_if( pairs.begin(), pairs.end(), [&]( const LengthCount& one ) {
         return one.bytes() >= layout.bytes();
      } );
      if( found == pairs.end() || found->bytes() != layout.bytes() ) {
         found = pairs.emplace( found, layout.bytes() );
      }
      found->addPair( layout );
   }
   if( stride > 0 && stride < pairs.front().bytes() ) {
      throw Error( "a stride of " + countOf( stride, "byte" ) + " is too short; an entry on " +
                   identifier.chip().name + " has " + std::to_string( pairs.front().bytes() ) );
   }
}

void DumpIdentifier::State::begin( ByteSource& bytes ) {
   reader.begin( bytes );
   counts = pairs;
   splittings.clear();
   dumpBytes = 0;
   name = bytes.name();
   wrongLengths = 0;
   place.clear();
   reason.clear();
}

bool DumpIdentifier::State::next() {
   try {
      if( !reader.next() ) {
         return false;
      }
   } catch( const Error& ) {
      endDump( true );
      throw;
   }
   const auto image = reader.entry().image;
   if( !reader.isPiece() ) {
      addImage( image, reader.place() );
   } else if( !image.empty() ) {
      takePiece( image );
   } else {
      endDump( false );
   }
   return true;
}

void DumpIdentifier::State::addImage( std::span<const U8> image, const std::string& at ) {
   const auto found = std::find_if( counts.begin(), counts.end(), [&]( const LengthCount& one ) {
      return one.bytes() == image.size();
   } );
   const bool isLength = found != counts.end();
   wrongLengths += isLength ? 0 : 1;
   if( !isLength || !found->add( image ) ) {
      addOther( at, image.size() );
   }
}

void DumpIdentifier::State::addOther( const std::string& at, std::size_t bytes ) {
   if( reason.empty() ) {
      place = at;
      try {
         identifier.refuse( bytes );
      } catch( const Error& error ) {
         reason = error.message();
      }
   }
}

void DumpIdentifier::State::takePiece( std::span<const U8> piece ) {
   if( splittings.empty() ) {
      dumpBytes = 0;
      const bool isExact = std::any_of( pairs.begin(), pairs.end(), [&]( const LengthCount& one ) {
         return one.bytes() == stride;
      } );
      for( const LengthCount& one : pairs ) {
         if( isExact ? one.bytes() == stride : stride == 0 || one.bytes() < stride ) {
            splittings.emplace_back( one, stride > 0 ? stride : one.bytes() );
         }
      }
   }
   dumpBytes += piece.size();
   for( Splitting& splitting : splittings ) {
      splitting.take( piece );
   }
}

// A dump whose last rows are bad is cut: what comes before them counts if a length is chosen.
void DumpIdentifier::State::endDump( bool isCut ) {
   if( splittings.empty() ) {
      return;
   }
   const auto ended = std::exchange( splittings, {} );
   const Splitting* const splitting = chosenOf( ended, dumpBytes, isCut );
   if( !splitting && !isCut ) {
      refuseLength( ended );
   }
   if( splitting ) {
      const auto bytes = splitting->count().bytes();
      std::find_if( counts.begin(), counts.end(), [&]( const LengthCount& one ) {
         return one.bytes() == bytes;
      } )->add( splitting->count() );
      if( const auto other = splitting->firstOther() ) {
         addOther( name + ':' + hexOf( *other ), bytes );
      }
   }
}

void DumpIdentifier::State::refuseLength( const std::vector<Splitting>& ended ) const {
   std::vector<U32> all;
   std::vector<U32> whole;
   for( const Splitting& one : ended ) {
      const auto bytes = static_cast<U32>( one.count().bytes() );
      all.push_back( bytes );
      if( one.left() == 0 ) {
         whole.push_back( bytes );
      }
   }
   const std::string given = "the dump has " + countOf( dumpBytes, "byte" );
   if( whole.empty() ) {
      throw Error( name, given + ", which are no whole number of entries; an entry on " +
                            identifier.chip().name + " has " + rangesOf( all ) );
   }
   throw Error( name, given + ", whose entries may have " + rangesOf( whole ) +
                         ", and no tag decides; --stride says how many" );
}

DumpIdentifier::DumpIdentifier( const Identifier& identifier, ImageFormat format,
                                std::size_t stride )
   : state_( std::make_unique<State>( identifier, format, stride ) ) {}

DumpIdentifier::DumpIdentifier( DumpIdentifier&& other ) noexcept = default;
DumpIdentifier& DumpIdentifier::operator=( DumpIdentifier&& other ) noexcept = default;
DumpIdentifier::~DumpIdentifier() = default;

void DumpIdentifier::begin( ByteSource& bytes ) { state_->begin( bytes ); }

bool DumpIdentifier::next() { return state_->next(); }

DumpIdentifier::Account DumpIdentifier::account() const {
   Account account;
   for( const LengthCount& one : state_->counts ) {
      one.appendTo( account );
   }
   account.images += state_->wrongLengths;
   account.others += state_->wrongLengths;
   account.place = state_->place;
   account.reason = state_->reason;
   std::stable_sort(
      account.fits.begin(), account.fits.end(), []( const Fit& left, const Fit& right ) {
         const auto isTagged = []( const Fit& fit ) { return !fit.group.tag.empty(); };
         return std::pair( isTagged( left ), left.images ) >
                std::pair( isTagged( right ), right.images );
      } );
   return account;
}

} // namespace Vorn
