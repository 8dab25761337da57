# find_package(ombrix): the SDK, with ombrix_add_plugin().
include(${CMAKE_CURRENT_LIST_DIR}/sdk/plugin.cmake)
