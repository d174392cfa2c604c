#pragma once
// The two exception types of the core utilities, each carrying a message text.

#include <stdexcept>
#include <string>

#include <keltemporalxmp/export.hpp>

namespace kelcore {

// Text that should hold a value of some notation (a GUID, JSON) does not.
class KELTXMP_API parse_exception : public std::runtime_error {
public:
    explicit parse_exception(const std::string& message) : std::runtime_error(message) {}
};

// A member looked up by name is absent or does not hold the expected type.
class KELTXMP_API missing_key_exception : public std::runtime_error {
public:
    explicit missing_key_exception(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace kelcore
