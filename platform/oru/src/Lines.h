// Strings with room for a line, so that writing a line allocates no memory.
#pragma once

#include <atomic>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include <cstddef>

namespace Oru {

// Places that hold a string or nothing. Each is taken and filled without a lock.
class Lines {
public:
   // Fills all empty places, as far as there is memory.
   void fill() noexcept {
      try {
         for( Place& place : places_ ) {
            if( place.changes( State::empty, State::changing ) ) {
               std::string line;
               try {
                  line.reserve( roomForALine );
               } catch( ... ) {
                  place.state = State::empty;
                  throw;
               }
               place.give( std::move( line ) );
            }
         }
      } catch( ... ) {
         // Without it, writing a line allocates memory.
      }
   }

   // An empty string, with room for a line if a place has one.
   std::string take() noexcept {
      for( Place& place : places_ ) {
         if( place.changes( State::full, State::changing ) ) {
            return place.take();
         }
      }
      return {};
   }

   // Keeps the string for the next line, if it has the room and a place is empty.
   void giveBack( std::string line ) noexcept {
      if( line.capacity() < roomForALine ) {
         return;
      }
      line.clear();
      for( Place& place : places_ ) {
         if( place.changes( State::empty, State::changing ) ) {
            place.give( std::move( line ) );
            return;
         }
      }
   }

private:
   static constexpr std::size_t roomForALine = 500;

   enum class State : unsigned char { empty, changing, full };

   // Not a static string, which would be destroyed at process exit.
   struct Place {
      std::atomic<State> state{ State::empty };
      alignas( std::string ) std::byte bytes[sizeof( std::string )] = {};

      bool changes( State from, State to ) {
         return state == from && state.compare_exchange_strong( from, to );
      }
      void give( std::string line ) {
         new( bytes ) std::string( std::move( line ) );
         state = State::full;
      }
      std::string take() {
         auto* const held = std::launder( reinterpret_cast<std::string*>( bytes ) );
         std::string line = std::move( *held );
         std::destroy_at( held );
         state = State::empty;
         return line;
      }
   };

   Place places_[32];
};

} // namespace Oru
