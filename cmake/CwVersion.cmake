# cw_build_version(TARGET): TARGET may include "cw_build_version.h", whose
# CW_BUILD_VERSION is the project version and, built from a git checkout, the
# commit. The header is brought up to date on every build.
find_package(Git QUIET)
set(CW_BUILD_VERSION_DIR ${PROJECT_BINARY_DIR}/generated)
if(NOT TARGET cw_build_version)
  add_custom_target(cw_build_version
    COMMAND ${CMAKE_COMMAND} -DVERSION=${PROJECT_VERSION} -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
      -DOUTPUT=${CW_BUILD_VERSION_DIR}/cw_build_version.h -DGIT=${GIT_EXECUTABLE}
      -P ${PROJECT_SOURCE_DIR}/cmake/CwBuildVersion.cmake
    BYPRODUCTS ${CW_BUILD_VERSION_DIR}/cw_build_version.h
    COMMENT "" VERBATIM)
endif()

function(cw_build_version target)
  add_dependencies(${target} cw_build_version)
  target_include_directories(${target} PRIVATE ${CW_BUILD_VERSION_DIR})
endfunction()
