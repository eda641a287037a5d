# What every target of this project is compiled with: an interface library, so that nothing leaks
# into what find_package brings.
add_library(project_settings INTERFACE)
target_include_directories(project_settings INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(project_settings INTERFACE -Wall -Wextra -Wconversion -Werror)
# Who uses one source of a library doesn't load what another source of it needs.
target_link_options(project_settings INTERFACE -Wl,--as-needed)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Members carry plain names, so a parameter may shadow a member but never a local.
  # A library with unique symbols can't be unloaded.
  target_compile_options(project_settings INTERFACE -Wshadow=local -fno-gnu-unique)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # An optimised build sees overlapping copies in every "text" + std::string(...).
    target_compile_options(project_settings INTERFACE -Wno-restrict)
  endif()
else()
  target_compile_options(project_settings INTERFACE -Wthread-safety)
endif()
if(QUENLATRIX_ASSERTIONS)
  target_compile_definitions(project_settings INTERFACE _GLIBCXX_ASSERTIONS)
endif()

# What a fault in memory handling meets before an attacker's data does. The options are for this
# tree alone: who builds against the installed libraries chooses for himself.
target_compile_options(project_settings INTERFACE -fstack-protector-strong)
target_link_options(project_settings INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
if(NOT QUENLATRIX_SANITIZE)
  # The C library checks its callers in optimised code only; level 3, which knows sizes that are
  # computed at run time, needs a newer compiler and C library.
  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -Werror")
  check_cxx_source_compiles("
    #include <cstdlib>
    static_assert(__USE_FORTIFY_LEVEL == 3);
    int main() {}" QUENLATRIX_HAS_FORTIFY_3)
  unset(CMAKE_REQUIRED_FLAGS)
  set(fortify_level $<IF:$<BOOL:${QUENLATRIX_HAS_FORTIFY_3}>,3,2>)
  target_compile_options(project_settings INTERFACE
    "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${fortify_level}>")
endif()

if(QUENLATRIX_SANITIZE)
  target_compile_options(project_settings INTERFACE -fsanitize=${QUENLATRIX_SANITIZE}
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(project_settings INTERFACE -fsanitize=${QUENLATRIX_SANITIZE})
endif()
if(QUENLATRIX_FUZZ)
  target_compile_options(project_settings INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(QUENLATRIX_TIDY)
  find_program(CLANG_TIDY_PROGRAM clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY ${CLANG_TIDY_PROGRAM} --quiet)
endif()

set(QUENLATRIX_OPTIMISE_WHOLE OFF)
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU"
   AND NOT QUENLATRIX_SANITIZE)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT QUENLATRIX_OPTIMISE_WHOLE LANGUAGES CXX)
endif()

# A folder of src/ as one static library.
function(quenlatrix_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:project_settings> ${ARG_LIBRARIES})
endfunction()

# quenlatrix_whole_library(name library...)
# The sources of those libraries once more, compiled so that the linker optimises them as a whole: for
# a file that is loaded as one. The libraries themselves stay ordinary archives, which every linker
# reads and a debugger steps through; where nothing is to be optimised, `name` just stands for them.
function(quenlatrix_whole_library name)
  if(NOT QUENLATRIX_OPTIMISE_WHOLE)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${ARGN})
    return()
  endif()
  add_library(${name} STATIC)
  foreach(library IN LISTS ARGN)
    get_target_property(sources ${library} SOURCES)
    get_target_property(directory ${library} SOURCE_DIR)
    list(TRANSFORM sources PREPEND "${directory}/")
    target_sources(${name} PRIVATE ${sources})
  endforeach()
  # What the libraries need comes behind, and with it their own archives, which supply nothing more.
  target_link_libraries(${name} PUBLIC ${ARGN})
  set_target_properties(${name} PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
endfunction()

# A library of the framework: handlers and hosts outside this tree link it as quenlatrix::name.
function(quenlatrix_framework_library name)
  quenlatrix_library(${name} ${ARGN})
  add_library(quenlatrix::${name} ALIAS ${name})
  string(REPLACE _ - file_name quenlatrix-${name})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${file_name})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_include_directories(${name} INTERFACE $<INSTALL_INTERFACE:${QUENLATRIX_INCLUDE_DIR}>)
  install(TARGETS ${name} EXPORT quenlatrix ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
          COMPONENT dev)
endfunction()

# quenlatrix_program(name SOURCES ... LIBRARIES ... [NO_VM])
# Under AddressSanitizer a program carries the defaults that let it share its process with a VM,
# unless it never does.
function(quenlatrix_program name)
  cmake_parse_arguments(ARG "NO_VM" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE project_settings ${ARG_LIBRARIES})
  if(QUENLATRIX_SANITIZE MATCHES "address" AND NOT ARG_NO_VM)
    target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/sanitizer_defaults.cpp)
  endif()
endfunction()
