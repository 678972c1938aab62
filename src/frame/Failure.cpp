// Assertion texts and signatures, and the only call of the platform's assertion routine.
#include "Failure.h"

#include <ostream>
#include <streambuf>

// Without <cassert>, which declares that it doesn't throw: a program may replace this function to
// observe failures.
extern "C" [[noreturn]] void __assert_fail( const char* expression, const char* file, unsigned line,
                                            const char* function );

namespace Hardware::Frame {

namespace {

constexpr const char* sourceStem = "VornTunnelMetaInfo";

constexpr const char* typeNames[] = { "U8",     "U16",    "U32",    "U64",
                                      "Raw128", "Raw256", "Raw512", "Raw1024" };

const char* typeName( ValueType type ) { return typeNames[static_cast<unsigned>( type )]; }

// The variants that `has` names; all of them if the variant is ignored.
struct VariantSet {
   unsigned count = 0;
   unsigned first = 0;

   template<class Has>
   explicit VariantSet( Has has ) {
      for( unsigned variant = variantLimit; variant-- > 0; ) {
         if( has( static_cast<U8>( variant ) ) ) {
            ++count;
            first = variant;
         }
      }
   }
};

} // namespace

const CatalogueRow& catalogueRowOf( U32 identifier ) {
   const auto& rows = fieldCatalogue();
   return *std::lower_bound(
      rows.begin(), rows.end(), identifier,
      []( const CatalogueRow& row, U32 number ) { return row.identifier < number; } );
}

namespace {

const CatalogueRow& catalogueRowOf( const ClassData& data, Site site ) {
   return Frame::catalogueRowOf( data.fields[site.field].identifier );
}

// The text around an operation's name in its signature. The name begins with the field if the
// operation is one field's, or with the class if it is named after the class.
struct Shape {
   const char* result;
   const char* name;
   const char* arguments;
};

const Shape& shapeOf( Operation operation ) {
   static constexpr Shape shapes[] = {
      // The getter's result and the setter's argument are of the field's type.
      { "", "", "() const" },
      { "void ", "Is", "" },
      { "void ", "Mask", "()" },
      { "U16 ", "Len", "() const" },
      { "U16 ", "Offset", "() const" },
      { "bool ", "Valid", "() const" },
      { "", "", "(Hardware::ChipType, U8*, U16, bool, U8)" },
      { "void ", "handleBuf", "(Hardware::ChipType, U8*, U16, bool, U8)" },
      { "static bool ", "", "(Hardware::ChipType, const U8*, U16, U8)" },
      { "virtual void ", "setField64", "(U32, U64)" },
      { "virtual U16 ", "fieldWidth", "(U32) const" },
      { "virtual U16 ", "fieldOffset", "(U32) const" },
      { "virtual bool ", "isFieldValid", "(U32) const" },
      { "virtual U64 ", "stringField", "(const Oru::String&, U16) const" },
      { "virtual void ", "stringFieldIs", "(const Oru::String&, const U64&)" },
      { "", "getAllFields", "() const" },
      { "static Raw4096 ", "allFieldsMask", "(U32, U8)" },
      { "static bool ", "getSchanAddress", "(U32, U8, U32&, U8&, U8&, U16, U32, U16)" },
      { "static U16 ", "width", "(U32, U8)" },
      { "static U32 ", "arrayElements", "(U32, U8)" },
      { "static U16 ", "fieldCount", "(U32, U8)" },
      { "static U16 ", "instanceCount", "(U32, U8)" },
      { "static U32 ", "arrayIndex_min", "(U32, U8)" },
      { "static U32 ", "index_min", "(U32, U8)" },
      { "static U32 ", "entries", "(U32, U8)" },
      { "virtual U32 ", "tableVariantCount", "(U32, U8) const" },
      { "static U32 ", "maxIdentifier", "(U32, U8)" },
      { "static U32 ", "addrStride", "(U32, U8)" },
   };
   static_assert( std::size( shapes ) == static_cast<unsigned>( Operation::addrStride ) + 1 );
   return shapes[static_cast<unsigned>( operation )];
}

} // namespace

Text shortNameOf( const ClassData& data, Site site ) {
   const char* const shape = shapeOf( site.operation ).name;
   switch( site.operation ) {
   case Operation::get:
   case Operation::set:
   case Operation::mask:
   case Operation::len:
   case Operation::offset:
      return Text( catalogueRowOf( data, site ).name, shape );
   case Operation::valid: {
      const std::string_view name = catalogueRowOf( data, site ).name;
      const char capital[] = { static_cast<char>( name[0] - 'a' + 'A' ), '\0' };
      return Text( "is", capital, name.substr( 1 ), shape );
   }
   case Operation::construct:
      return Text( data.name );
   case Operation::discriminate:
      return Text( "is", data.name );
   default:
      return Text( shape );
   }
}

Text signatureOf( const ClassData& data, Site site ) {
   const Shape& shape = shapeOf( site.operation );
   Text text( shape.result );
   if( site.operation == Operation::get ) {
      text.append( typeName( data.fields[site.field].type ) );
      text.append( " " );
   } else if( site.operation == Operation::getAllFields ) {
      text.append( typeName( data.entryType ) );
      text.append( " " );
   }
   text.append( "Hardware::" );
   text.append( data.name );
   text.append( "::" );
   text.append( shortNameOf( data, site ).view() );
   text.append( shape.arguments );
   if( site.operation == Operation::set ) {
      const ValueType type = data.fields[site.field].type;
      const bool byValue = type <= ValueType::u32;
      text.append( byValue ? "(" : "(const " );
      text.append( typeName( type ) );
      text.append( byValue ? ")" : "&)" );
   }
   return text;
}

void fail( const char* expression, int line, const char* signature ) {
   __assert_fail( expression, sourceStem, static_cast<unsigned>( line ), signature );
}

void fail( const ClassData& data, Site site, const char* expression ) {
   fail( expression, site.line, signatureOf( data, site ).c_str() );
}

void failWithMessage( const ClassData& data, Site site, const char* expression,
                      const char* message ) {
   failWithMessage( expression, site.line, signatureOf( data, site ).c_str(),
                    [message]( std::ostream& out ) { out << message; } );
}

void failLength( const ClassData& data, Site site, unsigned bytes ) {
   fail( data, site, Text( "len_ >= ", bytes ).c_str() );
}

void failBound( const ClassData& data, Site site, U64 maximum ) {
   Text expression( catalogueRowOf( data, site ).name, " <= 0x" );
   expression.appendHex( maximum );
   fail( data, site, expression.c_str() );
}

namespace {

// A stream buffer over a text. It allocates nothing, since a signal handler may trace.
class TextBuffer : public std::streambuf {
public:
   const Text& text() const { return text_; }

protected:
   int_type overflow( int_type character ) override {
      const char characters[] = { traits_type::to_char_type( character ) };
      text_.append( { characters, 1 } );
      return character;
   }
   std::streamsize xsputn( const char* characters, std::streamsize count ) override {
      text_.append( { characters, static_cast<std::size_t>( count ) } );
      return count;
   }

private:
   Text text_;
};

} // namespace

Text printed( U8 chipType ) {
   TextBuffer buffer;
   std::ostream( &buffer ) << static_cast<Hardware::ChipType>( chipType );
   return buffer.text();
}

void failAbsent( const ClassData& data, Site site, U8 chipType ) {
   if( site.operation == Operation::len ) {
      const Text message( printed( chipType ).view(), " does not have field ",
                          catalogueRowOf( data, site ).hardwareName );
      failWithMessage( data, site, "0", message.c_str() );
   }
   const VariantSet having(
      [&]( U8 variant ) { return cellOf( data, site.field, chipType, variant ).present(); } );
   if( having.count == 1 ) {
      fail( data, site, Text( "variant_ == ", having.first ).c_str() );
   }
   fail( data, site, "0" );
}

namespace {

VariantSet validVariants( const ClassData& data, U32 chipType ) {
   return VariantSet( [&data, chipType]( U8 variant ) {
      return factsOf( data, chipType, variant ).format != noFormat;
   } );
}

} // namespace

void failPair( const ClassData& data, Site site, U32 chipType ) {
   const VariantSet valid = validVariants( data, chipType );
   fail( data, site, valid.count == 1 && valid.first == 0 ? "variant == 0" : "0" );
}

void failViewPair( const ClassData& data, Site site, U8 chipType ) {
   const VariantSet valid = validVariants( data, chipType );
   if( valid.count == 1 ) {
      fail( data, site, Text( "variant_ == ", valid.first ).c_str() );
   }
   fail( data, site, "0" );
}

void failConstruction( const ClassData& data, Site site, U8 chipType, U8 variant ) {
   const Text message( "chipType: ", printed( chipType ).view(), " variant: ", variant,
                       " not in metainfo for ", data.name, "!" );
   failWithMessage( data, site, "0", message.c_str() );
}

void failTag( const ClassData& data, Site site, Cell cell, U8 value ) {
   const Text expression( "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), ", cell.width,
                          ", ", cell.offset, " ); ( n == ", value, " ); })" );
   fail( data, site, expression.c_str() );
}

} // namespace Hardware::Frame
