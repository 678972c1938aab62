// The library's trace handle and the lines it writes; a disabled site costs the test of one bit.
#pragma once

#include "Failure.h"

#include <Hardware/detail/Inline.h>
#include <Oru/Trace.h>

#include <atomic>
#include <cstddef>
#include <new>

namespace Hardware::Frame {

// Built on first use, under the run-time's guard.
Oru::TraceHandle& _defaultTraceHandle();

// Its memory, at an address that needs no load to find.
struct TraceHandleStorage {
   alignas( Oru::TraceHandle ) std::byte bytes[sizeof( Oru::TraceHandle )] = {};

   const Oru::TraceHandle& handle() const {
      return *std::launder( reinterpret_cast<const Oru::TraceHandle*>( bytes ) );
   }
};
inline constinit TraceHandleStorage traceHandleStorage;

// Whether it is built; until then the first test of a level builds it.
inline constinit std::atomic<bool> traceHandleBuilt{ false };

// Level 8: every operation. Level 0: a failed address lookup.
enum class Level { failure = 0, call = 8 };

inline bool enabled( const Oru::TraceHandle& handle, Level level ) {
   return handle.enabled( static_cast<Oru::TraceFacility::FacilityLevel>( level ) );
}

// Whether the level is switched on. The first call in the process builds the handle.
bool enabled( Level level );

// Whether an operation of a view writes its line. The view's construction has built the handle.
HARDWARE_INLINE inline bool tracedInView() {
#ifdef VORN_WITHOUT_TRACES // only in benchmarks, to measure what the tests cost
   return false;
#else
   return enabled( traceHandleStorage.handle(), Level::call );
#endif
}

// Whether an operation that may be the first of the process certainly writes no line; needs no
// call.
HARDWARE_INLINE inline bool surelyQuiet() {
#ifdef VORN_WITHOUT_TRACES
   return true;
#else
   return traceHandleBuilt.load( std::memory_order_acquire ) &&
          !enabled( traceHandleStorage.handle(), Level::call );
#endif
}

// Whether such an operation writes its line.
HARDWARE_INLINE inline bool traced() { return !surelyQuiet() && enabled( Level::call ); }

// "<signature> chipType: <number> variant: <number>"
[[gnu::cold]] void traceCall( const ClassData& data, Site site, U8 chipType, U8 variant );
// The same for a static operation, whose chip type is a U32.
[[gnu::cold]] void traceStatic( const ClassData& data, Site site, U32 chipType, U8 variant );
// "<signature>", then "chipType: <number> variant: <number> fieldName: <name>".
[[gnu::cold]] void traceNamed( const ClassData& data, Site site, U8 chipType, U8 variant,
                               const Oru::String& fieldName );
// "<class> chipType: <name> variant: <number or None>"
[[gnu::cold]] void traceConstruction( const ClassData& data, Site site, U8 chipType, U8 variant );
// "<signature> chipType: <name>"
[[gnu::cold]] void traceDiscriminator( const ClassData& data, Site site, U8 chipType );
// "<signature> chipType: <number> variant: <number> failed."
[[gnu::cold]] void traceNoAddress( const ClassData& data, Site site, U32 chipType, U8 variant );

} // namespace Hardware::Frame
