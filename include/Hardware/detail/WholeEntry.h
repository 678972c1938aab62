// The type of a whole entry, as getAllFields() returns it.
#pragma once

#include <Kelvar/Types.h>

#include <type_traits>

namespace Hardware {
namespace Detail {

// The smallest type that holds an entry of `Bytes` bytes.
template<unsigned Bytes>
using WholeEntry = std::conditional_t<
   ( Bytes <= 4 ), U32,
   std::conditional_t<( Bytes <= 8 ), U64,
                      std::conditional_t<( Bytes <= 16 ), Raw128,
                                         std::conditional_t<( Bytes <= 32 ), Raw256,
                                                            std::conditional_t<( Bytes <= 64 ),
                                                                               Raw512, Raw1024>>>>>;

} // namespace Detail
} // namespace Hardware
