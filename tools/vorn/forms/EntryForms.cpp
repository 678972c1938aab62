// The forms in which a composed entry is printed.
#include "forms/EntryForms.h"

#include "Text.h"

#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <charconv>
#include <iterator>

namespace Vorn {

namespace {

void appendNumber( std::string& text, U64 number, int base = 10 ) {
   char digits[20];
   const auto end = std::to_chars( std::begin( digits ), std::end( digits ), number, base ).ptr;
   text.append( digits, end );
}

void appendBytes( std::string& text, const Composed& entry ) {
   appendHex( text, entry.image );
   text += '\n';
}

void appendWordLine( std::string& text, const Composed& entry ) {
   appendWords( text, entry.image );
   text += '\n';
}

void appendText( std::string& text, const Composed& entry ) {
   text += "image: ";
   appendHex( text, entry.image, " " );
   text += "\nwords: ";
   appendWordLine( text, entry );
   if( !entry.address ) {
      text += "address: none\n";
      return;
   }
   text += "address: " + hexOf( entry.address->schanAddress ) +
           "\naccessType: " + std::to_string( entry.address->accessType ) +
           "\ndestBlock: " + std::to_string( entry.address->destBlock ) + '\n';
}

// The keys of an object up to the entry's index, and those of its address.
void appendIndex( std::string& text, const Layout& layout, const EntryIndex& index ) {
   text.append( R"({"table":")" ).append( layout.table() );
   text.append( R"(","chip":")" ).append( layout.chip().name );
   text += R"(","variant":)";
   appendNumber( text, layout.variant() );
   text += R"(,"entry":)";
   appendNumber( text, index.entry );
   text += R"(,"array":)";
   appendNumber( text, index.array );
   text += R"(,"identifier":)";
   appendNumber( text, index.identifier );
}

void appendAddress( std::string& text, const std::optional<Address>& address ) {
   if( address ) {
      text += R"(,"address":"0x)";
      appendNumber( text, address->schanAddress, 16 );
      text += R"(","accessType":)";
      appendNumber( text, address->accessType );
      text += R"(,"destBlock":)";
      appendNumber( text, address->destBlock );
   } else {
      text += R"(,"address":null,"accessType":null,"destBlock":null)";
   }
   text += "}\n";
}

void appendJson( std::string& text, const Composed& entry ) {
   appendIndex( text, entry.layout, entry.index );
   text += R"(,"image":")";
   appendHex( text, entry.image );
   text += '"';
   appendAddress( text, entry.address );
}

struct NamedForm {
   std::string_view name;
   EntryForm form;
};

constexpr NamedForm forms[] = { { "text", appendText },
                                { "bytes", appendBytes },
                                { "words", appendWordLine },
                                { "json", appendJson } };

} // namespace

EntryForm formNamed( std::string_view name ) {
   return std::find_if( std::begin( forms ), std::end( forms ),
                        [&]( const NamedForm& form ) { return form.name == name; } )
      ->form;
}

std::string addressLine( const Layout& layout, const EntryIndex& index, const Address& address ) {
   std::string line;
   appendIndex( line, layout, index );
   appendAddress( line, address );
   return line;
}

void addForm( CLI::App& verb, EntryForm& form, std::span<const std::string_view> names ) {
   form = formNamed( names.front() );
   const auto read = [&form, names]( const std::string& name ) {
      if( std::find( names.begin(), names.end(), name ) == names.end() ) {
         throw CLI::ValidationError( "--output", "unknown form " + inQuotes( name ) +
                                                    suggestion( name, names ) );
      }
      form = formNamed( name );
   };
   verb
      .add_option_function<std::string>(
         "--output", read, "Form of the output, " + std::string( names.front() ) + " if not given" )
      ->type_name( listOf( names, "|" ) );
}

} // namespace Vorn
