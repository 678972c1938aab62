// Any sequence of operations on views of any pair, over buffers of any length, against a model that
// has one bool for each bit of the entry.
//
// An operation either does what the model does or fails with the one assertion that the model
// expects; then nothing else in the buffer has changed. Some inputs switch traces on, which must
// change nothing. The address sanitizer checks that nothing beyond the buffer is touched.
#include "Facts.h"
#include "Finding.h"

#include "support/Assertions.h"

#include <Hardware/FieldId.h>
#include <Oru/Trace.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <random>
#include <sstream>

namespace Fuzz {
namespace {

using Testing::AssertionFailure;
using Testing::hexOf;
using Testing::lowOnes;

// A refusal by a message assertion.
std::string quoted( const std::string& expression ) { return '"' + expression + "\" == nullptr"; }

std::string nameOf( U8 chipType ) {
   std::ostringstream out;
   out << static_cast<Hardware::ChipType>( chipType );
   return out.str();
}

std::string hardwareNameOf( U32 identifier ) {
   const auto& rows = Hardware::fieldCatalogue();
   return std::string( std::find_if( rows.begin(), rows.end(), [&]( const auto& row ) {
                          return row.identifier == identifier;
                       } )->hardwareName );
}

struct Subject {
   explicit Subject( const Class& one ) : of( one ), facts( one ) {}

   const Class& of;
   Facts facts;
};

const std::vector<Subject>& subjects() {
   static const std::vector<Subject> subjects( Testing::everyClass().begin(),
                                               Testing::everyClass().end() );
   return subjects;
}

// An entry at the very end of its allocation, at any alignment.
class Buffer {
public:
   Buffer( std::size_t len, std::size_t shift ) : memory_( new U8[shift + len] ), shift_( shift ) {}

   U8* begin() const { return memory_.get() + shift_; }

private:
   std::unique_ptr<U8[]> memory_;
   std::size_t shift_;
};

class Session {
public:
   Session( const U8* data, std::size_t size )
      : input_( data, size ),
        subject_( subjects()[input_.ConsumeIntegral<U8>() % subjects().size()] ),
        len_( someLength() ), buffer_( len_, input_.ConsumeIntegral<U8>() % 8 ),
        model_( 8 * len_ ) {
      // Few bytes of the input say what the entry holds at first, so that most are left for what is
      // done with it.
      const U16 content = input_.ConsumeIntegral<U16>();
      std::minstd_rand random( content );
      std::generate_n( buffer_.begin(), len_,
                       [&] { return static_cast<U8>( content < 256 ? content : random() >> 8 ); } );
      for( unsigned bit = 0; bit < model_.size(); ++bit ) {
         model_[bit] = ( buffer_.begin()[bit / 8] >> bit % 8 & 1 ) != 0;
      }
   }
   ~Session() { tracesAre( false ); }

   void run() {
      static constexpr void ( Session::*operations[] )() = {
         &Session::construct,    &Session::changePair,
         &Session::switchTraces, &Session::get,
         &Session::get,          &Session::set,
         &Session::set,          &Session::set,
         &Session::mask,         &Session::query,
         &Session::setField64,   &Session::fieldWidth,
         &Session::fieldOffset,  &Session::isFieldValid,
         &Session::stringField,  &Session::stringFieldIs,
         &Session::getAllFields, &Session::allFieldsMask,
         &Session::metadata,     &Session::getSchanAddress,
         &Session::discriminate,
      };
      while( input_.remaining_bytes() > 0 ) {
         const auto operation =
            view_ ? operations[input_.ConsumeIntegral<U8>() % std::size( operations )]
                  : &Session::construct;
         ( this->*operation )();
         if( !imageIsRight() ) {
            found( where() + ": the entry isn't what it should be" );
         }
      }
   }

private:
   // A field, and where the view's pair has it.
   struct Chosen {
      std::size_t number;
      const Field& field;
      Place place;
   };

   // Operations, with all their arguments from the input.

   void construct() {
      const Facts::Key key = someKey();
      const Pair* const pair = facts().find( key );
      const bool existingEntry = input_.ConsumeBool();
      std::unique_ptr<View> view;
      const auto make = [&] {
         view = subject_.of.make( static_cast<Hardware::ChipType>( key.first ), buffer_.begin(),
                                  len_, existingEntry, key.second );
      };
      if( pair == nullptr ) {
         attempt( make, quoted( "0" ),
                  "chipType: " + nameOf( key.first ) + " variant: " + std::to_string( key.second ) +
                     " not in metainfo for " + subject_.of.name + '!' );
         return;
      }
      // In which order the fields of a tag are stamped and verified can't be asked.
      std::vector<std::string> failures;
      for( const Stamp& stamp : pair->stamps ) {
         if( existingEntry ) {
            if( !fits( stamp.place ) ) {
               failures.push_back( "offset + width <= 8 * srcLen" );
            } else if( modelAt( stamp.place ) != Bits( stamp.value ) ) {
               failures.push_back( "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), " +
                                   std::to_string( stamp.place.width ) + ", " +
                                   std::to_string( stamp.place.offset ) +
                                   " ); ( n == " + std::to_string( stamp.value ) + " ); })" );
            }
         } else if( !fits( stamp.place ) ) {
            failures.push_back( lengthTest( stamp.place ) );
         }
      }
      const auto failure = Testing::failureOf( make );
      if( failure.has_value() == failures.empty() ) {
         found( where() + ": construction" );
      }
      if( !failure ) {
         view_ = std::move( view );
      } else if( std::find( failures.begin(), failures.end(), failure->expression ) ==
                 failures.end() ) {
         found( where() + ": construction failed on " + failure->expression );
      }
      if( !existingEntry ) {
         for( const Stamp& stamp : pair->stamps ) {
            // Those before the one that doesn't fit are stamped.
            if( fits( stamp.place ) &&
                ( !failure || imageAt( stamp.place ) == Bits( stamp.value ) ) ) {
               modelAtIs( stamp.place, Bits( stamp.value ) );
            }
         }
      }
   }

   // Every operation reads the view's members afresh.
   void changePair() {
      const Facts::Key key = someKey();
      subject_.of.pairIs( *view_, key.first, key.second );
   }

   void switchTraces() { tracesAre( input_.ConsumeBool() ); }

   void get() {
      const Chosen chosen = someField();
      expectResult( [&] { return chosen.field.get( *view_ ); }, refusal( chosen ),
                    modelAt( chosen.place ) );
   }

   void set() {
      const Chosen chosen = someField();
      const Bits value = someValue( chosen.field.valueBits, chosen.place.width );
      if( !chosen.field.readOnly() &&
          attempt( [&] { chosen.field.set( *view_, value ); }, setRefusal( chosen, value ) ) ) {
         modelAtIs( chosen.place, value );
      }
   }

   void mask() {
      const Chosen chosen = someField();
      if( !chosen.field.readOnly() &&
          attempt( [&] { chosen.field.mask( *view_ ); }, refusal( chosen ) ) ) {
         modelAtIs( chosen.place, lowOnes( chosen.place.width ) );
      }
   }

   void query() {
      const Chosen chosen = someField();
      const bool present = chosen.place.present();
      expectResult( [&] { return chosen.field.valid( *view_ ); }, "none", present );
      expectResult( [&] { return chosen.field.offset( *view_ ); },
                    present ? "none" : absence( chosen ), chosen.place.offset );
      std::optional<std::string> message;
      if( !present ) {
         message = nameOf( view_->chipType() ) + " does not have field " +
                   hardwareNameOf( chosen.field.identifier );
      }
      expectResult( [&] { return chosen.field.len( *view_ ); }, present ? "none" : quoted( "0" ),
                    chosen.place.width, message );
   }

   void setField64() {
      const U32 identifier = someIdentifier();
      const U64 value = someNumber();
      const auto chosen = withIdentifier( identifier );
      const bool settable = chosen && !chosen->field.readOnly() && !chosen->field.wide();
      const Bits cut = settable ? cutToType( value, *chosen ) : Bits();
      if( attempt( [&] { view_->setField64( identifier, value ); },
                   settable ? setRefusal( *chosen, cut ) : "false" ) ) {
         modelAtIs( chosen->place, cut );
      }
   }

   void fieldWidth() {
      const U32 identifier = someIdentifier();
      const auto chosen = withIdentifier( identifier );
      expectResult( [&] { return view_->fieldWidth( identifier ); }, chosen ? "none" : "false",
                    chosen ? chosen->place.width : 0 );
   }

   void fieldOffset() {
      const U32 identifier = someIdentifier();
      const auto chosen = withIdentifier( identifier );
      expectResult( [&] { return view_->fieldOffset( identifier ); },
                    !chosen                   ? "false"
                    : chosen->place.present() ? "none"
                                              : absence( *chosen ),
                    chosen ? chosen->place.offset : 0 );
   }

   void isFieldValid() {
      const U32 identifier = someIdentifier();
      const auto chosen = withIdentifier( identifier );
      expectResult( [&] { return view_->isFieldValid( identifier ); }, "none",
                    chosen && chosen->place.present() );
   }

   void stringField() {
      const std::string name = someName();
      const U16 index = input_.ConsumeIntegralInRange<U16>( 0, 9 );
      const auto read = [&] { return view_->stringField( name, index ); };
      if( const auto chosen = withName( name ) ) {
         const unsigned skipped = chosen->field.wide() ? 64 * index : 0;
         expectResult( read, refusal( *chosen ),
                       Testing::fromBits<U64>( modelAt( chosen->place ) >> skipped ) );
      } else {
         attempt( read, quoted( "false" ), "fieldName not found." );
      }
   }

   void stringFieldIs() {
      const std::string name = someName();
      const U64 value = someNumber();
      const auto write = [&] { view_->stringFieldIs( name, value ); };
      const auto chosen = withName( name );
      if( !chosen || chosen->field.readOnly() ) {
         attempt( write, quoted( "false" ), "fieldName not found or is const." );
      } else if( chosen->field.wide() ) {
         attempt( write, "false" );
      } else if( const Bits cut = cutToType( value, *chosen );
                 attempt( write, setRefusal( *chosen, cut ) ) ) {
         modelAtIs( chosen->place, cut );
      }
   }

   void getAllFields() {
      const unsigned bytes = subject_.of.storageBytes;
      const std::string refusal = pair() == nullptr ? facts().entryRefusal( view_->chipType() )
                                  : len_ < bytes    ? lengthTest( { 0, 8 * bytes } )
                                                    : "none";
      expectResult( [&] { return subject_.of.getAllFields( *view_ ); }, refusal,
                    refusal == "none" ? modelAt( { 0, 8 * bytes } ) & allFields() : Bits() );
   }

   void allFieldsMask() {
      const auto bytesOf = []( const Raw4096& mask ) {
         return Testing::Image( mask.bytes(), mask.bytes() + sizeof mask );
      };
      Testing::Image right( sizeof( Raw4096 ) );
      Testing::bitsAtAre( right, 0, 8 * subject_.of.storageBytes, allFields() );
      expectResult( [&] { return bytesOf( view_->allFieldsMask() ); }, staticRefusal(), right );
   }

   void metadata() {
      const Pair* const pair = this->pair();
      const auto info = pair != nullptr ? pair->info : Hardware::PairInfo{};
      expectResult( [&] { return view_->width(); }, staticRefusal(), info.width );
      expectResult( [&] { return view_->fieldCount(); }, staticRefusal(), info.fieldCount );
      expectResult( [&] { return view_->instanceCount(); }, staticRefusal(), info.instanceCount );
      const std::string none = " invalid for this class\"";
      if( view_->isTable() ) {
         expectResult( [&] { return view_->entries(); }, staticRefusal(), info.entries );
         attempt( [&] { view_->maxIdentifier(); }, "false && \"maxIdentifier" + none );
      } else {
         attempt( [&] { view_->entries(); }, "false && \"entries" + none );
      }
   }

   void getSchanAddress() {
      const U32 entry = someIndex<U32>( pair() ? pair()->info.entries : 1 );
      const U16 element = someIndex<U16>( pair() ? pair()->info.arrayElements : 1 );
      const U16 identifier = someIndex<U16>( pair() ? pair()->info.instanceCount : 1 );
      constexpr Address untouched{ 0xdeadbeef, 0xaa, 0xbb };
      Address given = untouched;
      Address right = untouched;
      std::string refusal = "none";
      if( const Pair* const pair = this->pair(); pair != nullptr ) {
         const bool isTable = view_->isTable();
         const auto& info = pair->info;
         if( pair->origins.empty() ) {
            refusal = "0";
         } else if( entry >= info.entries ) {
            refusal =
               isTable ? "tableEntry < " + std::to_string( info.entries ) : "tableEntry == 0";
         } else if( element >= info.arrayElements ) {
            refusal = isTable && info.arrayElements == 1
                         ? "arrayIndex == 0"
                         : "arrayIndex < " + std::to_string( info.arrayElements );
         } else {
            right.address =
               pair->origins.front().address + entry * pair->entryStep + element * pair->arrayStep;
            if( identifier < info.instanceCount ) {
               right.accessType = pair->origins[identifier].accessType;
               right.destBlock = pair->origins[identifier].destBlock;
            } else {
               refusal = isTable ? "identifier <= " + std::to_string( info.instanceCount - 1 )
                                 : "identifier < " + std::to_string( info.instanceCount );
            }
         }
      }
      expectResult(
         [&] {
            return view_->getSchanAddress( given.address, given.accessType, given.destBlock,
                                           identifier, entry, element );
         },
         refusal, pair() != nullptr );
      if( !( given == right ) ) {
         found( where() + ": another address" );
      }
   }

   void discriminate() {
      if( subject_.of.holds == nullptr ) {
         return;
      }
      const Facts::Key key = someKey();
      const Pair* const pair = facts().find( key );
      // Generous on a chip type of the class, whatever the variant.
      const bool right =
         pair == nullptr
            ? facts().hasChip( key.first )
            : std::all_of( pair->stamps.begin(), pair->stamps.end(), [&]( const Stamp& stamp ) {
                 return fits( stamp.place ) && modelAt( stamp.place ) == Bits( stamp.value );
              } );
      expectResult(
         [&] {
            return subject_.of.holds( static_cast<Hardware::ChipType>( key.first ), buffer_.begin(),
                                      len_, key.second );
         },
         "none", right );
   }

   // Choices.

   U16 someLength() {
      const U16 bytes = subject_.of.storageBytes;
      return input_.ConsumeBool() ? bytes
                                  : input_.ConsumeIntegralInRange<U16>( 0, U16( bytes + 9 ) );
   }

   Facts::Key someKey() {
      const U16 number = input_.ConsumeIntegral<U16>();
      return number % 8 != 0 ? facts().key( number / 8 )
                             : Facts::Key( number >> 8, input_.ConsumeIntegral<U8>() );
   }

   Chosen fieldAt( std::size_t number ) const {
      const Pair* const pair = this->pair();
      return { number, subject_.of.fields[number],
               pair != nullptr ? pair->places[number] : Place() };
   }

   // Mostly one that the view's pair has.
   Chosen someField() {
      const U16 number = input_.ConsumeIntegral<U16>();
      const Pair* const pair = this->pair();
      return fieldAt( number % 8 != 0 && pair != nullptr && !pair->present.empty()
                         ? pair->present[number / 8 % pair->present.size()]
                         : number / 8 % subject_.of.fields.size() );
   }

   U32 someIdentifier() {
      return input_.ConsumeIntegral<U8>() % 8 != 0 ? someField().field.identifier
             : input_.ConsumeBool()                ? input_.ConsumeIntegralInRange<U32>( 0, 400 )
                                                   : input_.ConsumeIntegral<U32>();
   }

   std::string someName() {
      return input_.ConsumeIntegral<U8>() % 8 != 0 ? someField().field.name
                                                   : input_.ConsumeRandomLengthString( 40 );
   }

   template<class Wanted>
   std::optional<Chosen> fieldWith( const Wanted& wanted ) const {
      const auto& fields = subject_.of.fields;
      const auto found = std::find_if( fields.begin(), fields.end(), wanted );
      if( found == fields.end() ) {
         return std::nullopt;
      }
      return fieldAt( static_cast<std::size_t>( found - fields.begin() ) );
   }

   std::optional<Chosen> withIdentifier( U32 identifier ) const {
      return fieldWith( [&]( const Field& field ) { return field.identifier == identifier; } );
   }

   std::optional<Chosen> withName( const std::string& name ) const {
      return fieldWith( [&]( const Field& field ) { return field.name == name; } );
   }

   // Small numbers are as likely as any, so that many fit.
   U64 someNumber() {
      const U64 number = input_.ConsumeIntegral<U64>();
      return number >> input_.ConsumeIntegral<U8>() % 64;
   }

   // Often the greatest that fits or the least that doesn't.
   Bits someValue( unsigned bits, unsigned width ) {
      auto bytes = input_.ConsumeBytes<U8>( bits / 8 );
      bytes.resize( bits / 8 );
      const Bits value = Testing::bitsAt( bytes, 0, bits );
      switch( input_.ConsumeIntegral<U8>() % 8 ) {
      case 0:
         return value;
      case 1:
         return lowOnes( width );
      case 2:
         return ( Bits( 1 ) << width ) & lowOnes( bits );
      default:
         return value & lowOnes( width );
      }
   }

   // Often the last one or the first that is out of range.
   template<class Index>
   Index someIndex( U32 count ) {
      switch( input_.ConsumeIntegral<U8>() % 4 ) {
      case 0:
         return static_cast<Index>( count - 1 );
      case 1:
         return static_cast<Index>( count );
      case 2:
         return static_cast<Index>( input_.ConsumeIntegral<Index>() % count );
      default:
         return input_.ConsumeIntegral<Index>();
      }
   }

   // What the model says.

   const Facts& facts() const { return subject_.facts; }
   const Pair* pair() const { return facts().find( { view_->chipType(), view_->variant() } ); }

   bool fits( const Place& place ) const { return place.bytes() <= len_; }

   Bits modelAt( const Place& place ) const {
      Bits bits;
      for( unsigned bit = 0; bit < place.width && fits( place ); ++bit ) {
         bits[bit] = model_[place.offset + bit];
      }
      return bits;
   }

   void modelAtIs( const Place& place, const Bits& value ) {
      for( unsigned bit = 0; bit < place.width; ++bit ) {
         model_[place.offset + bit] = value[bit];
      }
   }

   Bits imageAt( const Place& place ) const {
      return Testing::bitsAt( { buffer_.begin(), buffer_.begin() + len_ }, place.offset,
                              place.width );
   }

   bool imageIsRight() const {
      for( unsigned bit = 0; bit < model_.size(); ++bit ) {
         if( ( buffer_.begin()[bit / 8] >> bit % 8 & 1 ) != model_[bit] ) {
            return false;
         }
      }
      return true;
   }

   Bits allFields() const {
      Bits bits;
      if( const Pair* const pair = this->pair(); pair != nullptr ) {
         for( const Place& place : pair->places ) {
            bits |= lowOnes( place.width ) << place.offset;
         }
      }
      return bits;
   }

   // Above the setter's argument type everything is cut off.
   static Bits cutToType( U64 value, const Chosen& chosen ) {
      return Testing::toBits( value ) & lowOnes( chosen.field.valueBits );
   }

   static std::string lengthTest( const Place& place ) {
      return "len_ >= " + std::to_string( place.bytes() );
   }

   std::string absence( const Chosen& chosen ) const {
      return facts().absence( view_->chipType(), chosen.number );
   }

   std::string staticRefusal() const {
      return pair() == nullptr ? facts().staticRefusal( view_->chipType() ) : "none";
   }

   // "none", or the assertion with which getter and mask refuse the field.
   std::string refusal( const Chosen& chosen ) const {
      return !chosen.place.present() ? absence( chosen )
             : !fits( chosen.place ) ? lengthTest( chosen.place )
                                     : "none";
   }

   std::string setRefusal( const Chosen& chosen, const Bits& value ) const {
      static constexpr unsigned unbounded[] = { 8, 16, 32, 64 };
      const std::string before = refusal( chosen );
      const unsigned width = chosen.place.width;
      const bool bounded = !chosen.field.wide() &&
                           std::find( std::begin( unbounded ), std::end( unbounded ), width ) ==
                              std::end( unbounded );
      return before == "none" && bounded && ( value >> width ).any()
                ? chosen.field.name + ( " <= " + hexOf( lowOnes( width ) ) )
                : before;
   }

   // Performs what must fail with this assertion and message, or return if it is "none"; whether it
   // returned.
   bool attempt( const std::function<void()>& action, const std::string& expression,
                 const std::optional<std::string>& message = std::nullopt ) const {
      const auto failure = Testing::failureOf( action );
      const std::string got = failure ? failure->expression : "none";
      if( got != expression ) {
         found( where() + ": expected " + expression + ", got " + got );
      }
      if( failure && failure->message != message ) {
         found( where() + ": another message with " + got );
      }
      return !failure;
   }

   template<class Action, class Value>
   void expectResult( const Action& action, const std::string& expression, const Value& right,
                      const std::optional<std::string>& message = std::nullopt ) const {
      Value result{};
      if( attempt( [&] { result = static_cast<Value>( action() ); }, expression, message ) ) {
         if( !( result == right ) ) {
            found( where() + ": another result" );
         }
      }
   }

   std::string where() const {
      const std::string name = subject_.of.name;
      return !view_ ? name
                    : name + " (" + std::to_string( view_->chipType() ) + ", " +
                         std::to_string( view_->variant() ) + ") of " + std::to_string( len_ ) +
                         " bytes";
   }

   static void tracesAre( bool on ) {
      Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", 8, on );
      Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", 0, on );
      Oru::traceSinkIs( on ? []( const std::string& ) {}
                           : std::function<void( const std::string& )>() );
   }

   FuzzedDataProvider input_;
   const Subject& subject_;
   U16 len_;
   Buffer buffer_;
   std::vector<bool> model_;
   std::unique_ptr<View> view_;
};

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   Fuzz::Session( data, size ).run();
   return 0;
}

extern "C" std::size_t LLVMFuzzerMutate( U8* data, std::size_t size, std::size_t maxSize );

// Changes of known inputs tend to repeat few bytes, and the library's branches say little about
// what is left to try, as most is in tables. So half of the inputs are drawn at random.
extern "C" std::size_t LLVMFuzzerCustomMutator( U8* data, std::size_t size, std::size_t maxSize,
                                                unsigned seed ) {
   std::mt19937 random( seed );
   if( random() % 2 == 0 ) {
      return LLVMFuzzerMutate( data, size, maxSize );
   }
   std::generate_n( data, maxSize, [&] { return static_cast<U8>( random() ); } );
   return maxSize;
}
