# GoogleTest for a cross-build: the target system has no packaged GoogleTest, so it is
# built here from Debian's source package. Test discovery is deferred to ctest time,
# because the build machine cannot run the target's programs.
find_package(GTest QUIET)
if(NOT GTest_FOUND)
  set(PLR_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest sources for cross-builds")
  if(NOT EXISTS ${PLR_GTEST_SOURCE}/CMakeLists.txt)
    message(FATAL_ERROR "No GoogleTest for the target and no sources at ${PLR_GTEST_SOURCE} (install googletest)")
  endif()
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
  add_subdirectory(${PLR_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  foreach(lib gtest gtest_main gmock gmock_main)
    # Third-party code: our warning policy does not apply to it.
    target_compile_options(${lib} PRIVATE -w)
    if(NOT TARGET GTest::${lib})
      add_library(GTest::${lib} ALIAS ${lib})
    endif()
  endforeach()
endif()
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
