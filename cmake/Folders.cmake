# Every folder and every source file is named in the build; one that is missing
# stops the configure step with its path from the repository root, so a lost or
# misspelt part can never be skipped quietly.

# add_subdirectory, with the folder named from the repository root when it is missing.
function(plr_add_folder dir)
  if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/CMakeLists.txt)
    file(RELATIVE_PATH rel ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/${dir})
    message(FATAL_ERROR "Missing folder ${rel} (no ${rel}/CMakeLists.txt)")
  endif()
  add_subdirectory(${dir})
endfunction()

# Checks that every source file of every target below `dir` exists; called once
# at the end of the top level, before CMake's own, less telling, generate-time error.
function(plr_check_sources dir)
  get_property(targets DIRECTORY ${dir} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "INTERFACE_LIBRARY")
      continue()
    endif()
    get_target_property(sources ${target} SOURCES)
    if(NOT sources)
      continue()  # a custom target without sources of its own
    endif()
    get_target_property(source_dir ${target} SOURCE_DIR)
    foreach(source IN LISTS sources)
      if(source MATCHES "^\\$<")
        continue()  # a generator expression: an object library's objects
      endif()
      if(NOT IS_ABSOLUTE "${source}")
        set(source ${source_dir}/${source})
      endif()
      get_source_file_property(generated ${source} TARGET_DIRECTORY ${target} GENERATED)
      if(NOT generated AND NOT EXISTS ${source})
        file(RELATIVE_PATH rel ${PROJECT_SOURCE_DIR} ${source})
        message(FATAL_ERROR "Missing source file ${rel} (listed by target ${target})")
      endif()
    endforeach()
  endforeach()
  get_property(subdirs DIRECTORY ${dir} PROPERTY SUBDIRECTORIES)
  foreach(sub IN LISTS subdirs)
    plr_check_sources(${sub})
  endforeach()
endfunction()
