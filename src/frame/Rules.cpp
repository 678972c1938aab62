// The operations of the contract over run-time data.
#include "Rules.h"

namespace Hardware::Frame {

namespace {

// Where the view has the site's field; fails if it doesn't have it.
Cell checkedCell( State state, const ClassData& data, Site site ) {
   traceView( data, site, state );
   const Cell cell = cellOf( data, site.field, state.chipType, state.variant );
   if( !cell.present() ) {
      failAbsent( data, site, state.chipType );
   }
   return cell;
}

// The same for an operation that touches the field's bits.
Cell checkedCellInBuffer( State state, const ClassData& data, Site site ) {
   const Cell cell = checkedCell( state, data, site );
   if( state.len < cell.bytes() ) {
      failLength( data, site, cell.bytes() );
   }
   return cell;
}

U64 maximumOf( unsigned width ) { return onesOf<U64>( width ); }

// The size of a field's value in bytes.
int valueSizeOf( const ClassData& data, Site site ) {
   return static_cast<int>( bitsOf( data.fields[site.field].type ) / 8 );
}

} // namespace

void getByRules( State state, const ClassData& data, Site site, U8* value ) {
   const Cell cell = checkedCellInBuffer( state, data, site );
   getBuf( state.buf, state.len, value, valueSizeOf( data, site ), cell.width, cell.offset );
}

void setByRules( State state, const ClassData& data, Site site, U64 value ) {
   const Cell cell = checkedCellInBuffer( state, data, site );
   if( bounded( cell.width ) && value > maximumOf( cell.width ) ) {
      failBound( data, site, maximumOf( cell.width ) );
   }
   setBuf( state.buf, state.len, reinterpret_cast<const U8*>( &value ), valueSizeOf( data, site ),
           cell.width, cell.offset );
}

void setByRules( State state, const ClassData& data, Site site, const U8* value ) {
   const Cell cell = checkedCellInBuffer( state, data, site );
   setBuf( state.buf, state.len, value, valueSizeOf( data, site ), cell.width, cell.offset );
}

void maskByRules( State state, const ClassData& data, Site site ) {
   const Cell cell = checkedCellInBuffer( state, data, site );
   const auto value = onesOf<Raw512>( cell.width );
   setBuf( state.buf, state.len, value.bytes(), valueSizeOf( data, site ), cell.width,
           cell.offset );
}

U16 lenByRules( State state, const ClassData& data, Site site ) {
   return checkedCell( state, data, site ).width;
}

U16 offsetByRules( State state, const ClassData& data, Site site ) {
   return checkedCell( state, data, site ).offset;
}

bool validByRules( State state, const ClassData& data, Site site ) {
   traceView( data, site, state );
   return cellOf( data, site.field, state.chipType, state.variant ).present();
}

namespace {

// The number of an identifier's field; noField if the class doesn't have it.
unsigned fieldOf( const ClassData& data, U32 fieldId ) {
   return fieldId < identifierLimit ? data.fieldOf[fieldId] : noField;
}

// Where the view has the field of an identifier; an absent cell if it doesn't.
Cell cellOfIdentifier( const ClassData& data, U32 fieldId, State state ) {
   const unsigned field = fieldOf( data, fieldId );
   return field == noField ? absent : cellOf( data, field, state.chipType, state.variant );
}

// The site of the field's own accessor.
Site accessorOf( const ClassData& data, Operation operation, unsigned field ) {
   return siteOf( operation, data.fields[field].line, static_cast<U8>( field ) );
}

// Not inlined: the fast paths would have to save the registers that it uses.

[[gnu::cold, gnu::noinline]] U16 fieldWidthByRules( const ClassData& data, Site site, U32 fieldId,
                                                    State state ) {
   traceView( data, site, state );
   const unsigned field = fieldOf( data, fieldId );
   if( field == noField ) {
      fail( data, site, "false" );
   }
   return cellOf( data, field, state.chipType, state.variant ).width;
}

[[gnu::cold, gnu::noinline]] U16 fieldOffsetByRules( const ClassData& data, Site site, U32 fieldId,
                                                     State state ) {
   traceView( data, site, state );
   const unsigned field = fieldOf( data, fieldId );
   if( field == noField ) {
      fail( data, site, "false" );
   }
   return offsetByRules( state, data, accessorOf( data, Operation::offset, field ) );
}

} // namespace

void setField64ByRules( const ClassData& data, Site site, U32 fieldId, U64 value, State state ) {
   traceView( data, site, state );
   const unsigned field = fieldOf( data, fieldId );
   if( field == noField || data.fields[field].readOnly ||
       data.fields[field].type > ValueType::u64 ) {
      fail( data, site, "false" );
   }
   setByRules( state, data, accessorOf( data, Operation::set, field ),
               value & maximumOf( bitsOf( data.fields[field].type ) ) );
}

U16 fieldWidth( const ClassData& data, Site site, U32 fieldId, State state ) {
   const unsigned field = fieldOf( data, fieldId );
   if( field == noField || tracedInView() ) [[unlikely]] {
      return fieldWidthByRules( data, site, fieldId, state );
   }
   return cellOf( data, field, state.chipType, state.variant ).width;
}

U16 fieldOffset( const ClassData& data, Site site, U32 fieldId, State state ) {
   const unsigned field = fieldOf( data, fieldId );
   if( field != noField && !tracedInView() ) [[likely]] {
      const Cell cell = cellOf( data, field, state.chipType, state.variant );
      if( cell.present() ) [[likely]] {
         return cell.offset;
      }
   }
   return fieldOffsetByRules( data, site, fieldId, state );
}

bool isFieldValid( const ClassData& data, Site site, U32 fieldId, State state ) {
   traceView( data, site, state );
   return cellOfIdentifier( data, fieldId, state ).present();
}

const PairFacts& tracedFacts( const ClassData& data, Site site, U32 chipType, U8 variant ) {
   if( traced() ) [[unlikely]] {
      traceStatic( data, site, chipType, variant );
   }
   return checkedFacts( data, site, chipType, variant );
}

namespace {

// "tableEntry < N", or "tableEntry == 0" if the only index is 0 and the class says so.
Text indexTest( const char* index, U32 limit, bool equality ) {
   return equality ? Text( index, " == 0" ) : Text( index, " < ", limit );
}

} // namespace

bool getSchanAddressByRules( const ClassData& data, Site site, U32 chipType, U8 variant,
                             U32& schanAddress, EntryIndices indices ) {
   const PairFacts& facts = factsOf( data, chipType, variant );
   if( facts.format == noFormat ) [[unlikely]] {
      if( enabled( Level::failure ) ) {
         traceNoAddress( data, site, chipType, variant );
      }
      return false;
   }
   if( !facts.hasAddress ) [[unlikely]] {
      fail( data, site, "0" );
   }
   if( indices.tableEntry >= facts.entries ) [[unlikely]] {
      fail( data, site, indexTest( "tableEntry", facts.entries, !data.isTable ).c_str() );
   }
   if( indices.arrayIndex >= facts.arrayElements ) [[unlikely]] {
      const bool equality = data.isTable && facts.arrayElements == 1;
      fail( data, site, indexTest( "arrayIndex", facts.arrayElements, equality ).c_str() );
   }
   // Only the identifier is left: the fast path serves everything else.
   schanAddress =
      facts.base + indices.tableEntry * facts.entryStep + indices.arrayIndex * facts.arrayStep;
   const unsigned count = facts.instanceCount;
   const Text test =
      data.isTable ? Text( "identifier <= ", count - 1 ) : Text( "identifier < ", count );
   fail( data, site, test.c_str() );
}

void construct( const ClassData& data, Site site, State state ) {
   if( factsOf( data, state.chipType, state.variant ).format == noFormat ) [[unlikely]] {
      failConstruction( data, site, state.chipType, state.variant );
   }
   if( traced() ) [[unlikely]] {
      traceConstruction( data, site, state.chipType, state.variant );
   }
}

void handleTag( const ClassData& data, Site site, State state, bool existingEntry ) {
   const PairFacts& facts = factsOf( data, state.chipType, state.variant );
   for( unsigned number = 0; number < facts.tagCount; ++number ) {
      const TagField& tag = facts.tag[number];
      const Cell cell = cellOf( data, tag.field, state.chipType, state.variant );
      if( existingEntry ) {
         U8 found = 0;
         getBuf( state.buf, state.len, &found, 1, cell.width, cell.offset );
         if( found != tag.value ) {
            failTag( data, site, cell, tag.value );
         }
      } else {
         if( state.len < cell.bytes() ) {
            failLength( data, site, cell.bytes() );
         }
         setBuf( state.buf, state.len, &tag.value, 1, cell.width, cell.offset );
      }
   }
}

bool holdsByRules( const ClassData& data, Site site, Hardware::ChipType chipType, const U8* buf,
                   U16 len, U8 variant ) {
   if( traced() ) [[unlikely]] {
      traceDiscriminator( data, site, chipType );
   }
   if( chipType >= chipLimit || ( data.chips >> chipType & 1 ) == 0 ) {
      return false;
   }
   const PairFacts& facts = factsOf( data, chipType, variant );
   for( unsigned number = 0; number < facts.tagCount; ++number ) {
      const TagField& tag = facts.tag[number];
      const Cell cell = cellOf( data, tag.field, chipType, variant );
      if( len < cell.bytes() ) {
         return false;
      }
      U8 found = 0;
      getBuf( buf, len, &found, 1, cell.width, cell.offset );
      if( found != tag.value ) {
         return false;
      }
   }
   return true;
}

} // namespace Hardware::Frame
