// The accessors of all classes.
#include "Accessors.h"

#define EACH_CLASS "hardening/Accessors.inc"
#include "registry/EachClass.inc"

namespace Testing {

const std::vector<ClassAccessors>& everyClass() {
   static const std::vector<ClassAccessors> classes = {
#define VIEW( name ) accessorsOf<Hardware::name>(),
#include "registry/Classes.def"
   };
   return classes;
}

} // namespace Testing
