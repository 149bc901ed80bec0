# fyrn_room(NAME LINKS...): one static library per room, of all sources in the room's folder that are meant for
# this system. Sources ending in _Posix.cpp or _Windows.cpp are the two sides of the platform seam.
function(fyrn_room name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(FILTER sources EXCLUDE REGEX "/(Main|Entry_[A-Za-z]+)\\.cpp$")
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_Posix\\.(cpp|h)$")
  else()
    list(FILTER sources EXCLUDE REGEX "_Windows\\.(cpp|h)$")
  endif()
  add_library(fyrn_${name} STATIC ${sources})
  target_link_libraries(fyrn_${name} PUBLIC fyrn_settings ${ARGN})
endfunction()
