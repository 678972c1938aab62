// The nearest right name for a wrong one.
#pragma once

#include <Vorn/Export.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// How many insertions, deletions, replacements and swaps of neighbours turn `left` into `right`,
// ignoring case and underscores: the distance from VLAN_DOMAIN to vlanDomain is 0.
VORN_API unsigned editDistance( std::string_view left, std::string_view right );

// The name of `right` at the smallest distance from `wrong`, if it is near enough to be what was
// meant: at most a third of the longer one's length.
VORN_API std::optional<std::string_view> nearest( std::string_view wrong,
                                                  std::span<const std::string_view> right );

// All names at that smallest distance, in their order.
VORN_API std::vector<std::string_view> allNearest( std::string_view wrong,
                                                   std::span<const std::string_view> right );

// The end of a message about a wrong name: "; did you mean vlanDomain?", or the whole list when
// no name is near: "; allowed: vlanDomain, portEmAccCmd".
VORN_API std::string suggestion( std::string_view wrong, std::span<const std::string_view> right );

} // namespace Vorn
