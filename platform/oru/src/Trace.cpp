// Facilities by name, and the delivery of trace lines.
#include <Oru/Trace.h>

#include "Sink.h"

#include <map>
#include <mutex>
#include <set>

// Not <cassert>'s declaration, which promises not to throw: a program may stand in for the symbol
// and leave it with an exception.
extern "C" [[noreturn]] void __assert_fail( const char* expression, const char* file, unsigned line,
                                            const char* function );

namespace Oru {

// All facilities by handle name, with their handles. Never destroyed, as handles are used during
// the process's exit.
class Facilities {
public:
   static Facilities& instance() {
      static Facilities* const facilities = new Facilities;
      return *facilities;
   }

   void add( TraceHandle& handle ) {
      const std::lock_guard guard( mutex_ );
      Facility& facility = facilities_[handle.name_];
      facility.handles.insert( &handle );
      tell( handle, facility );
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
         tell( *handle, facility );
      }
   }

private:
   struct Facility {
      U32 levels = 0; // a bit for each
      std::set<TraceHandle*> handles;
   };

   static void tell( TraceHandle& handle, const Facility& facility ) {
      handle.levels_.store( facility.levels, std::memory_order_relaxed );
   }

   std::mutex mutex_;
   std::map<std::string, Facility> facilities_;
};

namespace {

using TraceSink = Sink<const std::string&>;

TraceSink& traceSink() {
   static TraceSink* const sink = new TraceSink;
   return *sink;
}

} // namespace

TraceHandle::TraceHandle( const char* name, bool ) : name_( name ) {
   Facilities::instance().add( *this );
}

TraceHandle::~TraceHandle() { Facilities::instance().remove( *this ); }

TraceStream& operator<<( TraceStream& stream, const char* text ) {
   stream.append( text );
   return stream;
}

TraceStream& operator<<( TraceStream& stream, U8 number ) { return stream << U32{ number }; }

TraceStream& operator<<( TraceStream& stream, U32 number ) {
   stream.append( std::to_string( number ) );
   return stream;
}

TraceStream& operator<<( TraceStream& stream, const String& text ) {
   stream.append( text.view() );
   return stream;
}

TraceHelper::TraceHelper( const TraceHandle& handle, TraceFacility::FacilityLevel level,
                          const char* file, int line, const char* function )
   : handle_( handle ), level_( level ), file_( file ), line_( line ), function_( function ) {}

TraceHelper::~TraceHelper() {
   try {
      if( const auto deliver = traceSink().function() ) {
         deliver( stream_.line() );
      } else {
         writeToStandardError( handle_.name() + ( '/' + std::to_string( level_ ) ) + ' ' + file_ +
                               ':' + std::to_string( line_ ) + ' ' + function_ + ": " +
                               stream_.line() + '\n' );
      }
   } catch( ... ) {
      // Tracing must not disturb what it traces.
   }
}

void traceLevelIs( const std::string& handle, int level, bool on ) {
   if( level < 0 || level > 9 ) {
      __assert_fail( "level >= 0 && level <= 9", "Trace.cpp", __LINE__,
                     "void Oru::traceLevelIs(const std::string&, int, bool)" );
   }
   Facilities::instance().levelIs( handle, level, on );
}

void traceSinkIs( std::function<void( const std::string& line )> sink ) {
   traceSink().functionIs( std::move( sink ) );
}

} // namespace Oru
