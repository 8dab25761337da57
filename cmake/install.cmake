# What is installed, in four parts: the command, the libraries with the plug-in, what programs are built with, Python.
#   cmake --install build/release --prefix FOLDER [--component command|runtime|development|sdk|python]
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Headers and sources for plug-ins elsewhere, for any processor.
install(DIRECTORY sdk DESTINATION share/ombrix COMPONENT sdk)
file(RELATIVE_PATH OMBRIX_TARGETS /share/ombrix /${CMAKE_INSTALL_LIBDIR}/cmake/ombrix/ombrix-targets.cmake)
configure_file(cmake/ombrix-config.cmake.in ${CMAKE_BINARY_DIR}/ombrix-config.cmake @ONLY)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/ombrix-config-version.cmake
    COMPATIBILITY SameMinorVersion ARCH_INDEPENDENT)
install(FILES ${CMAKE_BINARY_DIR}/ombrix-config.cmake ${CMAKE_BINARY_DIR}/ombrix-config-version.cmake
    DESTINATION share/ombrix COMPONENT sdk)

if(NOT OMBRIX_BUILD_HOST OR APPLE)
    return()
endif()

# The platform and the plug-in are the host's own, and lie where no linker finds them by accident.
install(TARGETS ombrix_platform EXPORT ombrix_targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/ombrix COMPONENT runtime)
install(TARGETS ombrix_plugin LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/ombrix COMPONENT runtime)
install(FILES ${CMAKE_BINARY_DIR}/libombrix.txt DESTINATION ${CMAKE_INSTALL_LIBDIR}/ombrix COMPONENT runtime)
install(TARGETS ombrix_host_shared EXPORT ombrix_targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

foreach(folder host catalogue capi)
    if(EXISTS ${PROJECT_SOURCE_DIR}/${folder}/include)
        install(DIRECTORY ${folder}/include/ombrix DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
    endif()
endforeach()
set_target_properties(ombrix_host_shared PROPERTIES EXPORT_NAME host)
install(EXPORT ombrix_targets NAMESPACE ombrix:: FILE ombrix-targets.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ombrix COMPONENT development)
# Relative to itself, so that the folder can be moved.
file(RELATIVE_PATH OMBRIX_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/ombrix.pc.in ${CMAKE_BINARY_DIR}/ombrix.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/ombrix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(EXISTS ${PROJECT_SOURCE_DIR}/python/ombrix)
    install(DIRECTORY python/ombrix DESTINATION lib/python3/dist-packages COMPONENT python
        PATTERN __pycache__ EXCLUDE)
endif()

if(OMBRIX_BUILD_COMMAND)
    install(TARGETS ombrix RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)
    set(completion ${CMAKE_BINARY_DIR}/completion)
    install(FILES ${completion}/bash RENAME ombrix DESTINATION share/bash-completion/completions COMPONENT command)
    install(FILES ${completion}/zsh RENAME _ombrix DESTINATION share/zsh/vendor-completions COMPONENT command)
    install(FILES ${completion}/fish RENAME ombrix.fish DESTINATION share/fish/vendor_completions.d COMPONENT command)
    # Where they have been made: the target needs help2man.
    add_custom_target(manual ${PROJECT_SOURCE_DIR}/scripts/manual.sh $<TARGET_FILE:ombrix> ${CMAKE_BINARY_DIR}/man1
        DEPENDS ombrix VERBATIM)
    install(DIRECTORY ${CMAKE_BINARY_DIR}/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT command OPTIONAL)
endif()

include(cmake/package.cmake)
