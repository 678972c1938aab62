// Views and facts by table name, over the classes of Classes.def.
#include "frame/ClassData.h"
#include "frame/Failure.h"

#include <Hardware/Registry.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <unordered_map>

namespace Hardware {

namespace Frame::Classes {
#define HARDWARE_CLASS( name ) extern const ClassData name;
#include <Hardware/detail/Classes.def>
} // namespace Frame::Classes

namespace {

constexpr const Frame::ClassData* classes[] = {
#define HARDWARE_CLASS( name ) &Frame::Classes::name,
#include <Hardware/detail/Classes.def>
};

constexpr std::string_view names[] = {
#define HARDWARE_CLASS( name ) #name,
#include <Hardware/detail/Classes.def>
};
static_assert( std::is_sorted( std::begin( names ), std::end( names ) ),
               "the registry's order is that of the names" );

// The low 32 bits of the string's own hash, 0 for the empty string.
struct Hash {
   std::size_t operator()( const Oru::String& name ) const {
      const auto* const data = name.data();
      return data == nullptr ? 0 : static_cast<U32>( data->hash() );
   }
};

template<class Result>
using Function = Result ( * )( Hardware::ChipType, U8 );

template<class Result>
using Map = std::unordered_map<Oru::String, Function<Result>, Hash>;

// A map from each name to one function of its class. Not destroyed at process exit: threads and
// later destructors may still use it.
template<class Result>
const Map<Result>& mapOf( Function<Result> Frame::ClassData::*function ) {
   auto map = std::make_unique<Map<Result>>();
   for( const Frame::ClassData* const data : classes ) {
      map->emplace( Oru::String( data->name ), data->*function );
   }
   return *map.release();
}

template<class Result>
Function<Result> find( const Map<Result>& objMap, const Oru::String& name, int line,
                       const char* signature ) {
   const auto objMapIter = objMap.find( name );
   if( objMapIter == objMap.end() ) {
      Frame::failWithMessage(
         "objMapIter != objMap.end()", line, signature,
         [&name]( std::ostream& out ) { out << "invalid name given: " << name; } );
   }
   return objMapIter->second;
}

const Frame::ClassData* dataOf( std::string_view name ) {
   for( const Frame::ClassData* const data : classes ) {
      if( data->name == name ) {
         return data;
      }
   }
   return nullptr;
}

// The facts of a valid pair; null for an invalid one, or without a class.
const Frame::PairFacts* factsOf( const Frame::ClassData* data, U32 chipType, U8 variant ) {
   if( data == nullptr ) {
      return nullptr;
   }
   const Frame::PairFacts& facts = Frame::factsOf( *data, chipType, variant );
   return facts.format == Frame::noFormat ? nullptr : &facts;
}

} // namespace

std::shared_ptr<Kelvar::AsicBase> stringObj( Oru::String name, Hardware::ChipType chipType,
                                             U8 variant ) {
   // Branches that no test takes: the guard of a static.
   static const auto& objMap = mapOf( &Frame::ClassData::make );
   return find( objMap, name, __LINE__,
                "std::shared_ptr<Kelvar::AsicBase> Hardware::stringObj(Oru::String, "
                "Hardware::ChipType, U8)" )( chipType, variant );
}

bool chipTypeVariantValid( Oru::String name, Hardware::ChipType chipType, U8 variant ) {
   // Branches that no test takes: the guard of a static.
   static const auto& objMap = mapOf( &Frame::ClassData::valid );
   return find( objMap, name, __LINE__,
                "bool Hardware::chipTypeVariantValid(Oru::String, Hardware::ChipType, U8)" )(
      chipType, variant );
}

std::size_t classNames( std::string_view* out, std::size_t capacity ) {
   std::copy_n( names, std::min( capacity, std::size( names ) ), out );
   return std::size( names );
}

std::size_t classFields( std::string_view name, FieldInfo* out, std::size_t capacity ) {
   const Frame::ClassData* const data = dataOf( name );
   if( data == nullptr ) {
      return 0;
   }
   std::transform(
      data->fields, data->fields + std::min<std::size_t>( capacity, data->fieldCount ), out,
      []( const Frame::FieldData& field ) {
         return FieldInfo{ field.identifier, Frame::catalogueRowOf( field.identifier ).name,
                           static_cast<U16>( Frame::bitsOf( field.type ) ), field.readOnly };
      } );
   return data->fieldCount;
}

// For programs built against older headers, when the library itself returned vectors.
HARDWARE_API std::vector<std::string_view>
classNamesFromLibrary() __asm__( "_ZN8Hardware10classNamesEv" );
HARDWARE_API std::vector<FieldInfo> classFieldsFromLibrary( std::string_view name ) __asm__(
   "_ZN8Hardware11classFieldsESt17basic_string_viewIcSt11char_traitsIcEE" );
std::vector<std::string_view> classNamesFromLibrary() { return classNames(); }
std::vector<FieldInfo> classFieldsFromLibrary( std::string_view name ) {
   return classFields( name );
}

std::optional<PairInfo> pairInfo( std::string_view name, U32 chipType, U8 variant ) {
   const Frame::ClassData* const data = dataOf( name );
   const Frame::PairFacts* const facts = factsOf( data, chipType, variant );
   if( facts == nullptr ) {
      return std::nullopt;
   }
   return PairInfo{
      data->isTable,     facts->width,         facts->entries,           facts->arrayElements,
      facts->fieldCount, facts->instanceCount, facts->variantCount != 0, facts->hasAddress
   };
}

std::size_t pairFields( std::string_view name, U32 chipType, U8 variant, PairField* fields,
                        std::size_t capacity ) {
   const Frame::ClassData* const data = dataOf( name );
   const Frame::PairFacts* const facts = factsOf( data, chipType, variant );
   if( facts == nullptr ) {
      return 0;
   }
   std::size_t count = 0;
   for( unsigned number = 0; number < data->fieldCount; ++number ) {
      const Frame::Cell cell = Frame::cellOf( *data, number, static_cast<U8>( chipType ), variant );
      if( !cell.present() ) {
         continue;
      }
      if( count < capacity ) {
         const Frame::FieldData& field = data->fields[number];
         const CatalogueRow& row = Frame::catalogueRowOf( field.identifier );
         const auto* const tagEnd = facts->tag + facts->tagCount;
         const auto* const tag =
            std::find_if( facts->tag, tagEnd, [number]( const Frame::TagField& tagField ) {
               return tagField.field == number;
            } );
         fields[count] = { row.identifier,
                           row.name,
                           row.hardwareName,
                           cell.offset,
                           cell.width,
                           field.readOnly,
                           tag == tagEnd ? U8( 0 ) : tag->value };
      }
      ++count;
   }
   return count;
}

std::optional<PairAddress> pairAddress( std::string_view name, U32 chipType, U8 variant ) {
   const Frame::PairFacts* const facts = factsOf( dataOf( name ), chipType, variant );
   if( facts == nullptr || !facts->hasAddress ) {
      return std::nullopt;
   }
   return PairAddress{ facts->base, facts->entryStep, facts->arrayStep, facts->accessType,
                       facts->destBlock };
}

} // namespace Hardware
