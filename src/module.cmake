# The module: its code as an object library (tests link it directly), and the
# loadable module built from it with the allocation operators routed to the host.
file(GLOB PLR_MODULE_SOURCES CONFIGURE_DEPENDS
  ${CMAKE_CURRENT_SOURCE_DIR}/plugin/*.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/adaptor/*.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/nodes/*.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/undo/*.cpp)
list(REMOVE_ITEM PLR_MODULE_SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugin/host_memory.cpp)

add_library(plr_module OBJECT ${PLR_MODULE_SOURCES})
target_include_directories(plr_module PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(plr_module PUBLIC plr_util plr_xml plr_core_api plr_host_api plr_platform)

add_library(pelloran MODULE ${CMAKE_CURRENT_SOURCE_DIR}/plugin/host_memory.cpp)
target_link_libraries(pelloran PRIVATE plr_module)
set_target_properties(pelloran PROPERTIES PREFIX "" OUTPUT_NAME pelloran)
if(WIN32)
  # Only dllexport'ed names leave a DLL, and c4d_main is the only one.
  set_target_properties(pelloran PROPERTIES SUFFIX ".cdl64")
else()
  set_target_properties(pelloran PROPERTIES SUFFIX ".so"
    INSTALL_RPATH "$ORIGIN/../../lib"
    LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/plugin/pelloran.map)
  # The export list also keeps the module's operator new and delete, which the
  # runtime's headers declare with default visibility, out of the symbol table.
  target_link_options(pelloran PRIVATE "LINKER:--version-script=${CMAKE_CURRENT_SOURCE_DIR}/plugin/pelloran.map"
    "LINKER:--no-undefined")
endif()

install(TARGETS pelloran LIBRARY DESTINATION plugins/pelloran RUNTIME DESTINATION plugins/pelloran)
install(FILES ${PROJECT_SOURCE_DIR}/res/mainicon.tif DESTINATION plugins/pelloran/res)
