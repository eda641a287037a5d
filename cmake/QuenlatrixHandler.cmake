# quenlatrix_handler(name SOURCES ... [LIBRARIES ...] [EXPORTS file.map])
#
# A handler plug-in, NAME.so: it exports the nine entry points that
# "meta_object/entry_points.h" declares and nothing else (EXPORTS names another linker version
# script), keeps its own calls inside, and can be unloaded.
set(QUENLATRIX_HANDLER_EXPORTS "${CMAKE_CURRENT_LIST_DIR}/handler_exports.map")

function(quenlatrix_handler name)
  cmake_parse_arguments(ARG "" "EXPORTS" "SOURCES;LIBRARIES" ${ARGN})
  if(NOT ARG_EXPORTS)
    set(ARG_EXPORTS "${QUENLATRIX_HANDLER_EXPORTS}")
  endif()
  add_library(${name} MODULE ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} quenlatrix::meta_object)
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS "${ARG_EXPORTS}")
  target_link_options(${name} PRIVATE -Wl,-Bsymbolic "-Wl,--version-script=${ARG_EXPORTS}"
                      -Wl,--no-undefined -Wl,--as-needed)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A library with unique symbols can't be unloaded.
    target_compile_options(${name} PRIVATE -fno-gnu-unique)
  endif()
  if(QUENLATRIX_SANITIZE)
    # The sanitizer's runtime is the program's.
    target_link_options(${name} PRIVATE -Wl,-z,undefs)
  endif()
endfunction()
