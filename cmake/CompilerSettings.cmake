# What every target of the project is compiled with. Kernels add their own options per source.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(fyrn_settings INTERFACE)
target_include_directories(fyrn_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(fyrn_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
  # Catch-site records name their source relative to the project, so that two checkouts build the same bytes.
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
