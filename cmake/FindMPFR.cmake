# Finds the GNU multiple precision floating-point library, which only tests use.
#
# Defines the target MPFR::mpfr and the variable MPFR_FOUND; the cache variables MPFR_INCLUDE_DIR and
# MPFR_LIBRARY point to another copy.  Needs GMP::gmp.

find_path(MPFR_INCLUDE_DIR NAMES mpfr.h DOC "Folder of mpfr.h")
find_library(MPFR_LIBRARY NAMES mpfr DOC "The library mpfr")
mark_as_advanced(MPFR_INCLUDE_DIR MPFR_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
  MPFR
  REQUIRED_VARS MPFR_LIBRARY MPFR_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "Debian: apt-get install libmpfr-dev")

if(MPFR_FOUND AND NOT TARGET MPFR::mpfr)
  add_library(MPFR::mpfr UNKNOWN IMPORTED)
  set_target_properties(
    MPFR::mpfr PROPERTIES IMPORTED_LOCATION "${MPFR_LIBRARY}"
                          INTERFACE_INCLUDE_DIRECTORIES "${MPFR_INCLUDE_DIR}"
                          INTERFACE_LINK_LIBRARIES GMP::gmp)
endif()
