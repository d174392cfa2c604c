#include "docops/ListRead.hpp"

namespace keltemporalxmp::docops {

void RequireCompleteRead(const std::string& failure, std::string_view listPath) {
    if (failure.empty()) return;
    std::string message = "PrepareForSave: ";
    message.append(listPath).append(" is not written back, reading it failed and it would lose what was not read: ");
    message.append(failure);
    throw XMP_Error(kXMPErr_BadXMP, message.c_str());
}

}  // namespace keltemporalxmp::docops
