# For plug-ins of your own: ombrix_add_plugin(NAME SOURCE...) builds libNAME.so, which a host loads.
get_filename_component(OMBRIX_SDK_ROOT ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)

# The records and the host's services, compiled into each plug-in. Headers are included as "sdk/...".
if(NOT TARGET ombrix_sdk)
    add_library(ombrix_sdk INTERFACE)
    target_sources(ombrix_sdk INTERFACE
        ${OMBRIX_SDK_ROOT}/sdk/host_calls.cpp ${OMBRIX_SDK_ROOT}/sdk/process_state.cpp)
    target_include_directories(ombrix_sdk INTERFACE ${OMBRIX_SDK_ROOT})
    target_compile_features(ombrix_sdk INTERFACE cxx_std_20)
endif()

function(ombrix_add_plugin name)
    add_library(${name} MODULE ${ARGN})
    target_link_libraries(${name} PRIVATE ombrix_sdk)
    # A fused multiply-add would round once where a formula rounds twice. Without a build type nothing is optimised.
    target_compile_options(${name} PRIVATE -ffp-contract=off $<$<CONFIG:>:-O2>)
    set_target_properties(${name} PROPERTIES PREFIX lib SUFFIX .so CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()
