// The catalogue of layouts as comma-separated values.
#include "forms/Exports.h"

namespace Vorn {

std::string layoutCsv( std::span<const Layout> layouts ) {
   std::string text = "table,chip,chipType,variant,bytes,field,hardwareName,identifier,offset,"
                      "width,readOnly,tag\n";
   for( const Layout& layout : layouts ) {
      const auto variant =
         layout.info().hasVariants ? std::to_string( layout.variant() ) : std::string( "any" );
      const auto pair = std::string( layout.table() ) + ',' + layout.chip().name + ',' +
                        std::to_string( layout.chip().number ) + ',' + variant + ',' +
                        std::to_string( layout.bytes() ) + ',';
      for( const Field& field : layout.fields() ) {
         text.append( pair ).append( field.name ).append( "," ).append( field.hardwareName );
         for( const U32 number : { field.identifier, field.offset, field.width } ) {
            text += ',' + std::to_string( number );
         }
         text += field.readOnly ? ",1," : ",0,";
         for( const TagField& tag : layout.tag() ) {
            if( tag.field == field ) {
               text += std::to_string( tag.value );
            }
         }
         text += '\n';
      }
   }
   return text;
}

} // namespace Vorn
