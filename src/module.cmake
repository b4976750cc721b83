# The module: its code as an object library (tests link it directly), and the
# loadable module built from it with the allocation operators routed to the host.
add_library(plr_module OBJECT
  adaptor/adaptor_hook.cpp
  adaptor/c4d_adaptor_interface.cpp
  adaptor/multi_document_check.cpp
  adaptor/node_operations.cpp
  adaptor/state_links.cpp
  adaptor/state_loading.cpp
  adaptor/time_and_recording.cpp
  adaptor/undo_bracket.cpp
  nodes/c4d_node.cpp
  nodes/core_axes.cpp
  nodes/helper_snapshot.cpp
  nodes/lens_snapshot.cpp
  nodes/mesh_snapshot.cpp
  nodes/node_edit.cpp
  nodes/node_extensions.cpp
  nodes/node_tracks.cpp
  nodes/node_undo_hooks.cpp
  nodes/shape_snapshot.cpp
  nodes/transform_snapshot.cpp
  plugin/c4d_adaptor_command.cpp
  plugin/c4d_main.cpp
  plugin/core_loader.cpp
  plugin/plugin_main.cpp
  undo/c4d_undo_manager.cpp
  undo/c4d_undo_tag.cpp
  undo/node_restore_objects.cpp
  undo/set_time_restore_obj.cpp
  undo/undo_guard.cpp
  undo/undo_messages.cpp
)
target_include_directories(plr_module PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(plr_module PUBLIC plr_state plr_util plr_xml plr_core_api plr_host_api plr_platform)

if(PLR_FUZZ_ONLY)
  return()
endif()

add_library(pelloran MODULE plugin/host_memory.cpp)
target_link_libraries(pelloran PRIVATE plr_module)
# In the build tree as in the install tree: <tree>/plugins/pelloran, found by hostsim.
set_target_properties(pelloran PROPERTIES PREFIX "" OUTPUT_NAME pelloran
  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/plugins/pelloran)
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

# A registry file that names the installation root (<prefix>/root, where the
# sample core is installed), for hostsim --registry; in an archive made by
# cpack, "root" relative to the folder hostsim runs in. Written at install time,
# when the prefix is known. A Windows tree installed from Linux is run by wine,
# which sees the Linux file system as drive Z:.
if(WIN32 AND CMAKE_HOST_UNIX)
  set(PLR_REGISTRY_DRIVE "Z:")
else()
  set(PLR_REGISTRY_DRIVE "")
endif()
install(CODE "
  file(TO_CMAKE_PATH \"\${CMAKE_INSTALL_PREFIX}\" plr_prefix)
  get_filename_component(plr_prefix \"\${plr_prefix}\" ABSOLUTE)
  set(plr_root \"${PLR_REGISTRY_DRIVE}\${plr_prefix}/root\")
  # cpack installs into a staging folder that will not exist where the archive
  # is unpacked: the packed file names the root relative to the unpacked folder.
  if(plr_prefix MATCHES \"/_CPack_Packages/\")
    set(plr_root \"root\")
  endif()
  string(REPLACE \"\\\\\" \"\\\\\\\\\" plr_root \"\${plr_root}\")
  string(REPLACE \"\\\"\" \"\\\\\\\"\" plr_root \"\${plr_root}\")
  message(STATUS \"Writing \${plr_prefix}/pelloran.reg (root \${plr_root})\")
  file(WRITE \"\$ENV{DESTDIR}\${plr_prefix}/pelloran.reg\"
    \"REGEDIT4\\n\\n[HKEY_LOCAL_MACHINE\\\\SOFTWARE\\\\Wow6432Node\\\\Tavrelo]\\n\\\"path\\\"=\\\"\${plr_root}\\\"\\n\")
")
