#pragma once
// Text types whose storage comes from the kelcore allocator.

#include <string>

#include <kelcore/Allocator.hpp>

namespace kelcore {

using UTF8String = std::basic_string<char, std::char_traits<char>, STLAllocator<char>>;
using UTF16String = std::basic_string<char16_t, std::char_traits<char16_t>, STLAllocator<char16_t>>;

}  // namespace kelcore
