// What the compiler must refuse of At: REFUSED is a statement.
#include <Hardware/at/LifTable.h>

template<Hardware::ChipType chipType, unsigned variant>
using LifAt = Hardware::At<Hardware::LifTable, chipType, variant>;
using Lif = LifAt<Hardware::BCM88690_B0, 0>;

void refused( Lif lif, [[maybe_unused]] unsigned number, [[maybe_unused]] int negative,
              [[maybe_unused]] const U8 ( &entry )[79] ) {
   lif.vlanEditVid1Is( 100 );
   REFUSED;
}
