# GoogleTest as GTest::gtest_main and GTest::gmock: the installed library, or, for another system, one built from
# the sources that Debian's package googletest brings.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(GTest REQUIRED)
  return()
endif()

function(fyrn_build_googletest)
  set(BUILD_SHARED_LIBS OFF)
  set(INSTALL_GTEST OFF)
  set(CMAKE_COMPILE_WARNING_AS_ERROR OFF)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endfunction()
fyrn_build_googletest()
