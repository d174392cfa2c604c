// XMPDocOpsTemporal's pantry (xmpMM:Pantry).

#include <keltemporalxmp/docops.hpp>

namespace keltemporalxmp {

// Nothing is cached yet, so nothing is written.
void XMPDocOpsTemporal::WritePantry() {}

}  // namespace keltemporalxmp
