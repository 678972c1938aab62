// All classes, and a walk over them.
#pragma once

#include <Hardware/EgressPerPortTable.h>
#include <Hardware/EpniIsidTable.h>
#include <Hardware/EsemMgmtReq.h>
#include <Hardware/EvecEncapTable.h>
#include <Hardware/EvecFormatTable.h>
#include <Hardware/EvecMappingTable.h>
#include <Hardware/EvecTable.h>
#include <Hardware/FheiIveSizeReg.h>
#include <Hardware/FwdActProfileTable.h>
#include <Hardware/IngressPpPortToVd.h>
#include <Hardware/IppePinfoLlr.h>
#include <Hardware/IsemMgmtReq.h>
#include <Hardware/IvecTable.h>
#include <Hardware/IvectTable.h>
#include <Hardware/LifProfileAttributes.h>
#include <Hardware/LifTable.h>
#include <Hardware/OutAcBank.h>
#include <Hardware/TcamActionTable.h>
#include <Hardware/TcamBankIpv4Tt.h>
#include <Hardware/TcamBankTable.h>
#include <Hardware/TcamBankTableFormatter.h>
#include <Hardware/VttInPpPortConfig0.h>

#include <string_view>

namespace Hardware {

// What forEachClass() gives its visitor.
template<class View_>
struct ClassOf {
   using View = View_;
   std::string_view name;
};

// Calls `visit( ClassOf<View>{ name } )` for each class, in registry order.
//
//    Hardware::forEachClass( []( auto each ) {
//       using View = typename decltype( each )::View;
//       std::cout << each.name << ": " << View::storageSize << " bytes\n";
//    } );
template<class Visit>
constexpr void forEachClass( Visit&& visit ) {
#define HARDWARE_CLASS( name ) visit( ClassOf<name>{ #name } );
#include <Hardware/detail/Classes.def>
}

} // namespace Hardware
