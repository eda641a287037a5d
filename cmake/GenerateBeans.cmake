# Java beans that are all repetition, written at configure time.

# generate_many_methods(out package count...)
# Writes a class ManyMethods<count> for each count: its methods are method000, method001 ..., so that
# they sort in this order; method007(5, "text") answers "7:5:text". out receives the paths.
function(generate_many_methods out package)
  set(sources "")
  foreach(count IN LISTS ARGN)
    set(body "")
    math(EXPR last "${count} - 1")
    foreach(number RANGE ${last})
      string(LENGTH "${number}" digits)
      math(EXPR missing "3 - ${digits}")
      string(REPEAT "0" ${missing} zeros)
      string(APPEND body "  public String method${zeros}${number}(int value, String text) {\n"
                         "    return \"${number}:\" + value + \":\" + text;\n  }\n")
    endforeach()
    set(source "${CMAKE_CURRENT_BINARY_DIR}/generated/${package}/ManyMethods${count}.java")
    file(CONFIGURE OUTPUT "${source}"
         CONTENT "package ${package};\n\npublic class ManyMethods${count} {\n${body}}\n")
    list(APPEND sources "${source}")
  endforeach()
  set(${out} ${sources} PARENT_SCOPE)
endfunction()
