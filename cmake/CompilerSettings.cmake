# What every target of the project is compiled with. The kernels' room adds its own.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# A later compiler may warn of more: -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF builds nevertheless.
if(NOT DEFINED CMAKE_COMPILE_WARNING_AS_ERROR)
  set(CMAKE_COMPILE_WARNING_AS_ERROR ON)
endif()

add_library(fyrn_settings INTERFACE)
target_include_directories(fyrn_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(fyrn_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  # __FILE__ and debug information name sources relative to the project, so that two checkouts build the same
  # bytes, and catch-site records read the same.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)

# g++ 12 sees overlapping copies in "text" + std::string where there are none (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(fyrn_settings INTERFACE -Wno-restrict)
endif()

# Asked of the compiler: the processor's name is not known when building for another system.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("#ifndef __x86_64__\n#error\n#endif\nint main() {}" FYRN_X86_64)
