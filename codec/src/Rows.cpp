// Rows of CSV, each of which says which entry to compose from which fields.
#include <Vorn/Rows.h>

#include "CsvText.h"
#include "ImageText.h"
#include "RecordFill.h"

#include <Vorn/Error.h>
#include <Vorn/Fields.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <Hardware/FieldId.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

struct Column {
   std::optional<RecordKey> key; // nothing: a field
   std::string name;
};

bool isField( std::string_view name ) {
   const auto& rows = Hardware::fieldCatalogue();
   return std::any_of( rows.begin(), rows.end(),
                       [&]( const Hardware::CatalogueRow& row ) { return row.name == name; } );
}

[[noreturn]] void refuseName( const Piece& name ) {
   std::vector<std::string_view> names;
   for( const auto& row : Hardware::fieldCatalogue() ) {
      names.push_back( row.name );
   }
   for( const std::string_view key : recordKeyNames ) {
      if( key != nameOf( RecordKey::fields ) ) {
         names.push_back( key );
      }
   }
   const auto near = nearest( name.text, names );
   throw BadText( name.at,
                  "no key or field " + inQuotes( name.text ) +
                     ( near ? "; did you mean " + std::string( *near ) + '?'
                            : "; the first row names keys such as table, chip and entry, and "
                              "fields" ) );
}

// What else the whole header may be.
void requireCommas( std::string_view line, const std::vector<Piece>& cells ) {
   if( line.starts_with( "\xff\xfe" ) || line.starts_with( "\xfe\xff" ) ) {
      throw BadText( 0, "the file is UTF-16; save it as UTF-8" );
   }
   const auto names = trimmed( line ); // tabs around them are blanks
   const auto found = names.find_first_of( ";\t" );
   if( cells.size() == 1 && found != std::string_view::npos ) {
      const auto other = static_cast<std::size_t>( names.data() - line.data() ) + found;
      throw BadText( other, std::string( line[other] == ';' ? "semicolons" : "tabs" ) +
                               " between the cells; write commas" );
   }
}

} // namespace

struct __attribute__( ( visibility( "hidden" ) ) ) RowComposer::State {
   explicit State( RowOptions given ) : options( std::move( given ) ) {}

   // Tokens of the record are the cells, each of which stands for two: the name of its column and
   // its value.
   static std::size_t nameToken( std::size_t cell ) { return 2 * cell + 1; }
   static std::size_t cellOf( std::size_t token ) { return ( token - 1 ) / 2; }

   bool has( RecordKey key ) const {
      return std::any_of( columns.begin(), columns.end(),
                          [&]( const Column& one ) { return one.key == key; } );
   }

   void takeHeader( std::string_view line );
   void fillCell( RecordFill& fill, std::size_t cell );
   void completePair( RecordFill& fill );

   RowOptions options;
   std::vector<Column> columns;
   std::vector<Piece> cells;
   RecordComposer composer;
};

void RowComposer::State::takeHeader( std::string_view line ) {
   columns.clear();
   const auto begin = trimmed( line );
   if( begin.starts_with( '{' ) || begin.starts_with( '[' ) ) {
      throw BadText( 0, "the file is JSON, not CSV; leave --csv out" );
   }
   cells = cellsOf( line );
   requireCommas( line, cells );
   for( const Piece& cell : cells ) {
      if( !cell.isGiven ) {
         throw BadText( cell.at, "a column has no name" );
      }
      const auto before = std::count_if( columns.begin(), columns.end(), [&]( const Column& one ) {
         return one.name == cell.text;
      } );
      const auto found = std::find( recordKeyNames.begin(), recordKeyNames.end(), cell.text );
      const auto key = static_cast<RecordKey>( found - recordKeyNames.begin() );
      const bool isName = isField( cell.text );
      // A field may be called as a key is.
      const bool isKey =
         found != recordKeyNames.end() && key != RecordKey::fields && ( before == 0 || !isName );
      if( !isKey && !isName ) {
         refuseName( cell );
      }
      const bool isSecond = found != recordKeyNames.end() && isName;
      if( before > ( isSecond ? 1 : 0 ) ) {
         throw BadText( cell.at, "a second column " + inQuotes( cell.text ) );
      }
      columns.push_back( { isKey ? std::optional( key ) : std::nullopt, cell.text } );
   }
   const bool lacksTable = options.table.empty() && !has( RecordKey::table );
   if( lacksTable || ( !options.chip && !has( RecordKey::chip ) ) ) {
      throw BadText( 0, "no column " + inQuotes( lacksTable ? "table" : "chip" ) +
                           "; the first row names keys such as table, chip and entry, and fields" );
   }
}

void RowComposer::State::fillCell( RecordFill& fill, std::size_t cell ) {
   Piece& given = cells[cell];
   const Column& column = columns[cell];
   fill.lookAt( nameToken( cell ) + 1 );
   if( column.key ) {
      fill.open( *column.key, nameToken( cell ) + 1 );
      fill.take( *column.key, given.text );
   } else {
      std::string name = column.name;
      fill.addField( name, nameToken( cell ) );
      fill.takeValue( given.text );
   }
}

// Takes from the options what the row doesn't say; what it says must agree with them.
void RowComposer::State::completePair( RecordFill& fill ) {
   Record& record = composer.record_;
   const auto require = [&]( RecordKey key, bool isSame, const std::string& given,
                             const std::string& own ) {
      if( !isSame ) {
         record.lookAt( static_cast<Record::Key>( key ) );
         throw Error( "the row is one of " + given + ", not of " + own );
      }
   };
   const auto requireGiven = [&]( RecordKey key, bool isThere, const char* name ) {
      if( !isThere ) {
         fill.lookAtByte( cells.front().at );
         throw Error( std::string( "the row doesn't say its " ) + name + "; its cell of column " +
                      inQuotes( nameOf( key ) ) + " is empty" );
      }
   };
   if( !options.table.empty() ) {
      require( RecordKey::table,
               !record.has( Record::Key::table ) || record.table() == options.table,
               shown( record.table() ), options.table );
      record.table_ = options.table;
   }
   if( options.chip ) {
      const bool isSaid = record.has( Record::Key::chip );
      require( RecordKey::chip, !isSaid || record.chip().number == options.chip->number,
               isSaid ? record.chip().name : std::string(), options.chip->name );
      record.chip_ = options.chip;
   }
   if( options.variant ) {
      require( RecordKey::variant,
               !record.has( Record::Key::variant ) || record.variant() == *options.variant,
               "variant " + std::to_string( record.variant() ),
               "variant " + std::to_string( *options.variant ) );
      fill.take( RecordKey::variant, *options.variant );
   }
   requireGiven( RecordKey::table, !options.table.empty() || record.has( Record::Key::table ),
                 "table" );
   requireGiven( RecordKey::chip, options.chip || record.has( Record::Key::chip ), "chip type" );
}

RowComposer::RowComposer( RowOptions options )
   : state_( std::make_unique<State>( std::move( options ) ) ) {}
RowComposer::RowComposer( RowComposer&& other ) noexcept = default;
RowComposer& RowComposer::operator=( RowComposer&& other ) noexcept = default;
RowComposer::~RowComposer() = default;

bool RowComposer::header( std::string_view line ) {
   line = withoutMark( line );
   RecordFill fill( state_->composer.record_ );
   fill.begin( line );
   if( isBlankLine( line ) ) {
      return false;
   }
   try {
      state_->takeHeader( line );
   } catch( const BadText& bad ) {
      fill.lookAtByte( bad.at() );
      throw;
   }
   return true;
}

std::optional<Composed> RowComposer::compose( std::string_view line ) {
   State& state = *state_;
   RecordFill fill( state.composer.record_ );
   fill.begin( line );
   if( isBlankLine( line ) ) {
      return std::nullopt;
   }
   try {
      state.cells = cellsOf( line );
      requireCells( state.cells, state.columns.size() );
   } catch( const BadText& bad ) {
      fill.lookAtByte( bad.at() );
      throw;
   }
   bool isEmpty = true;
   for( std::size_t i = 0; i < state.cells.size(); ++i ) {
      if( state.cells[i].isGiven ) {
         state.fillCell( fill, i );
         isEmpty = false;
      }
   }
   if( isEmpty ) {
      return std::nullopt;
   }
   state.completePair( fill );
   return state.composer.composeRecord( Overlap::refused );
}

std::size_t RowComposer::column() const {
   const Record& record = state_->composer.record_;
   return columnOf( record.line_, record.token_ == 0
                                     ? record.byte_
                                     : state_->cells[State::cellOf( record.token_ )].at );
}

void RowComposer::lookAtPlace() { state_->composer.lookAtPlace(); }

} // namespace Vorn
