// vornsqlite, a loadable extension of SQLite: fields of entries in SQL.
#include <Vorn/Compose.h>
#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <sqlite3ext.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

SQLITE_EXTENSION_INIT1

namespace {

using Vorn::Error;
using Vorn::Field;
using Vorn::Layout;
using Vorn::Value;

using Argument = sqlite3_value*;
using Arguments = std::span<Argument>;

bool isNull( Argument argument ) { return sqlite3_value_type( argument ) == SQLITE_NULL; }

// The text of an argument, valid until another form of it is asked for; numbers as SQLite writes
// them.
std::string_view textOf( Argument argument, std::string_view name ) {
   if( isNull( argument ) ) {
      throw Error( std::string( name ) + " is NULL" );
   }
   const auto* const text = reinterpret_cast<const char*>( sqlite3_value_text( argument ) );
   if( text == nullptr ) {
      throw std::bad_alloc();
   }
   return { text, static_cast<std::size_t>( sqlite3_value_bytes( argument ) ) };
}

// The bytes of the entry that an argument gives as a BLOB or as text.
class ImageBytes {
public:
   ImageBytes( const Layout& layout, Argument argument ) {
      if( sqlite3_value_type( argument ) == SQLITE_BLOB ) {
         bytes_ = { static_cast<const U8*>( sqlite3_value_blob( argument ) ),
                    static_cast<std::size_t>( sqlite3_value_bytes( argument ) ) };
         return;
      }
      if( sqlite3_value_type( argument ) != SQLITE_TEXT ) {
         throw Error( "the image is a number; it is a BLOB, or TEXT as `vorn decode` takes it" );
      }
      const Vorn::Image image = Vorn::imageOf( textOf( argument, "the image" ) );
      Vorn::requirePair( layout, image );
      own_ = image.bytes;
      bytes_ = own_;
   }
   ImageBytes( const ImageBytes& ) = delete;
   ImageBytes& operator=( const ImageBytes& ) = delete;

   std::span<const U8> bytes() const { return bytes_; }

private:
   std::vector<U8> own_;
   std::span<const U8> bytes_;
};

void give( sqlite3_context* context, const Value& value ) {
   if( value.bits() < 64 ) {
      sqlite3_result_int64( context, static_cast<sqlite3_int64>( value.word( 0 ) ) );
      return;
   }
   const std::string text = hexOf( value );
   sqlite3_result_text( context, text.data(), static_cast<int>( text.size() ), SQLITE_TRANSIENT );
}

void give( sqlite3_context* context, std::string_view text ) {
   sqlite3_result_text( context, text.data(), static_cast<int>( text.size() ), SQLITE_TRANSIENT );
}

void give( sqlite3_context* context, std::span<const U8> bytes ) {
   sqlite3_result_blob( context, bytes.data(), static_cast<int>( bytes.size() ), SQLITE_TRANSIENT );
}

// Performs the action; what it throws becomes the error of the SQL statement.
template<class Action>
void guarded( sqlite3_context* context, const Action& action ) noexcept {
   try {
      action();
   } catch( const std::bad_alloc& ) {
      sqlite3_result_error_nomem( context );
   } catch( const std::exception& error ) {
      sqlite3_result_error( context, error.what(), -1 );
   }
}

// The pairs that a connection has met, by what SQL says of them.
class Pairs {
public:
   Vorn::Composer& find( Arguments pair ) {
      std::array<std::string_view, 3> said;
      constexpr std::array<std::string_view, 3> names{ "the table", "the chip type",
                                                       "the variant" };
      for( std::size_t i = 0; i < said.size(); ++i ) {
         said[i] = textOf( pair[i], names[i] );
      }
      const Key key{ std::string( said[0] ), std::string( said[1] ), std::string( said[2] ) };
      const auto found = pairs_.find( key );
      if( found != pairs_.end() ) {
         return found->second;
      }
      const Layout layout( said[0], said[1], Vorn::parseIndex( said[2], "variant", 0xff ) );
      if( pairs_.size() >= most ) {
         pairs_.clear(); // A pair has spellings without end.
      }
      return pairs_.emplace( key, Vorn::Composer( layout ) ).first->second;
   }
   const Layout& layout( Arguments pair ) { return find( pair ).layout(); }

private:
   using Key = std::array<std::string, 3>;
   static constexpr std::size_t most = 1024;

   std::map<Key, Vorn::Composer> pairs_;
};

Pairs& pairsOf( sqlite3_context* context ) {
   return **static_cast<std::shared_ptr<Pairs>*>( sqlite3_user_data( context ) );
}

// A field that a statement asks for row by row, and what the statement says of it.
struct Asked {
   std::array<std::string, 4> said; // table, chip type, variant, field
   Layout layout;
   Field field;
};

// vorn_field( table, chip, variant, image, field )
void field( sqlite3_context* context, int count, Argument* values ) {
   guarded( context, [&] {
      const Arguments given( values, static_cast<std::size_t>( count ) );
      if( isNull( given[3] ) ) {
         return;
      }
      const std::array<std::string_view, 4> said{ textOf( given[0], "the table" ),
                                                  textOf( given[1], "the chip type" ),
                                                  textOf( given[2], "the variant" ),
                                                  textOf( given[4], "the field" ) };
      // SQLite keeps it while the statement runs, if the argument is constant.
      auto* asked = static_cast<Asked*>( sqlite3_get_auxdata( context, 4 ) );
      if( asked == nullptr ||
          !std::equal( said.begin(), said.end(), asked->said.begin(), asked->said.end() ) ) {
         const Layout& layout = pairsOf( context ).layout( given.first( 3 ) );
         auto made = std::make_unique<Asked>( Asked{ {}, layout, layout.field( said[3] ) } );
         std::copy( said.begin(), said.end(), made->said.begin() );
         const ImageBytes image( layout, given[3] );
         give( context, layout.value( image.bytes(), made->field ) );
         sqlite3_set_auxdata( context, 4, made.release(),
                              []( void* old ) { delete static_cast<Asked*>( old ); } );
         return;
      }
      const ImageBytes image( asked->layout, given[3] );
      give( context, asked->layout.value( image.bytes(), asked->field ) );
   } );
}

void setAll( Vorn::Composer& composer, Arguments pairs ) {
   for( std::size_t i = 0; i < pairs.size(); i += 2 ) {
      const std::string_view name = textOf( pairs[i], "the name of a field" );
      const Field& one = composer.open( name );
      const Argument value = pairs[i + 1];
      switch( sqlite3_value_type( value ) ) {
      case SQLITE_INTEGER:
         composer.set( one, Vorn::parseValue( textOf( value, name ), name ) );
         break;
      case SQLITE_TEXT:
         if( const auto text = textOf( value, name ); text == Vorn::maskWord ) {
            composer.fill( one );
         } else {
            composer.set( one, Vorn::parseValue( text, name ), text );
         }
         break;
      default:
         throw Error( "the value of field " + std::string( name ) +
                      " is NULL, a REAL or a BLOB; it is an INTEGER, or TEXT such as '0x10'" );
      }
   }
}

// vorn_encode( table, chip, variant, field, value, ... )
void encode( sqlite3_context* context, int count, Argument* values ) {
   guarded( context, [&] {
      const Arguments given( values, static_cast<std::size_t>( count ) );
      if( given.size() % 2 == 0 || given.size() < 3 ) {
         throw Error( "vorn_encode takes table, chip type, variant, and a value after each field" );
      }
      Vorn::Composer& composer = pairsOf( context ).find( given.first( 3 ) );
      composer.reset();
      setAll( composer, given.subspan( 3 ) );
      give( context, composer.image() );
   } );
}

// vorn_set( table, chip, variant, image, field, value, ... )
void set( sqlite3_context* context, int count, Argument* values ) {
   guarded( context, [&] {
      const Arguments given( values, static_cast<std::size_t>( count ) );
      if( given.size() % 2 != 0 || given.size() < 4 ) {
         throw Error( "vorn_set takes table, chip type, variant, image, and a value after each "
                      "field" );
      }
      if( isNull( given[3] ) ) {
         return;
      }
      Vorn::Composer& composer = pairsOf( context ).find( given.first( 3 ) );
      const ImageBytes image( composer.layout(), given[3] );
      composer.reset( image.bytes() );
      setAll( composer, given.subspan( 4 ) );
      give( context, composer.image() );
   } );
}

// vorn_is( table, chip, variant, image )
void is( sqlite3_context* context, int count, Argument* values ) {
   guarded( context, [&] {
      const Arguments given( values, static_cast<std::size_t>( count ) );
      if( isNull( given[3] ) ) {
         return;
      }
      const Layout& layout = pairsOf( context ).layout( given.first( 3 ) );
      const ImageBytes image( layout, given[3] );
      sqlite3_result_int( context, image.bytes().size() == layout.bytes() &&
                                      !layout.wrongTag( image.bytes() ) );
   } );
}

std::string quoted( std::string_view name, char quote ) {
   std::string text( 1, quote );
   for( const char c : name ) {
      text.append( c == quote ? 2 : 1, c );
   }
   return text + quote;
}

bool sameName( const std::string& left, std::string_view right ) {
   return sqlite3_stricmp( left.c_str(), std::string( right ).c_str() ) == 0;
}

// The columns of a table or view, in their order; none if it doesn't exist.
std::vector<std::string> columnsOf( sqlite3* database, std::string_view table ) {
   sqlite3_stmt* made = nullptr;
   const char* const query = "SELECT name FROM pragma_table_info( ?1 )";
   if( sqlite3_prepare_v2( database, query, -1, &made, nullptr ) != SQLITE_OK ) {
      throw Error( sqlite3_errmsg( database ) );
   }
   const auto finalize = []( sqlite3_stmt* statement ) { sqlite3_finalize( statement ); };
   const std::unique_ptr<sqlite3_stmt, decltype( finalize )> statement( made, finalize );
   sqlite3_bind_text( made, 1, table.data(), static_cast<int>( table.size() ), SQLITE_TRANSIENT );
   std::vector<std::string> columns;
   while( sqlite3_step( made ) == SQLITE_ROW ) {
      columns.emplace_back( reinterpret_cast<const char*>( sqlite3_column_text( made, 0 ) ) );
   }
   return columns;
}

// vorn_create_view( view, source, table, chip, variant [, column] )
void createView( sqlite3_context* context, int count, Argument* values ) {
   guarded( context, [&] {
      const Arguments given( values, static_cast<std::size_t>( count ) );
      if( given.size() < 5 || given.size() > 6 ) {
         throw Error( "vorn_create_view takes view, source table, table, chip type, variant, and "
                      "perhaps the column of the images" );
      }
      const std::string view( textOf( given[0], "the view" ) );
      const std::string source( textOf( given[1], "the source table" ) );
      const Layout& layout = pairsOf( context ).layout( given.subspan( 2, 3 ) );
      const std::string_view image =
         given.size() > 5 ? textOf( given[5], "the column" ) : std::string_view( "image" );

      sqlite3* const database = sqlite3_context_db_handle( context );
      const auto columns = columnsOf( database, source );
      if( columns.empty() ) {
         throw Error( "no table " + Vorn::inQuotes( source ) );
      }
      const auto isColumn = [&]( std::string_view name ) {
         return std::any_of( columns.begin(), columns.end(), [&]( const std::string& column ) {
            return sameName( column, name );
         } );
      };
      if( !isColumn( image ) ) {
         throw Error( "no column " + Vorn::inQuotes( image ) + " in " + source +
                      Vorn::suggestion(
                         image, std::vector<std::string_view>( columns.begin(), columns.end() ) ) );
      }
      const std::string pair = quoted( layout.table(), '\'' ) + ", " +
                               quoted( layout.chip().name, '\'' ) + ", " +
                               std::to_string( layout.variant() ) + ", " + quoted( image, '"' );
      std::string sql = "CREATE VIEW " + quoted( view, '"' ) + " AS SELECT *";
      for( const Field& one : layout.fields() ) {
         std::string name( one.name );
         while( isColumn( name ) ) {
            name += "_field";
         }
         sql += ", vorn_field( " + pair + ", " + quoted( one.name, '\'' ) + " ) AS " +
                quoted( name, '"' );
      }
      sql += " FROM " + quoted( source, '"' );
      if( sqlite3_exec( database, sql.c_str(), nullptr, nullptr, nullptr ) != SQLITE_OK ) {
         throw Error( sqlite3_errmsg( database ) );
      }
      give( context, view );
   } );
}

// vorn_decode( table, chip, variant, image ): a row for each field. Names of the hidden columns,
// which are its arguments, must not be those of people's own columns.
constexpr const char* decodeSchema =
   "CREATE TABLE vorn_decode( field TEXT, value, offset INTEGER, width INTEGER, "
   "hardware_name TEXT, identifier INTEGER, read_only INTEGER, "
   "vorn_table HIDDEN, vorn_chip HIDDEN, vorn_variant HIDDEN, vorn_image HIDDEN )";
constexpr int firstArgument = 7;
constexpr int argumentCount = 4;

struct DecodeTable : sqlite3_vtab {
   std::shared_ptr<Pairs> pairs;
};

struct DecodeCursor : sqlite3_vtab_cursor {
   std::optional<Layout> layout;
   std::vector<U8> image;
   std::size_t at = 0;
   std::vector<sqlite3_value*> given; // copies of the arguments

   void forget() {
      for( sqlite3_value* const value : given ) {
         sqlite3_value_free( value );
      }
      given.clear();
      layout.reset();
      at = 0;
   }
};

// Performs the action; what it throws becomes the table's error.
template<class Action>
int guarded( sqlite3_vtab* table, const Action& action ) noexcept {
   try {
      action();
      return SQLITE_OK;
   } catch( const std::bad_alloc& ) {
      return SQLITE_NOMEM;
   } catch( const std::exception& error ) {
      sqlite3_free( table->zErrMsg );
      table->zErrMsg = sqlite3_mprintf( "%s", error.what() );
      return SQLITE_ERROR;
   }
}

int decodeConnect( sqlite3* database, void* data, int, const char* const*, sqlite3_vtab** made,
                   char** ) {
   const int status = sqlite3_declare_vtab( database, decodeSchema );
   if( status != SQLITE_OK ) {
      return status;
   }
   auto* const table = new( std::nothrow ) DecodeTable{};
   if( table == nullptr ) {
      return SQLITE_NOMEM;
   }
   table->pairs = *static_cast<std::shared_ptr<Pairs>*>( data );
   *made = table;
   sqlite3_vtab_config( database, SQLITE_VTAB_INNOCUOUS );
   return SQLITE_OK;
}

int decodeDisconnect( sqlite3_vtab* table ) {
   delete static_cast<DecodeTable*>( table );
   return SQLITE_OK;
}

int decodeBestIndex( sqlite3_vtab* table, sqlite3_index_info* info ) {
   std::array<int, argumentCount> constraints;
   constraints.fill( -1 );
   bool isUnusable = false;
   for( int i = 0; i < info->nConstraint; ++i ) {
      const auto& constraint = info->aConstraint[i];
      const int argument = constraint.iColumn - firstArgument;
      if( argument < 0 || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ ) {
         continue;
      }
      if( constraint.usable ) {
         constraints[static_cast<std::size_t>( argument )] = i;
      } else {
         isUnusable = true;
      }
   }
   for( std::size_t argument = 0; argument < constraints.size(); ++argument ) {
      const int constraint = constraints[argument];
      if( constraint < 0 ) {
         if( isUnusable ) {
            return SQLITE_CONSTRAINT; // Another order of the tables has it.
         }
         return guarded(
            table, [] { throw Error( "vorn_decode takes table, chip type, variant and image" ); } );
      }
      info->aConstraintUsage[constraint].argvIndex = static_cast<int>( argument ) + 1;
      info->aConstraintUsage[constraint].omit = 1;
   }
   info->estimatedCost = 30;
   info->estimatedRows = 30;
   return SQLITE_OK;
}

int decodeOpen( sqlite3_vtab*, sqlite3_vtab_cursor** made ) {
   *made = new( std::nothrow ) DecodeCursor{};
   return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int decodeClose( sqlite3_vtab_cursor* cursor ) {
   auto* const own = static_cast<DecodeCursor*>( cursor );
   own->forget();
   delete own;
   return SQLITE_OK;
}

int decodeFilter( sqlite3_vtab_cursor* cursor, int, const char*, int count, Argument* values ) {
   auto& own = *static_cast<DecodeCursor*>( cursor );
   own.forget();
   return guarded( cursor->pVtab, [&] {
      const Arguments given( values, static_cast<std::size_t>( count ) );
      if( isNull( given[3] ) ) {
         return;
      }
      const Layout& layout =
         static_cast<DecodeTable*>( cursor->pVtab )->pairs->layout( given.first( 3 ) );
      const ImageBytes image( layout, given[3] );
      layout.requireFields( image.bytes() );
      own.image.assign( image.bytes().begin(), image.bytes().end() );
      for( const Argument value : given ) {
         own.given.push_back( sqlite3_value_dup( value ) );
      }
      own.layout = layout;
   } );
}

int decodeNext( sqlite3_vtab_cursor* cursor ) {
   ++static_cast<DecodeCursor*>( cursor )->at;
   return SQLITE_OK;
}

int decodeEof( sqlite3_vtab_cursor* cursor ) {
   const auto& own = *static_cast<DecodeCursor*>( cursor );
   return !own.layout || own.at >= own.layout->fields().size();
}

int decodeColumn( sqlite3_vtab_cursor* cursor, sqlite3_context* context, int column ) {
   guarded( context, [&] {
      const auto& own = *static_cast<DecodeCursor*>( cursor );
      const Field& one = own.layout->fields()[own.at];
      switch( column ) {
      case 0:
         return give( context, one.name );
      case 1:
         return give( context, own.layout->value( own.image, one ) );
      case 2:
         return give( context, Value( one.offset ) );
      case 3:
         return give( context, Value( one.width ) );
      case 4:
         return give( context, one.hardwareName );
      case 5:
         return give( context, Value( one.identifier ) );
      case 6:
         return give( context, Value( U64( one.readOnly ) ) );
      default:
         sqlite3_result_value( context,
                               own.given[static_cast<std::size_t>( column - firstArgument )] );
      }
   } );
   return SQLITE_OK;
}

int decodeRowid( sqlite3_vtab_cursor* cursor, sqlite3_int64* rowid ) {
   *rowid = static_cast<sqlite3_int64>( static_cast<DecodeCursor*>( cursor )->at ) + 1;
   return SQLITE_OK;
}

sqlite3_module decodeModule() {
   sqlite3_module module{};
   module.xConnect = decodeConnect;
   module.xBestIndex = decodeBestIndex;
   module.xDisconnect = decodeDisconnect;
   module.xOpen = decodeOpen;
   module.xClose = decodeClose;
   module.xFilter = decodeFilter;
   module.xNext = decodeNext;
   module.xEof = decodeEof;
   module.xColumn = decodeColumn;
   module.xRowid = decodeRowid;
   return module;
}

struct Function {
   const char* name;
   int arguments; // -1 for any number
   int flags;
   void ( *call )( sqlite3_context*, int, Argument* );
};

constexpr int pure = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;

constexpr Function functions[] = {
   { "vorn_field", 5, pure, field },
   { "vorn_encode", -1, pure, encode },
   { "vorn_set", -1, pure, set },
   { "vorn_is", 4, pure, is },
   // It changes the schema, so no view or trigger may call it.
   { "vorn_create_view", -1, SQLITE_UTF8 | SQLITE_DIRECTONLY, createView },
};

void release( void* pairs ) { delete static_cast<std::shared_ptr<Pairs>*>( pairs ); }

} // namespace

// What SQLite calls when it loads vornsqlite.so.
extern "C" __attribute__( ( visibility( "default" ) ) ) int
sqlite3_vornsqlite_init( sqlite3* database, char** message, const sqlite3_api_routines* api );

extern "C" int sqlite3_vornsqlite_init( sqlite3* database, char** message,
                                        const sqlite3_api_routines* api ) {
   SQLITE_EXTENSION_INIT2( api )
   try {
      const auto pairs = std::make_shared<Pairs>();
      for( const Function& one : functions ) {
         // SQLite releases it, even on failure.
         const int status = sqlite3_create_function_v2(
            database, one.name, one.arguments, one.flags, new std::shared_ptr<Pairs>( pairs ),
            one.call, nullptr, nullptr, release );
         if( status != SQLITE_OK ) {
            return status;
         }
      }
      static const sqlite3_module module = decodeModule();
      return sqlite3_create_module_v2( database, "vorn_decode", &module,
                                       new std::shared_ptr<Pairs>( pairs ), release );
   } catch( const std::exception& error ) {
      *message = sqlite3_mprintf( "%s", error.what() );
      return SQLITE_ERROR;
   }
}
