# Where things are installed, and the ways between them. The programs find each other by these ways
# and never by a full path, so an installed tree can be moved as a whole.
include(GNUInstallDirs)

set(QUENLATRIX_PLUGIN_DIR "${CMAKE_INSTALL_LIBDIR}/quenlatrix")
set(QUENLATRIX_JAR_DIR "${CMAKE_INSTALL_DATADIR}/quenlatrix")
set(QUENLATRIX_INCLUDE_DIR "${CMAKE_INSTALL_INCLUDEDIR}/quenlatrix-meta-object")
set(QUENLATRIX_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/quenlatrix-meta-object")

# The configuration root. Where the system's /etc lies outside the prefix it is a full path.
set(QUENLATRIX_ROOT_DIR "${CMAKE_INSTALL_SYSCONFDIR}/quenlatrix")
cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX "${CMAKE_INSTALL_FULL_SYSCONFDIR}" NORMALIZE
           is_below_prefix)
if(NOT is_below_prefix)
  set(QUENLATRIX_ROOT_DIR "${CMAKE_INSTALL_FULL_SYSCONFDIR}/quenlatrix")
endif()

# quenlatrix_way(out from to)
# The relative path from one installation directory to another.
function(quenlatrix_way out from to)
  foreach(directory from to)
    cmake_path(ABSOLUTE_PATH ${directory} BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}" NORMALIZE)
  endforeach()
  file(RELATIVE_PATH way "${from}" "${to}")
  set(${out} "${way}" PARENT_SCOPE)
endfunction()

quenlatrix_way(QUENLATRIX_PLUGIN_FROM_BIN "${CMAKE_INSTALL_BINDIR}" "${QUENLATRIX_PLUGIN_DIR}")
quenlatrix_way(QUENLATRIX_JARS_FROM_BIN "${CMAKE_INSTALL_BINDIR}" "${QUENLATRIX_JAR_DIR}")
quenlatrix_way(QUENLATRIX_ROOT_FROM_BIN "${CMAKE_INSTALL_BINDIR}" "${QUENLATRIX_ROOT_DIR}")
quenlatrix_way(QUENLATRIX_PLUGIN_FROM_ROOT "${QUENLATRIX_ROOT_DIR}" "${QUENLATRIX_PLUGIN_DIR}")
