# The Debian packages: one to run handlers with, one to write handlers and hosts against. To be built
# from a tree that is configured for /usr; ./package.sh does.
set(QUENLATRIX_RUNTIME_PACKAGE quenlatrix-javabean-handler)
set(QUENLATRIX_DEV_PACKAGE quenlatrix-meta-object-dev)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "quenlatrix-meta-object maintainers <maintainers@quenlatrix.invalid>"
    CACHE STRING "Who maintains the packages, as \"Name <mail address>\"")
# Each description begins with its own summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${QUENLATRIX_RUNTIME_PACKAGE})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION java)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# The Java side is compiled for the oldest language level that the compiler offers.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS
    "default-jre-headless | java${JDK_OLDEST_RELEASE}-runtime-headless")
file(WRITE ${CMAKE_BINARY_DIR}/package/control/conffiles
     "/etc/quenlatrix/Configuration/handlers.ini\n/etc/quenlatrix/beanpaths.ini\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/package/control/conffiles)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"Java Bean object handler and its reference host
A plug-in through which an application server serves Java beans to its
scripts, and beanhost, a program that creates, describes, calls and walks
beans through it from the command line.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${QUENLATRIX_DEV_PACKAGE})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libboost-regex-dev, libicu-dev")
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "${QUENLATRIX_RUNTIME_PACKAGE}")
set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS "cmake, pkg-config")
set(CPACK_COMPONENT_DEV_DESCRIPTION
"object handler framework, for handlers and hosts
The headers and static libraries that object handler plug-ins and their hosts
are written with: handler base, identities, type descriptors, values,
description records, text and configuration classes.")

set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_BINARY_DIR}/package/finish_packages.cmake)
configure_file(${CMAKE_SOURCE_DIR}/cmake/finish_packages.cmake.in package/finish_packages.cmake
               @ONLY)
include(CPack)
