# What `cmake --install` writes: headers, libraries, the command, the CMake package and the pkg-config
# files.  Nothing that is installed depends on where the prefix is, so that the tree can be moved.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/quill")

# Shared libraries are found from the place of the file that needs them.
file(RELATIVE_PATH libdir_from_bindir "/prefix/${CMAKE_INSTALL_BINDIR}"
     "/prefix/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(quill_smt2 PROPERTIES INSTALL_RPATH "$ORIGIN")
if(QUILL_BUILD_APPS)
  set_target_properties(quill_smt2_command PROPERTIES INSTALL_RPATH
                                                      "$ORIGIN/${libdir_from_bindir}")
  install(TARGETS quill_smt2_command RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

install(
  TARGETS quill quill_smt2
  EXPORT quillTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT quillTargets NAMESPACE quill:: DESTINATION "${package_dir}")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/quillConfig.cmake.in" "${PROJECT_BINARY_DIR}/quillConfig.cmake"
  INSTALL_DESTINATION "${package_dir}"
  NO_SET_AND_CHECK_MACRO)
# While the major version is 0, a minor version may break what compiled before.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/quillConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/quillConfig.cmake" "${PROJECT_BINARY_DIR}/quillConfigVersion.cmake"
        "${PROJECT_SOURCE_DIR}/cmake/FindGMP.cmake"
  DESTINATION "${package_dir}")

# pkg-config: the prefix is found from the place of the file.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pc_prefix "/prefix/${pkgconfig_dir}" "/prefix")
string(REGEX REPLACE "/$" "" pc_prefix "${pc_prefix}")
# A GMP that brings no gmp.pc (before 6.2) is named by its folders.
cmake_path(GET GMP_LIBRARY PARENT_PATH gmp_dir)
if(EXISTS "${gmp_dir}/pkgconfig/gmp.pc")
  set(pc_requires "Requires: gmp")
  set(pc_gmp_library "")
  set(pc_gmp_include "")
else()
  set(pc_requires "")
  set(pc_gmp_library " -L${gmp_dir} -lgmp")
  set(pc_gmp_include " -I${GMP_INCLUDE_DIR}")
endif()
foreach(module IN ITEMS quill quill-smt2)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/${module}.pc.in"
                 "${PROJECT_BINARY_DIR}/${module}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${module}.pc" DESTINATION "${pkgconfig_dir}")
endforeach()
