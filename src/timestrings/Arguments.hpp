#pragma once
// Pointer arguments of the exported calls: null text reads as empty, a null
// output or a null required text is the caller's mistake (kXMPErr_BadParam).

#include <string_view>

namespace keltemporalxmp {

inline std::string_view TextOrEmpty(const char* text) noexcept {
    return text != nullptr ? text : "";
}

[[noreturn]] void ThrowNullArgument(const char* operation, const char* argument);

template <class T>
T& Required(T* argument, const char* operation, const char* argumentName) {
    if (argument == nullptr) {
        ThrowNullArgument(operation, argumentName);
    }
    return *argument;
}

// Text that must be given (an empty string is fine, null is not).
inline const char* RequiredText(const char* text, const char* operation, const char* argumentName) {
    if (text == nullptr) {
        ThrowNullArgument(operation, argumentName);
    }
    return text;
}

}  // namespace keltemporalxmp
