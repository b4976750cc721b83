# Configures a copy of the sources without one folder and expects the configure
# step to fail with a message that names the folder.
# cmake -DSOURCE=<tree> -DFOLDER=<relative folder> -DWORK=<scratch dir> -DGENERATOR=<name> -P configure_without.cmake
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/source)
file(GLOB entries RELATIVE ${SOURCE} ${SOURCE}/*)
foreach(entry IN LISTS entries)
  # Only the sources: no build trees, no repository data.
  if(NOT entry MATCHES "^(build|install|\\.git)$")
    file(COPY ${SOURCE}/${entry} DESTINATION ${WORK}/source)
  endif()
endforeach()
if(NOT IS_DIRECTORY ${WORK}/source/${FOLDER})
  message(FATAL_ERROR "${FOLDER} is not a folder of ${SOURCE}")
endif()
file(REMOVE_RECURSE ${WORK}/source/${FOLDER})
execute_process(COMMAND ${CMAKE_COMMAND} -S ${WORK}/source -B ${WORK}/build -G ${GENERATOR}
                        -DPLR_BUILD_BENCH=OFF
                OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE rc)
if(rc EQUAL 0)
  message(FATAL_ERROR "configure succeeded without ${FOLDER}")
endif()
string(FIND "${err}" "${FOLDER}" at)
if(at EQUAL -1)
  message(FATAL_ERROR "configure failed without naming ${FOLDER}:\n${err}")
endif()
file(REMOVE_RECURSE ${WORK})
message(STATUS "configure without ${FOLDER} failed and named it")
