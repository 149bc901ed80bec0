# The version, its date and the time stamp of the catch-site records: the same for every build of one commit.
# The moment is SOURCE_DATE_EPOCH, else the time of the last commit, else the time of the VERSION file (which is
# the commit's in a released archive); all in UTC.

# Sets `result` to the commit time of the checkout, or to nothing when this is none.
function(fyrn_commit_time result)
  set(${result} "" PARENT_SCOPE)
  find_package(Git QUIET)
  if(NOT GIT_FOUND OR NOT EXISTS ${PROJECT_SOURCE_DIR}/.git)
    return()
  endif()
  # A checkout that another user owns is read as well: the build has trusted its CMake files already.
  set(git ${GIT_EXECUTABLE} -c safe.directory=${PROJECT_SOURCE_DIR} -C ${PROJECT_SOURCE_DIR})
  execute_process(COMMAND ${git} rev-list --max-count=1 --timestamp HEAD
    OUTPUT_VARIABLE commit ERROR_QUIET)
  if(commit MATCHES "^([0-9]+) ")
    set(${result} ${CMAKE_MATCH_1} PARENT_SCOPE)
  endif()
  # Every commit and checkout appends to this log, and so has the stamp made anew.
  execute_process(COMMAND ${git} rev-parse --path-format=absolute --git-path logs/HEAD
    OUTPUT_VARIABLE log OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(log AND EXISTS ${log})
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${log})
  endif()
endfunction()

# Sets FYRN_DATE ("2026-01-31") and FYRN_SOURCE_TIME ("Sat Jan 31 23:59:59 2026") of a moment in seconds since 1970.
function(fyrn_stamp_of epoch)
  set(ENV{SOURCE_DATE_EPOCH} ${epoch}) # the moment that string(TIMESTAMP) takes for now
  string(TIMESTAMP FYRN_DATE "%Y-%m-%d" UTC)
  string(TIMESTAMP parts "%w;%m;%d;%H:%M:%S;%Y" UTC)
  list(POP_FRONT parts weekday month day clock year)

  # Names are spelled here because the C library's would be those of the locale.
  list(GET FYRN_WEEKDAYS ${weekday} weekday)
  string(REGEX REPLACE "^0" "" month ${month})
  list(GET FYRN_MONTHS ${month} month)
  string(REGEX REPLACE "^0" " " day ${day})
  set(FYRN_DATE ${FYRN_DATE} PARENT_SCOPE)
  set(FYRN_SOURCE_TIME "${weekday} ${month} ${day} ${clock} ${year}" PARENT_SCOPE)
endfunction()

set(FYRN_WEEKDAYS Sun Mon Tue Wed Thu Fri Sat)
set(FYRN_MONTHS none Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec)

set(fyrn_epoch_given "$ENV{SOURCE_DATE_EPOCH}")
set(fyrn_epoch "${fyrn_epoch_given}")
if(fyrn_epoch STREQUAL "")
  fyrn_commit_time(fyrn_epoch)
endif()
if(fyrn_epoch STREQUAL "")
  file(TIMESTAMP ${PROJECT_SOURCE_DIR}/VERSION fyrn_epoch "%s" UTC)
endif()
fyrn_stamp_of(${fyrn_epoch})
if(fyrn_epoch_given STREQUAL "")
  unset(ENV{SOURCE_DATE_EPOCH})
endif()

configure_file(${PROJECT_SOURCE_DIR}/cmake/BuildStamp.cpp.in ${PROJECT_BINARY_DIR}/generated/BuildStamp.cpp @ONLY)
