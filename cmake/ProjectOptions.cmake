# Warning and sanitizer flags shared by every target of the project.
add_library(keltxmp_options INTERFACE)
target_compile_options(keltxmp_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
if(KELTXMP_WARNINGS_AS_ERRORS)
  target_compile_options(keltxmp_options INTERFACE -Werror)
endif()

if(KELTXMP_SANITIZE)
  set(sanitize_flags -fsanitize=${KELTXMP_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_compile_options(${sanitize_flags})
  add_link_options(${sanitize_flags})
endif()

if(KELTXMP_BUILD_FUZZERS)
  # Coverage feedback for the library code; the fuzz programs add the driver.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Rebuilds in several checkouts share one compiler cache when it is there.
find_program(KELTXMP_CCACHE ccache)
if(KELTXMP_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${KELTXMP_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${KELTXMP_CCACHE})
endif()
