// Facilities by name, and the delivery of trace lines.
#include <Oru/Trace.h>

#include "Lines.h"
#include "Sink.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <mutex>
#include <set>

// Not <cassert>'s declaration, which promises not to throw: a program may replace the function and
// leave it by an exception.
extern "C" [[noreturn]] void __assert_fail( const char* expression, const char* file, unsigned line,
                                            const char* function );

namespace Oru {

// All facilities by handle name, with their handles. Never destroyed, as handles are used during
// process exit.
class Facilities {
public:
   static Facilities& instance() {
      // Branches that no test takes: the guard of a static.
      static Facilities* const facilities = new Facilities;
      // A child has only the thread that forked, so nothing would release the lock.
      static const int forked =
         pthread_atfork( [] { facilities->mutex_.lock(); }, [] { facilities->mutex_.unlock(); },
                         [] { facilities->mutex_.unlock(); } );
      static_cast<void>( forked );
      return *facilities;
   }

   void add( TraceHandle& handle ) {
      const std::lock_guard guard( mutex_ );
      Facility& facility = facilities_[handle.name_];
      facility.handles.insert( &handle );
      update( handle, facility );
   }

   void remove( TraceHandle& handle ) {
      const std::lock_guard guard( mutex_ );
      facilities_[handle.name_].handles.erase( &handle );
      handle.levels_.store( 0, std::memory_order_relaxed );
   }

   void levelIs( const std::string& name, int level, bool on ) {
      const std::lock_guard guard( mutex_ );
      Facility& facility = facilities_[name];
      const U32 bit = U32{ 1 } << level;
      facility.levels = on ? facility.levels | bit : facility.levels & ~bit;
      for( TraceHandle* const handle : facility.handles ) {
         update( *handle, facility );
      }
   }

private:
   struct Facility {
      U32 levels = 0; // a bit for each
      std::set<TraceHandle*> handles;
   };

   static void update( TraceHandle& handle, const Facility& facility ) {
      handle.levels_.store( facility.levels, std::memory_order_relaxed );
   }

   std::mutex mutex_;
   std::map<std::string, Facility> facilities_;
};

namespace {

constinit Sink<const std::string&> traceSink;
constinit Lines lines;

void appendNumber( std::string& line, int number ) {
   char digits[16];
   line.append( digits, std::to_chars( digits, std::end( digits ), number ).ptr );
}

} // namespace

TraceHandle::TraceHandle( const char* name, bool ) : name_( name ) {
   Facilities::instance().add( *this );
}

TraceHandle::~TraceHandle() { Facilities::instance().remove( *this ); }

void TraceStream::append( std::string_view text ) {
   const Undisturbed undisturbed;
   try {
      line_.append( text );
   } catch( ... ) {
      // Without memory the line is truncated.
   }
}

TraceStream& operator<<( TraceStream& stream, const char* text ) {
   stream.append( text );
   return stream;
}

TraceStream& operator<<( TraceStream& stream, U8 number ) { return stream << U32{ number }; }

TraceStream& operator<<( TraceStream& stream, U32 number ) {
   char digits[16];
   const auto end = std::to_chars( digits, std::end( digits ), number ).ptr;
   stream.append( { digits, static_cast<std::size_t>( end - digits ) } );
   return stream;
}

TraceStream& operator<<( TraceStream& stream, const String& text ) {
   stream.append( text.view() );
   return stream;
}

TraceHelper::TraceHelper( const TraceHandle& handle, TraceFacility::FacilityLevel level,
                          const char* file, int line, const char* function )
   : handle_( handle ), level_( level ), file_( file ), line_( line ), function_( function ),
     stream_( lines.take() ) {}

TraceHelper::~TraceHelper() {
   const Undisturbed undisturbed;
   std::string& line = stream_.line_;
   try {
      if( !traceSink.deliver( line ) ) {
         // The prefix is written after the text and then rotated to the front, within the line's
         // own memory.
         const auto length = static_cast<std::ptrdiff_t>( line.size() );
         line.append( handle_.name() ).append( "/" );
         appendNumber( line, level_ );
         line.append( " " ).append( file_ ).append( ":" );
         appendNumber( line, line_ );
         line.append( " " ).append( function_ ).append( ": " );
         std::rotate( line.begin(), line.begin() + length, line.end() );
         line.append( "\n" );
         writeToStandardError( line );
      }
   } catch( ... ) {
      // Tracing must not disturb what it traces.
   }
   lines.giveBack( std::move( line ) );
}

void traceLevelIs( const std::string& handle, int level, bool on ) {
   if( level < 0 || level > 9 ) {
      __assert_fail( "level >= 0 && level <= 9", "Trace.cpp", __LINE__,
                     "void Oru::traceLevelIs(const std::string&, int, bool)" );
   }
   if( on ) {
      lines.fill();
   }
   Facilities::instance().levelIs( handle, level, on );
}

void traceSinkIs( std::function<void( const std::string& line )> sink ) {
   traceSink.functionIs( std::move( sink ) );
}

} // namespace Oru
