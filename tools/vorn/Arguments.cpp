// Arguments and texts of help that several verbs share.
#include "Arguments.h"

#include "Chips.h"
#include "Text.h"
#include "Values.h"

#include <CLI/CLI.hpp>

namespace Vorn {

void addChip( CLI::App& verb, std::string& chip ) {
   verb.add_option( "--chip", chip, "Chip type, by name or number" )
      ->required()
      ->type_name( "NAME|NUMBER" );
}

void addPair( CLI::App& verb, PairText& pair ) {
   verb.add_option( "TABLE", pair.table, "Name of the table, as `vorn tables` prints it" )
      ->required();
   addChip( verb, pair.chip );
   verb.add_option( "--variant", pair.variant, "Variant of the table, 0 if not given" )
      ->type_name( "V" );
}

void addPlace( CLI::App& verb, PlaceText& place ) {
   verb.add_option( "--entry", place.entry, "Entry of the table, 0 if not given" )
      ->type_name( "N" );
   verb.add_option( "--array", place.array, "Array element, 0 if not given" )->type_name( "N" );
   verb.add_option( "--identifier", place.identifier, "Instance of the memory, 0 if not given" )
      ->type_name( "N" );
}

Place placeOf( const PlaceText& place ) {
   return { parseIndex( place.entry, "entry", 0xffffffff ),
            parseIndex( place.array, "array", 0xffff ),
            parseIndex( place.identifier, "identifier", 0xffff ) };
}

void describe( CLI::App& verb, const std::string& paragraphs, const std::string& examples ) {
   verb.footer( wrapped( paragraphs + "\n\nExample:\n" + examples ) );
}

std::string chipTypesParagraph() {
   std::vector<U32> numbers;
   for( const Chip& chip : allChips() ) {
      numbers.push_back( chip.number );
   }
   return "Chip types: " + listOfChips( numbers );
}

} // namespace Vorn
