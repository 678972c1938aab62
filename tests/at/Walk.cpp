// Compares a pair through At with the class's view.
#include "at/Walk.h"

#include "support/Classes.h"
#include "support/Numbers.h"

#include <Hardware/Registry.h>

#include <map>
#include <random>
#include <set>

namespace Testing {

namespace {

// Random, the same each time.
class Random {
public:
   U64 number() { return engine_(); }
   Bits value() { return bitsAt( bytes( 64 ), 0, 512 ); }
   std::vector<U8> bytes( std::size_t count ) {
      std::vector<U8> bytes( count );
      for( U8& byte : bytes ) {
         byte = static_cast<U8>( number() );
      }
      return bytes;
   }

private:
   std::mt19937_64 engine_{ 20 };
};

std::string failureText( const std::optional<AssertionFailure>& failure, bool withLine,
                         bool withExpression ) {
   if( !failure ) {
      return "none";
   }
   return ( withExpression ? failure->expression : "" ) + " in " + failure->file +
          ( withLine ? ":" + std::to_string( failure->line ) : "" ) + " " + failure->function;
}

// Runs both; what both fail must have the same text. True if they did not fail.
bool failAlike( const std::string& what, Action view, Action at, bool withLine = true,
                bool withExpression = true ) {
   const std::string expected = failureText( failureOf( view ), withLine, withExpression );
   EXPECT_EQ( failureText( failureOf( at ), withLine, withExpression ), expected ) << what;
   return expected == "none";
}

// What a view does with a field, as a pair's `act`.
void act( Kelvar::AsicBase& view, const FieldAccessors& field, Op op, Bits& value ) {
   switch( op ) {
   case Op::valid:
      value = toBits( field.valid( view ) );
      break;
   case Op::get:
      value = field.get( view );
      break;
   case Op::set:
      field.set( view, value );
      break;
   case Op::mask:
      field.mask( view );
      break;
   case Op::len:
      value = toBits( field.len( view ) );
      break;
   case Op::offset:
      value = toBits( field.offset( view ) );
      break;
   }
}

// A pair's two sides, each with an entry of exactly its bytes at an odd address.
class Pair {
public:
   Pair( const ClassAccessors& view, Facts ( *factsOfView )( const Kelvar::AsicBase& ),
         const WalkedPair& at, Random& random )
      : class_( view ), factsOfView_( factsOfView ), at_( at ), random_( random ) {}

   void compare() {
      compareTag();
      compareFields();
      compareByIdentifier();
      compareWhole();
      compareCompose();
      compareAddress();
   }

private:
   std::unique_ptr<Kelvar::AsicBase> viewOver( U8* buf, unsigned len, bool existing ) const {
      return class_.make( at_.chipType, buf, static_cast<U16>( len ), existing,
                          static_cast<U8>( at_.variant ) );
   }

   // Random bits under the pair's tag, one byte further than where memory begins.
   std::vector<U8> randomEntry() {
      std::vector<U8> bytes = random_.bytes( at_.bytes + 1 );
      viewOver( bytes.data() + 1, at_.bytes, false );
      return bytes;
   }

   bool has( unsigned field ) const {
      Bits value;
      at_.act( unused(), at_.bytes, Op::valid, field, value );
      return value.any();
   }

   static U8* unused() {
      static U8 entry[512];
      return entry;
   }

   void compareTag() {
      std::vector<U8> fresh( class_.storageBytes );
      std::vector<U8> blank = random_.bytes( class_.storageBytes );
      viewOver( fresh.data(), class_.storageBytes, false );
      at_.blank( blank.data() );
      EXPECT_EQ( blank, fresh );
      EXPECT_TRUE( at_.holdsTag( blank.data(), at_.bytes ) );
      // The view verifies a tag where it wraps an entry.
      for( unsigned bit = 0; bit < 8 * at_.bytes; ++bit ) {
         std::vector<U8> entry( blank.begin(), blank.begin() + at_.bytes );
         entry[bit / 8] = static_cast<U8>( entry[bit / 8] ^ 1u << bit % 8 );
         const auto failure = failureOf( [&] { viewOver( entry.data(), at_.bytes, true ); } );
         EXPECT_EQ( at_.holdsTag( entry.data(), at_.bytes ), !failure ) << bit;
      }
      std::vector<U8> shorter( at_.bytes - 1 );
      const auto failure = failureOf( [&] { at_.getAllFields( shorter.data(), shorter.size() ); } );
      const std::string name = class_.name;
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "len_ >= " + std::to_string( at_.bytes ) );
      EXPECT_EQ( failure->function,
                 "Hardware::" + name + "::" + name + "(Hardware::ChipType, U8*, U16, bool, U8)" );
   }

   void compareFields() {
      for( unsigned field = 0; field < class_.fields.size(); ++field ) {
         const FieldAccessors& row = class_.fields[field];
         SCOPED_TRACE( row.name );
         std::vector<U8> ofAt = randomEntry();
         std::vector<U8> ofView = ofAt;
         const auto view = viewOver( ofView.data() + 1, at_.bytes, true );
         const auto both = [&]( Op op, Bits& atValue, Bits& viewValue ) {
            return failAlike(
               row.name, [&] { act( *view, row, op, viewValue ); },
               [&] { ASSERT_TRUE( at_.act( ofAt.data() + 1, at_.bytes, op, field, atValue ) ); } );
         };
         Bits expected;
         Bits seen = random_.value();
         EXPECT_EQ( has( field ), row.valid( *view ) );
         if( !has( field ) ) {
            EXPECT_FALSE( at_.act( ofAt.data() + 1, at_.bytes, Op::get, field, seen ) );
            continue;
         }
         for( const Op op : { Op::len, Op::offset, Op::get } ) {
            expected = seen = {};
            both( op, seen, expected );
            EXPECT_TRUE( seen == expected ) << static_cast<int>( op );
         }
         if( row.readOnly() ) {
            continue;
         }
         // Values of the type's full width, most of which exceed the bound, then smaller ones.
         for( unsigned cut = 0; cut < 64; cut += 3 ) {
            Bits value = row.wide() ? random_.value() : toBits( random_.number() >> cut );
            both( Op::set, value, value );
            EXPECT_EQ( ofAt, ofView );
         }
         both( Op::mask, seen, expected );
         EXPECT_EQ( ofAt, ofView );
      }
   }

   void compareByIdentifier() {
      std::vector<U8> ofAt = randomEntry();
      std::vector<U8> ofView = ofAt;
      const auto view = viewOver( ofView.data() + 1, at_.bytes, true );
      std::vector<U32> identifiers{ 0, 500, 351, 325 };
      for( const FieldAccessors& row : class_.fields ) {
         identifiers.push_back( row.identifier );
      }
      for( const U32 identifier : identifiers ) {
         const bool known = std::any_of(
            class_.fields.begin(), class_.fields.end(),
            [&]( const FieldAccessors& row ) { return row.identifier == identifier; } );
         const std::string what = std::to_string( identifier );
         const bool withExpression = at_.isOwn || !known || at_.isFieldValid( identifier );
         EXPECT_EQ( at_.isFieldValid( identifier ), view->isFieldValid( identifier ) );
         U16 expected = 0;
         U16 seen = 0;
         failAlike(
            what, [&] { expected = view->fieldWidth( identifier ); },
            [&] { seen = at_.fieldWidth( identifier ); }, known );
         EXPECT_EQ( seen, expected ) << what;
         failAlike(
            what, [&] { expected = view->fieldOffset( identifier ); },
            [&] { seen = at_.fieldOffset( identifier ); }, known, withExpression );
         EXPECT_EQ( seen, expected ) << what;
         for( const U64 value : { random_.number(), random_.number() >> 62, U64{ 0x100000000 } } ) {
            failAlike(
               what, [&] { view->setField64( identifier, value ); },
               [&] { at_.setField64( ofAt.data() + 1, at_.bytes, identifier, value ); },
               at_.isFieldValid( identifier ) && !isWideOrReadOnly( identifier ), withExpression );
            EXPECT_EQ( ofAt, ofView ) << what;
         }
      }
   }

   bool isWideOrReadOnly( U32 identifier ) const {
      return std::any_of(
         class_.fields.begin(), class_.fields.end(), [&]( const FieldAccessors& row ) {
            return row.identifier == identifier && ( row.readOnly() || row.wide() );
         } );
   }

   void compareWhole() {
      std::vector<U8> entry = random_.bytes( class_.storageBytes );
      const auto view = viewOver( entry.data(), class_.storageBytes, false );
      EXPECT_EQ( at_.facts(), factsOfView_( *view ) );
      EXPECT_TRUE( at_.getAllFields( entry.data(), entry.size() ) == class_.getAllFields( *view ) );
      EXPECT_TRUE( at_.allFieldsMask() == view->allFieldsMask() );
      if( at_.bytes < class_.storageBytes ) {
         const auto shorter = viewOver( entry.data(), at_.bytes, true );
         failAlike(
            "getAllFields", [&] { class_.getAllFields( *shorter ); },
            [&] { at_.getAllFields( entry.data(), at_.bytes ); }, false );
      }
   }

   // Wider fields first, those of one width in declared order: the later one holds. The tag last.
   void compareCompose() {
      const std::vector<U8> from = randomEntry();
      std::vector<U8> source = from;
      const auto reader = viewOver( source.data() + 1, at_.bytes, true );
      std::vector<U8> expected( at_.bytes );
      const auto writer = viewOver( expected.data(), at_.bytes, false );
      std::vector<std::pair<int, unsigned>> order;
      for( unsigned field = 0; field < class_.fields.size(); ++field ) {
         if( has( field ) && !class_.fields[field].readOnly() ) {
            order.emplace_back( -int{ reader->fieldWidth( class_.fields[field].identifier ) },
                                field );
         }
      }
      std::sort( order.begin(), order.end() );
      for( const auto& [width, field] : order ) {
         class_.fields[field].set( *writer, class_.fields[field].get( *reader ) );
      }
      viewOver( expected.data(), at_.bytes, false );
      std::vector<U8> to = random_.bytes( at_.bytes + 1 );
      const U8 before = to[0];
      at_.recompose( from.data() + 1, to.data() + 1, at_.bytes );
      EXPECT_EQ( to[0], before );
      EXPECT_EQ( std::vector<U8>( to.begin() + 1, to.end() ), expected );
   }

   void compareAddress() {
      std::vector<U8> entry( class_.storageBytes );
      const auto view = viewOver( entry.data(), class_.storageBytes, false );
      const Facts facts = at_.facts();
      for( const U32 tableEntry : { U32{ 0 }, U32{ 1 }, U32{ 1023 }, U32{ 32768 }, ~U32{ 0 } } ) {
         for( const U16 arrayIndex : std::initializer_list<U16>{ 0, 1, 23, 24 } ) {
            for( const U16 identifier : std::initializer_list<U16>{ 0, 1, 2 } ) {
               Address expected;
               Address seen;
               bool found = false;
               const auto failure = failureOf( [&] {
                  view->getSchanAddress( expected.schanAddress, expected.accessType,
                                         expected.destBlock, identifier, tableEntry, arrayIndex );
               } );
               const auto failed = failureOf( [&] {
                  found = at_.getSchanAddress( seen, identifier, tableEntry, arrayIndex );
               } );
               if( failure && failure->expression == "0" ) {
                  // No address: At refuses it when it is compiled.
                  EXPECT_FALSE( found || failed );
                  continue;
               }
               EXPECT_EQ( failureText( failed, false, true ), failureText( failure, false, true ) );
               EXPECT_EQ( found, !failure );
               EXPECT_TRUE( seen == expected );
            }
         }
      }
   }

   const ClassAccessors& class_;
   Facts ( *factsOfView_ )( const Kelvar::AsicBase& );
   const WalkedPair& at_;
   Random& random_;
};

} // namespace

void expectTheSame( const std::string& className, Facts ( *factsOfView )( const Kelvar::AsicBase& ),
                    const std::vector<WalkedPair>& pairs, unsigned first, unsigned last ) {
   const auto view = std::find_if( everyClass().begin(), everyClass().end(),
                                   [&]( const auto& one ) { return one.name == className; } );
   ASSERT_NE( view, everyClass().end() );
   const auto walked = [&pairs]( unsigned chipType, unsigned variant ) {
      return std::any_of( pairs.begin(), pairs.end(), [=]( const WalkedPair& pair ) {
         // 31 is walked where any variant will do.
         return pair.chipType == chipType && ( pair.variant == variant || pair.variant == 31 );
      } );
   };
   for( unsigned chipType = first; chipType <= last; ++chipType ) {
      for( unsigned variant = 0; variant < 32; ++variant ) {
         EXPECT_EQ( walked( chipType, variant ),
                    Hardware::chipTypeVariantValid( className,
                                                    static_cast<Hardware::ChipType>( chipType ),
                                                    static_cast<U8>( variant ) ) )
            << chipType << " " << variant;
      }
   }
   Random random;
   for( const WalkedPair& pair : pairs ) {
      SCOPED_TRACE( className + " " + std::to_string( pair.chipType ) + " " +
                    std::to_string( pair.variant ) );
      Pair( *view, factsOfView, pair, random ).compare();
   }
}

// The chip types that tests walk, by class.
std::map<std::string, std::set<unsigned>>& walks() {
   static std::map<std::string, std::set<unsigned>> walks;
   return walks;
}

bool walkIs( const std::string& className, unsigned first, unsigned last ) {
   for( unsigned chipType = first; chipType <= last; ++chipType ) {
      walks()[className].insert( chipType );
   }
   return true;
}

TEST( At, isWalkedOnEveryChipTypeOfEveryClass ) {
   for( const StatedClass& one : statedClasses ) {
      for( const unsigned chipType : numbersIn( one.chips ) ) {
         EXPECT_EQ( walks()[one.name].count( chipType ), 1u ) << one.name << " " << chipType;
      }
   }
}

} // namespace Testing
