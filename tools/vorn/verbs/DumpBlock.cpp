// Many plain entries of a dump at once: which of them are selected, and their lines.
#include "verbs/DumpBlock.h"

#include <algorithm>

namespace Vorn {

void DumpBlock::take( DumpReader& reader, const DumpRun& run, std::span<const EntryPlan> plans,
                      bool takesEmpty ) {
   const auto planFor = [&]( const Layout* layout ) {
      return &*std::find_if( plans.begin(), plans.end(),
                             [&]( const EntryPlan& plan ) { return plan.layout == layout; } );
   };
   plans_ = plans;
   plan_ = run.layout ? planFor( run.layout ) : nullptr;
   ofEach_.clear();
   const Layout* last = nullptr;
   const EntryPlan* lastPlan = nullptr;
   for( const Layout* const layout : run.layouts ) {
      if( layout != last ) {
         last = layout;
         lastPlan = layout ? planFor( layout ) : nullptr;
      }
      ofEach_.push_back( lastPlan );
   }
   areEmpty_ = run.areEmpty;
   takesEmpty_ = takesEmpty;
   stride_ = run.stride;
   count_ = run.count;
   first_ = run.first;
   address_ = run.address;
   addressStep_ = run.addressStep;
   reader.take( run, images_ );
}

void DumpBlock::work() {
   empty_ = taken_ = 0;
   leftOut_.clear();
   lines_.clear();
   kept_.clear();
   for( std::size_t i = 0; i < count_; ++i ) {
      const EntryPlan* plan = planOf( i );
      if( !plan || areEmpty_ ) {
         if( !takesEmpty_ ) {
            ++empty_;
            continue;
         }
         plan = &plans_.front();
      }
      if( plan->isLeftOut ) {
         const auto found =
            std::find_if( leftOut_.begin(), leftOut_.end(),
                          [&]( const LeftOut& one ) { return one.layout == plan->layout; } );
         if( found == leftOut_.end() ) {
            leftOut_.push_back( { plan->layout, 1 } );
         } else {
            ++found->entries;
         }
         continue;
      }
      const std::span image( images_.data() + i * stride_, plan->bytes );
      if( plan->filter && !plan->filter->matches( image ) ) {
         continue;
      }
      ++taken_;
      if( plan->line ) {
         plan->line->append( lines_, entry( i ) );
      } else {
         kept_.push_back( i );
      }
   }
}

DumpEntry DumpBlock::entry( std::size_t number ) const {
   const EntryPlan* const own = planOf( number );
   const EntryPlan& plan = own ? *own : plans_.front();
   DumpEntry entry;
   entry.layout = plan.layout;
   entry.image = { images_.data() + number * stride_, plan.bytes };
   if( first_ ) {
      entry.entry = first_->entry + number;
      entry.array = first_->array;
      entry.identifier = first_->identifier;
   }
   if( address_ ) {
      entry.address = *address_ + static_cast<U32>( number ) * addressStep_;
   }
   entry.isEmpty = areEmpty_ || !own;
   return entry;
}

} // namespace Vorn
