# Finds the integer layer of the GNU multiple precision arithmetic library.
#
# Defines the target GMP::gmp and the variables GMP_FOUND and GMP_VERSION; the cache variables
# GMP_INCLUDE_DIR and GMP_LIBRARY point to another copy.

find_path(GMP_INCLUDE_DIR NAMES gmp.h DOC "Folder of gmp.h")
find_library(GMP_LIBRARY NAMES gmp DOC "The library gmp")
mark_as_advanced(GMP_INCLUDE_DIR GMP_LIBRARY)

# The version stands in the header as three numbers.
if(GMP_INCLUDE_DIR)
  file(STRINGS "${GMP_INCLUDE_DIR}/gmp.h" gmp_version_lines
       REGEX "^#define[ \t]+__GNU_MP_VERSION(_MINOR|_PATCHLEVEL)?[ \t]+[0-9]+")
  set(GMP_VERSION "")
  foreach(gmp_version_line IN LISTS gmp_version_lines)
    string(REGEX MATCH "[0-9]+$" gmp_version_part "${gmp_version_line}")
    list(APPEND GMP_VERSION "${gmp_version_part}")
  endforeach()
  list(JOIN GMP_VERSION "." GMP_VERSION)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
  GMP
  REQUIRED_VARS GMP_LIBRARY GMP_INCLUDE_DIR
  VERSION_VAR GMP_VERSION
  REASON_FAILURE_MESSAGE "Debian: apt-get install libgmp-dev")

if(GMP_FOUND AND NOT TARGET GMP::gmp)
  add_library(GMP::gmp UNKNOWN IMPORTED)
  set_target_properties(GMP::gmp PROPERTIES IMPORTED_LOCATION "${GMP_LIBRARY}"
                                            INTERFACE_INCLUDE_DIRECTORIES "${GMP_INCLUDE_DIR}")
endif()
