# Finds the JDK that compiles the Java side and whose jni.h the native side uses, and every JDK on
# the machine that the tests can run on.
#
#   JDK_HOME          the JDK to build with
#   JDK_TEST_HOMES    the JDKs to test on: the one to build with, and the newest other one
#   jni               interface target: jni.h
#   quenlatrix_jar()  compiles Java sources into a jar

if(DEFINED ENV{JAVA_HOME} AND EXISTS "$ENV{JAVA_HOME}/bin/javac")
  set(found_home "$ENV{JAVA_HOME}")
else()
  find_program(JAVAC_PROGRAM javac REQUIRED)
  file(REAL_PATH "${JAVAC_PROGRAM}" javac_real)
  cmake_path(GET javac_real PARENT_PATH jdk_bin)
  cmake_path(GET jdk_bin PARENT_PATH found_home)
endif()
set(JDK_HOME "${found_home}" CACHE PATH "The JDK that the Java side is built with")

add_library(jni INTERFACE)
target_include_directories(jni SYSTEM INTERFACE "${JDK_HOME}/include" "${JDK_HOME}/include/linux")

function(find_test_jdks out)
  file(REAL_PATH "${JDK_HOME}" build_home)
  set(homes "${build_home}")
  set(newest "")
  set(newest_version 0)
  file(GLOB candidates /usr/lib/jvm/*)
  foreach(candidate IN LISTS candidates)
    if(EXISTS "${candidate}/lib/server/libjvm.so" AND EXISTS "${candidate}/release")
      file(REAL_PATH "${candidate}" home)
      file(STRINGS "${home}/release" line REGEX "^JAVA_VERSION=")
      if(line MATCHES "\"([0-9]+)" AND NOT home STREQUAL build_home
         AND CMAKE_MATCH_1 GREATER newest_version)
        set(newest_version ${CMAKE_MATCH_1})
        set(newest "${home}")
      endif()
    endif()
  endforeach()
  if(newest)
    list(APPEND homes "${newest}")
  endif()
  set(${out} "${homes}" PARENT_SCOPE)
endfunction()
find_test_jdks(JDK_TEST_HOMES)

# The oldest language level that the compiler still offers, 8 where it can.
function(find_oldest_release out)
  foreach(level 8 11 17 21)
    execute_process(COMMAND "${JDK_HOME}/bin/javac" --release ${level} -version
                    RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
    if(NOT failed)
      set(${out} ${level} PARENT_SCOPE)
      return()
    endif()
  endforeach()
  message(FATAL_ERROR "javac of ${JDK_HOME} takes none of the language levels 8, 11, 17 and 21")
endfunction()
if(NOT JDK_OLDEST_RELEASE)
  find_oldest_release(oldest)
  set(JDK_OLDEST_RELEASE ${oldest} CACHE STRING "Language level of the Java side")
endif()

# quenlatrix_jar(target OUTPUT file.jar SOURCES a.java... [RELEASE level] [OPTIONS javac options...])
function(quenlatrix_jar target)
  cmake_parse_arguments(ARG "" "OUTPUT;RELEASE" "SOURCES;OPTIONS" ${ARGN})
  if(NOT ARG_RELEASE)
    set(ARG_RELEASE ${JDK_OLDEST_RELEASE})
  endif()
  set(classes "${CMAKE_CURRENT_BINARY_DIR}/${target}.classes")
  list(TRANSFORM ARG_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" REGEX "^[^/]")
  add_custom_command(
    OUTPUT "${ARG_OUTPUT}"
    COMMAND ${CMAKE_COMMAND} -E rm -rf "${classes}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${classes}"
    COMMAND "${JDK_HOME}/bin/javac" --release ${ARG_RELEASE} -Xlint:all,-options -Werror
            -encoding UTF-8 ${ARG_OPTIONS} -d "${classes}" ${ARG_SOURCES}
    COMMAND "${JDK_HOME}/bin/jar" --create --file "${ARG_OUTPUT}" -C "${classes}" .
    DEPENDS ${ARG_SOURCES}
    COMMENT "Compiling ${target}"
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS "${ARG_OUTPUT}")
endfunction()
