# fyrn_room(NAME LINKS...): one static library per room, of all sources in the room's folder that are meant for
# this system and this processor. Sources named *_Posix* or *_Windows* are the two sides of the platform seam;
# those named *_X86* are kernels that need instructions of 64-bit x86 processors.
function(fyrn_room name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(FILTER sources EXCLUDE REGEX "/(Main|Entry_[A-Za-z]+)\\.cpp$")
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_Posix[A-Za-z0-9]*\\.(cpp|h)$")
  else()
    list(FILTER sources EXCLUDE REGEX "_Windows[A-Za-z0-9]*\\.(cpp|h)$")
  endif()
  if(NOT FYRN_X86_64)
    list(FILTER sources EXCLUDE REGEX "_X86[A-Za-z0-9]*\\.(cpp|h)$")
  endif()
  add_library(fyrn_${name} STATIC ${sources})
  target_link_libraries(fyrn_${name} PUBLIC fyrn_settings ${ARGN} PRIVATE fyrn_hardening)
endfunction()
