// The rows of the EEDB bank that serve outgoing AC and ARP link-layer entries.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/OutAcBank.def>

namespace Hardware::Layouts::OutAcBank {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto like2 = chips( 2, 3 );
inline constexpr auto like10 = chips( 10, 12, 13, 15, 16 );
inline constexpr auto newer = chips( like10, 14 );

inline constexpr auto description = describe(
   layout(
      // Chip type 14 widens resultType by one bit downward, so that everything below lies one bit
      // lower than on its siblings.
      block( variants( 0 ), { like2, chips( range( 4, 8 ) ), like10, chips( 14 ) }, {
         { mdbEntry,          { absent,      absent,      at( 0, 120 ),  at( 0, 120 ) } },
         { eedbBankData,      { at( 0, 78 ), at( 0, 88 ), absent,        absent } },
         { egressLastLayer,   { absent,      absent,      at( 15, 1 ),   at( 14, 1 ) } },
         { statObjectId,      { absent,      absent,      at( 16, 17 ),  at( 15, 17 ) } },
         { statObjectCmd,     { absent,      absent,      at( 33, 5 ),   at( 32, 5 ) } },
         { protectionPointer, { absent,      absent,      at( 38, 17 ),  at( 37, 17 ) } },
         { protectionPath,    { absent,      absent,      at( 55, 1 ),   at( 54, 1 ) } },
         { outLifProfile,     { absent,      absent,      at( 56, 6 ),   at( 55, 6 ) } },
         { oamLifSet,         { absent,      absent,      at( 62, 1 ),   at( 61, 1 ) } },
         { encapQosModel,     { absent,      absent,      at( 63, 3 ),   at( 62, 3 ) } },
         { remarkProfile,     { absent,      absent,      at( 66, 5 ),   at( 65, 5 ) } },
         { nwkQosIdx,         { absent,      absent,      at( 71, 11 ),  at( 70, 11 ) } },
         { vlanEditProfile,   { absent,      absent,      at( 82, 6 ),   at( 81, 6 ) } },
         { actionProfile,     { absent,      absent,      at( 88, 2 ),   at( 87, 2 ) } },
         { vlanEditVid1,      { absent,      absent,      at( 90, 12 ),  at( 89, 12 ) } },
         { vlanEditVid2,      { absent,      absent,      at( 102, 12 ), at( 101, 12 ) } },
         { resultType,        { absent,      absent,      at( 114, 6 ),  at( 113, 7 ) } },
      } ),

      // Chip types 6 to 8 have the places of Vid1 and Vid2 exchanged in both halves. On chip types
      // 4 and 5 the two entry formats differ in width.
      block( variants( 1 ), { chips( 2 ), chips( 3 ), chips( 4, 5 ), chips( range( 6, 8 ) ) }, {
         { ac0ActionPcpDeiProfile,   { at( 0, 4 ),   at( 0, 4 ),   at( 0, 4 ),   at( 0, 4 ) } },
         { ac0ActionVid1,            { at( 4, 12 ),  at( 4, 12 ),  at( 4, 12 ),  at( 16, 12 ) } },
         { ac0ActionVid2,            { at( 16, 12 ), at( 16, 12 ), at( 16, 12 ), at( 4, 12 ) } },
         { ac0ActionVlanEditProfile, { at( 28, 4 ),  at( 28, 4 ),  at( 28, 5 ),  at( 28, 5 ) } },
         { ac0ActionOamLifSet,       { at( 32, 1 ),  at( 32, 1 ),  at( 33, 1 ),  at( 33, 1 ) } },
         { ac0ActionDrop,            { at( 33, 1 ),  at( 33, 1 ),  at( 37, 1 ),  at( 40, 1 ) } },
         { ac0ActionOutlifProfile,   { absent,       absent,       at( 34, 3 ),  at( 34, 6 ) } },
         { ac0EntryFormat,           { at( 34, 3 ),  at( 35, 2 ),  at( 39, 2 ),  absent } },
         { ac0ActionUseAsDataBit,    { absent,       at( 34, 1 ),  at( 38, 1 ),  absent } },
         { ac1ActionPcpDeiProfile,   { at( 37, 4 ),  at( 37, 4 ),  at( 41, 4 ),  at( 41, 4 ) } },
         { ac1ActionVid1,            { at( 41, 12 ), at( 41, 12 ), at( 45, 12 ), at( 57, 12 ) } },
         { ac1ActionVid2,            { at( 53, 12 ), at( 53, 12 ), at( 57, 12 ), at( 45, 12 ) } },
         { ac1ActionVlanEditProfile, { at( 65, 4 ),  at( 65, 4 ),  at( 69, 5 ),  at( 69, 5 ) } },
         { ac1ActionOamLifSet,       { at( 69, 1 ),  at( 69, 1 ),  at( 74, 1 ),  at( 74, 1 ) } },
         { ac1ActionDrop,            { at( 70, 1 ),  at( 70, 1 ),  at( 78, 1 ),  at( 81, 1 ) } },
         { ac1EntryFormat,           { at( 71, 3 ),  at( 72, 2 ),  at( 80, 4 ),  absent } },
         { ac1ActionUseAsDataBit,    { absent,       at( 71, 1 ),  at( 79, 1 ),  absent } },
         { acEntryFormat,            { at( 74, 4 ),  at( 74, 4 ),  at( 84, 4 ),  at( 84, 4 ) } },
         { ac1ActionOutlifProfile,   { absent,       absent,       at( 75, 3 ),  at( 75, 6 ) } },
         { acPlusDataEntry,          { absent,       absent,       absent,       at( 82, 2 ) } },
      } ),

      block( variants( 2 ), { like2, chips( range( 4, 6 ) ), chips( 7, 8 ) }, {
         { arpLlActionNextOutLifLsb,    { at( 0, 5 ),   at( 0, 6 ),   at( 0, 6 ) } },
         { arpLlActionNextOutLifValid,  { at( 5, 1 ),   at( 6, 1 ),   at( 6, 1 ) } },
         { arpLlActionVsi,              { at( 6, 16 ),  at( 7, 16 ),  at( 7, 16 ) } },
         { arpLlActionVsiValid,         { at( 22, 1 ),  at( 23, 1 ),  at( 23, 1 ) } },
         { arpLlActionMac,              { at( 23, 48 ), at( 24, 48 ), at( 24, 48 ) } },
         { arpLlActionOamLifSet,        { at( 71, 1 ),  at( 75, 1 ),  at( 75, 1 ) } },
         { arpLlActionRemarkProfile,    { at( 73, 2 ),  at( 72, 3 ),  at( 72, 3 ) } },
         { arpLlActionDrop,             { at( 72, 1 ),  at( 82, 1 ),  at( 82, 1 ) } },
         { arpLlEntryFormat,            { at( 75, 3 ),  at( 85, 3 ),  at( 85, 3 ) } },
         { arpLlActionOutlifProfile,    { absent,       at( 76, 5 ),  at( 76, 5 ) } },
         { arpLlActionActionIdentifier, { absent,       at( 81, 1 ),  at( 81, 1 ) } },
         { arpLlActionReserved,         { absent,       at( 83, 2 ),  at( 84, 1 ) } },
         { arpLlActionNativeLl,         { absent,       absent,       at( 83, 1 ) } },
      } ) ),
   // On chip types 4 and 5 the formatted variants differ from the raw one, and from each other.
   dimensions( {
      // chip types    variants             width entries     arrayElements instanceCount
      { like2,         variants( 0, 1, 2 ), 3,    2048,       16,           1 },
      { chips( 4 ),    variants( 0 ),       3,    4096,       22,           1 },
      { chips( 4 ),    variants( 1, 2 ),    3,    2048,       22,           1 },
      { chips( 5 ),    variants( 0 ),       3,    4096,       22,           1 },
      { chips( 5 ),    variants( 1, 2 ),    3,    4096,       1,            1 },
      { chips( 6, 7 ), variants( 0, 1, 2 ), 3,    4096,       18,           1 },
      { chips( 8 ),    variants( 0, 1, 2 ), 3,    4096,       26,           1 },
      { newer,         variants( 0 ),       20,   4294967295, 1,            1 },
   } ),
   fieldCounts( {
      { chips( range( 2, 8 ) ), variants( 0 ), 1 },
      { chips( 2 ),             variants( 1 ), 15 },
      { chips( 3 ),             variants( 1 ), 17 },
      { chips( 4, 5 ),          variants( 1 ), 19 },
      { chips( range( 6, 8 ) ), variants( 1 ), 16 },
      { like2,                  variants( 2 ), 9 },
      { chips( range( 4, 6 ) ), variants( 2 ), 12 },
      { chips( 7, 8 ),          variants( 2 ), 13 },
      { newer,                  variants( 0 ), 16 },
   } ),
   addresses( {
      // chip types      variants             base      entry step array step { accessType, destBlock }
      { like2,           variants( 0, 1, 2 ), 0x140000, 1,         2048,      { { 0, 3 } } },
      { chips( 4, 5 ),   variants( 0 ),       0x100000, 1,         4096,      { { 0, 52 } } },
      { chips( 4 ),      variants( 1, 2 ),    0x100000, 1,         2048,      { { 0, 52 } } },
      { chips( 5 ),      variants( 1, 2 ),    0x100000, 1,         0,         { { 0, 52 } } },
      { chips( 6, 7 ),   variants( 0, 1, 2 ), 0x100000, 1,         4096,      { { 0, 52 } } },
      { chips( 8 ),      variants( 0, 1, 2 ), 0x100000, 1,         4096,      { { 0, 56 } } },
      { chips( 10, 12 ), variants( 0 ),       0x0,      1,         0,         { { 10, 1 } } },
      { chips( 13 ),     variants( 0 ),       0x0,      1,         0,         { { 4, 5 } } },
      { chips( 14 ),     variants( 0 ),       0x0,      1,         0,         { { 28, 12 } } },
      { chips( 15, 16 ), variants( 0 ),       0x0,      1,         0,         { { 16, 15 } } },
   } ),
   tags( {
      { newer, variants( 0 ), { { resultType, 8 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::OutAcBank

#undef HARDWARE_FIELDS
