// The chip types, stated once for all tests.
#pragma once

#include <Hardware/ChipType.h>

#include <string>

namespace Testing {

inline constexpr Hardware::ChipType olderChips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0,
                                                     Hardware::BCM88375_A0, Hardware::BCM88375_B0,
                                                     Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                                     Hardware::BCM88680_A0 };
inline constexpr Hardware::ChipType newerChips[] = {
   Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88800_A0,
   Hardware::BCM88850_A0, Hardware::BCM88480_A0,    Hardware::BCM88480_B0
};

// As messages list them.
inline const std::string olderChipsListed =
   "BCM88650_B0 (2), BCM88660_A0 (3), BCM88375_A0 (4), BCM88375_B0 (5), BCM88470_A0 (6), "
   "BCM88470_B0 (7), BCM88680_A0 (8)";
inline const std::string newerChipsListed =
   "BCM88690_B0 (10), BCM88690_V6_B0 (12), BCM88800_A0 (13), BCM88850_A0 (14), BCM88480_A0 (15), "
   "BCM88480_B0 (16)";
inline const std::string hardwareChipsListed = olderChipsListed + ", " + newerChipsListed;
inline const std::string allChipsListed = hardwareChipsListed + ", Software (21)";

// The same without numbers, for what is neither a number nor near a name.
inline const std::string allChipsNamed =
   "BCM88650_B0, BCM88660_A0, BCM88375_A0, BCM88375_B0, BCM88470_A0, BCM88470_B0, BCM88680_A0, "
   "BCM88690_B0, BCM88690_V6_B0, BCM88800_A0, BCM88850_A0, BCM88480_A0, BCM88480_B0, Software";

} // namespace Testing
