# What makes an error harder to abuse, at no measurable cost. tests/cli/test_hardening.py looks for all of it in the
# program that was built. The linker that makes the Windows program does the like by default.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_library(fyrn_hardening INTERFACE) # for what is shipped; tests are not
if(NOT WIN32)
  target_compile_options(fyrn_hardening INTERFACE -fstack-protector-strong)
  # The checks of the C library need the optimiser, and sanitizers bring their own.
  if(NOT "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_RELEASE}" MATCHES "-fsanitize|-O0|_FORTIFY_SOURCE")
    target_compile_options(fyrn_hardening INTERFACE
      $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
  endif()
  target_link_options(fyrn_hardening INTERFACE LINKER:-z,relro,-z,now,-z,noexecstack)
endif()
