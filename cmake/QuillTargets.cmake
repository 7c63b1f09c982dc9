# How the targets of this project are made.

# Options of every target of ours: the language, the warnings, the sanitizers.
function(quill_target_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow
                                           $<$<BOOL:${QUILL_WERROR}>:-Werror>)
  # Position independent as it is, the library calls its own functions and nobody else's: they may be inlined.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  # g++ 12 takes "literal" + std::string for an overlapping copy when it optimises.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(QUILL_SANITIZE)
    set(flags -fsanitize=${QUILL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(${target} PRIVATE ${flags})
    target_link_options(${target} PRIVATE ${flags})
  endif()
endfunction()

# With QUILL_PRECOMPILE, reads term_manager.h and what it includes once for all targets above the manager:
# nearly half of the time that a source takes to compile.  Off by default, so that a build shows which
# source lacks an include.
function(quill_precompile target)
  if(NOT QUILL_PRECOMPILE)
    return()
  elseif(target STREQUAL "quill_termmanager")
    target_precompile_headers(${target} PRIVATE "${PROJECT_SOURCE_DIR}/quill/terms/termmanager/term_manager.h")
  else()
    target_precompile_headers(${target} REUSE_FROM quill_termmanager)
  endif()
endfunction()

# quill_add_layer(<name> [USES <layer>...] [HEADERS <file>...] [PRIVATE_HEADERS <file>...]
#                 [FORMER_HEADERS <file>...] [SOURCES <file>...])
#
# Makes a layer of the library quill from the files of the current folder: the object library
# quill_<name>, which may include the layers after USES and what those use.  HEADERS are installed;
# PRIVATE_HEADERS are for the sources only.  FORMER_HEADERS include a header that has moved, for programs that
# know it by its former path; they are installed, too.
function(quill_add_layer name)
  cmake_parse_arguments(PARSE_ARGV 1 layer "" "" "USES;HEADERS;PRIVATE_HEADERS;FORMER_HEADERS;SOURCES")
  if(layer_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "quill_add_layer(${name}): unknown ${layer_UNPARSED_ARGUMENTS}")
  endif()
  add_library(quill_${name} OBJECT ${layer_SOURCES} ${layer_PRIVATE_HEADERS} ${layer_HEADERS})
  set_target_properties(quill_${name} PROPERTIES LINKER_LANGUAGE CXX)
  quill_target_options(quill_${name})
  target_include_directories(quill_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(quill_${name} PUBLIC GMP::gmp)
  if(NOT name MATCHES "^(utils|terms)$")
    quill_precompile(quill_${name})
  endif()
  foreach(used IN LISTS layer_USES)
    target_link_libraries(quill_${name} PUBLIC quill_${used})
  endforeach()

  target_sources(quill PRIVATE $<TARGET_OBJECTS:quill_${name}>)
  list(APPEND layer_HEADERS ${layer_FORMER_HEADERS})
  list(TRANSFORM layer_HEADERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  target_sources(quill PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}"
                              FILES ${layer_HEADERS})
endfunction()
