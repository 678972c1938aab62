// Views of several kinds, for a debugger that stops in `stop`, or looks at what it has left.
#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>

#include <cstdlib>

namespace {

// A view of the program's own.
class Named : public Hardware::LifTable::WithStorage {
public:
   Named() : WithStorage( Hardware::BCM88690_B0, 3 ) {}
   int more = 5;
};

} // namespace

extern "C" {
// Where a debugger without debug information finds them.
const void* volatile stopped[3];
void stop( const Kelvar::AsicBase& base, const Hardware::LifTable& reference,
           Hardware::LifTable* pointer );
}

__attribute__( ( noinline ) ) void stop( const Kelvar::AsicBase& base,
                                         const Hardware::LifTable& reference,
                                         Hardware::LifTable* pointer ) {
   stopped[0] = &base;
   stopped[1] = &reference;
   stopped[2] = pointer;
   std::abort();
}

int main() {
   U8 entry[80] = {};
   Hardware::LifTable lif( Hardware::BCM88690_B0, entry, sizeof entry, false, 0 );
   lif.vsiIs( 2000 );
   lif.vlanEditVid1Is( 100 );
   Named named;
   named.destinationIs( 77 );
   U8 little[2] = {};
   Hardware::LifTable tooShort( Hardware::BCM88650_B0, little, sizeof little, false, 0 );
   const auto base = Hardware::stringObj( "TcamActionTable", Hardware::BCM88690_B0, 0 );
   base->stringFieldIs( "action", 0x12345 );
   stop( *base, lif, &named );
   return tooShort.len();
}
