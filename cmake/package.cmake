# Debian packages by CPack, a package for each group of components: ./run package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ombrix)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Ombrix maintainers <maintainers@ombrix.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(bridges)
foreach(bridge vips frei0r gegl)
    if(TARGET ombrix_${bridge})
        list(APPEND bridges ${bridge})
    endif()
endforeach()
set(CPACK_COMPONENTS_ALL command runtime development sdk python ${bridges})
foreach(component command runtime development python ${bridges})
    string(TOUPPER ${component} upper)
    set(CPACK_COMPONENT_${upper}_GROUP ${component})
endforeach()
set(CPACK_COMPONENT_SDK_GROUP development)

string(JOIN "\n" about
    "Ombrix is a set of image effects: colour filter, brightness, contrast, sepia,"
    "grayscale and invert, each weighted by a mask if you like, and a compositor"
    "with 24 blend modes. Its arithmetic is stated to the last bit, and runs on"
    "vector instructions and up to eight cores.")

# ombrix_package(COMPONENT NAME SECTION SUMMARY DETAIL DEPENDS)
function(ombrix_package component name section summary detail depends)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${about}\n\n${detail}" PARENT_SCOPE)
    set(made ${CMAKE_BINARY_DIR}/packaging/${name})
    configure_file(cmake/debian/changelog.in ${made}/changelog @ONLY)
    execute_process(COMMAND gzip -9n -f ${made}/changelog)
    install(FILES cmake/debian/copyright ${made}/changelog.gz
        DESTINATION share/doc/${name} COMPONENT ${component} EXCLUDE_FROM_ALL)
    if(EXISTS ${PROJECT_SOURCE_DIR}/cmake/debian/${name}.overrides)
        install(FILES cmake/debian/${name}.overrides
            DESTINATION share/lintian/overrides RENAME ${name} COMPONENT ${component} EXCLUDE_FROM_ALL)
    endif()
endfunction()

set(same "(= ${PROJECT_VERSION})")
ombrix_package(command ombrix graphics "image effects for files"
    "This package has the command, which applies effects to image files." "libombrix0 ${same}")
ombrix_package(runtime libombrix0 libs "image effects for programs"
    "This package has the plug-in with the effects and the library that hosts it." "")
ombrix_package(development libombrix-dev libdevel "image effects for programs - development files"
    "This package has what programs and plug-ins are built with." "libombrix0 ${same}")
ombrix_package(python python3-ombrix python "image effects for Python"
    "This package has the effects as Python classes, for NumPy arrays and images."
    "python3 (>= 3.9), libombrix0 ${same}")
if(vips IN_LIST bridges)
    ombrix_package(vips libvips-ombrix libs "image effects for libvips"
        "This package has the effects as operations of libvips." "libombrix0 ${same}")
endif()
if(frei0r IN_LIST bridges)
    ombrix_package(frei0r frei0r-plugins-ombrix video "image effects for video programs"
        "This package has the effects as frei0r plug-ins." "libombrix0 ${same}")
endif()
if(gegl IN_LIST bridges)
    ombrix_package(gegl gegl-plugins-ombrix graphics "image effects for GEGL"
        "This package has the effects as operations of GEGL." "libombrix0 ${same}")
endif()
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-numpy, python3-pil")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/cmake/debian/shlibs ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)

if(NOT EXISTS ${PROJECT_SOURCE_DIR}/python/ombrix)
    list(REMOVE_ITEM CPACK_COMPONENTS_ALL python)
endif()
include(CPack)
