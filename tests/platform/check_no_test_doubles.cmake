# Fails when the shipped platform library's dynamic symbol table defines a test
# double (a recording or fake platform, recorded calls or boxes), or when the
# table could not be read (the entry points the module needs must be there).
# cmake -DNM=<nm> -DFILE=<library> -P check_no_test_doubles.cmake
execute_process(COMMAND ${NM} -D --defined-only -C ${FILE} OUTPUT_VARIABLE out RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${NM} failed on ${FILE}")
endif()
if(NOT out MATCHES "tvr::platform::setPlatform" OR NOT out MATCHES "tvr::platform::pumpMessages")
  message(FATAL_ERROR "${FILE}: the platform's own entry points are missing from the symbol table:\n${out}")
endif()
string(REGEX MATCHALL "[^\n]*([Rr]ecord|[Ff]ake|PlatformCall)[^\n]*" doubles "${out}")
if(doubles)
  string(REPLACE ";" "\n" doubles "${doubles}")
  message(FATAL_ERROR "${FILE} exports test doubles:\n${doubles}")
endif()
message(STATUS "${FILE} exports no test double")
