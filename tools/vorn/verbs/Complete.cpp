// `vorn complete`, which shells call: what may stand where the cursor is.
#include "Arguments.h"
#include "Verbs.h"

#include <Vorn/Chip.h>
#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>

#include <Hardware/FieldId.h>
#include <Hardware/Registry.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace Vorn {

namespace {

// A word that may stand there, and what it is.
struct Candidate {
   std::string word;
   std::string description;
};

using Candidates = std::vector<Candidate>;

// The values that the words before have given, by the name of their option or argument, and what
// there is of the cursor's own by the name `cursor`.
using Given = std::map<std::string, std::string>;
constexpr const char* cursor = "";

std::string valueIn( const Given& given, const std::string& name ) {
   const auto found = given.find( name );
   return found == given.end() ? std::string() : found->second;
}

Candidates tables( const Given& ) {
   Candidates result;
   for( const auto name : Hardware::classNames() ) {
      result.push_back( { std::string( name ), "" } );
   }
   return result;
}

// Before what is dumped: nothing once a word is there.
constexpr const char* tableAndDump = "TABLE FILE";
constexpr const char* tableAndDumps = "TABLE BEFORE AFTER";

Candidates tablesOfDumps( const Given& given ) {
   return given.contains( tableAndDump ) || given.contains( tableAndDumps ) ? Candidates()
                                                                            : tables( given );
}

Candidates chips( const Given& given ) {
   const auto table = valueIn( given, "TABLE" );
   Candidates result;
   for( const Chip& chip : allChips() ) {
      if( table.empty() || variantsOn( table, chip.number ) ) {
         result.push_back( { chip.name, "chip type " + std::to_string( chip.number ) } );
      }
   }
   return result;
}

Candidates variants( const Given& given ) {
   Candidates result;
   const Chip& chip = chipOf( valueIn( given, "--chip" ) );
   if( const auto pairs = variantsOn( valueIn( given, "TABLE" ), chip.number ) ) {
      for( const U32 variant : pairs->variants ) {
         result.push_back( { std::to_string( variant ), "" } );
      }
   }
   return result;
}

// A chip type, or a chip type and a variant of the table as CHIP:VARIANT.
Candidates sides( const Given& given ) {
   const auto word = valueIn( given, cursor );
   const auto colon = word.find( ':' );
   if( colon == std::string::npos ) {
      return chips( given );
   }
   const auto chip = word.substr( 0, colon );
   Candidates result = variants( { { "TABLE", valueIn( given, "TABLE" ) }, { "--chip", chip } } );
   for( Candidate& candidate : result ) {
      candidate.word.insert( 0, chip + ':' );
   }
   return result;
}

Candidates fields( const Given& given ) {
   if( given.contains( "--csv" ) ) {
      return {}; // files stand there
   }
   const auto variant = valueIn( given, "--variant" );
   const Layout layout = layoutOf(
      { valueIn( given, "TABLE" ), valueIn( given, "--chip" ), variant.empty() ? "0" : variant } );
   Candidates result;
   for( const auto& field : layout.fields() ) {
      if( !field.readOnly ) {
         result.push_back(
            { std::string( field.name ) + '=', std::to_string( field.width ) + " bits" } );
      }
   }
   return result;
}

Candidates allFields( const Given& ) {
   Candidates result;
   for( const auto& field : Hardware::fieldCatalogue() ) {
      result.push_back( { std::string( field.name ), std::string( field.hardwareName ) } );
   }
   return result;
}

// The values of an option or argument, by its name.
const std::map<std::string, Candidates ( * )( const Given& )> valuesOf{
   { tableAndDump, tablesOfDumps },
   { tableAndDumps, tablesOfDumps },
   { "TABLE", tables },
   { "--chip", chips },
   { "--diff", sides },
   { "--variant", variants },
   { "field=value", fields },
   { "FIELD", allFields },
};

// The values that a name such as "ascii|unicode" lists; there are none in "NAME|NUMBER".
Candidates listedIn( const std::string& typeName ) {
   const bool isList = typeName.find( '|' ) != std::string::npos &&
                       std::none_of( typeName.begin(), typeName.end(),
                                     []( char c ) { return c >= 'A' && c <= 'Z'; } );
   Candidates result;
   std::istringstream values( isList ? typeName : "" );
   for( std::string value; std::getline( values, value, '|' ); ) {
      result.push_back( { value, "" } );
   }
   return result;
}

// Nothing where anything may stand.
Candidates valuesFor( const CLI::Option& option, const Given& given ) {
   const auto found = valuesOf.find( option.get_name() );
   try {
      return found == valuesOf.end() ? listedIn( option.get_type_name() ) : found->second( given );
   } catch( const Error& ) {
      return {}; // The words before are wrong or not yet complete.
   }
}

bool isVisible( const CLI::App& verb ) { return !verb.get_group().empty(); }

// A command line up to the cursor.
class Words {
public:
   explicit Words( const CLI::App& commandLine ) : app_( &commandLine ) {}

   // A word before the cursor's.
   void take( const std::string& word );

   // What the cursor's word may become, which may be empty as yet.
   Candidates candidates( const std::string& word ) const;

private:
   // The option that a word such as "--chip" or "--chip=10" names, if any.
   const CLI::Option* optionIn( const std::string& word ) const;

   // The next argument without an option's name, if any.
   const CLI::Option* nextArgument() const;

   Candidates verbs() const;
   Candidates options() const;

   const CLI::App* app_;                   // the whole, or the verb met last
   const CLI::Option* awaiting_ = nullptr; // an option whose value is next
   int values_ = 0;                        // of it that are still to come
   std::size_t taken_ = 0;                 // arguments of the verb
   Given given_;
};

const CLI::Option* Words::optionIn( const std::string& word ) const {
   return app_->get_option_no_throw( word.substr( 0, word.find( '=' ) ) );
}

const CLI::Option* Words::nextArgument() const {
   std::size_t position = 0;
   const CLI::Option* last = nullptr;
   for( const auto* const option : app_->get_options() ) {
      if( option->get_positional() ) {
         last = option;
         if( position++ == taken_ ) {
            return option;
         }
      }
   }
   // The last one may be given any number of times.
   return last && last->get_items_expected_max() > 1 ? last : nullptr;
}

void Words::take( const std::string& word ) {
   if( awaiting_ ) {
      given_[awaiting_->get_name()] = word;
      awaiting_ = --values_ > 0 ? awaiting_ : nullptr;
      return;
   }
   if( word.starts_with( '-' ) ) {
      const auto equals = word.find( '=' );
      const auto* const option = optionIn( word );
      if( option && equals != std::string::npos ) {
         given_[option->get_name()] = word.substr( equals + 1 );
      } else if( option && option->get_items_expected_max() > 0 ) {
         awaiting_ = option;
         values_ = option->get_items_expected_max();
      } else if( option ) {
         given_[option->get_name()] = ""; // a flag
      }
      return;
   }
   for( const auto* const verb : app_->get_subcommands( {} ) ) {
      if( verb->get_name() == word ) {
         app_ = verb;
         return;
      }
   }
   if( const auto* const argument = nextArgument() ) {
      given_[argument->get_name()] = word;
      if( taken_++ == 0 && isTable( word ) ) {
         given_["TABLE"] = word;
      }
   }
}

Candidates Words::verbs() const {
   Candidates result;
   for( const auto* const verb : app_->get_subcommands( {} ) ) {
      if( isVisible( *verb ) ) {
         result.push_back( { verb->get_name(), verb->get_description() } );
      }
   }
   return result;
}

Candidates Words::options() const {
   Candidates result;
   for( const auto* const option : app_->get_options() ) {
      for( const auto& name : option->get_lnames() ) {
         result.push_back( { "--" + name, option->get_description() } );
      }
   }
   return result;
}

Candidates Words::candidates( const std::string& word ) const {
   Candidates result;
   Given given = given_;
   given[cursor] = word;
   if( awaiting_ ) {
      result = valuesFor( *awaiting_, given );
   } else if( const auto equals = word.find( '=' );
              word.starts_with( '-' ) && equals != std::string::npos ) {
      if( const auto* const option = optionIn( word ) ) {
         given[cursor] = word.substr( equals + 1 );
         result = valuesFor( *option, given );
         for( Candidate& candidate : result ) {
            candidate.word.insert( 0, word.substr( 0, equals + 1 ) );
         }
      }
   } else if( word.starts_with( '-' ) ) {
      result = options();
   } else if( !app_->get_subcommands( {} ).empty() ) {
      result = verbs();
   } else if( const auto* const argument = nextArgument() ) {
      result = valuesFor( *argument, given );
   }
   std::erase_if(
      result, [&]( const Candidate& candidate ) { return !candidate.word.starts_with( word ); } );
   return result;
}

} // namespace

VerbRun addComplete( CLI::App& verb ) {
   const auto words = std::make_shared<std::vector<std::string>>();
   verb.add_option( "WORD", *words, "Words after vorn, the last one as far as it is typed" );
   describe( verb,
             "Prints a line for each word that the last one may become, with a description after "
             "a tab where there is one.",
             "  vorn complete -- encode TcamActionTable --chip BCM" );
   return [words, &verb]( Output& output ) {
      Words line( *verb.get_parent() );
      for( std::size_t i = 0; i + 1 < words->size(); ++i ) {
         line.take( ( *words )[i] );
      }
      for( const auto& [word, description] :
           line.candidates( words->empty() ? std::string() : words->back() ) ) {
         output.write( description.empty() ? word + '\n' : word + '\t' + description + '\n' );
      }
   };
}

} // namespace Vorn
