// The trace lines, each written by one trace helper.
#include "Trace.h"

namespace Hardware::Frame {

Oru::TraceHandle& _defaultTraceHandle() {
   // Not destroyed at process exit: threads and later destructors may still trace.
   static Oru::TraceHandle* const handle =
      // Branches that no test takes: what is undone if the handle cannot be made.
      new( traceHandleStorage.bytes ) Oru::TraceHandle( "KelvarVornTunnelMetaInfo", false );
   return *handle;
}

bool enabled( Level level ) {
   const Oru::TraceHandle& handle = _defaultTraceHandle();
   traceHandleBuilt.store( true, std::memory_order_release );
   return enabled( handle, level );
}

namespace {

template<class... Pieces>
void write( const ClassData& data, Level level, Site site, const Pieces&... pieces ) {
   const auto function = shortNameOf( data, site ); // the helper reads it when it ends
   Oru::TraceHelper helper( _defaultTraceHandle(),
                            static_cast<Oru::TraceFacility::FacilityLevel>( level ),
                            "VornTunnelMetaInfo", site.line, function.c_str() );
   ( helper.stream() << ... << pieces );
}

} // namespace

void traceCall( const ClassData& data, Site site, U8 chipType, U8 variant ) {
   write( data, Level::call, site, signatureOf( data, site ).c_str(), " chipType: ", chipType,
          " variant: ", variant );
}

void traceStatic( const ClassData& data, Site site, U32 chipType, U8 variant ) {
   write( data, Level::call, site, signatureOf( data, site ).c_str(), " chipType: ", chipType,
          " variant: ", variant );
}

void traceNamed( const ClassData& data, Site site, U8 chipType, U8 variant,
                 const Oru::String& fieldName ) {
   write( data, Level::call, site, signatureOf( data, site ).c_str() );
   // Each line tests the level again: the sink may have switched it off.
   if( enabled( Level::call ) ) {
      write( data, Level::call, site, "chipType: ", chipType, " variant: ", variant,
             " fieldName: ", fieldName );
   }
}

void traceConstruction( const ClassData& data, Site site, U8 chipType, U8 variant ) {
   Text pair( " chipType: ", printed( chipType ).view(), " variant: " );
   if( factsOf( data, chipType, variant ).variantCount == 0 ) {
      pair.append( "None" );
   } else {
      pair.append( variant );
   }
   write( data, Level::call, site, data.name, pair.c_str() );
}

void traceDiscriminator( const ClassData& data, Site site, U8 chipType ) {
   write( data, Level::call, site, signatureOf( data, site ).c_str(),
          " chipType: ", printed( chipType ).c_str() );
}

void traceNoAddress( const ClassData& data, Site site, U32 chipType, U8 variant ) {
   write( data, Level::failure, site, signatureOf( data, site ).c_str(), " chipType: ", chipType,
          " variant: ", variant, " failed." );
}

} // namespace Hardware::Frame
