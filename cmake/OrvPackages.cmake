# Debian packages, one per install component: the shared library, the development files and the
# command-line client. The client is packaged with Qt 5 only, because it behaves the same with Qt 6.
# The packages need the prefix /usr, which the presets set.

set(ORV_PACKAGE_MAINTAINER "libOrvCore maintainers <maintainers@orvcore.example>"
    CACHE STRING "Name and mail address of the maintainer in the Debian packages")

include(GNUInstallDirs)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_PACKAGE_NAME orvcore)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGE_CONTACT "${ORV_PACKAGE_MAINTAINER}")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# orv links the library of another package of this build, which is not installed yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# Every package contains the change log and the copyright file.
configure_file(${CMAKE_CURRENT_LIST_DIR}/packages/changelog.in ${PROJECT_BINARY_DIR}/changelog.Debian @ONLY)
execute_process(COMMAND gzip -9nkf ${PROJECT_BINARY_DIR}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
macro(orv_package component name section description)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    string(TOUPPER ${component} COMPONENT)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${COMPONENT}_DESCRIPTION ${description})
    install(FILES ${CMAKE_CURRENT_LIST_DIR}/packages/copyright ${PROJECT_BINARY_DIR}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endmacro()

if(QT_VERSION_MAJOR EQUAL 5)
    set(qtPackage qtbase5-dev)
    set(runTimePackage liborvcore${PROJECT_VERSION_MAJOR})
else()
    set(qtPackage qt6-base-dev)
    set(runTimePackage liborvcore${orvNameSuffix}-${PROJECT_VERSION_MAJOR})
endif()

orv_package(library ${runTimePackage} libs "core library of speech and voice-control services (${orvQt})
Code that the speech services of a vehicle head unit share: languages with
codes, domain records, JSON and settings, table files, prompt markup, brand
sounds, sentence splitting, a checksum store, a registry of singletons, POSIX
signals and an inflater.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_MULTIARCH same)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/packages/triggers)

orv_package(development liborvcore${orvNameSuffix}-dev libdevel
    "core library of speech and voice-control services (${orvQt}) - development files
The headers of libOrvCore, its CMake package and its pkg-config module.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${runTimePackage} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), ${qtPackage} (>= ${orvQtMinimum})")

if(ORV_BUILD_TOOLS)
    orv_package(orv orv utils "command-line client of the speech core library
Shows parsed prompts, sentences, languages, brand sounds, radio genres and
table files; finds mistakes in prompts and data files; stores checksums of
speech data files.")
    set(CPACK_DEBIAN_ORV_PACKAGE_DEPENDS "${runTimePackage} (>= ${PROJECT_VERSION})")
endif()

set(ORV_HTML "" CACHE PATH "HTML built by scripts/docs, for the package of documentation; empty: no such package")
if(ORV_HTML)
    orv_package(documentation liborvcore-doc doc "core library of speech and voice-control services - documentation
The guides and the reference of libOrvCore, as HTML.")
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SHLIBDEPS OFF)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS liborvcore-doc)
    install(DIRECTORY ${ORV_HTML} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/liborvcore-doc COMPONENT documentation)
endif()

include(CPack)
