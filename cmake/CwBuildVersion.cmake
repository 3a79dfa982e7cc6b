# Run at every build (cmake -P): writes OUTPUT, a header with the program
# version, VERSION plus the commit when SOURCE_DIR is a git checkout of its
# own, marked "-modified" when the checkout has changes. The file is rewritten
# only when its text changes, so an unchanged commit rebuilds nothing.
#   -DVERSION=0.1.0 -DSOURCE_DIR=... -DOUTPUT=.../cw_build_version.h [-DGIT=git]
set(text "${VERSION}")
if(GIT)
  # A source tree unpacked inside some other checkout must not take its commit.
  execute_process(COMMAND ${GIT} -C ${SOURCE_DIR} rev-parse --show-toplevel
    OUTPUT_VARIABLE top RESULT_VARIABLE failed OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT failed)
    file(REAL_PATH "${top}" top)
    file(REAL_PATH "${SOURCE_DIR}" source)
  endif()
  if(NOT failed AND top STREQUAL source)
    execute_process(COMMAND ${GIT} -C ${SOURCE_DIR} rev-parse --short=12 HEAD
      OUTPUT_VARIABLE commit RESULT_VARIABLE failed OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(NOT failed)
      execute_process(COMMAND ${GIT} -C ${SOURCE_DIR} diff --quiet HEAD --
        RESULT_VARIABLE changed OUTPUT_QUIET ERROR_QUIET)
      if(changed)
        set(commit "${commit}-modified")
      endif()
      set(text "${text} (git ${commit})")
    endif()
  endif()
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "#pragma once\n// Written at build time by cmake/CwBuildVersion.cmake.\n#define CW_BUILD_VERSION \"${text}\"\n" @ONLY)
