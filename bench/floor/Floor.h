// What a good engineer would write by hand for one fixed layout: an out-of-line function for each
// field and operation, with the checks of length and bound, but without a look-up of the pair and
// without traces.
#pragma once

#include <Kelvar/Types.h>

#include <memory>
#include <string>

#define FLOOR_API __attribute__( ( visibility( "default" ) ) )

namespace Floor {

// An entry's memory: whole 64-bit words, of which the first `length` bytes are the entry.
struct Image {
   U64* words;
   U32 length;
};

// A namespace for each pair: `vsi` and `vsiIs` in Floor::LifTable_10_0, and so on.
#define PAIR( View, chipType, variant ) namespace View##_##chipType##_##variant {
#define TAG( Type, name, offset, width ) FLOOR_API Type name( const Image& image );
#define FIELD( Type, name, offset, width )                                                         \
   TAG( Type, name, offset, width )                                                                \
   FLOOR_API void name##Is( const Image& image, Type value );
#define WIDE( Type, name, offset, width )                                                          \
   TAG( Type, name, offset, width )                                                                \
   FLOOR_API void name##Is( const Image& image, const Type& value );
#define END_PAIR }
#include "Pairs.def"

// Empty functions, to measure a call.
FLOOR_API void nothingIs( const void* view, U32 value );
FLOOR_API U32 nothing( const void* view );

// The other operations on an entry, for LifTable on chip type 10, variant 0.
namespace LifTable_10_0 {
FLOOR_API void stampTag( const Image& image );
FLOOR_API bool hasTag( const U8* buf, U16 len );
FLOOR_API Raw1024 allFields( const Image& image );
FLOOR_API bool address( U32& schanAddress, U8& accessType, U8& destBlock, U16 identifier,
                        U32 tableEntry, U16 arrayIndex );
} // namespace LifTable_10_0

// An object of the size of LifTable's that owns its entry.
class FLOOR_API Object {
public:
   Object( U8 chipType, U8 variant );
   virtual ~Object();
   Object( const Object& ) = delete;
   Object& operator=( const Object& ) = delete;

   Image image() const { return { words_, length_ }; }
   U8 chipType() const { return chipType_; }
   U8 variant() const { return variant_; }

private:
   U64* words_;
   U8 chipType_;
   U8 variant_;
   U16 length_;
   U64 storage_[10];
};

// A new object by table name: one look-up in a map from names to functions.
FLOOR_API std::shared_ptr<Object> objectByName( const std::string& name, U8 chipType, U8 variant );

} // namespace Floor
