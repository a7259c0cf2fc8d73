# Finds the Qt to build with. It sets orvQt to its package (Qt5 or Qt6), orvOtherQt to the one that must not be mixed with
# it, orvQtMinimum to the oldest version that will do, and orvNameSuffix to the end of all names that must differ, so that
# the builds for both can be installed side by side.

set(ORV_QT_MAJOR "" CACHE STRING "Build with this major version of Qt: 5 or 6; empty for 5 where it is found")
set_property(CACHE ORV_QT_MAJOR PROPERTY STRINGS "" 5 6)
if(ORV_QT_MAJOR MATCHES "^[56]$")
    set(orvQtNames Qt${ORV_QT_MAJOR})
elseif(NOT ORV_QT_MAJOR STREQUAL "")
    message(FATAL_ERROR "ORV_QT_MAJOR is \"${ORV_QT_MAJOR}\", but must be 5, 6 or empty")
elseif(TARGET Qt5::Core)
    set(orvQtNames Qt5) # of the parent project
elseif(TARGET Qt6::Core)
    set(orvQtNames Qt6)
else()
    set(orvQtNames Qt5 Qt6)
endif()
foreach(orvName IN LISTS orvQtNames) # one by one: CMake does not try several names in their order
    find_package(QT NAMES ${orvName} QUIET COMPONENTS Core)
    if(QT_FOUND)
        break()
    endif()
endforeach()
if(NOT QT_FOUND)
    list(JOIN orvQtNames " or " orvQtNames)
    message(FATAL_ERROR "${orvQtNames} is needed, but its development files are not found")
endif()
set(orvQt Qt${QT_VERSION_MAJOR})
if(QT_VERSION_MAJOR EQUAL 5)
    set(orvQtMinimum 5.12)
    set(orvOtherQt Qt6)
    set(orvNameSuffix "")
else()
    set(orvQtMinimum 6.4)
    set(orvOtherQt Qt5)
    set(orvNameSuffix -qt6)
endif()

set(orvFindsQt ON)
if(TARGET ${orvQt}::Core)
    set(orvFindsQt OFF) # the parent project has its own
endif()
find_package(${orvQt} ${orvQtMinimum} REQUIRED COMPONENTS Core)
if(orvFindsQt AND NOT orvTopLevel)
    # What an installed package leaves behind: without its version and its tools, the parent's AUTOMOC is off.
    set(${orvQt}Core_VERSION_MAJOR ${${orvQt}Core_VERSION_MAJOR} PARENT_SCOPE)
    set(${orvQt}Core_VERSION_MINOR ${${orvQt}Core_VERSION_MINOR} PARENT_SCOPE)
    set_target_properties(${orvQt}::Core ${orvQt}::moc ${orvQt}::rcc ${orvQt}::qmake PROPERTIES IMPORTED_GLOBAL ON)
endif()
