// XMPDocOpsTemporal's ingredient list (xmpMM:Ingredients).

#include <keltemporalxmp/docops.hpp>

namespace keltemporalxmp {

// Nothing is cached yet, so nothing is written.
void XMPDocOpsTemporal::WriteIngredientList() {}

}  // namespace keltemporalxmp
