// The contract of a table class as one generic walk, checked against plain rows.
#include "Contract.h"

#include "Numbers.h"
#include "Traces.h"

#include <Hardware/FieldId.h>
#include <Hardware/Registry.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <sstream>

namespace Testing {

namespace {

// Variants to try where a chip type takes any.
const std::set<unsigned> someVariants{ 0, 1, 7, 30, 31, 32, 200, 255 };

bool anyVariant( const std::string& variants ) { return variants == "any"; }

std::set<unsigned> variantsIn( const std::string& variants ) {
   return anyVariant( variants ) ? someVariants : numbersIn( variants );
}

struct Place {
   unsigned offset = 0;
   unsigned width = 0; // 0: absent

   bool present() const { return width != 0; }
   unsigned bytes() const { return ( offset + width + 7 ) / 8; }
};

// What the rows say of one pair.
struct Pair {
   unsigned chipType;
   unsigned variant;
   const MetadataRow* metadata;
   std::vector<Place> places; // in declared order of the fields
   const AddressRow* address = nullptr;
   const TagRow* tag = nullptr;

   Hardware::ChipType chip() const { return static_cast<Hardware::ChipType>( chipType ); }
   U8 variantNumber() const { return static_cast<U8>( variant ); }
};

std::string chipName( unsigned chipType ) {
   std::ostringstream out;
   out << static_cast<Hardware::ChipType>( chipType );
   return out.str();
}

U64 lowWord( const Bits& bits ) { return fromBits<U64>( bits ); }

// The rows of a class, by pair.
class Model {
public:
   explicit Model( const Expectation& expected ) : expected_( expected ) {
      for( const MetadataRow& row : expected.metadata ) {
         for( const unsigned chipType : numbersIn( row.chips ) ) {
            for( const unsigned variant : variantsIn( row.variants ) ) {
               pairs_.push_back(
                  { chipType, variant, &row, std::vector<Place>( expected.fields.size() ) } );
            }
            if( anyVariant( row.variants ) ) {
               variantless_.insert( chipType );
            }
         }
      }
      for( const LayoutRow& row : expected.layout ) {
         const std::size_t field = fieldNumber( row.field );
         if( field == expected.fields.size() ) {
            ADD_FAILURE() << "the rows name an unknown field: " << row.field;
            continue;
         }
         visit( row.chips, row.variants, [&]( Pair& pair ) {
            EXPECT_FALSE( pair.places[field].present() )
               << row.field << " stands twice in the rows of " << where( pair );
            pair.places[field] = { row.offset, row.width };
         } );
         for( const unsigned chipType : numbersIn( row.chips ) ) {
            for( const unsigned variant : variantsIn( row.variants ) ) {
               having_[{ chipType, field }].insert( variant );
            }
         }
      }
      for( const AddressRow& row : expected.addresses ) {
         visit( row.chips, row.variants, [&]( Pair& pair ) {
            EXPECT_EQ( pair.address, nullptr ) << "two address rows for " << where( pair );
            pair.address = &row;
         } );
      }
      for( const TagRow& row : expected.tags ) {
         visit( row.chips, row.variants, [&]( Pair& pair ) {
            EXPECT_EQ( pair.tag, nullptr ) << "two tag rows for " << where( pair );
            pair.tag = &row;
         } );
      }
      EXPECT_FALSE( pairs_.empty() );
   }

   const std::vector<Pair>& pairs() const { return pairs_; }

   std::size_t fieldNumber( const std::string& name ) const {
      return static_cast<std::size_t>(
         std::find_if( expected_.fields.begin(), expected_.fields.end(),
                       [&]( const FieldUnderTest& field ) { return field.name == name; } ) -
         expected_.fields.begin() );
   }

   bool variantless( unsigned chipType ) const { return variantless_.count( chipType ) != 0; }

   bool valid( unsigned chipType, unsigned variant ) const {
      return variantless( chipType ) || find( chipType, variant ) != nullptr;
   }

   const Pair* find( unsigned chipType, unsigned variant ) const {
      for( const Pair& pair : pairs_ ) {
         if( pair.chipType == chipType && pair.variant == variant ) {
            return &pair;
         }
      }
      return nullptr;
   }

   std::set<unsigned> validVariants( unsigned chipType ) const {
      std::set<unsigned> variants;
      for( const Pair& pair : pairs_ ) {
         if( pair.chipType == chipType ) {
            variants.insert( pair.variant );
         }
      }
      return variants;
   }

   // The expression with which an accessor refuses a field on a pair that lacks it.
   std::string absence( unsigned chipType, std::size_t field ) const {
      const auto having = having_.find( { chipType, field } );
      return having != having_.end() && having->second.size() == 1
                ? "variant_ == " + std::to_string( *having->second.begin() )
                : "0";
   }

   // The expression with which a static refuses an invalid pair.
   std::string refusal( unsigned chipType ) const {
      return validVariants( chipType ) == std::set<unsigned>{ 0 } ? "variant == 0" : "0";
   }

   std::string where( const Pair& pair ) const {
      return expected_.name + " (" + std::to_string( pair.chipType ) + ", " +
             std::to_string( pair.variant ) + ")";
   }

   std::string where( const Pair& pair, const FieldUnderTest& field ) const {
      return where( pair ) + " " + field.name;
   }

   // Some pairs that the class doesn't have, on chip types it has and on others.
   std::vector<std::pair<unsigned, unsigned>> invalidPairs() const {
      std::vector<std::pair<unsigned, unsigned>> invalid;
      for( unsigned chipType = 0; chipType < 256; chipType += chipType < 40 ? 1 : 43 ) {
         for( const unsigned variant :
              { 0u, 1u, 2u, 3u, 5u, 6u, 7u, 11u, 12u, 20u, 21u, 30u, 31u, 32u, 255u } ) {
            if( !valid( chipType, variant ) ) {
               invalid.emplace_back( chipType, variant );
            }
         }
      }
      return invalid;
   }

private:
   template<class Visit>
   void visit( const std::string& chips, const std::string& variants, Visit visit ) {
      for( const unsigned chipType : numbersIn( chips ) ) {
         for( const unsigned variant : variantsIn( variants ) ) {
            if( Pair* const pair = const_cast<Pair*>( find( chipType, variant ) ) ) {
               visit( *pair );
            } else {
               ADD_FAILURE() << "rows for a pair without metadata: " << expected_.name << " ("
                             << chipType << ", " << variant << ")";
            }
         }
      }
   }

   const Expectation& expected_;
   std::vector<Pair> pairs_;
   std::set<unsigned> variantless_;
   std::map<std::pair<unsigned, std::size_t>, std::set<unsigned>> having_;
};

// A view of a pair over a buffer of the class's storage size; `bufferIs` gives it another one.
std::unique_ptr<Kelvar::AsicBase> viewOf( const Expectation& expected, const Pair& pair,
                                          Image& image ) {
   image.assign( expected.storageBytes, 0 );
   return expected.make( pair.chip(), image.data(), static_cast<U16>( image.size() ), false,
                         pair.variantNumber() );
}

// A failed assertion of the library, with the function it happened in.
void expectFailure( Action action, const std::string& expression, const std::string& function,
                    const std::string& where,
                    const std::optional<std::string>& message = std::nullopt ) {
   const auto failure = failureOf( action );
   if( !failure ) {
      ADD_FAILURE() << where << ": expected the assertion " << expression << " in " << function;
      return;
   }
   EXPECT_EQ( failure->expression, expression ) << where << " " << function;
   EXPECT_EQ( failure->function, function ) << where;
   EXPECT_EQ( failure->file, "VornTunnelMetaInfo" ) << where;
   EXPECT_NE( failure->line, 0u ) << where;
   EXPECT_EQ( failure->message, message ) << where;
}

// The items of an array in front of the empty ones.
template<class Item, std::size_t capacity>
std::span<const Item> listed( const Item ( &items )[capacity] ) {
   const auto end = std::find_if( std::begin( items ), std::end( items ),
                                  []( const Item& item ) { return item.empty(); } );
   return { std::begin( items ), end };
}

std::string quoted( const std::string& expression ) { return "\"" + expression + "\" == nullptr"; }

// Signatures of the operations.
class Signatures {
public:
   explicit Signatures( const Expectation& expected )
      : scope_( "Hardware::" + expected.name + "::" ) {}

   std::string get( const FieldUnderTest& field ) const {
      return field.type + " " + scope_ + field.name + "() const";
   }
   std::string set( const FieldUnderTest& field ) const {
      const std::string argument = field.typeBits <= 32 ? field.type : "const " + field.type + "&";
      return "void " + scope_ + field.name + "Is(" + argument + ")";
   }
   std::string mask( const FieldUnderTest& field ) const {
      return "void " + scope_ + field.name + "Mask()";
   }
   std::string len( const FieldUnderTest& field ) const {
      return "U16 " + scope_ + field.name + "Len() const";
   }
   std::string offset( const FieldUnderTest& field ) const {
      return "U16 " + scope_ + field.name + "Offset() const";
   }
   std::string valid( const FieldUnderTest& field ) const {
      return "bool " + scope_ + "is" + field.capitalName + "Valid() const";
   }
   std::string constructor( const std::string& name ) const {
      return scope_ + name + "(Hardware::ChipType, U8*, U16, bool, U8)";
   }
   std::string handleBuf() const {
      return "void " + scope_ + "handleBuf(Hardware::ChipType, U8*, U16, bool, U8)";
   }
   std::string setField64() const { return "virtual void " + scope_ + "setField64(U32, U64)"; }
   std::string byIdentifier( const std::string& result, const std::string& name ) const {
      return "virtual " + result + " " + scope_ + name + "(U32) const";
   }
   std::string stringField() const {
      return "virtual U64 " + scope_ + "stringField(const Oru::String&, U16) const";
   }
   std::string stringFieldIs() const {
      return "virtual void " + scope_ + "stringFieldIs(const Oru::String&, const U64&)";
   }
   std::string getAllFields( const std::string& type ) const {
      return type + " " + scope_ + "getAllFields() const";
   }
   std::string ofPair( const std::string& result, const std::string& name ) const {
      return "static " + result + " " + scope_ + name + "(U32, U8)";
   }
   std::string tableVariantCount() const {
      return "virtual U32 " + scope_ + "tableVariantCount(U32, U8) const";
   }
   std::string getSchanAddress() const {
      return "static bool " + scope_ + "getSchanAddress(U32, U8, U32&, U8&, U8&, U16, U32, U16)";
   }
   std::string discriminator( const std::string& name ) const {
      return "static bool " + scope_ + "is" + name + "(Hardware::ChipType, const U8*, U16, U8)";
   }

private:
   std::string scope_;
};

} // namespace

Bits FieldUnderTest::get( const Kelvar::AsicBase& view ) const {
   return std::visit( [&]( auto accessor ) { return toBits( ( view.*accessor )() ); }, getter );
}

void FieldUnderTest::set( Kelvar::AsicBase& view, const Bits& bits ) const {
   const auto setBits = [&]<class Value>( void ( Kelvar::AsicBase::*accessor )( Value ) ) {
      ( view.*accessor )( fromBits<std::remove_cvref_t<Value>>( bits ) );
   };
   std::visit( setBits, setter );
}

std::vector<LayoutRow> rowsOf( const std::vector<LayoutTable>& tables ) {
   std::vector<LayoutRow> rows;
   for( const LayoutTable& table : tables ) {
      for( const LayoutTable::Row& row : table.rows ) {
         const auto cells = listed( row.cells );
         EXPECT_EQ( cells.size(), listed( table.columns ).size() ) << row.field;
         for( std::size_t column = 0; column < cells.size(); ++column ) {
            const std::string cell = cells[column];
            if( cell != "-" ) {
               const auto colon = cell.find( ':' );
               rows.push_back(
                  { table.columns[column], table.variants, row.field,
                    static_cast<unsigned>( std::stoul( cell ) ),
                    static_cast<unsigned>( std::stoul( cell.substr( colon + 1 ) ) ) } );
            }
         }
      }
   }
   return rows;
}

void checkPairs( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const auto chip = static_cast<Hardware::ChipType>( chipType );
         const bool valid = model.valid( chipType, variant );
         EXPECT_EQ( expected.chipTypeVariantValid( chip, static_cast<U8>( variant ) ), valid )
            << expected.name << " (" << chipType << ", " << variant << ")";
      }
   }
   for( const Pair& pair : model.pairs() ) {
      std::shared_ptr<Kelvar::AsicBase> view;
      if( expected.registered ) {
         EXPECT_TRUE(
            Hardware::chipTypeVariantValid( expected.name, pair.chip(), pair.variantNumber() ) );
         view = Hardware::stringObj( expected.name, pair.chip(), pair.variantNumber() );
      } else {
         view = expected.makeWithStorage( pair.chip(), pair.variantNumber() );
      }
      EXPECT_EQ( view->isTable(), expected.isTable );
      EXPECT_EQ( view->chipType(), pair.chipType );
      EXPECT_EQ( view->variant(), pair.variant );
      EXPECT_EQ( view->len(), expected.storageBytes );
      // The storage follows the members, in the same object.
      const auto* const begin = reinterpret_cast<const U8*>( view.get() );
      EXPECT_EQ( view->buf(), begin + sizeof( Kelvar::AsicBase ) );
   }
   EXPECT_EQ( expected.viewSize, sizeof( Kelvar::AsicBase ) );
   EXPECT_EQ( expected.storageViewSize, ( expected.viewSize + expected.storageBytes + 7 ) / 8 * 8 );
   for( const auto& [chipType, variant] : model.invalidPairs() ) {
      const auto chip = static_cast<Hardware::ChipType>( chipType );
      const auto number = static_cast<U8>( variant );
      const std::string message = "chipType: " + chipName( chipType ) +
                                  " variant: " + std::to_string( variant ) +
                                  " not in metainfo for " + expected.name + "!";
      Image image( expected.storageBytes, 0x5a );
      for( const bool existingEntry : { false, true } ) {
         expectFailure(
            [&, chip = chip] {
               expected.make( chip, image.data(), static_cast<U16>( image.size() ), existingEntry,
                              number );
            },
            quoted( "0" ), signatures.constructor( expected.name ), "construction", message );
      }
      if( expected.registered ) {
         EXPECT_FALSE( Hardware::chipTypeVariantValid( expected.name, chip, number ) );
         expectFailure( [&, chip = chip] { Hardware::stringObj( expected.name, chip, number ); },
                        quoted( "0" ), signatures.constructor( expected.name ), "stringObj",
                        message );
      }
      EXPECT_EQ( image, Image( expected.storageBytes, 0x5a ) );
   }
}

void checkDeclarations( const Expectation& expected ) {
   if( !expected.registered ) {
      return;
   }
   const auto& catalogue = Hardware::fieldCatalogue();
   for( const FieldUnderTest& field : expected.fields ) {
      EXPECT_EQ( std::count_if( catalogue.begin(), catalogue.end(),
                                [&field]( const Hardware::CatalogueRow& row ) {
                                   return row.identifier == field.identifier &&
                                          row.name == field.name &&
                                          row.hardwareName == field.hardwareName;
                                } ),
                 1 )
         << field.name;
   }
   const auto fields = Hardware::classFields( expected.name );
   ASSERT_EQ( fields.size(), expected.fields.size() );
   for( std::size_t number = 0; number < fields.size(); ++number ) {
      EXPECT_EQ( fields[number].name, expected.fields[number].name ) << "place " << number;
      EXPECT_EQ( fields[number].identifier, expected.fields[number].identifier );
      EXPECT_EQ( fields[number].valueBits, expected.fields[number].typeBits );
      EXPECT_EQ( fields[number].readOnly, expected.fields[number].readOnly );
   }
   const Model model( expected );
   for( const Pair& pair : model.pairs() ) {
      const auto info = Hardware::pairInfo( expected.name, pair.chipType, pair.variantNumber() );
      ASSERT_TRUE( info ) << model.where( pair );
      EXPECT_EQ( info->isTable, expected.isTable );
      EXPECT_EQ( info->width, pair.metadata->width );
      EXPECT_EQ( info->entries, pair.metadata->entries );
      EXPECT_EQ( info->arrayElements, pair.metadata->arrayElements );
      EXPECT_EQ( info->fieldCount, pair.metadata->fieldCount );
      EXPECT_EQ( info->instanceCount, pair.metadata->instanceCount );
      EXPECT_EQ( info->hasVariants, !model.variantless( pair.chipType ) );
      EXPECT_EQ( info->hasAddress, pair.address != nullptr );
   }
   for( const auto& [chipType, variant] : model.invalidPairs() ) {
      EXPECT_FALSE( Hardware::pairInfo( expected.name, chipType, static_cast<U8>( variant ) ) );
   }
}

void checkMetadata( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   const auto expectedOf = [&]( const std::string& name, const MetadataRow& row ) -> unsigned {
      const std::map<std::string, unsigned> values{ { "width", row.width },
                                                    { "tableWidth", row.width },
                                                    { "regWidth", row.width },
                                                    { "arrayIndex_min", 0 },
                                                    { "arrayElements", row.arrayElements },
                                                    { "index_min", 0 },
                                                    { "entries", row.entries },
                                                    { "fieldCount", row.fieldCount },
                                                    { "instanceCount", row.instanceCount },
                                                    { "maxIdentifier", expected.maxIdentifier },
                                                    { "addrStride", expected.addrStride } };
      return values.at( name );
   };
   for( const Pair& pair : model.pairs() ) {
      Image image;
      const auto view = viewOf( expected, pair, image );
      for( const auto& operation : expected.statics ) {
         const unsigned value = expectedOf( operation.name, *pair.metadata );
         EXPECT_EQ( operation.ofPair( pair.chipType, pair.variantNumber() ), value )
            << model.where( pair ) << " " << operation.name;
         if( operation.ofView ) {
            EXPECT_EQ( operation.ofView( *view ), value )
               << model.where( pair ) << " " << operation.name;
         }
      }
      // The virtual ones, as the holder of a base pointer reaches them.
      EXPECT_EQ( view->width(), pair.metadata->width );
      EXPECT_EQ( view->fieldCount(), pair.metadata->fieldCount );
      EXPECT_EQ( view->instanceCount(), pair.metadata->instanceCount );
      EXPECT_EQ( view->isTable(), expected.isTable );
      unsigned present = 0;
      for( const Place& place : pair.places ) {
         present += place.present();
      }
      EXPECT_EQ( present, pair.metadata->fieldCount ) << "rows of " << model.where( pair );
      if( expected.isTable ) {
         EXPECT_TRUE( expected.isPrimary( *view ) );
         EXPECT_EQ( view->entries(), pair.metadata->entries );
         EXPECT_EQ( view->tableVariantCount( pair.chipType, pair.variantNumber() ),
                    pair.metadata->tableVariantCount )
            << model.where( pair );
         EXPECT_EQ( expected.tableVariantCount( *view ), pair.metadata->tableVariantCount );
         EXPECT_EQ( expressionOf( [&] { view->maxIdentifier(); } ),
                    "false && \"maxIdentifier invalid for this class\"" );
      } else {
         EXPECT_EQ( view->maxIdentifier(), expected.maxIdentifier );
         EXPECT_EQ( expressionOf( [&] { view->entries(); } ),
                    "false && \"entries invalid for this class\"" );
         EXPECT_EQ( expressionOf( [&] { view->tableVariantCount( pair.chipType, 0 ); } ), "false" );
      }
   }
   const Pair& some = model.pairs().front();
   Image image;
   const auto view = viewOf( expected, some, image );
   for( const auto& [chipType, variant] : model.invalidPairs() ) {
      const auto number = static_cast<U8>( variant );
      const std::string expression = model.refusal( chipType );
      const std::string where =
         "(" + std::to_string( chipType ) + ", " + std::to_string( variant ) + ")";
      expected.pairIs( *view, static_cast<U8>( chipType ), number );
      for( const auto& operation : expected.statics ) {
         // The two that call another say so in the signature.
         const std::string name = operation.name == "tableWidth" || operation.name == "regWidth"
                                     ? "width"
                                     : operation.name;
         const std::string signature = signatures.ofPair( operation.result, name );
         expectFailure( [&, chipType = chipType] { operation.ofPair( chipType, number ); },
                        expression, signature, where );
         if( operation.ofView ) {
            expectFailure( [&] { operation.ofView( *view ); }, expression, signature, where );
         }
      }
      if( expected.isTable ) {
         expectFailure( [&, chipType = chipType] { view->tableVariantCount( chipType, number ); },
                        expression, signatures.tableVariantCount(), where );
      }
   }
   // A chip type is a U32 here: nothing of it is cut off.
   for( const auto& operation : expected.statics ) {
      EXPECT_EQ( expressionOf( [&] { operation.ofPair( some.chipType + 256, 0 ); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { operation.ofPair( 0x80000000u, 0 ); } ), "0" );
   }
}

void checkAccessors( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   std::mt19937 random( 1 );
   for( const Pair& pair : model.pairs() ) {
      Image own;
      const auto view = viewOf( expected, pair, own );
      for( std::size_t number = 0; number < expected.fields.size(); ++number ) {
         const FieldUnderTest& field = expected.fields[number];
         const Place place = pair.places[number];
         if( !place.present() ) {
            continue;
         }
         const std::string where = model.where( pair, field );
         const unsigned bytes = place.bytes();
         const unsigned width = place.width;
         ASSERT_LE( width, field.typeBits ) << where;

         expected.bufferIs( *view, nullptr, 0 );
         EXPECT_EQ( field.len( *view ), width ) << where;
         EXPECT_EQ( field.offset( *view ), place.offset ) << where;
         EXPECT_TRUE( field.valid( *view ) ) << where;
         EXPECT_EQ( view->fieldWidth( field.identifier ), width ) << where;
         EXPECT_EQ( view->fieldOffset( field.identifier ), place.offset ) << where;
         EXPECT_TRUE( view->isFieldValid( field.identifier ) ) << where;

         for( const unsigned size : std::set<unsigned>{ bytes, bytes + 1, bytes + 5, bytes + 8,
                                                        expected.storageBytes + 3 } ) {
            if( size < bytes ) {
               continue;
            }
            Image image = randomImage( size, random );
            Image before = image;
            expected.bufferIs( *view, image.data(), static_cast<U16>( size ) );
            const Bits value = bitsAt( image, place.offset, width );
            EXPECT_EQ( field.get( *view ), value ) << where;
            for( U16 word = 0; word < ( field.wide() ? field.typeBits / 64 : 2 ); ++word ) {
               const Bits shifted = field.wide() ? value >> 64 * word : value;
               EXPECT_EQ( view->stringField( field.name, word ), lowWord( shifted ) ) << where;
            }
            EXPECT_EQ( image, before ) << where;
            if( field.readOnly ) {
               continue;
            }
            const auto expectStored = [&]( const Bits& stored, const char* by ) {
               bitsAtAre( before, place.offset, width, stored );
               EXPECT_EQ( image, before ) << where << " " << by;
               image = randomImage( size, random );
               before = image;
               expected.bufferIs( *view, image.data(), static_cast<U16>( size ) );
            };
            const Bits stored = randomBits( width, random );
            field.set( *view, stored );
            expectStored( stored, "setter" );
            field.set( *view, Bits() );
            expectStored( Bits(), "setter" );
            field.mask( *view );
            expectStored( lowOnes( width ), "mask" );
            if( field.wide() ) {
               // Bits above the width are dropped.
               const Bits excess = randomBits( field.typeBits, random );
               field.set( *view, excess );
               expectStored( excess, "setter with excess" );
               expectFailure( [&] { view->setField64( field.identifier, 1 ); }, "false",
                              signatures.setField64(), where );
               expectFailure( [&] { view->stringFieldIs( field.name, 1 ); }, "false",
                              signatures.stringFieldIs(), where );
               expectStored( bitsAt( before, place.offset, width ), "refused setter" );
               continue;
            }
            // Above the argument type everything is cut off before the bound is tested.
            const U64 cut = field.typeBits == 64 ? 0 : U64{ 0xa5a5a5a5a5a5a5a5 } << field.typeBits;
            view->setField64( field.identifier, lowWord( stored ) | cut );
            expectStored( stored, "setField64" );
            view->stringFieldIs( field.name, lowWord( stored ) | cut );
            expectStored( stored, "stringFieldIs" );
            if( width == field.typeBits ) {
               continue;
            }
            Bits excess = stored;
            excess.set( width + random() % ( field.typeBits - width ) );
            if( width == 8 || width == 16 || width == 32 || width == 64 ) {
               field.set( *view, excess );
               expectStored( stored, "setter without bound" );
               view->setField64( field.identifier, lowWord( excess ) );
               expectStored( stored, "setField64 without bound" );
               continue;
            }
            const std::string bound = field.name + " <= " + hexOf( lowOnes( width ) );
            const std::string signature = signatures.set( field );
            const U64 wrong = lowWord( excess );
            expectFailure( [&] { field.set( *view, excess ); }, bound, signature, where );
            expectFailure( [&] { view->setField64( field.identifier, wrong ); }, bound, signature,
                           where );
            expectFailure( [&] { view->stringFieldIs( field.name, wrong ); }, bound, signature,
                           where );
            Bits next;
            next.set( width );
            expectFailure( [&] { field.set( *view, next ); }, bound, signature, where );
            EXPECT_EQ( image, before ) << where;
         }

         // One byte less than the field needs.
         Image image = randomImage( bytes - 1, random );
         const Image before = image;
         expected.bufferIs( *view, image.data(), static_cast<U16>( bytes - 1 ) );
         const std::string length = "len_ >= " + std::to_string( bytes );
         expectFailure( [&] { field.get( *view ); }, length, signatures.get( field ), where );
         expectFailure( [&] { view->stringField( field.name, 0 ); }, length,
                        signatures.get( field ), where );
         EXPECT_EQ( field.len( *view ), width );
         EXPECT_EQ( field.offset( *view ), place.offset );
         if( !field.readOnly ) {
            // The length is tested before the bound.
            const Bits excess = lowOnes( field.typeBits );
            expectFailure( [&] { field.set( *view, excess ); }, length, signatures.set( field ),
                           where );
            expectFailure( [&] { field.mask( *view ); }, length, signatures.mask( field ), where );
            if( !field.wide() ) {
               expectFailure( [&] { view->setField64( field.identifier, lowWord( excess ) ); },
                              length, signatures.set( field ), where );
            }
         }
         EXPECT_EQ( image, before ) << where;
      }
   }
}

namespace {

// Everything that a field without a place on the view's pair must refuse.
void expectAbsent( const Expectation& expected, const Signatures& signatures, const Model& model,
                   Kelvar::AsicBase& view, unsigned chipType, std::size_t number,
                   const std::string& pair ) {
   const FieldUnderTest& field = expected.fields[number];
   const std::string where = pair + " " + field.name;
   const std::string expression = model.absence( chipType, number );
   EXPECT_FALSE( field.valid( view ) ) << where;
   EXPECT_FALSE( view.isFieldValid( field.identifier ) ) << where;
   EXPECT_EQ( view.fieldWidth( field.identifier ), 0u ) << where;
   expectFailure( [&] { view.fieldOffset( field.identifier ); }, expression,
                  signatures.offset( field ), where );
   expectFailure( [&] { field.offset( view ); }, expression, signatures.offset( field ), where );
   expectFailure( [&] { field.len( view ); }, quoted( "0" ), signatures.len( field ), where,
                  chipName( chipType ) + " does not have field " + field.hardwareName );
   expectFailure( [&] { field.get( view ); }, expression, signatures.get( field ), where );
   expectFailure( [&] { view.stringField( field.name, 0 ); }, expression, signatures.get( field ),
                  where );
   if( !field.readOnly ) {
      expectFailure( [&] { field.set( view, lowOnes( field.typeBits ) ); }, expression,
                     signatures.set( field ), where );
      expectFailure( [&] { field.mask( view ); }, expression, signatures.mask( field ), where );
      if( !field.wide() ) {
         expectFailure( [&] { view.setField64( field.identifier, 0 ); }, expression,
                        signatures.set( field ), where );
         expectFailure( [&] { view.stringFieldIs( field.name, 0 ); }, expression,
                        signatures.set( field ), where );
      }
   }
}

} // namespace

void checkAbsentFields( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   std::mt19937 random( 2 );
   for( const Pair& pair : model.pairs() ) {
      Image own;
      const auto view = viewOf( expected, pair, own );
      // The place is decided before the length is looked at, be it the greatest there is.
      Image image = randomImage( 0xffff, random );
      const Image before = image;
      for( const U16 len : { U16{ 0xffff }, U16{ 0 } } ) {
         expected.bufferIs( *view, image.data(), len );
         for( std::size_t number = 0; number < expected.fields.size(); ++number ) {
            if( !pair.places[number].present() ) {
               expectAbsent( expected, signatures, model, *view, pair.chipType, number,
                             model.where( pair ) );
            }
         }
      }
      EXPECT_EQ( image, before );
   }
   // Pairs that the class doesn't have at all.
   Image own;
   const auto view = viewOf( expected, model.pairs().front(), own );
   for( const auto& [chipType, variant] : model.invalidPairs() ) {
      expected.pairIs( *view, static_cast<U8>( chipType ), static_cast<U8>( variant ) );
      for( std::size_t number = 0; number < expected.fields.size(); number += 1 + number / 4 ) {
         expectAbsent( expected, signatures, model, *view, chipType, number,
                       "(" + std::to_string( chipType ) + ", " + std::to_string( variant ) + ")" );
      }
   }
}

void checkIdentifiersAndNames( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   for( const Pair& pair : model.pairs() ) {
      Image image;
      const auto view = viewOf( expected, pair, image );
      const Image before = image;
      for( unsigned identifier = 0; identifier <= 400; ++identifier ) {
         const auto field = std::find_if(
            expected.fields.begin(), expected.fields.end(),
            [&]( const FieldUnderTest& one ) { return one.identifier == identifier; } );
         if( field != expected.fields.end() ) {
            const Place place =
               pair.places[static_cast<std::size_t>( field - expected.fields.begin() )];
            EXPECT_EQ( view->isFieldValid( identifier ), place.present() );
            EXPECT_EQ( view->fieldWidth( identifier ), place.width );
            if( field->readOnly ) {
               expectFailure( [&] { view->setField64( identifier, 0 ); }, "false",
                              signatures.setField64(), field->name );
               expectFailure( [&] { view->stringFieldIs( field->name, 0 ); }, quoted( "false" ),
                              signatures.stringFieldIs(), field->name,
                              "fieldName not found or is const." );
            } else if( field->wide() ) {
               expectFailure( [&] { view->setField64( identifier, 0 ); }, "false",
                              signatures.setField64(), field->name );
            }
            continue;
         }
         EXPECT_FALSE( view->isFieldValid( identifier ) ) << identifier;
         const std::string where = model.where( pair ) + " " + std::to_string( identifier );
         expectFailure( [&] { view->fieldWidth( identifier ); }, "false",
                        signatures.byIdentifier( "U16", "fieldWidth" ), where );
         expectFailure( [&] { view->fieldOffset( identifier ); }, "false",
                        signatures.byIdentifier( "U16", "fieldOffset" ), where );
         expectFailure( [&] { view->setField64( identifier, 0 ); }, "false",
                        signatures.setField64(), where );
      }
      EXPECT_FALSE( view->isFieldValid( 0xffffffff ) );
      EXPECT_EQ( expressionOf( [&] { view->fieldWidth( 0x80000000 ); } ), "false" );
      const std::string first = expected.fields.front().name;
      for( const std::string& name : std::initializer_list<std::string>{
              "", "noSuchField", first + "x", first.substr( 0, first.size() - 1 ),
              expected.fields.front().hardwareName, expected.fields.front().capitalName } ) {
         if( model.fieldNumber( name ) < expected.fields.size() ) {
            continue; // `ivec`, which is `ivec6` without its last letter
         }
         expectFailure( [&] { view->stringField( name, 0 ); }, quoted( "false" ),
                        signatures.stringField(), name, "fieldName not found." );
         expectFailure( [&] { view->stringFieldIs( name, 0 ); }, quoted( "false" ),
                        signatures.stringFieldIs(), name, "fieldName not found or is const." );
      }
      EXPECT_EQ( image, before );
   }
}

void checkWholeEntry( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   std::mt19937 random( 3 );
   for( const Pair& pair : model.pairs() ) {
      const std::string where = model.where( pair );
      Bits mask;
      for( const Place& place : pair.places ) {
         mask |= lowOnes( place.width ) << place.offset;
      }
      const Raw4096 stated = expected.allFieldsMask( pair.chipType, pair.variantNumber() );
      const Image statedBytes( stated.bytes(), stated.bytes() + 512 );
      EXPECT_EQ( bitsAt( statedBytes, 0, 1024 ), mask ) << where;
      EXPECT_TRUE( std::all_of( statedBytes.begin() + 128, statedBytes.end(),
                                []( U8 byte ) { return byte == 0; } ) );

      Image own;
      const auto view = viewOf( expected, pair, own );
      EXPECT_TRUE( view->allFieldsMask() == stated ) << where;
      for( const unsigned size : { expected.storageBytes, expected.storageBytes + 1 } ) {
         Image image = randomImage( size, random );
         const Image before = image;
         expected.bufferIs( *view, image.data(), static_cast<U16>( size ) );
         EXPECT_EQ( expected.getAllFields( *view ),
                    bitsAt( image, 0, 8 * expected.storageBytes ) & mask )
            << where;
         EXPECT_EQ( image, before );
      }
      Image image( expected.storageBytes - 1 );
      expected.bufferIs( *view, image.data(), static_cast<U16>( image.size() ) );
      expectFailure( [&] { expected.getAllFields( *view ); },
                     "len_ >= " + std::to_string( expected.storageBytes ),
                     signatures.getAllFields( expected.entryType ), where );
   }
   Image own;
   const auto view = viewOf( expected, model.pairs().front(), own );
   for( const auto& [chipType, variant] : model.invalidPairs() ) {
      const auto number = static_cast<U8>( variant );
      const std::string where =
         "(" + std::to_string( chipType ) + ", " + std::to_string( variant ) + ")";
      expectFailure( [&, chipType = chipType] { expected.allFieldsMask( chipType, number ); },
                     model.refusal( chipType ), signatures.ofPair( "Raw4096", "allFieldsMask" ),
                     where );
      expected.pairIs( *view, static_cast<U8>( chipType ), number );
      const std::set<unsigned> variants = model.validVariants( chipType );
      expectFailure( [&] { expected.getAllFields( *view ); },
                     variants.size() == 1 ? "variant_ == " + std::to_string( *variants.begin() )
                                          : "0",
                     signatures.getAllFields( expected.entryType ), where );
   }
}

void checkAddresses( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   const std::string signature = signatures.getSchanAddress();
   struct Outputs {
      U32 address = 0xdeadbeef;
      U8 accessType = 0xaa;
      U8 destBlock = 0xbb;
      bool operator==( const Outputs& ) const = default;
   };
   for( const Pair& pair : model.pairs() ) {
      const std::string where = model.where( pair );
      const MetadataRow& row = *pair.metadata;
      Image image;
      const auto view = viewOf( expected, pair, image );
      const auto ask = [&]( Outputs& outputs, unsigned identifier, unsigned tableEntry,
                            unsigned arrayIndex ) {
         const bool found = expected.getSchanAddress(
            pair.chipType, pair.variantNumber(), outputs.address, outputs.accessType,
            outputs.destBlock, static_cast<U16>( identifier ), tableEntry,
            static_cast<U16>( arrayIndex ) );
         return found;
      };
      if( pair.address == nullptr ) {
         Outputs outputs;
         expectFailure( [&] { ask( outputs, 0, 0, 0 ); }, "0", signature, where );
         EXPECT_EQ( outputs, Outputs() );
         continue;
      }
      const AddressRow& address = *pair.address;
      const auto instances = listed( address.instances );
      ASSERT_EQ( instances.size(), row.instanceCount ) << "rows of " << where;
      const unsigned lastEntry = row.entries - 1;
      const unsigned lastElement = row.arrayElements - 1;
      const std::set<unsigned> entries{ 0, std::min( 1u, lastEntry ), row.entries / 2, lastEntry };
      const std::set<unsigned> elements{ 0, std::min( 1u, lastElement ), row.arrayElements / 2,
                                         lastElement };
      const std::string identifierTest =
         expected.isTable ? "identifier <= " + std::to_string( row.instanceCount - 1 )
                          : "identifier < " + std::to_string( row.instanceCount );
      for( const unsigned tableEntry : entries ) {
         for( const unsigned arrayIndex : elements ) {
            Outputs right;
            right.address =
               address.base + tableEntry * address.entryStep + arrayIndex * address.arrayStep;
            // The address is written before the identifier is tested.
            for( const unsigned identifier :
                 { row.instanceCount, row.instanceCount + 1, 0x100u, 0xffffu } ) {
               Outputs outputs;
               expectFailure( [&] { ask( outputs, identifier, tableEntry, arrayIndex ); },
                              identifierTest, signature, where );
               EXPECT_EQ( outputs, right ) << where;
            }
            for( unsigned identifier = 0; identifier < row.instanceCount; ++identifier ) {
               right.accessType = static_cast<U8>( instances[identifier].accessType );
               right.destBlock = static_cast<U8>( instances[identifier].destBlock );
               Outputs outputs;
               EXPECT_TRUE( ask( outputs, identifier, tableEntry, arrayIndex ) );
               EXPECT_EQ( outputs, right ) << where;
               Outputs ofView;
               EXPECT_TRUE( view->getSchanAddress( ofView.address, ofView.accessType,
                                                   ofView.destBlock, static_cast<U16>( identifier ),
                                                   tableEntry, static_cast<U16>( arrayIndex ) ) );
               EXPECT_EQ( ofView, right ) << where;
            }
         }
      }
      // The entry is tested first, then the element; nothing is written before both pass.
      const std::string entryTest =
         expected.isTable ? "tableEntry < " + std::to_string( row.entries ) : "tableEntry == 0";
      const std::string arrayTest = expected.isTable && row.arrayElements == 1
                                       ? "arrayIndex == 0"
                                       : "arrayIndex < " + std::to_string( row.arrayElements );
      for( const unsigned identifier : { 0u, 0xffffu } ) {
         for( const unsigned tableEntry : { row.entries, 0xffffffffu } ) {
            for( const unsigned arrayIndex : { 0u, lastElement, 0xffffu } ) {
               Outputs outputs;
               expectFailure( [&] { ask( outputs, identifier, tableEntry, arrayIndex ); },
                              entryTest, signature, where );
               EXPECT_EQ( outputs, Outputs() );
            }
         }
         for( const unsigned arrayIndex : { row.arrayElements, 0xffffu } ) {
            for( const unsigned tableEntry : { 0u, lastEntry } ) {
               Outputs outputs;
               expectFailure( [&] { ask( outputs, identifier, tableEntry, arrayIndex ); },
                              arrayTest, signature, where );
               EXPECT_EQ( outputs, Outputs() );
            }
         }
      }
   }
   Image own;
   const auto view = viewOf( expected, model.pairs().front(), own );
   for( const auto& [chipType, variant] : model.invalidPairs() ) {
      const auto number = static_cast<U8>( variant );
      const std::vector<std::string> line{ signature + " chipType: " + std::to_string( chipType ) +
                                           " variant: " + std::to_string( variant ) + " failed." };
      Outputs outputs;
      EXPECT_EQ( tracesOf( 0,
                           [&, chipType = chipType] {
                              EXPECT_FALSE( expected.getSchanAddress(
                                 chipType, number, outputs.address, outputs.accessType,
                                 outputs.destBlock, 0, 0, 0 ) );
                           } ),
                 line );
      expected.pairIs( *view, static_cast<U8>( chipType ), number );
      EXPECT_EQ( tracesOf( 0,
                           [&] {
                              EXPECT_FALSE( view->getSchanAddress( outputs.address,
                                                                   outputs.accessType,
                                                                   outputs.destBlock, 0, 0, 0 ) );
                           } ),
                 line );
      EXPECT_EQ( outputs, Outputs() );
   }
   Outputs outputs;
   EXPECT_FALSE( expected.getSchanAddress( model.pairs().front().chipType + 256, 0, outputs.address,
                                           outputs.accessType, outputs.destBlock, 0, 0, 0 ) );
}

void checkTags( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   std::mt19937 random( 4 );
   for( const Pair& pair : model.pairs() ) {
      const std::string where = model.where( pair );
      struct Stamp {
         Place place;
         unsigned value;
      };
      std::vector<Stamp> stamps;
      if( pair.tag != nullptr ) {
         for( const TagFieldRow& row : listed( pair.tag->fields ) ) {
            stamps.push_back( { pair.places[model.fieldNumber( row.field )], row.value } );
            ASSERT_TRUE( stamps.back().place.present() ) << "rows of " << where;
         }
      }
      const auto make = [&]( Image& image, bool existingEntry ) {
         return expected.make( pair.chip(), image.data(), static_cast<U16>( image.size() ),
                               existingEntry, pair.variantNumber() );
      };
      const auto holds = [&]( const Image& image ) {
         return expected.discriminator( pair.chip(), image.data(), static_cast<U16>( image.size() ),
                                        pair.variantNumber() );
      };
      // A fresh entry is changed in its tag fields alone, up to the first that doesn't fit.
      unsigned needed = 0;
      for( const Stamp& stamp : stamps ) {
         needed = std::max( needed, stamp.place.bytes() );
      }
      for( unsigned size = 0; size <= needed + 1; ++size ) {
         const Image before = randomImage( size, random );
         Image right = before;
         std::string failure = "none";
         for( const Stamp& stamp : stamps ) {
            if( size < stamp.place.bytes() ) {
               failure = "len_ >= " + std::to_string( stamp.place.bytes() );
               break;
            }
            bitsAtAre( right, stamp.place.offset, stamp.place.width, Bits( stamp.value ) );
         }
         Image image = before;
         if( failure == "none" ) {
            EXPECT_EQ( expressionOf( [&] { make( image, false ); } ), "none" ) << where;
         } else {
            expectFailure( [&] { make( image, false ); }, failure, signatures.handleBuf(), where );
         }
         EXPECT_EQ( image, right ) << where << " " << size;
         if( expected.discriminator ) {
            EXPECT_EQ( holds( right ), failure == "none" ) << where << " " << size;
         }
      }
      // An existing entry is left alone, and its tag verified field by field.
      Image tagged = randomImage( expected.storageBytes, random );
      for( const Stamp& stamp : stamps ) {
         bitsAtAre( tagged, stamp.place.offset, stamp.place.width, Bits( stamp.value ) );
      }
      Image image = tagged;
      EXPECT_EQ( expressionOf( [&] { make( image, true ); } ), "none" ) << where;
      EXPECT_EQ( image, tagged ) << where;
      for( auto stamp = stamps.begin(); stamp != stamps.end(); ++stamp ) {
         for( unsigned bit = 0; bit < stamp->place.width; ++bit ) {
            // Fields after this one are wrong too: the first mismatch counts.
            image = tagged;
            for( auto wrong = stamp; wrong != stamps.end(); ++wrong ) {
               bitsAtAre( image, wrong->place.offset, wrong->place.width,
                          Bits( wrong->value ^ 1u << ( wrong == stamp ? bit : 0 ) ) );
            }
            const Image before = image;
            expectFailure( [&] { make( image, true ); },
                           "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), " +
                              std::to_string( stamp->place.width ) + ", " +
                              std::to_string( stamp->place.offset ) +
                              " ); ( n == " + std::to_string( stamp->value ) + " ); })",
                           signatures.handleBuf(), where );
            EXPECT_EQ( image, before ) << where;
            if( expected.discriminator ) {
               EXPECT_FALSE( holds( image ) ) << where;
            }
         }
      }
      // A view that owns its entry starts from zeros and the tag.
      Image fresh( expected.storageBytes, 0 );
      for( const Stamp& stamp : stamps ) {
         bitsAtAre( fresh, stamp.place.offset, stamp.place.width, Bits( stamp.value ) );
      }
      const auto owner = expected.makeWithStorage( pair.chip(), pair.variantNumber() );
      EXPECT_EQ( Image( owner->buf(), owner->buf() + owner->len() ), fresh ) << where;
      if( expected.discriminator && stamps.empty() ) {
         EXPECT_TRUE( expected.discriminator( pair.chip(), nullptr, 0, pair.variantNumber() ) );
      }
   }
   if( expected.discriminator ) {
      for( const auto& [chipType, variant] : model.invalidPairs() ) {
         // Generous on a chip type of the class, whatever the variant.
         EXPECT_EQ( expected.discriminator( static_cast<Hardware::ChipType>( chipType ), nullptr, 0,
                                            static_cast<U8>( variant ) ),
                    !model.validVariants( chipType ).empty() )
            << chipType << ", " << variant;
      }
   }
}

void checkTraces( const Expectation& expected ) {
   const Model model( expected );
   const Signatures signatures( expected );
   std::vector<bool> traced( expected.fields.size() );
   for( const Pair& pair : model.pairs() ) {
      const std::string where = model.where( pair );
      const std::string numbers = "chipType: " + std::to_string( pair.chipType ) +
                                  " variant: " + std::to_string( pair.variant );
      const auto expectLines = [&]( Action action, const std::vector<std::string>& lines ) {
         EXPECT_EQ( tracesOf( 8, action ), lines ) << where;
      };
      Image image;
      const std::string variant =
         model.variantless( pair.chipType ) ? "None" : std::to_string( pair.variant );
      expectLines(
         [&] { viewOf( expected, pair, image ); },
         { expected.name + " chipType: " + chipName( pair.chipType ) + " variant: " + variant } );
      const auto view = viewOf( expected, pair, image );
      const std::string fieldCount = signatures.ofPair( "U16", "fieldCount" ) + " " + numbers;
      const std::string instanceCount = signatures.ofPair( "U16", "instanceCount" ) + " " + numbers;
      expectLines( [&] { view->fieldCount(); }, { fieldCount } );
      expectLines( [&] { view->instanceCount(); }, { instanceCount } );
      expectLines( [&] { expected.getAllFields( *view ); },
                   { signatures.getAllFields( expected.entryType ) + " " + numbers } );
      expectLines( [&] { view->allFieldsMask(); }, {} );
      expectLines( [&] { view->width(); }, {} );
      if( pair.address != nullptr ) {
         U32 address;
         U8 accessType, destBlock;
         expectLines( [&] { view->getSchanAddress( address, accessType, destBlock, 0, 0, 0 ); },
                      {} );
      }
      if( expected.discriminator ) {
         expectLines(
            [&] {
               expected.discriminator( pair.chip(), image.data(), static_cast<U16>( image.size() ),
                                       pair.variantNumber() );
            },
            { signatures.discriminator( expected.name ) +
              " chipType: " + chipName( pair.chipType ) } );
      }
      for( std::size_t number = 0; number < expected.fields.size(); ++number ) {
         if( traced[number] || !pair.places[number].present() ) {
            continue;
         }
         traced[number] = true;
         const FieldUnderTest& field = expected.fields[number];
         const std::string get = signatures.get( field ) + " " + numbers;
         const std::string offset = signatures.offset( field ) + " " + numbers;
         expectLines( [&] { field.get( *view ); }, { get } );
         expectLines( [&] { field.len( *view ); }, { signatures.len( field ) + " " + numbers } );
         expectLines( [&] { field.offset( *view ); }, { offset } );
         expectLines( [&] { field.valid( *view ); },
                      { signatures.valid( field ) + " " + numbers } );
         expectLines( [&] { view->fieldWidth( field.identifier ); },
                      { signatures.byIdentifier( "U16", "fieldWidth" ) + " " + numbers } );
         expectLines( [&] { view->isFieldValid( field.identifier ); },
                      { signatures.byIdentifier( "bool", "isFieldValid" ) + " " + numbers } );
         expectLines( [&] { view->fieldOffset( field.identifier ); },
                      { signatures.byIdentifier( "U16", "fieldOffset" ) + " " + numbers, offset } );
         const std::string second = numbers + " fieldName: " + field.name;
         expectLines( [&] { view->stringField( field.name, 0 ); },
                      { signatures.stringField(), second, get } );
         if( field.readOnly ) {
            continue;
         }
         const std::string set = signatures.set( field ) + " " + numbers;
         expectLines( [&] { field.set( *view, Bits() ); }, { set } );
         expectLines( [&] { field.mask( *view ); }, { signatures.mask( field ) + " " + numbers } );
         if( !field.wide() ) {
            expectLines( [&] { view->setField64( field.identifier, 0 ); },
                         { signatures.setField64() + " " + numbers, set } );
            expectLines( [&] { view->stringFieldIs( field.name, 0 ); },
                         { signatures.stringFieldIs(), second, set } );
         }
      }
      // A failing operation traces before it fails.
      EXPECT_EQ(
         tracesOf(
            8, [&] { EXPECT_EQ( expressionOf( [&] { view->setField64( 0, 0 ); } ), "false" ); } ),
         std::vector<std::string>{ signatures.setField64() + " " + numbers } );
      // Nothing is traced at level 8 by the other levels' bits.
      EXPECT_TRUE( tracesOf( 7, [&] { view->fieldCount(); } ).empty() );
   }
   EXPECT_TRUE( std::all_of( traced.begin(), traced.end(), []( bool one ) { return one; } ) )
      << "the rows place every field somewhere";
}

} // namespace Testing
