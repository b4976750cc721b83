# Header-only packages of the build machine, for a cross-build. Their package files would
# put the whole of /usr/include on the target's include path, where the build machine's C
# headers clash with the target's; so only the package's own headers are staged and the
# imported target is defined here first (find_package then keeps it).
if(EXISTS /usr/include/nlohmann/json.hpp AND NOT TARGET nlohmann_json::nlohmann_json)
  set(_plr_staged ${CMAKE_BINARY_DIR}/cross-include)
  file(COPY /usr/include/nlohmann DESTINATION ${_plr_staged})
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
  set_target_properties(nlohmann_json::nlohmann_json PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${_plr_staged})
  unset(_plr_staged)
endif()
