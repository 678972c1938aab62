// The field catalogue: every identifier with its two names, and the rules that these follow.
#include <Hardware/FieldId.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Row {
   unsigned identifier;
   std::string_view name;
   std::string_view hardwareName;
   U32 constant;
};

// clang-format off
#define ROW( identifier, name, hardwareName )                                                      \
   { identifier, #name, hardwareName, Hardware::FieldId::name }
constexpr Row rows[] = {
   ROW( 3,   action,                                 "ACTION" ),
   ROW( 4,   actionProfile,                          "ACTION_PROFILE" ),
   ROW( 5,   actionProfileIdx,                       "ACTION_PROFILE_IDX" ),
   ROW( 6,   actionProfileIndex,                     "ACTION_PROFILE_INDEX" ),
   ROW( 7,   ac0ActionDrop,                          "AC_0_ACTION_DROP" ),
   ROW( 8,   ac0ActionOamLifSet,                     "AC_0_ACTION_OAM_LIF_SET" ),
   ROW( 9,   ac0ActionOutlifProfile,                 "AC_0_ACTION_OUTLIF_PROFILE" ),
   ROW( 10,  ac0ActionPcpDeiProfile,                 "AC_0_ACTION_PCP_DEI_PROFILE" ),
   ROW( 11,  ac0ActionUseAsDataBit,                  "AC_0_ACTION_USE_AS_DATA_BIT" ),
   ROW( 12,  ac0ActionVid1,                          "AC_0_ACTION_VID_1" ),
   ROW( 13,  ac0ActionVid2,                          "AC_0_ACTION_VID_2" ),
   ROW( 14,  ac0ActionVlanEditProfile,               "AC_0_ACTION_VLAN_EDIT_PROFILE" ),
   ROW( 15,  ac0EntryFormat,                         "AC_0_ENTRY_FORMAT" ),
   ROW( 16,  ac1ActionDrop,                          "AC_1_ACTION_DROP" ),
   ROW( 17,  ac1ActionOamLifSet,                     "AC_1_ACTION_OAM_LIF_SET" ),
   ROW( 18,  ac1ActionOutlifProfile,                 "AC_1_ACTION_OUTLIF_PROFILE" ),
   ROW( 19,  ac1ActionPcpDeiProfile,                 "AC_1_ACTION_PCP_DEI_PROFILE" ),
   ROW( 20,  ac1ActionUseAsDataBit,                  "AC_1_ACTION_USE_AS_DATA_BIT" ),
   ROW( 21,  ac1ActionVid1,                          "AC_1_ACTION_VID_1" ),
   ROW( 22,  ac1ActionVid2,                          "AC_1_ACTION_VID_2" ),
   ROW( 23,  ac1ActionVlanEditProfile,               "AC_1_ACTION_VLAN_EDIT_PROFILE" ),
   ROW( 24,  ac1EntryFormat,                         "AC_1_ENTRY_FORMAT" ),
   ROW( 25,  acEntryFormat,                          "AC_ENTRY_FORMAT" ),
   ROW( 26,  acPlusDataEntry,                        "AC_PLUS_DATA_ENTRY" ),
   ROW( 27,  address,                                "ADDRESS" ),
   ROW( 28,  adjustOamOffset,                        "ADJUST_OAM_OFFSET" ),
   ROW( 29,  admitProfileOverwrite,                  "ADMIT_PROFILE_OVERWRITE" ),
   ROW( 30,  admitProfileValue,                      "ADMIT_PROFILE_VALUE" ),
   ROW( 31,  arpLlActionActionIdentifier,            "ARP_LL_ACTION_ACTION_IDENTIFIER" ),
   ROW( 32,  arpLlActionDrop,                        "ARP_LL_ACTION_DROP" ),
   ROW( 33,  arpLlActionMac,                         "ARP_LL_ACTION_MAC" ),
   ROW( 34,  arpLlActionNativeLl,                    "ARP_LL_ACTION_NATIVE_LL" ),
   ROW( 35,  arpLlActionNextOutLifLsb,               "ARP_LL_ACTION_NEXT_OUT_LIF_LSB" ),
   ROW( 36,  arpLlActionNextOutLifValid,             "ARP_LL_ACTION_NEXT_OUT_LIF_VALID" ),
   ROW( 37,  arpLlActionOamLifSet,                   "ARP_LL_ACTION_OAM_LIF_SET" ),
   ROW( 38,  arpLlActionOutlifProfile,               "ARP_LL_ACTION_OUTLIF_PROFILE" ),
   ROW( 39,  arpLlActionRemarkProfile,               "ARP_LL_ACTION_REMARK_PROFILE" ),
   ROW( 40,  arpLlActionReserved,                    "ARP_LL_ACTION_RESERVED" ),
   ROW( 41,  arpLlActionVsi,                         "ARP_LL_ACTION_VSI" ),
   ROW( 42,  arpLlActionVsiValid,                    "ARP_LL_ACTION_VSI_VALID" ),
   ROW( 43,  arpLlEntryFormat,                       "ARP_LL_ENTRY_FORMAT" ),
   ROW( 44,  bypassFiltering,                        "BYPASS_FILTERING" ),
   ROW( 45,  bytesToRemoveOverwrite,                 "BYTES_TO_REMOVE_OVERWRITE" ),
   ROW( 47,  command,                                "COMMAND" ),
   ROW( 50,  cosProfile,                             "COS_PROFILE" ),
   ROW( 51,  cVid,                                   "C_VID" ),
   ROW( 52,  daNotFoundDestinationProfile,           "DA_NOT_FOUND_DESTINATION_PROFILE" ),
   ROW( 53,  daNotFoundProfile,                      "DA_NOT_FOUND_PROFILE" ),
   ROW( 60,  defaultPortLif,                         "DEFAULT_PORT_LIF" ),
   ROW( 61,  destination,                            "DESTINATION" ),
   ROW( 62,  destinationAddVsi,                      "DESTINATION_ADD_VSI" ),
   ROW( 63,  destinationAddVsiShift,                 "DESTINATION_ADD_VSI_SHIFT" ),
   ROW( 64,  destinationOffsetByQualifier,           "DESTINATION_OFFSET_BY_QUALIFIER" ),
   ROW( 65,  destinationOverwrite,                   "DESTINATION_OVERWRITE" ),
   ROW( 66,  destinationValid,                       "DESTINATION_VALID" ),
   ROW( 67,  destinationValidOrTerminationTypeMsb,   "DESTINATION_VALID_OR_TERMINATION_TYPE_MSB" ),
   ROW( 68,  destinationValue,                       "DESTINATION_VALUE" ),
   ROW( 69,  directExtractionPdResultType,           "DIRECT_EXTRACTION_PD_RESULT_TYPE" ),
   ROW( 70,  doubleDataEntry,                        "DOUBLE_DATA_ENTRY" ),
   ROW( 71,  dropPrecedenceMeterCommandOverwrite,    "DROP_PRECEDENCE_METER_COMMAND_OVERWRITE" ),
   ROW( 72,  dropPrecedenceMeterCommandValue,        "DROP_PRECEDENCE_METER_COMMAND_VALUE" ),
   ROW( 73,  dropPrecedenceOverwrite,                "DROP_PRECEDENCE_OVERWRITE" ),
   ROW( 74,  dropPrecedenceValue,                    "DROP_PRECEDENCE_VALUE" ),
   ROW( 75,  dubleDataEntry,                         "DUBLE_DATA_ENTRY" ),
   ROW( 77,  ecnMappingProfile,                      "ECN_MAPPING_PROFILE" ),
   ROW( 78,  eedbBankData,                           "EEDB_BANK_DATA" ),
   ROW( 79,  eei,                                    "EEI" ),
   ROW( 80,  eeiIsLabel,                             "EEI_IS_LABEL" ),
   ROW( 81,  eeiOrOutLif,                            "EEI_OR_OUT_LIF" ),
   ROW( 82,  eeiOrOutLifIdentifier,                  "EEI_OR_OUT_LIF_IDENTIFIER" ),
   ROW( 83,  eeiOrOutLifType,                        "EEI_OR_OUT_LIF_TYPE" ),
   ROW( 84,  eeiOverwrite,                           "EEI_OVERWRITE" ),
   ROW( 85,  eeiValue,                               "EEI_VALUE" ),
   ROW( 86,  egressLastLayer,                        "EGRESS_LAST_LAYER" ),
   ROW( 87,  egressParsingIndexOverwrite,            "EGRESS_PARSING_INDEX_OVERWRITE" ),
   ROW( 88,  egressParsingIndexValue,                "EGRESS_PARSING_INDEX_VALUE" ),
   ROW( 89,  egressVlanEditCommand,                  "EGRESS_VLAN_EDIT_COMMAND" ),
   ROW( 90,  encap1Destination,                      "ENCAP_1_DESTINATION" ),
   ROW( 91,  encap1QosModel,                         "ENCAP_1_QOS_MODEL" ),
   ROW( 92,  encapDestination,                       "ENCAP_DESTINATION" ),
   ROW( 93,  encapQosModel,                          "ENCAP_QOS_MODEL" ),
   ROW( 94,  entry,                                  "ENTRY" ),
   ROW( 95,  entry0InnerPcpDeiSrc,                   "ENTRY_0_INNER_PCP_DEI_SRC" ),
   ROW( 96,  entry0InnerTpidIdx,                     "ENTRY_0_INNER_TPID_IDX" ),
   ROW( 97,  entry0InnerVidSrc,                      "ENTRY_0_INNER_VID_SRC" ),
   ROW( 98,  entry0MembershipCheckType,              "ENTRY_0_MEMBERSHIP_CHECK_TYPE" ),
   ROW( 99,  entry0NTagsToRemove,                    "ENTRY_0_N_TAGS_TO_REMOVE" ),
   ROW( 100, entry0OuterPcpDeiSrc,                   "ENTRY_0_OUTER_PCP_DEI_SRC" ),
   ROW( 101, entry0OuterTpidIdx,                     "ENTRY_0_OUTER_TPID_IDX" ),
   ROW( 102, entry0OuterVidSrc,                      "ENTRY_0_OUTER_VID_SRC" ),
   ROW( 103, entry1InnerPcpDeiSrc,                   "ENTRY_1_INNER_PCP_DEI_SRC" ),
   ROW( 104, entry1InnerTpidIdx,                     "ENTRY_1_INNER_TPID_IDX" ),
   ROW( 105, entry1InnerVidSrc,                      "ENTRY_1_INNER_VID_SRC" ),
   ROW( 106, entry1MembershipCheckType,              "ENTRY_1_MEMBERSHIP_CHECK_TYPE" ),
   ROW( 107, entry1NTagsToRemove,                    "ENTRY_1_N_TAGS_TO_REMOVE" ),
   ROW( 108, entry1OuterPcpDeiSrc,                   "ENTRY_1_OUTER_PCP_DEI_SRC" ),
   ROW( 109, entry1OuterTpidIdx,                     "ENTRY_1_OUTER_TPID_IDX" ),
   ROW( 110, entry1OuterVidSrc,                      "ENTRY_1_OUTER_VID_SRC" ),
   ROW( 111, entryType,                              "ENTRY_TYPE" ),
   ROW( 112, esem0AgeStatus,                         "ESEM_0_AGE_STATUS" ),
   ROW( 113, esem0Key,                               "ESEM_0_KEY" ),
   ROW( 114, esem0Payload,                           "ESEM_0_PAYLOAD" ),
   ROW( 115, esem0RefreshedByDsp,                    "ESEM_0_REFRESHED_BY_DSP" ),
   ROW( 116, esem0ReservedLow,                       "ESEM_0_RESERVED_LOW" ),
   ROW( 117, esem0Self,                              "ESEM_0_SELF" ),
   ROW( 118, esem0Stamp,                             "ESEM_0_STAMP" ),
   ROW( 119, esem0Type,                              "ESEM_0_TYPE" ),
   ROW( 120, esem1AgeStatus,                         "ESEM_1_AGE_STATUS" ),
   ROW( 121, esem1Key,                               "ESEM_1_KEY" ),
   ROW( 122, esem1Payload,                           "ESEM_1_PAYLOAD" ),
   ROW( 123, esem1RefreshedByDsp,                    "ESEM_1_REFRESHED_BY_DSP" ),
   ROW( 124, esem1ReservedLow,                       "ESEM_1_RESERVED_LOW" ),
   ROW( 125, esem1Self,                              "ESEM_1_SELF" ),
   ROW( 126, esem1Stamp,                             "ESEM_1_STAMP" ),
   ROW( 127, esem1Type,                              "ESEM_1_TYPE" ),
   ROW( 128, esemAgeStatus,                          "ESEM_AGE_STATUS" ),
   ROW( 129, esemKey,                                "ESEM_KEY" ),
   ROW( 130, esemKeyCvid,                            "ESEM_KEY_CVID" ),
   ROW( 131, esemKeyDbId,                            "ESEM_KEY_DB_ID" ),
   ROW( 132, esemKeyVd,                              "ESEM_KEY_VD" ),
   ROW( 133, esemKeyVsi,                             "ESEM_KEY_VSI" ),
   ROW( 134, esemPayload,                            "ESEM_PAYLOAD" ),
   ROW( 135, esemRefreshedByDsp,                     "ESEM_REFRESHED_BY_DSP" ),
   ROW( 136, esemReservedLow,                        "ESEM_RESERVED_LOW" ),
   ROW( 137, esemSelf,                               "ESEM_SELF" ),
   ROW( 138, esemStamp,                              "ESEM_STAMP" ),
   ROW( 139, esemType,                               "ESEM_TYPE" ),
   ROW( 140, evecTableData,                          "EVEC_TABLE_DATA" ),
   ROW( 141, expectBos,                              "EXPECT_BOS" ),
   ROW( 144, fodo,                                   "FODO" ),
   ROW( 145, fodoAssignmentMode,                     "FODO_ASSIGNMENT_MODE" ),
   ROW( 146, fodoPdResultType,                       "FODO_PD_RESULT_TYPE" ),
   ROW( 147, fodoVsi,                                "FODO_VSI" ),
   ROW( 148, forwardingCode,                         "FORWARDING_CODE" ),
   ROW( 149, forwardingLayerAdditionalInfovalue,     "FORWARDING_LAYER_ADDITIONAL_INFOVALUE" ),
   ROW( 150, forwardingLayerAdditionalInfoOverwrite, "FORWARDING_LAYER_ADDITIONAL_INFO_OVERWRITE" ),
   ROW( 151, found,                                  "FOUND" ),
   ROW( 155, fwdDestinationValid,                    "FWD_DESTINATION_VALID" ),
   ROW( 156, fwdDomainNwkName,                       "FWD_DOMAIN_NWK_NAME" ),
   ROW( 158, fwdLayerIndexOverwrite,                 "FWD_LAYER_INDEX_OVERWRITE" ),
   ROW( 159, fwdLayerIndexValue,                     "FWD_LAYER_INDEX_VALUE" ),
   ROW( 160, fwdStrengthOverwrite,                   "FWD_STRENGTH_OVERWRITE" ),
   ROW( 161, fwdStrengthValue,                       "FWD_STRENGTH_VALUE" ),
   ROW( 162, globInLif,                              "GLOB_IN_LIF" ),
   ROW( 163, globOutLif,                             "GLOB_OUT_LIF" ),
   ROW( 165, hits,                                   "HITS" ),
   ROW( 166, ignoreIncomingVid,                      "IGNORE_INCOMING_VID" ),
   ROW( 168, innerPcpDeiSource,                      "INNER_PCP_DEI_SOURCE" ),
   ROW( 169, innerPcpDeiSrc,                         "INNER_PCP_DEI_SRC" ),
   ROW( 170, innerTpidIndex,                         "INNER_TPID_INDEX" ),
   ROW( 171, innerVidSource,                         "INNER_VID_SOURCE" ),
   ROW( 172, innerVidSrc,                            "INNER_VID_SRC" ),
   ROW( 173, inLif,                                  "IN_LIF" ),
   ROW( 174, inLifDataLsb,                           "IN_LIF_DATA_LSB" ),
   ROW( 175, inLifDataMsb,                           "IN_LIF_DATA_MSB" ),
   ROW( 176, inLifProfile,                           "IN_LIF_PROFILE" ),
   ROW( 177, inLifValid,                             "IN_LIF_VALID" ),
   ROW( 179, inRif,                                  "IN_RIF" ),
   ROW( 180, inRifMsb,                               "IN_RIF_MSB" ),
   ROW( 181, inRifValid,                             "IN_RIF_VALID" ),
   ROW( 182, ipv6,                                   "IPV6" ),
   ROW( 183, ipv4Dip,                                "IPV4_DIP" ),
   ROW( 184, ipv4Sip,                                "IPV4_SIP" ),
   ROW( 185, ipv4Tos,                                "IPV4_TOS" ),
   ROW( 186, ipv4TunnelType,                         "IPV4_TUNNEL_TYPE" ),
   ROW( 187, ipv6AddressMsbsId,                      "IPV6_ADDRESS_MSBS_ID" ),
   ROW( 188, ipv6Dip,                                "IPV6_DIP" ),
   ROW( 189, ipv6MpTunnelIdx,                        "IPV6_MP_TUNNEL_IDX" ),
   ROW( 190, ipProtocol,                             "IP_PROTOCOL" ),
   ROW( 191, ipQualifierAdditionalHeader1St,         "IP_QUALIFIER_ADDITIONAL_HEADER_1ST" ),
   ROW( 192, ipQualifierAdditionalHeader2Nd,         "IP_QUALIFIER_ADDITIONAL_HEADER_2ND" ),
   ROW( 193, isaAgeStatus,                           "ISA_AGE_STATUS" ),
   ROW( 194, isaKey,                                 "ISA_KEY" ),
   ROW( 195, isaPayload,                             "ISA_PAYLOAD" ),
   ROW( 196, isaRefreshedByDsp,                      "ISA_REFRESHED_BY_DSP" ),
   ROW( 197, isaReservedLow,                         "ISA_RESERVED_LOW" ),
   ROW( 198, isaSelf,                                "ISA_SELF" ),
   ROW( 199, isaStamp,                               "ISA_STAMP" ),
   ROW( 200, isaType,                                "ISA_TYPE" ),
   ROW( 201, isemAgeStatus,                          "ISEM_AGE_STATUS" ),
   ROW( 202, isemKey,                                "ISEM_KEY" ),
   ROW( 203, isemKeyInAcInnerOrOuter,                "ISEM_KEY_IN_AC_INNER_OR_OUTER" ),
   ROW( 204, isemKeyInAcInnerVid,                    "ISEM_KEY_IN_AC_INNER_VID" ),
   ROW( 205, isemKeyInAcVd,                          "ISEM_KEY_IN_AC_VD" ),
   ROW( 206, isemKeyInAcVid,                         "ISEM_KEY_IN_AC_VID" ),
   ROW( 207, isemKeyTcamSharingVd,                   "ISEM_KEY_TCAM_SHARING_VD" ),
   ROW( 208, isemKeyTcamSharingVid,                  "ISEM_KEY_TCAM_SHARING_VID" ),
   ROW( 209, isemKeyTunnelType,                      "ISEM_KEY_TUNNEL_TYPE" ),
   ROW( 210, isemPayload,                            "ISEM_PAYLOAD" ),
   ROW( 211, isemRefreshedByDsp,                     "ISEM_REFRESHED_BY_DSP" ),
   ROW( 212, isemReservedLow,                        "ISEM_RESERVED_LOW" ),
   ROW( 213, isemSelf,                               "ISEM_SELF" ),
   ROW( 214, isemStamp,                              "ISEM_STAMP" ),
   ROW( 215, isemType,                               "ISEM_TYPE" ),
   ROW( 216, isid,                                   "ISID" ),
   ROW( 217, ivec,                                   "IVEC" ),
   ROW( 218, ivec0,                                  "IVEC_0" ),
   ROW( 219, ivec1,                                  "IVEC_1" ),
   ROW( 220, ivec2,                                  "IVEC_2" ),
   ROW( 221, ivec3,                                  "IVEC_3" ),
   ROW( 222, ivec4,                                  "IVEC_4" ),
   ROW( 223, ivec5,                                  "IVEC_5" ),
   ROW( 224, ivec6,                                  "IVEC_6" ),
   ROW( 225, ivec7,                                  "IVEC_7" ),
   ROW( 227, key,                                    "KEY" ),
   ROW( 228, latencyFlowIdOverwrite,                 "LATENCY_FLOW_ID_OVERWRITE" ),
   ROW( 229, layerType,                              "LAYER_TYPE" ),
   ROW( 230, learnDisable,                           "LEARN_DISABLE" ),
   ROW( 231, learnEnable,                            "LEARN_ENABLE" ),
   ROW( 232, learnInfo,                              "LEARN_INFO" ),
   ROW( 233, learnInfoAsymLifBasicExt,               "LEARN_INFO_ASYM_LIF_BASIC_EXT" ),
   ROW( 234, learnInfoNoLifExtSymLifExt,             "LEARN_INFO_NO_LIF_EXT_SYM_LIF_EXT" ),
   ROW( 235, learnPayloadContext,                    "LEARN_PAYLOAD_CONTEXT" ),
   ROW( 236, lifGenericData0,                        "LIF_GENERIC_DATA_0" ),
   ROW( 237, lifGenericData1,                        "LIF_GENERIC_DATA_1" ),
   ROW( 241, lsb,                                    "LSB" ),
   ROW( 242, mappedPpPort,                           "MAPPED_PP_PORT" ),
   ROW( 243, mdbEntry,                               "MDB_ENTRY" ),
   ROW( 244, mirrorCodeClear,                        "MIRROR_CODE_CLEAR" ),
   ROW( 246, modelIsPipe,                            "MODEL_IS_PIPE" ),
   ROW( 247, mplsBos,                                "MPLS_BOS" ),
   ROW( 248, mplsLabel,                              "MPLS_LABEL" ),
   ROW( 249, mplsPushProfile,                        "MPLS_PUSH_PROFILE" ),
   ROW( 250, mplsVcLabel,                            "MPLS_VC_LABEL" ),
   ROW( 251, msb,                                    "MSB" ),
   ROW( 252, nextLayerNetworkDomain,                 "NEXT_LAYER_NETWORK_DOMAIN" ),
   ROW( 253, nextParserContext,                      "NEXT_PARSER_CONTEXT" ),
   ROW( 254, nwkHeaderTruncateSizeClear,             "NWK_HEADER_TRUNCATE_SIZE_CLEAR" ),
   ROW( 255, nwkQosIdx,                              "NWK_QOS_IDX" ),
   ROW( 256, oamLifSet,                              "OAM_LIF_SET" ),
   ROW( 257, orientationIsHub,                       "ORIENTATION_IS_HUB" ),
   ROW( 258, orientationIsHubValid,                  "ORIENTATION_IS_HUB_VALID" ),
   ROW( 259, outerPcpDeiSource,                      "OUTER_PCP_DEI_SOURCE" ),
   ROW( 260, outerPcpDeiSrc,                         "OUTER_PCP_DEI_SRC" ),
   ROW( 261, outerTpidIndex,                         "OUTER_TPID_INDEX" ),
   ROW( 262, outerVidSource,                         "OUTER_VID_SOURCE" ),
   ROW( 263, outerVidSrc,                            "OUTER_VID_SRC" ),
   ROW( 264, outLif,                                 "OUT_LIF" ),
   ROW( 265, outLif0Value,                           "OUT_LIF_0_VALUE" ),
   ROW( 266, outLif1Value,                           "OUT_LIF_1_VALUE" ),
   ROW( 267, outLifLsb,                              "OUT_LIF_LSB" ),
   ROW( 268, outLifMsb,                              "OUT_LIF_MSB" ),
   ROW( 269, outLifOrLabel,                          "OUT_LIF_OR_LABEL" ),
   ROW( 270, outLifOverwrite,                        "OUT_LIF_OVERWRITE" ),
   ROW( 271, outLifProfile,                          "OUT_LIF_PROFILE" ),
   ROW( 272, outLifValid,                            "OUT_LIF_VALID" ),
   ROW( 273, outLifValidBit,                         "OUT_LIF_VALID_BIT" ),
   ROW( 274, outLifValue,                            "OUT_LIF_VALUE" ),
   ROW( 275, packetIsBierInvalid,                    "PACKET_IS_BIER_INVALID" ),
   ROW( 277, payload,                                "PAYLOAD" ),
   ROW( 278, portEmAccCmd,                           "PORT_EM_ACC_CMD" ),
   ROW( 279, portKeyGenVar,                          "PORT_KEY_GEN_VAR" ),
   ROW( 284, pphFheiIveSize,                         "PPH_FHEI_IVE_SIZE" ),
   ROW( 285, prefixNum,                              "PREFIX_NUM" ),
   ROW( 286, propagationProf,                        "PROPAGATION_PROF" ),
   ROW( 287, protectionPath,                         "PROTECTION_PATH" ),
   ROW( 288, protectionPointer,                      "PROTECTION_POINTER" ),
   ROW( 291, qosProfile,                             "QOS_PROFILE" ),
   ROW( 293, remarkProfile,                          "REMARK_PROFILE" ),
   ROW( 294, removeTxTag,                            "REMOVE_TX_TAG" ),
   ROW( 295, reserved,                               "RESERVED" ),
   ROW( 296, resultType,                             "RESULT_TYPE" ),
   ROW( 297, serviceType,                            "SERVICE_TYPE" ),
   ROW( 298, skipEthernet,                           "SKIP_ETHERNET" ),
   ROW( 299, snoopCodeClear,                         "SNOOP_CODE_CLEAR" ),
   ROW( 300, statisticalSamplingCodeClear,           "STATISTICAL_SAMPLING_CODE_CLEAR" ),
   ROW( 301, statisticMetaData,                      "STATISTIC_META_DATA" ),
   ROW( 302, statObjectCmd,                          "STAT_OBJECT_CMD" ),
   ROW( 303, statObjectId,                           "STAT_OBJECT_ID" ),
   ROW( 304, statObjIndexToOverwrite0,               "STAT_OBJ_INDEX_TO_OVERWRITE_0" ),
   ROW( 305, statObjIndexToOverwrite1,               "STAT_OBJ_INDEX_TO_OVERWRITE_1" ),
   ROW( 306, statObjIsMeter0,                        "STAT_OBJ_IS_METER_0" ),
   ROW( 307, statObjIsMeter1,                        "STAT_OBJ_IS_METER_1" ),
   ROW( 308, statObjLmReadIndexClear,                "STAT_OBJ_LM_READ_INDEX_CLEAR" ),
   ROW( 309, statObjOffsetByQualifier0,              "STAT_OBJ_OFFSET_BY_QUALIFIER_0" ),
   ROW( 310, statObjOffsetByQualifier1,              "STAT_OBJ_OFFSET_BY_QUALIFIER_1" ),
   ROW( 311, statObjOverwrite0,                      "STAT_OBJ_OVERWRITE_0" ),
   ROW( 312, statObjOverwrite1,                      "STAT_OBJ_OVERWRITE_1" ),
   ROW( 313, statObjType0,                           "STAT_OBJ_TYPE_0" ),
   ROW( 314, statObjType1,                           "STAT_OBJ_TYPE_1" ),
   ROW( 315, statObjValidClear,                      "STAT_OBJ_VALID_CLEAR" ),
   ROW( 316, statObjValue0,                          "STAT_OBJ_VALUE_0" ),
   ROW( 317, statObjValue1,                          "STAT_OBJ_VALUE_1" ),
   ROW( 319, stVsqPointerOverwrite,                  "ST_VSQ_POINTER_OVERWRITE" ),
   ROW( 320, stVsqPointerValue,                      "ST_VSQ_POINTER_VALUE" ),
   ROW( 321, sysInLif,                               "SYS_IN_LIF" ),
   ROW( 322, sVid,                                   "S_VID" ),
   ROW( 323, tagsToRemove,                           "TAGS_TO_REMOVE" ),
   ROW( 324, tcamCpuCmdCmp,                          "TCAM_CPU_CMD_CMP" ),
   ROW( 325, tcamCpuCmdDi,                           "TCAM_CPU_CMD_DI" ),
   ROW( 326, tcamCpuCmdRd,                           "TCAM_CPU_CMD_RD" ),
   ROW( 327, tcamCpuCmdReserved,                     "TCAM_CPU_CMD_RESERVED" ),
   ROW( 328, tcamCpuCmdValid,                        "TCAM_CPU_CMD_VALID" ),
   ROW( 329, tcamCpuCmdWr,                           "TCAM_CPU_CMD_WR" ),
   ROW( 330, tcProfileClear,                         "TC_PROFILE_CLEAR" ),
   ROW( 331, terminationProfile,                     "TERMINATION_PROFILE" ),
   ROW( 332, terminationProfileLsb,                  "TERMINATION_PROFILE_LSB" ),
   ROW( 333, terminationProfileMsb,                  "TERMINATION_PROFILE_MSB" ),
   ROW( 334, terminationType,                        "TERMINATION_TYPE" ),
   ROW( 335, terminationTypeLsb,                     "TERMINATION_TYPE_LSB" ),
   ROW( 336, terminationTypeMsb,                     "TERMINATION_TYPE_MSB" ),
   ROW( 338, tid,                                    "TID" ),
   ROW( 339, tpidProfile,                            "TPID_PROFILE" ),
   ROW( 340, trafficClassOverwrite,                  "TRAFFIC_CLASS_OVERWRITE" ),
   ROW( 341, trafficClassValue,                      "TRAFFIC_CLASS_VALUE" ),
   ROW( 342, trap,                                   "TRAP" ),
   ROW( 343, ttLearnEnable,                          "TT_LEARN_ENABLE" ),
   ROW( 344, type,                                   "TYPE" ),
   ROW( 345, useInLif,                               "USE_IN_LIF" ),
   ROW( 346, useOamOffset,                           "USE_OAM_OFFSET" ),
   ROW( 347, vidOuterVlan,                           "VID_OUTER_VLAN" ),
   ROW( 348, visibilityOverwrite,                    "VISIBILITY_OVERWRITE" ),
   ROW( 349, visibilityValue,                        "VISIBILITY_VALUE" ),
   ROW( 350, vlanClassificationProfile,              "VLAN_CLASSIFICATION_PROFILE" ),
   ROW( 351, vlanDomain,                             "VLAN_DOMAIN" ),
   ROW( 352, vlanEditCommand,                        "VLAN_EDIT_COMMAND" ),
   ROW( 353, vlanEditPcpDeiProfile,                  "VLAN_EDIT_PCP_DEI_PROFILE" ),
   ROW( 354, vlanEditProfile,                        "VLAN_EDIT_PROFILE" ),
   ROW( 355, vlanEditVid1,                           "VLAN_EDIT_VID_1" ),
   ROW( 356, vlanEditVid2,                           "VLAN_EDIT_VID_2" ),
   ROW( 357, vlanMembership,                         "VLAN_MEMBERSHIP" ),
   ROW( 358, vlanMirror,                             "VLAN_MIRROR" ),
   ROW( 359, vlanTxTag,                              "VLAN_TX_TAG" ),
   ROW( 360, vmv,                                    "VMV" ),
   ROW( 361, vni,                                    "VNI" ),
   ROW( 362, vrf,                                    "VRF" ),
   ROW( 363, vrfSelectionLabel,                      "VRF_SELECTION_LABEL" ),
   ROW( 364, vsi,                                    "VSI" ),
   ROW( 365, vsiAssignmentMode,                      "VSI_ASSIGNMENT_MODE" ),
   ROW( 366, vsiMsb,                                 "VSI_MSB" ),
   ROW( 367, wayIndex,                               "WAY_INDEX" ),
   ROW( 368, zeroPadding,                            "ZERO_PADDING" ),
};
#undef ROW
// clang-format on
static_assert( std::size( rows ) == 332 );

// The numbers that no field has, up to the last one in use.
constexpr unsigned unused[] = { 0,   1,   2,   46,  48,  49,  54,  55,  56,  57,  58,  59,  76,
                                142, 143, 152, 153, 154, 157, 164, 167, 178, 226, 238, 239, 240,
                                245, 276, 280, 281, 282, 283, 289, 290, 292, 318, 337 };
static_assert( std::size( unused ) == 37 );

const Hardware::CatalogueRow* findRow( U32 identifier ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   const auto row = std::find_if( catalogue.begin(), catalogue.end(), [identifier]( auto& one ) {
      return one.identifier == identifier;
   } );
   return row == catalogue.end() ? nullptr : row;
}

// The field name that the rule makes of a hardware name.
std::string ruledName( std::string_view hardwareName ) {
   std::string name;
   bool first = true;      // in the first part
   bool beginning = false; // at the first character of a further part
   for( const char letter : hardwareName ) {
      if( letter == '_' ) {
         first = false;
         beginning = true;
         continue;
      }
      const bool kept = !first && beginning;
      name +=
         kept || letter < 'A' || letter > 'Z' ? letter : static_cast<char>( letter - 'A' + 'a' );
      beginning = false;
   }
   return name;
}

TEST( Catalogue, HoldsItsRowsInOrder ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   ASSERT_EQ( catalogue.size(), std::size( rows ) );
   for( std::size_t place = 0; place < std::size( rows ); ++place ) {
      EXPECT_EQ( catalogue[place].identifier, rows[place].identifier );
      EXPECT_EQ( catalogue[place].name, rows[place].name );
      EXPECT_EQ( catalogue[place].hardwareName, rows[place].hardwareName );
   }
}

TEST( Catalogue, HasAConstantForEachIdentifier ) {
   for( const Row& row : rows ) {
      EXPECT_EQ( row.constant, row.identifier ) << row.name;
   }
   static_assert( std::is_same_v<decltype( Hardware::FieldId::vlanDomain ), const U32> );
   static_assert( Hardware::FieldId::vlanDomain == 351 );
   static_assert( Hardware::FieldId::action == 3 );
   static_assert( Hardware::FieldId::zeroPadding == 368 );
}

TEST( Catalogue, IdentifiersAscendFrom3To368AndLeaveOutTheUnused ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   std::set<unsigned> numbers( std::begin( unused ), std::end( unused ) );
   ASSERT_EQ( numbers.size(), 37u );
   unsigned before = 0;
   for( const auto& row : catalogue ) {
      EXPECT_GT( row.identifier, before ) << row.name;
      before = row.identifier;
      EXPECT_TRUE( numbers.insert( row.identifier ).second ) << row.identifier;
   }
   EXPECT_EQ( catalogue.front().identifier, 3u );
   EXPECT_EQ( catalogue.back().identifier, 368u );
   // Used and unused numbers together are all from 0 to 368.
   EXPECT_EQ( numbers.size(), 369u );
   EXPECT_EQ( *numbers.rbegin(), 368u );
}

TEST( Catalogue, NoNameStandsTwice ) {
   std::set<std::string_view> names, hardwareNames;
   for( const auto& row : Hardware::fieldCatalogue() ) {
      EXPECT_TRUE( names.insert( row.name ).second ) << row.name;
      EXPECT_TRUE( hardwareNames.insert( row.hardwareName ).second ) << row.hardwareName;
   }
}

TEST( Catalogue, NamesFollowTheHardwareNamesButForTwo ) {
   std::vector<unsigned> exceptions;
   for( const auto& row : Hardware::fieldCatalogue() ) {
      if( ruledName( row.hardwareName ) != row.name ) {
         exceptions.push_back( row.identifier );
      }
   }
   EXPECT_EQ( exceptions, ( std::vector<unsigned>{ 191, 192 } ) );

   ASSERT_NE( findRow( 191 ), nullptr );
   EXPECT_EQ( findRow( 191 )->name, "ipQualifierAdditionalHeader1St" );
   EXPECT_EQ( ruledName( "IP_QUALIFIER_ADDITIONAL_HEADER_1ST" ), "ipQualifierAdditionalHeader1st" );
   ASSERT_NE( findRow( 192 ), nullptr );
   EXPECT_EQ( findRow( 192 )->name, "ipQualifierAdditionalHeader2Nd" );
   EXPECT_EQ( ruledName( "IP_QUALIFIER_ADDITIONAL_HEADER_2ND" ), "ipQualifierAdditionalHeader2nd" );

   EXPECT_EQ( ruledName( "AC_0_ACTION_DROP" ), "ac0ActionDrop" );
   EXPECT_EQ( ruledName( "ENTRY_1_N_TAGS_TO_REMOVE" ), "entry1NTagsToRemove" );
   EXPECT_EQ( ruledName( "C_VID" ), "cVid" );
   EXPECT_EQ( ruledName( "IPV6" ), "ipv6" );
}

TEST( Catalogue, HardwareNamesAscendButForOne ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   std::vector<unsigned> outOfOrder;
   for( std::size_t place = 1; place < catalogue.size(); ++place ) {
      if( catalogue[place].hardwareName < catalogue[place - 1].hardwareName ) {
         outOfOrder.push_back( catalogue[place].identifier );
      }
   }
   // IPV6 at 182 is before IPV4_DIP, and the only name out of order.
   EXPECT_EQ( outOfOrder, std::vector<unsigned>{ 183 } );
   ASSERT_NE( findRow( 182 ), nullptr );
   EXPECT_EQ( findRow( 182 )->hardwareName, "IPV6" );
   ASSERT_NE( findRow( 181 ), nullptr );
   ASSERT_NE( findRow( 183 ), nullptr );
   EXPECT_LT( findRow( 181 )->hardwareName, findRow( 183 )->hardwareName );

   // In bytes, a capital sorts before "_".
   EXPECT_LT( Hardware::FieldId::action, Hardware::FieldId::ac0ActionDrop );
   EXPECT_LT( Hardware::FieldId::cosProfile, Hardware::FieldId::cVid );
}

TEST( Catalogue, KeepsTheMisspeltNameBesideTheOther ) {
   ASSERT_NE( findRow( 70 ), nullptr );
   EXPECT_EQ( findRow( 70 )->name, "doubleDataEntry" );
   EXPECT_EQ( findRow( 70 )->hardwareName, "DOUBLE_DATA_ENTRY" );
   ASSERT_NE( findRow( 75 ), nullptr );
   EXPECT_EQ( findRow( 75 )->name, "dubleDataEntry" );
   EXPECT_EQ( findRow( 75 )->hardwareName, "DUBLE_DATA_ENTRY" );
}

} // namespace
