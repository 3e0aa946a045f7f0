# Warnings, sanitizers, ccache and the linker, for every target of the tree.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # Precompiled headers are only cached when ccache is told that their time stamps do not matter. What one tree has
  # compiled serves any other: paths within it are taken from its top.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} ${CCACHE_PROGRAM})
endif()

# Forty programs of tests are linked anew for every change far below: in seconds, where there is a quick linker.
find_program(ZARVELA_MOLD mold)
if(ZARVELA_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

add_library(zv_flags INTERFACE)
target_compile_options(zv_flags INTERFACE -Wall -Wextra -Wpedantic)
target_compile_definitions(zv_flags INTERFACE QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(zv_flags INTERFACE -fpch-preprocess)
endif()

if(ZARVELA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# zv_floor(NAME folder DEPENDS ...): one floor of the house as a static library. A floor links only those below
# it; `tests/lint/floors.sh` sees to it that no file includes upward.
function(zv_floor name folder)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.h
    ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.ui)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE zv_flags)
endfunction()
