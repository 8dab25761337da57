# libombrix_host.so: the embedded host, the catalogue and the C interface. A process has one, whoever in it uses effects.
add_library(ombrix_host_shared SHARED $<TARGET_OBJECTS:ombrix_host_objects> $<TARGET_OBJECTS:ombrix_catalogue_objects>
    $<TARGET_OBJECTS:ombrix_capi_objects>)
add_library(ombrix::host ALIAS ombrix_host_shared)
# Its functions call each other, whatever copies of them the process has. The Host may live until the process ends, and
# plug-ins call into it: it must never be unmapped before.
target_link_options(ombrix_host_shared PRIVATE -Wl,-Bsymbolic-functions -Wl,-z,nodelete)
set_target_properties(ombrix_host_shared PROPERTIES
    OUTPUT_NAME ombrix_host
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH "$ORIGIN/ombrix"
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/host_exports.map)
target_include_directories(ombrix_host_shared INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/host/include> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/catalogue/include>
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/capi/include>)
target_compile_features(ombrix_host_shared INTERFACE cxx_std_20)
target_link_libraries(ombrix_host_shared PRIVATE ombrix_platform ombrix_text PkgConfig::FFI ${CMAKE_DL_LIBS})
# Without the list, templates of the standard library would be offered as well.
target_link_options(ombrix_host_shared
    PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/host_exports.map ${OMBRIX_LINK_BESIDE}
    INTERFACE $<BUILD_INTERFACE:${OMBRIX_LINK_BESIDE}>)
