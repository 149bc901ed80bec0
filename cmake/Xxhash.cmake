# The reference header of the XXH functions, from Debian's libxxhash-dev. It is compiled in, for every system that the
# project is built for, so it is copied to a folder where no other header of the building machine is seen.
find_file(FYRN_XXHASH_HEADER xxhash.h PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(FYRN_XXHASH_INCLUDE ${PROJECT_BINARY_DIR}/generated/xxhash)
configure_file(${FYRN_XXHASH_HEADER} ${FYRN_XXHASH_INCLUDE}/xxhash.h COPYONLY)
