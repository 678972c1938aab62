// Facilities by name, and the delivery of trace lines.
#include <Oru/Trace.h>

#include "Sink.h"

#include <map>
#include <mutex>

// Not <cassert>'s declaration, which promises not to throw: a program may stand in for the symbol
// and leave it with an exception.
extern "C" [[noreturn]] void __assert_fail( const char* expression, const char* file, unsigned line,
                                            const char* function );

namespace Oru {

namespace {

// All facilities by handle name. Never destroyed, as handles are used during the process's exit.
class Registry {
public:
   static Registry& instance() {
      static Registry* const registry = new Registry;
      return *registry;
   }

   // The facility of this name, made on first use; it stays where it is.
   TraceFacility& facility( const std::string& name ) {
      const std::lock_guard guard( mutex_ );
      return facilities_[name];
   }

private:
   std::mutex mutex_;
   std::map<std::string, TraceFacility> facilities_;
};

using TraceSink = Sink<const std::string&>;

TraceSink& traceSink() {
   static TraceSink* const sink = new TraceSink;
   return *sink;
}

} // namespace

void TraceFacility::levelIs( FacilityLevel level, bool on ) {
   const U32 bit = U32{ 1 } << level;
   if( on ) {
      levels_.fetch_or( bit, std::memory_order_relaxed );
   } else {
      levels_.fetch_and( ~bit, std::memory_order_relaxed );
   }
}

TraceHandle::TraceHandle( const char* name, bool )
   : name_( name ), facility_( &Registry::instance().facility( name_ ) ) {}

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
   Registry::instance().facility( handle ).levelIs(
      static_cast<TraceFacility::FacilityLevel>( level ), on );
}

void traceSinkIs( std::function<void( const std::string& line )> sink ) {
   traceSink().functionIs( std::move( sink ) );
}

} // namespace Oru
