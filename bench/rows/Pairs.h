// The pairs that have a floor, as lists of types: for each field the library's accessors and the
// floor's, all of them constants.
#pragma once

#include "floor/Floor.h"

#include <Hardware/FieldId.h>
#include <Hardware/FwdActProfileTable.h>
#include <Hardware/IsemMgmtReq.h>
#include <Hardware/LifTable.h>
#include <Hardware/TcamActionTable.h>
#include <Hardware/TcamBankTable.h>

#include <string>
#include <tuple>
#include <type_traits>

namespace Bench {

struct NoSetter {};

// `NoSetter{}` stands for the setters of a tag field.
template<class Value_, U32 identifier_, auto get_, auto set_, auto len_, auto offset_,
         auto floorGet_, auto floorSet_>
struct Field {
   using Value = Value_;
   static constexpr bool settable = !std::is_same_v<const decltype( floorSet_ ), const NoSetter>;
   static constexpr bool wide = !std::is_integral_v<Value>;
   static constexpr U32 identifier = identifier_;
   static constexpr auto get = get_;
   static constexpr auto set = set_;
   static constexpr auto len = len_;
   static constexpr auto offset = offset_;
   static constexpr auto floorGet = floorGet_;
   static constexpr auto floorSet = floorSet_;
};

// Ends a list.
struct End {};

// Calls `act.operator()<Field>( name )` for each field of the pair in declared order.
template<class Pair, class Act>
[[gnu::always_inline]] constexpr void forEachField( const Act& act ) {
   [&act]<class... Fields>( std::tuple<Fields...>* ) {
      unsigned number = 0;
      const auto visit = [&act, &number]<class Field>( Field* ) {
         if constexpr( !std::is_same_v<Field, End> ) {
            act.template operator()<Field>( Pair::names[number++] );
         }
      };
      ( visit( static_cast<Fields*>( nullptr ) ), ... );
   }( static_cast<typename Pair::Fields*>( nullptr ) );
}

} // namespace Bench

// `Floor::LifTable_10_0::Pair` and so on.
namespace Floor {

#define PAIR( View, chipType, variant )                                                            \
   namespace View##_##chipType##_##variant {                                                       \
      inline constexpr const char* fieldNames[] = {
#define FIELD( Type, name, offset, width ) #name,
#define WIDE( Type, name, offset, width ) #name,
#define TAG( Type, name, offset, width ) #name,
#define END_PAIR                                                                                   \
   }                                                                                               \
   ;                                                                                               \
   }
#include "floor/Pairs.def"

#define PAIR( View_, chipType_, variant_ )                                                         \
   namespace View_##_##chipType_##_##variant_ {                                                    \
      struct Pair {                                                                                \
         using View = Hardware::View_;                                                             \
         static constexpr unsigned chipType = chipType_;                                           \
         static constexpr unsigned variant = variant_;                                             \
         static std::string name() { return #View_ "(" #chipType_ "," #variant_ ")"; }             \
         using Fields = std::tuple <
#define PAIR_FIELD( Type, name, set, floorSet )                                                    \
   Bench::Field<Type, Hardware::FieldId::name, &View::name, set, &View::name##Len,                 \
                &View::name##Offset, &name, floorSet>,
#define FIELD( Type, name, offset, width ) PAIR_FIELD( Type, name, &View::name##Is, &name##Is )
#define WIDE( Type, name, offset, width ) FIELD( Type, name, offset, width )
#define TAG( Type, name, offset, width )                                                           \
   PAIR_FIELD( Type, name, Bench::NoSetter{}, Bench::NoSetter{} )
#define END_PAIR                                                                                   \
   Bench::End > ;                                                                                  \
   static constexpr auto& names = fieldNames;                                                      \
   }                                                                                               \
   ;                                                                                               \
   }
// clang-format off
#include "floor/Pairs.def"
// clang-format on
#undef PAIR_FIELD

} // namespace Floor

namespace Bench {

// The pairs whose typed accessors have a goal.
using TypedPairs =
   std::tuple<Floor::LifTable_10_0::Pair, Floor::LifTable_4_2::Pair, Floor::IsemMgmtReq_10_3::Pair,
              Floor::IsemMgmtReq_2_0::Pair, Floor::FwdActProfileTable_14_0::Pair,
              Floor::TcamActionTable_2_0::Pair>;

// Calls `act.operator()<Pair>()` for each of them.
template<class Act>
void forEachTypedPair( const Act& act ) {
   [&act]<class... Pairs>( std::tuple<Pairs...>* ) {
      ( act.template operator()<Pairs>(), ... );
   }( static_cast<TypedPairs*>( nullptr ) );
}

} // namespace Bench
