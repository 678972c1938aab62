// What the page works on: the entry that is shown, and the dumps that are loaded.
#include "Session.h"

#include <Vorn/BitOrder.h>
#include <Vorn/Chip.h>
#include <Vorn/Compose.h>
#include <Vorn/DrawingSvg.h>
#include <Vorn/Error.h>
#include <Vorn/Fields.h>
#include <Vorn/Images.h>
#include <Vorn/Locate.h>
#include <Vorn/Pairs.h>
#include <Vorn/Record.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <utility>

namespace Explorer {

using Vorn::Error;
using Vorn::Field;
using Vorn::Layout;

namespace {

// The most fields that a search lists: no more than a person looks through.
constexpr std::size_t mostResults = 60;

std::string stringIn( const Json& question, const char* key ) {
   return question.value( key, std::string() );
}

std::string hexDigitsOf( std::span<const U8> bytes ) {
   std::string text;
   Vorn::appendHex( text, bytes );
   return text;
}

bool isBlank( std::string_view text ) {
   return text.find_first_not_of( " \t\r\n" ) == std::string_view::npos;
}

std::string_view trimmed( std::string_view text ) {
   constexpr std::string_view blanks = " \t\r\n";
   const auto first = text.find_first_not_of( blanks );
   return first == std::string_view::npos
             ? std::string_view()
             : text.substr( first, text.find_last_not_of( blanks ) + 1 - first );
}

// One bit of the entry, to be read and set like a field.
Field bitAt( U32 number ) { return { "", "", 0, number, 1, false }; }

std::string bitsText( U32 offset, U32 width ) {
   return width == 1 ? std::to_string( offset )
                     : std::to_string( offset ) + "–" + std::to_string( offset + width - 1 );
}

Json bitsText( const std::optional<Vorn::Difference::Bits>& bits ) {
   return bits ? Json( bitsText( bits->offset, bits->width ) ) : Json();
}

Vorn::EntryIndex indexIn( const Json& question ) {
   const auto number = [&]( const char* key ) -> U64 {
      const std::string text = stringIn( question, key );
      return isBlank( text ) ? 0 : Vorn::parseIndex( trimmed( text ), key, 0xffffffff );
   };
   return { number( "entry" ), number( "array" ), number( "identifier" ) };
}

// The pair to go to: the one that is shown, if it is among them, or another of its chip type.
std::pair<U32, U32> targetIn( const std::vector<Vorn::ChipVariants>& pairs, const Layout& shown ) {
   const auto own =
      std::find_if( pairs.begin(), pairs.end(), [&]( const Vorn::ChipVariants& pair ) {
         return pair.chip == shown.chip().number;
      } );
   const Vorn::ChipVariants& pair = own != pairs.end() ? *own : pairs.front();
   const auto& variants = pair.variants;
   const bool hasVariant =
      std::find( variants.begin(), variants.end(), shown.variant() ) != variants.end();
   return { pair.chip, hasVariant ? shown.variant() : variants.front() };
}

Json pairsText( const std::vector<Vorn::ChipVariants>& pairs ) { return Vorn::textOf( pairs ); }

} // namespace

Session::Session()
   : layout_( Vorn::allTables().front(),
              [] { return U64( Vorn::pairsOf( Vorn::allTables().front() ).front().chip ); }() ),
     order_( layout_ ), image_( layout_.blank() ) {}

Json Session::answer( std::string_view name, const Json& question, std::string_view bytes ) {
   struct Question {
      std::string_view name;
      Json ( Session::*answer )( const Json&, std::string_view );
   };
   static constexpr Question questions[] = {
      { "catalogue", &Session::catalogue },
      { "open", &Session::open },
      { "read", &Session::read },
      { "view", &Session::view },
      { "set", &Session::set },
      { "flip", &Session::flip },
      { "address", &Session::address },
      { "copy", &Session::copy },
      { "picture", &Session::picture },
      { "comparePair", &Session::comparePair },
      { "compareImage", &Session::compareImage },
      { "search", &Session::search },
      { "load", &Session::load },
      { "loadOther", &Session::loadOther },
      { "unload", &Session::unload },
      { "entries", &Session::entries },
      { "pick", &Session::pick },
   };
   const auto found = std::find_if( std::begin( questions ), std::end( questions ),
                                    [&]( const Question& one ) { return one.name == name; } );
   if( found == std::end( questions ) ) {
      throw Error( "no question " + Vorn::inQuotes( name ) );
   }
   return ( this->*found->answer )( question, bytes );
}

// The tables with their pairs, the chip types and the notations.
Json Session::catalogue( const Json&, std::string_view ) {
   Json answer;
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      answer["chips"].push_back( { { "number", chip.number }, { "name", chip.name } } );
   }
   for( const auto table : Vorn::allTables() ) {
      Json pairs = Json::array();
      for( const Vorn::ChipVariants& pair : Vorn::pairsOf( table ) ) {
         pairs.push_back(
            { { "chip", pair.chip }, { "variants", pair.variants }, { "any", pair.any } } );
      }
      answer["tables"].push_back( { { "name", table }, { "pairs", std::move( pairs ) } } );
   }
   answer["notations"] = Vorn::notationNames();
   return answer;
}

// Shows a fresh entry of the pair.
Json Session::open( const Json& question, std::string_view ) {
   const std::string variant = stringIn( question, "variant" );
   const Layout layout( stringIn( question, "table" ), stringIn( question, "chip" ),
                        isBlank( variant ) ? 0 : Vorn::parseIndex( variant, "variant", 0xff ) );
   show( layout, layout.blank() );
   return description();
}

void Session::show( const Layout& layout, std::span<const U8> image ) {
   std::vector<U8> bytes( image.begin(), image.end() );
   bytes.resize( layout.bytes() );
   if( !( layout == layout_ ) ) {
      layout_ = layout;
      order_ = Vorn::BitOrder( layout );
   }
   image_ = std::move( bytes );
}

// All about the pair that is shown, its fields in bit order.
Json Session::description() const {
   Json fields = Json::array();
   Json bits = Json::array(); // the fields of each, by their place in `fields`
   for( std::size_t bit = 0; bit < 8 * layout_.bytes(); ++bit ) {
      bits.push_back( Json::array() );
   }
   for( const Vorn::BitOrder::Field& field : order_.fields() ) {
      for( U32 bit = field.offset; bit < field.end(); ++bit ) {
         bits[bit].push_back( fields.size() );
      }
      Json notations = Json::array();
      for( const Vorn::Notation notation : Vorn::notationsOf( field.width ) ) {
         notations.push_back( Vorn::notationNames()[static_cast<std::size_t>( notation )] );
      }
      Json shared = Json::array();
      for( const Field& other : layout_.overlapping( field.name ) ) {
         shared.push_back( other.name );
      }
      fields.push_back( { { "name", field.name },
                          { "bits", bitsText( field.offset, field.width ) },
                          { "first", field.offset },
                          { "width", field.width },
                          { "identifier", field.identifier },
                          { "hardwareName", field.hardwareName },
                          { "type", Vorn::typeOf( layout_.table(), field.identifier ) },
                          { "readOnly", field.readOnly },
                          { "lane", field.lane },
                          { "notations", std::move( notations ) },
                          { "shared", std::move( shared ) } } );
   }
   Json numbers = Json::array();
   for( const Vorn::Number& number : Vorn::numbersOf( layout_.info() ) ) {
      const bool isStated = number.value != 0xffffffff;
      numbers.push_back( { { "name", number.name },
                           { "text", isStated ? std::to_string( number.value ) : "not stated" } } );
   }
   return { { "table", layout_.table() },          { "chip", layout_.chip().number },
            { "variant", layout_.variant() },      { "pairText", layout_.pairText() },
            { "isTable", layout_.info().isTable }, { "hasAddress", layout_.info().hasAddress },
            { "unusedBits", order_.unusedBits() }, { "numbers", std::move( numbers ) },
            { "fields", std::move( fields ) },     { "bits", std::move( bits ) } };
}

// The images in a text, as `vorn decode` takes it from its arguments or, if it has several lines,
// from a file. The pair that is shown holds, unless the images say their own.
Entries Session::readImages( std::string_view text ) const {
   const auto given = trimmed( text );
   const bool isLine = given.find( '\n' ) == std::string_view::npos;
   if( !isLine ) {
      Entries entries = readDump( given, "<stdin>" );
      if( entries.size() > 1 ) {
         return entries;
      }
   }
   const Vorn::DumpOptions own{ .table = std::string( layout_.table() ),
                                .chip = &layout_.chip(),
                                .variant = layout_.variant() };
   Entries first;
   for( const auto& options :
        { own, Vorn::DumpOptions{}, Vorn::DumpOptions{ .chip = &layout_.chip() } } ) {
      Entries entries = Entries::ofArgument( given, options );
      if( !entries.hasErrors() && entries.size() > 0 ) {
         return entries;
      }
      if( !options.table.empty() ) {
         first = std::move( entries );
      }
   }
   return isLine ? first : readDump( given, "<stdin>" );
}

// The entries of a dump, the variants by their tags. The table that is shown holds, unless the
// images say their own.
Entries Session::readDump( std::string_view bytes, const std::string& name ) const {
   const Vorn::DumpOptions own{ .table = std::string( layout_.table() ), .chip = &layout_.chip() };
   Entries first = Entries::ofFile( bytes, name, own );
   if( !first.hasErrors() && first.size() > 0 ) {
      return first;
   }
   for( const auto& options :
        { Vorn::DumpOptions{}, Vorn::DumpOptions{ .chip = &layout_.chip() } } ) {
      Entries entries = Entries::ofFile( bytes, name, options );
      if( !entries.hasErrors() && entries.size() > 0 ) {
         return entries;
      }
   }
   return first;
}

// Shows the image in a text, or the first of several, which then become the entries to pick from;
// a fresh entry if the text is blank. Answers with the view, unless the image is of another pair.
Json Session::read( const Json& question, std::string_view text ) {
   if( isBlank( text ) ) {
      show( layout_, layout_.blank() );
      return { { "count", 0 }, { "view", viewOf( question, "" ) } };
   }
   Entries entries = readImages( text );
   const std::string message = entries.message();
   if( entries.size() == 0 ) {
      throw Error( message.empty() ? "no image in the text" : message );
   }
   const std::size_t count = entries.size();
   const auto first = entries.at( 0 );
   const bool isOther = !( *first.layout == layout_ );
   show( *first.layout, first.image );
   if( count > 1 ) {
      entries_ = std::move( entries );
      compareDumps();
   }
   return isOther
             ? Json{ { "count", count }, { "message", message }, { "description", description() } }
             : Json{ { "count", count }, { "view", viewOf( question, message ) } };
}

// The entry that is shown, its values in the notations that are asked for, one for each field.
Json Session::viewOf( const Json& question, const std::string& message ) const {
   const Json& notations = question.at( "notations" );
   Json values = Json::array();
   Json zeros = Json::array();
   for( const Vorn::BitOrder::Field& field : order_.fields() ) {
      const auto notation = Vorn::notationNamed( notations.at( values.size() ).get<std::string>() );
      const Vorn::Value value = layout_.value( image_, field );
      values.push_back( Vorn::textOf( value, notation ) );
      zeros.push_back( value == 0 );
   }
   std::string bits;
   for( U32 bit = 0; bit < 8 * image_.size(); ++bit ) {
      bits += layout_.get( image_, bitAt( bit ) ) != 0 ? '1' : '0';
   }
   Json answer{ { "image", hexDigitsOf( image_ ) },
                { "message", message },
                { "values", std::move( values ) },
                { "zeros", std::move( zeros ) },
                { "bits", std::move( bits ) } };
   if( layout_.wrongTag( image_ ) ) {
      if( const auto owner = layout_.variantOf( image_ ) ) {
         answer["variantOfTag"] = owner->variant();
      }
   }
   return answer;
}

// The same, with the warning about the image, if any.
Json Session::view( const Json& question, std::string_view ) {
   const auto read =
      Entries::ofArgument( hexDigitsOf( image_ ), { .table = std::string( layout_.table() ),
                                                    .chip = &layout_.chip(),
                                                    .variant = layout_.variant() } );
   return viewOf( question, read.message() );
}

Json Session::set( const Json& question, std::string_view ) {
   const std::string name = stringIn( question, "field" );
   const std::string text( trimmed( stringIn( question, "text" ) ) );
   const Field& field = layout_.settable( name );
   const Vorn::Value value =
      text == Vorn::maskWord ? Vorn::Value::onesOf( field.width ) : Vorn::parseValue( text, name );
   layout_.requireFits( field, value, text );
   if( layout_.wrongTag( image_ ) ) {
      layout_.set( image_, field, value ); // the tag may be what is put right
   } else {
      image_ = Vorn::compose( layout_, image_, { { name, value } } );
   }
   return view( question, {} );
}

Json Session::flip( const Json& question, std::string_view ) {
   const U32 number = question["bit"].get<U32>();
   const Field* of = nullptr; // the narrowest field that has the bit, but a tag before all
   for( const Field& field : layout_.fields() ) {
      if( field.overlaps( bitAt( number ) ) &&
          ( !of || field.readOnly || ( !of->readOnly && field.width < of->width ) ) ) {
         of = &field;
      }
   }
   if( !of ) {
      throw Error( "bit " + std::to_string( number ) + " belongs to no field of " +
                   layout_.pairText() );
   }
   layout_.settable( of->name );
   layout_.set( image_, bitAt( number ), layout_.get( image_, bitAt( number ) ) == 0 );
   return view( question, {} );
}

Json Session::address( const Json& question, std::string_view ) {
   const auto address = layout_.address( indexIn( question ) );
   if( !address ) {
      throw Error( layout_.pairText() + " has no address" );
   }
   return { { "address", Vorn::hexOf( address->schanAddress ) },
            { "accessType", address->accessType },
            { "destBlock", address->destBlock } };
}

std::string Session::record( const Json& question ) const {
   return Vorn::recordOf( layout_, indexIn( question ), image_ );
}

// What one of the buttons copies.
Json Session::copy( const Json& question, std::string_view ) {
   const std::string what = stringIn( question, "what" );
   if( what == "image" ) {
      return { { "text", hexDigitsOf( image_ ) } };
   }
   if( what == "words" ) {
      std::string words;
      Vorn::appendWords( words, image_ );
      return { { "text", words } };
   }
   if( what == "record" ) {
      return { { "text", record( question ) } };
   }
   const Json parts = Json::parse( record( question ) );
   std::string command = "vorn encode " + parts["table"].get<std::string>() + " --chip " +
                         parts["chip"].get<std::string>();
   for( const auto* const key : { "variant", "entry", "array", "identifier" } ) {
      const U64 number = parts[key].get<U64>();
      command += number > 0 ? " --" + std::string( key ) + ' ' + std::to_string( number ) : "";
   }
   command += parts.contains( "from" ) ? " --from " + parts["from"].get<std::string>() : "";
   for( const auto& [name, value] : parts["fields"].items() ) {
      command += ' ' + name + '=' + value.get<std::string>();
   }
   return { { "text", command } };
}

Json Session::picture( const Json&, std::string_view ) {
   return { { "svg",
              Vorn::drawnAsSvg( Vorn::Drawing( order_, Vorn::svgRoom() ), layout_.pairText() ) } };
}

Json Session::comparePair( const Json& question, std::string_view ) {
   const Layout other( layout_.table(), stringIn( question, "chip" ),
                       Vorn::parseIndex( stringIn( question, "variant" ), "variant", 0xff ) );
   const Vorn::Difference difference = Vorn::differenceOf( layout_, other );
   Json numbers = Json::array();
   for( const auto& number : difference.numbers ) {
      numbers.push_back(
         { { "name", number.name }, { "from", number.from }, { "to", number.to } } );
   }
   Json fields = Json::array();
   for( const auto& field : difference.fields ) {
      fields.push_back( { { "name", field.name },
                          { "change", field.change() },
                          { "from", bitsText( field.from ) },
                          { "to", bitsText( field.to ) } } );
   }
   return { { "from", layout_.pairText() },
            { "to", other.pairText() },
            { "numbers", std::move( numbers ) },
            { "fields", std::move( fields ) },
            { "unchanged", difference.unchanged } };
}

Json Session::change( const Field& field, std::span<const U8> before,
                      std::span<const U8> after ) const {
   return { { "name", field.name },
            { "change", "changed" },
            { "from", Vorn::hexOf( layout_.value( before, field ) ) },
            { "to", Vorn::hexOf( layout_.value( after, field ) ) } };
}

// The entry that is shown against an image of the same pair.
Json Session::compareImage( const Json&, std::string_view text ) {
   const Entries entries = readImages( text );
   if( entries.size() == 0 || entries.hasErrors() ) {
      throw Error( entries.size() == 0 && !entries.hasErrors() ? "no image in the text"
                                                               : entries.message() );
   }
   const auto other = entries.at( 0 );
   if( !( *other.layout == layout_ ) ) {
      throw Error( "the image is of " + other.layout->pairText() + ", not of " +
                   layout_.pairText() );
   }
   std::vector<U8> image( other.image.begin(), other.image.end() );
   image.resize( layout_.bytes() );
   Vorn::EntryComparison comparison;
   const auto found = comparison.changeOf( { &layout_, image_ }, { &layout_, image } );
   Json fields = Json::array();
   for( const Field& field : order_.fields() ) {
      const bool isChanged =
         found.kind == Vorn::EntryChange::Kind::changed
            ? std::any_of( found.fields.begin(), found.fields.end(),
                           [&]( const Field& one ) { return one.name == field.name; } )
            : layout_.value( image_, field ) != layout_.value( image, field );
      if( isChanged ) {
         fields.push_back( change( field, image_, image ) );
      }
   }
   return { { "from", "this entry" },
            { "to", "the other image" },
            { "numbers", Json::array() },
            { "isOtherBits", fields.empty() && image != image_ },
            { "unchanged", layout_.fields().size() - fields.size() },
            { "fields", std::move( fields ) } };
}

// Tables and fields with the text in their names, and what lies at the address that it writes.
Json Session::search( const Json& question, std::string_view ) {
   const std::string text( trimmed( stringIn( question, "text" ) ) );
   Json answer{ { "tables", Json::array() },
                { "fields", Json::array() },
                { "places", Json::array() },
                { "message", "" } };
   if( text.empty() ) {
      return answer;
   }
   std::size_t total = 0;
   try {
      const auto found = search_.find( text );
      for( const auto table : found.tables ) {
         const auto pairs = Vorn::pairsOf( table );
         const auto [chip, variant] = targetIn( pairs, layout_ );
         answer["tables"].push_back( { { "table", table },
                                       { "chip", chip },
                                       { "variant", variant },
                                       { "pairs", pairsText( pairs ) } } );
      }
      for( const Vorn::FieldUse* const use : found.fields ) {
         if( answer["fields"].size() == mostResults ) {
            break;
         }
         const auto [chip, variant] = targetIn( use->pairs, layout_ );
         answer["fields"].push_back( { { "table", use->table },
                                       { "chip", chip },
                                       { "variant", variant },
                                       { "name", use->name },
                                       { "hardwareName", use->hardwareName },
                                       { "identifier", use->identifier },
                                       { "pairs", pairsText( use->pairs ) } } );
      }
      total = found.fields.size();
   } catch( const Error& error ) {
      answer["message"] = error.what();
   }
   answer["left"] = total - answer["fields"].size();
   if( Vorn::numberIn( text ) ) {
      try {
         answer["places"] = places( text );
         answer["message"] = "";
      } catch( const Error& error ) {
         answer["message"] = error.what();
      }
   }
   return answer;
}

// Memories of a stated size first.
Json Session::places( std::string_view text ) const {
   auto found = Vorn::locate( layout_.chip(), Vorn::parseAddresses( text ).first );
   std::stable_partition( found.begin(), found.end(), []( const Vorn::Location& location ) {
      return !Vorn::Memory( location.layout ).isUnbounded();
   } );
   // Variants that have it in common are one place.
   std::vector<std::pair<Vorn::Location, Vorn::ChipVariants>> groups;
   for( const Vorn::Location& location : found ) {
      auto group = std::find_if( groups.begin(), groups.end(), [&]( const auto& one ) {
         return one.first.layout.table() == location.layout.table() &&
                one.first.index == location.index && one.first.address == location.address;
      } );
      if( group == groups.end() ) {
         const bool any = !location.layout.info().hasVariants;
         group = groups.insert( group, { location, { layout_.chip().number, {}, any } } );
      }
      group->second.variants.push_back( location.layout.variant() );
   }
   Json places = Json::array();
   for( const auto& [location, variants] : groups ) {
      const std::vector pairs{ variants };
      const auto [chip, variant] = targetIn( pairs, layout_ );
      places.push_back( { { "table", location.layout.table() },
                          { "chip", chip },
                          { "variant", variant },
                          { "pairs", pairsText( pairs ) },
                          { "entry", std::to_string( location.index.entry ) },
                          { "array", std::to_string( location.index.array ) },
                          { "identifier", std::to_string( location.index.identifier ) },
                          { "destBlock", location.address.destBlock },
                          { "isUnbounded", Vorn::Memory( location.layout ).isUnbounded() } } );
   }
   return places;
}

Json Session::load( const Json& question, std::string_view bytes ) {
   Entries entries = readDump( bytes, stringIn( question, "name" ) );
   if( entries.size() == 0 ) {
      throw Error( entries.hasErrors() ? entries.message() : "no image in the dump" );
   }
   entries_ = std::move( entries );
   compareDumps();
   return dumpFacts();
}

Json Session::loadOther( const Json& question, std::string_view bytes ) {
   Entries entries = readDump( bytes, stringIn( question, "name" ) );
   if( entries.size() == 0 ) {
      throw Error( entries.hasErrors() ? entries.message() : "no image in the dump" );
   }
   const std::string message = entries.message();
   other_ = std::move( entries );
   compareDumps();
   Json answer = dumpFacts();
   answer["message"] = message;
   return answer;
}

// Closes the second dump alone, or both.
Json Session::unload( const Json& question, std::string_view ) {
   other_ = {};
   if( !question.value( "otherOnly", false ) ) {
      entries_ = {};
   }
   compareDumps();
   return dumpFacts();
}

Json Session::dumpFacts() const {
   return { { "count", entries_.size() },
            { "otherCount", other_.size() },
            { "changed", changed_.size() },
            { "message", entries_.message() } };
}

Vorn::EntryChange Session::changeOf( std::size_t index ) {
   const auto stateIn = [index]( const Entries& entries ) -> Vorn::EntryState {
      if( index >= entries.size() ) {
         return {};
      }
      const auto entry = entries.at( index );
      return { entry.layout, entry.image };
   };
   return comparison_.changeOf( stateIn( entries_ ), stateIn( other_ ) );
}

void Session::compareDumps() {
   changed_.clear();
   if( other_.size() == 0 ) {
      return;
   }
   for( std::size_t i = 0; i < std::max( entries_.size(), other_.size() ); ++i ) {
      if( changeOf( i ).kind != Vorn::EntryChange::Kind::none ) {
         changed_.push_back( i );
      }
   }
}

Json Session::rowOf( std::size_t index ) {
   const bool isOwn = index < entries_.size();
   const auto entry = isOwn ? entries_.at( index ) : other_.at( index );
   Json row{ { "index", index },
             { "label", std::to_string( entry.entry.value_or( index ) ) },
             { "pairText", entry.layout->pairText() },
             { "image", hexDigitsOf( entry.image ) },
             { "isEmpty", entry.isEmpty },
             { "change", "" } };
   if( other_.size() == 0 ) {
      return row;
   }
   const Vorn::EntryChange change = changeOf( index );
   row["change"] = change.text();
   std::string fields;
   for( const Field& field : change.fields ) {
      const auto valueIn = [&]( const Entries& entries ) {
         return Vorn::hexOf( entry.layout->value( entries.at( index ).image, field ) );
      };
      fields += ( fields.empty() ? "" : ", " ) + std::string( field.name ) + ' ' +
                valueIn( entries_ ) + " → " + valueIn( other_ );
   }
   if( change.kind == Vorn::EntryChange::Kind::changed && fields.empty() ) {
      fields = "bits of no field";
   }
   row["fields"] = fields;
   return row;
}

// Some rows of the list, of all entries or of those that differ.
Json Session::entries( const Json& question, std::string_view ) {
   const bool changedOnly = question.value( "changedOnly", false );
   const std::size_t total =
      changedOnly ? changed_.size() : std::max( entries_.size(), other_.size() );
   const auto from = std::min( question.value( "from", std::size_t( 0 ) ), total );
   const auto end = from + std::min( question.value( "count", std::size_t( 0 ) ), total - from );
   Json rows = Json::array();
   for( std::size_t i = from; i < end; ++i ) {
      rows.push_back( rowOf( changedOnly ? changed_[i] : i ) );
   }
   return { { "total", total }, { "rows", std::move( rows ) } };
}

// Shows an entry of the list.
Json Session::pick( const Json& question, std::string_view ) {
   const auto index = question["index"].get<std::size_t>();
   const bool isOwn = index < entries_.size();
   const auto entry = isOwn ? entries_.at( index ) : other_.at( index );
   show( *entry.layout, entry.image );
   const auto text = []( const std::optional<U64>& number ) {
      return number ? Json( std::to_string( *number ) ) : Json();
   };
   Json answer = { { "description", description() },
                   { "entry", text( entry.entry ) },
                   { "array", text( entry.array ) },
                   { "identifier", text( entry.identifier ) } };
   if( isOwn && index < other_.size() && *other_.at( index ).layout == layout_ ) {
      answer["other"] = hexDigitsOf( other_.at( index ).image );
   }
   return answer;
}

} // namespace Explorer
