#include "timestrings/Arguments.hpp"

#include <string>

#include <xmptoolkit/XMP_Error.hpp>

namespace keltemporalxmp {

void ThrowNullArgument(const char* operation, const char* argument) {
    const std::string message = std::string(operation) + ": null " + argument;
    throw XMP_Error(kXMPErr_BadParam, message.c_str());
}

}  // namespace keltemporalxmp
