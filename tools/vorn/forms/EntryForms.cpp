// The forms in which a composed entry is printed.
#include "forms/EntryForms.h"

#include "Text.h"

#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <charconv>
#include <iterator>
#include <string>

namespace Vorn {

namespace {

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

// Writes into room that is there.
class Writer {
public:
   // Room for `size` bytes at the end of the text.
   Writer( std::string& text, std::size_t size ) : text_( text ) {
      const auto begin = text.size();
      text.resize( begin + size );
      to_ = text.data() + begin;
   }
   ~Writer() { text_.resize( static_cast<std::size_t>( to_ - text_.data() ) ); }
   Writer( const Writer& ) = delete;
   Writer& operator=( const Writer& ) = delete;

   Writer& operator<<( std::string_view part ) {
      to_ += part.copy( to_, part.size() );
      return *this;
   }
   Writer& operator<<( U64 number ) { return append( number, 10 ); }
   Writer& append( U64 number, int base ) {
      to_ = std::to_chars( to_, to_ + 20, number, base ).ptr;
      return *this;
   }

private:
   std::string& text_;
   char* to_;
};

// More than what stands in an object besides names and image.
constexpr std::size_t roomOfObject = 160;

// The keys of an object up to the entry's index, and those of its address.
void appendIndex( std::string& text, const Layout& layout, const EntryIndex& index ) {
   const std::string_view table = layout.table();
   const std::string_view chip = layout.chip().name;
   Writer( text, roomOfObject + table.size() + chip.size() )
      << R"({"table":")" << table << R"(","chip":")" << chip << R"(","variant":)"
      << layout.variant() << R"(,"entry":)" << index.entry << R"(,"array":)" << index.array
      << R"(,"identifier":)" << index.identifier;
}

void appendAddress( std::string& text, const std::optional<Address>& address ) {
   if( address ) {
      Writer writer( text, roomOfObject );
      writer << R"(,"address":"0x)";
      writer.append( address->schanAddress, 16 )
         << R"(","accessType":)" << address->accessType << R"(,"destBlock":)" << address->destBlock
         << "}\n";
   } else {
      text += R"(,"address":null,"accessType":null,"destBlock":null})"
              "\n";
   }
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
