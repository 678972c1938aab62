// `vorn locate`: the memories, entries and array elements at an address.
#include "Locate.h"

#include "Arguments.h"
#include "Error.h"
#include "Forms.h"
#include "Terminal.h"
#include "Text.h"
#include "Values.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <numeric>
#include <set>
#include <utility>

namespace Vorn {

Memory::Memory( Plan plan )
   : plan_( std::make_unique<const Plan>( std::move( plan ) ) ),
     base_( plan_->address( {} )->schanAddress ), identifiers_( plan_->info().instanceCount ) {
   if( plan_->info().entries > 1 ) {
      entryStep_ = plan_->address( { 1, 0, 0 } )->schanAddress - base_;
   }
   if( plan_->info().arrayElements > 1 ) {
      arrayStep_ = plan_->address( { 0, 1, 0 } )->schanAddress - base_;
   }
   std::iota( identifiers_.begin(), identifiers_.end(), U16( 0 ) );
}

Found Memory::found( U64 entry, U64 array, U64 identifier ) const {
   const Place place{ entry, array, identifier };
   return { plan_.get(), place, *plan_->address( place ) };
}

std::vector<Found> Memory::at( U32 address ) const {
   std::vector<Found> result;
   for( const U16 identifier : identifiers_ ) {
      for( U32 array = 0; array < plan_->info().arrayElements; ++array ) {
         const U32 distance = address - firstOf( array );
         const U32 entry = entryStep_ == 0 ? 0 : distance / entryStep_;
         if( entry < plan_->info().entries ) {
            // The division may have left a rest, so the view has the last word.
            const Found candidate = found( entry, array, identifier );
            if( candidate.address.schanAddress == address ) {
               result.push_back( candidate );
            }
         }
      }
   }
   return result;
}

std::optional<Found> Memory::before( U32 address ) const {
   std::optional<Found> best;
   for( U32 array = 0; array < plan_->info().arrayElements; ++array ) {
      const U32 first = firstOf( array );
      if( first < address ) {
         const U32 reached = entryStep_ == 0 ? 0 : ( address - 1 - first ) / entryStep_;
         const auto candidate =
            found( std::min( reached, plan_->info().entries - 1 ), array, identifiers_.front() );
         if( !best || best->address.schanAddress < candidate.address.schanAddress ) {
            best = candidate;
         }
      }
   }
   return best;
}

std::optional<Found> Memory::behind( U32 address ) const {
   std::optional<Found> best;
   for( U32 array = 0; array < plan_->info().arrayElements; ++array ) {
      const U32 first = firstOf( array );
      U64 entry = 0;
      if( first <= address ) {
         entry = entryStep_ == 0 ? 1 : U64( address - first ) / entryStep_ + 1;
      }
      if( entry < plan_->info().entries ) {
         const auto candidate = found( entry, array, identifiers_.front() );
         if( !best || candidate.address.schanAddress < best->address.schanAddress ) {
            best = candidate;
         }
      }
   }
   return best;
}

std::vector<U8> Memory::blocks() const {
   std::vector<U8> result;
   for( const U16 identifier : identifiers_ ) {
      result.push_back( plan_->address( { 0, 0, identifier } )->destBlock );
   }
   return result;
}

bool Memory::narrow( U8 destBlock ) {
   std::erase_if( identifiers_, [&]( U16 identifier ) {
      return plan_->address( { 0, 0, identifier } )->destBlock != destBlock;
   } );
   return !identifiers_.empty();
}

std::vector<Memory> memoriesOn( const Chip& chip ) {
   std::vector<Memory> memories;
   for( Plan& plan : plansOn( chip ) ) {
      if( plan.info().hasAddress ) {
         memories.emplace_back( std::move( plan ) );
      }
   }
   return memories;
}

namespace {

struct LocateArguments {
   std::string chip;
   std::string address;
   std::optional<std::string> destBlock;
   bool json = false;
};

U64 parseUpTo( U64 largest, const std::string& text, const std::string& name ) {
   const U64 number = parseIndex( text, name, largest );
   if( number > largest ) {
      throw Error( name + ' ' + shown( text ) + " is out of range; it is at most " +
                   std::to_string( largest ) );
   }
   return number;
}

// Leaves the memories and instances in the block.
void narrow( std::vector<Memory>& memories, U8 destBlock, const Chip& chip ) {
   std::set<U32> blocks;
   for( const Memory& memory : memories ) {
      const auto own = memory.blocks();
      blocks.insert( own.begin(), own.end() );
   }
   std::erase_if( memories, [&]( Memory& memory ) { return !memory.narrow( destBlock ); } );
   if( memories.empty() ) {
      throw Error( "no memory of " + chip.name + " lies in block " + std::to_string( destBlock ) +
                   "; allowed: " + rangesOf( std::vector( blocks.begin(), blocks.end() ) ) );
   }
}

// "0x8200ff is entry 255 of LifProfileAttributes in block 2".
std::string textOf( const Found& found ) {
   std::string text =
      hexOf( found.address.schanAddress ) + " is entry " + std::to_string( found.place.entry );
   if( found.plan->info().arrayElements > 1 ) {
      text += " of array element " + std::to_string( found.place.array );
   }
   return text + " of " + std::string( found.plan->table() ) + found.plan->variantText() +
          " in block " + std::to_string( found.address.destBlock );
}

[[noreturn]] void refuseAddress( const std::vector<Memory>& memories, U32 address,
                                 const std::string& where ) {
   std::optional<Found> before;
   std::optional<Found> behind;
   for( const Memory& memory : memories ) {
      const auto below = memory.before( address );
      if( below && ( !before || before->address.schanAddress < below->address.schanAddress ) ) {
         before = below;
      }
      const auto above = memory.behind( address );
      if( above && ( !behind || above->address.schanAddress < behind->address.schanAddress ) ) {
         behind = above;
      }
   }
   std::string message = "nothing lies at " + hexOf( address ) + where;
   if( before ) {
      message += "; below it " + textOf( *before );
   }
   if( behind ) {
      message += "; above it " + textOf( *behind );
   }
   throw Error( message );
}

// A line for each place; variants that have it in common share the line.
std::string linesOf( const std::vector<Found>& places ) {
   std::vector<std::pair<Found, ChipVariants>> lines;
   for( const Found& found : places ) {
      const auto same = std::find_if( lines.begin(), lines.end(), [&]( const auto& line ) {
         return line.first.plan->table() == found.plan->table() &&
                line.first.place == found.place && line.first.address == found.address;
      } );
      auto& line =
         same != lines.end()
            ? *same
            : lines.emplace_back(
                 found,
                 ChipVariants{ found.plan->chip().number, {}, !found.plan->info().hasVariants } );
      line.second.variants.push_back( found.plan->variant() );
   }
   std::vector<std::vector<std::string>> rows{ { "table", "variants", "entry", "array",
                                                 "identifier", "accessType", "destBlock" } };
   for( const auto& [found, variants] : lines ) {
      rows.push_back( { std::string( found.plan->table() ), variants.text(),
                        std::to_string( found.place.entry ), std::to_string( found.place.array ),
                        std::to_string( found.place.identifier ),
                        std::to_string( found.address.accessType ),
                        std::to_string( found.address.destBlock ) } );
   }
   constexpr Align columns[] = { Align::left,  Align::left,  Align::right, Align::right,
                                 Align::right, Align::right, Align::right };
   return tableOf( columns, rows );
}

std::string locate( const LocateArguments& arguments ) {
   const Chip& chip = chipOf( arguments.chip );
   const auto address = static_cast<U32>( parseUpTo( 0xffffffff, arguments.address, "address" ) );
   auto memories = memoriesOn( chip );
   if( memories.empty() ) {
      throw Error( "no memory of " + chip.name + " has an address" );
   }
   std::string where = " on " + chip.name;
   if( arguments.destBlock ) {
      const U64 block = parseUpTo( 0xff, *arguments.destBlock, "dest-block" );
      narrow( memories, static_cast<U8>( block ), chip );
      where = " in block " + std::to_string( block ) + where;
   }
   std::vector<Found> places;
   for( const Memory& memory : memories ) {
      const auto own = memory.at( address );
      places.insert( places.end(), own.begin(), own.end() );
   }
   if( places.empty() ) {
      refuseAddress( memories, address, where );
   }
   if( !arguments.json ) {
      return linesOf( places );
   }
   std::string lines;
   for( const Found& found : places ) {
      lines += placeLine( *found.plan, found.place, found.address );
   }
   return lines;
}

} // namespace

Verb addLocate( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "locate", "Print what lies at an address" );
   const auto arguments = std::make_shared<LocateArguments>();
   verb->add_option( "ADDRESS", arguments->address, "Address on the chip's S-channel" )->required();
   addChip( *verb, arguments->chip );
   verb->add_option( "--dest-block", arguments->destBlock, "Only what lies in this block" )
      ->type_name( "N" );
   verb->add_flag( "--json", arguments->json, "Print a JSON object for each variant and place" );
   describe(
      *verb,
      "Prints a line for each place that has the address, after a line of headings: memories "
      "in different blocks may have addresses in common, and so may the instances of one "
      "memory and the variants of a table. `vorn address` answers the opposite question.\n\n"
      "Where nothing lies at the address, the message names the nearest places around it "
      "and the exit status is 1.\n\n" +
         chipTypesParagraph(),
      "  vorn locate --chip BCM88690_B0 --dest-block 6 0x1101005" );
   return { verb, [arguments]( Output& output ) { output.write( locate( *arguments ) ); } };
}

} // namespace Vorn
