// Arguments and texts of help that several verbs share.
#include "Arguments.h"

#include "Chips.h"
#include "Text.h"

#include <CLI/CLI.hpp>

namespace Vorn {

void addPair( CLI::App& verb, PairText& pair ) {
   verb.add_option( "TABLE", pair.table, "Name of the table, as `vorn tables` prints it" )
      ->required();
   verb.add_option( "--chip", pair.chip, "Chip type, by name or number" )
      ->required()
      ->type_name( "NAME|NUMBER" );
   verb.add_option( "--variant", pair.variant, "Variant of the table, 0 if not given" )
      ->type_name( "V" );
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
