// Tracing: handles with one enable bit per level, and helpers that write one line each.
#pragma once

#include <Kelvar/Types.h>
#include <Oru/String.h>

#include <atomic>
#include <functional>
#include <string>

namespace Oru {

// Shared by all handles of one name: an enable bit per level.
class ORU_API TraceFacility {
public:
   enum FacilityLevel : int {
      level0 = 0,
      level1 = 1,
      level2 = 2,
      level3 = 3,
      level4 = 4,
      level5 = 5,
      level6 = 6,
      level7 = 7,
      level8 = 8,
      level9 = 9,
   };
};

// A name by which trace sites find their facility. The second argument is ignored.
class ORU_API TraceHandle {
public:
   TraceHandle( const char* name, bool );
   // Afterwards no level of the handle is enabled.
   ~TraceHandle();
   TraceHandle( const TraceHandle& ) = delete;
   TraceHandle& operator=( const TraceHandle& ) = delete;

   const char* name() const { return name_.c_str(); }
   bool enabled( TraceFacility::FacilityLevel level ) const {
#ifdef __x86_64__
      // A relaxed load of the byte and the test of its bit in one instruction; the compiler would
      // use two.
      const U8& byte = reinterpret_cast<const U8*>( &levels_ )[level / 8];
      bool on;
      __asm__ volatile( "{testb %1, %2|test byte ptr %2, %1}" // in either syntax
                        : "=@ccnz"( on )
                        : "iq"( static_cast<U8>( 1u << level % 8 ) ), "m"( byte ) );
      return on;
#else
      return ( levels_.load( std::memory_order_relaxed ) & 1u << level ) != 0;
#endif
   }

private:
   friend class Facilities;

   std::string name_;
   std::atomic<U32> levels_{ 0 }; // its facility's bits, updated whenever they change
};

// The line being written. A U8 is written as a decimal number.
class ORU_API TraceStream {
public:
   TraceStream() = default;

   // Throws nothing: if there is no memory for it, the text is left out.
   void append( std::string_view text );
   const std::string& line() const { return line_; }

private:
   friend class TraceHelper;

   explicit TraceStream( std::string line ) : line_( std::move( line ) ) {}

   std::string line_;
};

ORU_API TraceStream& operator<<( TraceStream& stream, const char* text );
ORU_API TraceStream& operator<<( TraceStream& stream, U8 number );
ORU_API TraceStream& operator<<( TraceStream& stream, U32 number );
ORU_API TraceStream& operator<<( TraceStream& stream, const String& text );

// One line of trace: its destructor passes the line to the sink. Exceptions from a sink are
// dropped. The handle must outlive the helper.
//
// It leaves its thread as it was: errno is preserved, a cancellation waits until the line is
// delivered, and a line that can't be delivered has no effect. Signal handlers and children of a
// fork may trace too, if the sink may be called there; the default one may.
class ORU_API TraceHelper {
public:
   TraceHelper( const TraceHandle& handle, TraceFacility::FacilityLevel level, const char* file,
                int line, const char* function );
   ~TraceHelper();
   TraceHelper( const TraceHelper& ) = delete;
   TraceHelper& operator=( const TraceHelper& ) = delete;

   TraceStream& stream() { return stream_; }

private:
   const TraceHandle& handle_;
   TraceFacility::FacilityLevel level_;
   const char* file_;
   int line_;
   const char* function_;
   TraceStream stream_;
};

// Switches a level of all handles of this name, including those made later. Reserves the memory for
// the lines. A level outside 0 to 9 is the assertion "level >= 0 && level <= 9".
ORU_API void traceLevelIs( const std::string& handle, int level, bool on );

// Where finished lines go; an empty function restores the default. A sink receives only the
// streamed text; the default writes "<handle>/<level> <file>:<line> <function>: <text>" to standard
// error, and waits while that is full. A sink that is replaced while it is called lives until a
// later replacement.
ORU_API void traceSinkIs( std::function<void( const std::string& line )> sink );

} // namespace Oru
