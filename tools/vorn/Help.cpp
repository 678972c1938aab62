// The layout of the help of the program and of its verbs.
#include "Help.h"

#include "Text.h"

#include <Vorn/Text.h>

#include <CLI/CLI.hpp>

#include <set>
#include <string>

namespace Vorn {

namespace {

// An option's name on the left and its description on the right, in lines of 80 columns.
class HelpFormatter : public CLI::Formatter {
public:
   HelpFormatter() {
      label( "SUBCOMMAND", "VERB" );
      label( "Positionals", "Arguments" );
      column_width( left );
   }

   std::string make_option( const CLI::Option* option, bool isArgument ) const override {
      std::string text = "  " + make_option_name( option, isArgument );
      if( isArgument ) {
         text += option->get_items_expected_max() > 1 ? "..." : "";
      } else if( option->get_items_expected_max() > 0 ) {
         text += ' ' + option->get_type_name();
      }
      text += text.size() < left ? std::string( left - text.size(), ' ' )
                                 : '\n' + std::string( left, ' ' );
      for( const char c : wrapped( saidOf( *option ), 80 - left ) ) {
         text += c;
         text += c == '\n' ? std::string( left, ' ' ) : "";
      }
      return text + '\n';
   }

private:
   static constexpr std::size_t left = 24;

   static std::string saidOf( const CLI::Option& option ) {
      std::set<std::string> others;
      for( const auto* const other : option.get_excludes() ) {
         others.insert( other->get_name() );
      }
      std::string text = option.get_description();
      for( const auto& other : others ) {
         text += ( other == *others.begin() ? "; not with " : ", " ) + other;
      }
      return text + ( option.get_required() && !option.get_positional() ? "; required" : "" );
   }
};

} // namespace

std::shared_ptr<CLI::FormatterBase> helpFormatter() { return std::make_shared<HelpFormatter>(); }

} // namespace Vorn
