# Helpers shared by every target of our own: warnings as errors here, never in
# third-party code.
function(cw_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
  # g++ 12 at -O3 reports overlapping copies inside std::string's operator+
  # that cannot happen (GCC bug 105329); the warning says nothing about our code.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  # clang (the fuzz build) objects to "&" between truth values; the walks
  # use it on purpose, to test several conditions without a branch each.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(${target} PRIVATE -Wno-bitwise-instead-of-logical)
  endif()
  # With the sanitizers' instrumentation g++ reports uninitialised reads inside
  # the standard library (std::regex, std::function) that are not there.
  if(CW_SANITIZE)
    target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
  endif()
endfunction()

# cw_core_module(NAME DEPENDS ...): one folder of src/core as a static library
# cw_core_<name>, sources gathered from the folder so that adding a file needs no
# edit here.
function(cw_core_module name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    # A folder whose code is still all in headers.
    add_library(cw_core_${name} INTERFACE)
    target_include_directories(cw_core_${name} INTERFACE ${PROJECT_SOURCE_DIR}/src/core ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(cw_core_${name} INTERFACE ${ARG_DEPENDS})
  else()
    add_library(cw_core_${name} STATIC ${sources})
    target_include_directories(cw_core_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src/core ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(cw_core_${name} PUBLIC ${ARG_DEPENDS})
    cw_warnings(cw_core_${name})
  endif()
  add_library(cw::core_${name} ALIAS cw_core_${name})
endfunction()

# cw_add_test(NAME [OWN_MAIN] SOURCES... LIBS ...): one GoogleTest executable,
# registered with CTest case by case. OWN_MAIN: the sources bring their own main
# (the Qt tests create the application object first).
function(cw_add_test name)
  cmake_parse_arguments(ARG "OWN_MAIN" "" "SOURCES;LIBS;ENV" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gmock)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE
    CW_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data"
    CW_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    CW_BINARY_DIR="${PROJECT_BINARY_DIR}")
  cw_warnings(${name})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ENVIRONMENT "${ARG_ENV}")
endfunction()
