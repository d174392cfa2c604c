#pragma once
// The library is built with hidden symbols; what carries this mark is its
// interface, and every other symbol stays private to it.

#define KELTXMP_API __attribute__((visibility("default")))

// Private members of an exported class that only the library itself calls:
// they may change without changing the interface.
#define KELTXMP_LOCAL __attribute__((visibility("hidden")))
