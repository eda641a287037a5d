# One test program a folder. Every GoogleTest test is a CTest test of its own, and so a process of
# its own: a VM can be made only once a process, and process-wide state is set only once.
include(GoogleTest)

# Phrases by which a VM started with -Xcheck:jni says that JNI was misused.
set(JNI_WARNINGS
    "WARNING in native method|WARNING: JNI local refs|FATAL ERROR in native method")

# quenlatrix_test(name SOURCES ... LIBRARIES ... [JVM])
# With JVM the tests run once on each JDK found, named after it; QUENLATRIX_TEST_JAVA_HOME tells the
# program which.
function(quenlatrix_test name)
  cmake_parse_arguments(ARG "JVM" "" "SOURCES;LIBRARIES" ${ARGN})
  if(NOT ARG_JVM)
    set(no_vm NO_VM)
  endif()
  quenlatrix_program(${name} SOURCES ${ARG_SOURCES} LIBRARIES ${ARG_LIBRARIES} GTest::gmock ${no_vm})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(NOT ARG_JVM)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
    gtest_discover_tests(${name} TEST_PREFIX "${name}: " PROPERTIES TIMEOUT 300
                         DISCOVERY_TIMEOUT 60)
    return()
  endif()
  target_link_libraries(${name} PRIVATE test_vm)
  foreach(home IN LISTS JDK_TEST_HOMES)
    cmake_path(GET home FILENAME jdk)
    gtest_discover_tests(${name} TEST_PREFIX "${name} on ${jdk}: " TEST_LIST ${name}_${jdk}_tests
                         DISCOVERY_TIMEOUT 60
                         PROPERTIES TIMEOUT 600 LABELS jvm
                         ENVIRONMENT "QUENLATRIX_TEST_JAVA_HOME=${home}"
                         FAIL_REGULAR_EXPRESSION "${JNI_WARNINGS}")
  endforeach()
endfunction()
