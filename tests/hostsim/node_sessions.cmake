# hostsim sessions of scene nodes, the rest of the interface and the tour; included by
# CMakeLists.txt after plr_hostsim_test is defined.
# The scene-node story: the core builds, moves, parents, clones and deletes
# through the adaptor; the host's tree and inspect show the result.
plr_hostsim_test(hostsim_nodes_session RC 0
  ARGS --registry ${CMAKE_CURRENT_BINARY_DIR}/installed.reg ${PROJECT_SOURCE_DIR}/examples/nodes.session
  OUT "camera cam: object \"Sample_cam\"\nmesh box: object \"Sample_box\", 8 points, 12 triangles\n"
      "\"Sample_cam\" master Sample deleted no\n\"Sample_box\" master Sample deleted no\n"
      "cam field of view 60 degrees, lens value 36\n"
      "global\n  0.01 0 0 0\n  0 0.00939693 0.0034202 1\n  0 -0.0034202 0.00939693 2\n  0 0 0 1\nbox moved"
      "cam at 0 s\nlocal\n  1 0 0 -100\n"
      "box has 2 children: \"Sample_spare\", \"Sample_cam\"\ndeleted cam_clone\nbox has 1 child: \"Sample_cam\"\n"
      "box has 1 child: \"Sample_cam\"\nbox has 2 children: \"Sample_spare\", \"Sample_cam\"\nbox has 1 child: \"Sample_cam\"\nselected"
      "hit at distance 5, point \\(1.5, 0, -1.5\\)"
      "== tree\nDocument Untitled \\(active\\)\n  Sample_floor \\[5100\\]\n  Sample_box \\[5100\\]\n    Sample_cam \\[5103\\]\n"
      "== inspect Sample_cam\ntype 5103 \\(camera\\)\nname \"Sample_cam\"\nparent \"Sample_box\"\nglobal matrix off \\(0, 100, -200\\)"
      "editor default, render default, selected\nfield of view 1.0472 rad \\(60 degrees\\), lens value 36\n"
      "editor off, render off, not selected\n25 points, 32 polygons\ntags: none\ntracks: none\n"
  NOT_OUT "not implemented")
# Bad node verbs name the problem and change nothing.
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/bad_nodes.session
  "command 1023575\ncore camera cam\ncore camera cam\ncore move cam 1 x 2\ncore reparent cam ghost\n"
  "core fov\ncore mesh m grid 0\ncore delete ghost\ninspect nothing\ncore nodes\ninspect Sample_cam\nquit\n")
plr_hostsim_test(hostsim_bad_node_verbs RC 1
  ARGS --registry ${CMAKE_CURRENT_BINARY_DIR}/installed.reg ${CMAKE_CURRENT_BINARY_DIR}/bad_nodes.session
  OUT "^1000\n[^\n]*\ncamera cam: object \"Sample_cam\"\n\"Sample_cam\" master Sample deleted no\n== inspect Sample_cam\n"
      "position \\(0, 0, 0\\)"
  ERR "line 3: core: a node named \"cam\" exists already"
      "line 4: core: usage: move NAME X Y Z"
      "line 5: core: no node named \"ghost\""
      "core: usage: fov NAME \\[DEGREES\\]"
      "core: usage: mesh NAME \\[PARENT\\] \\[cube.grid N\\]"
      "line 9: inspect: no object named \"nothing\"")
# Nodes in a second document: the warning once, in full; a third says nothing more.
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/documents.session
  "command 1023575\ncore camera a\nnew\ncore camera b\nnew\ncore camera c\ncore nodes\nquit\n")
plr_hostsim_test(hostsim_nodes_in_two_documents RC 0
  ARGS --registry ${CMAKE_CURRENT_BINARY_DIR}/installed.reg ${CMAKE_CURRENT_BINARY_DIR}/documents.session
  OUT "camera b: object \"Sample_b\"\n"
      "\\[dialog\\] Pelloran has been detected running on multiple documents. This is currently not supported, but may work as long as the following restrictions are applied:\n\n  \\* Do not perform ANY operations on a tool which is not part of the current document.\n  \\* Do not group tools which are part of different documents - keep them separated!\n\n Should you perform a cross-document operation, please be careful using undo as it might cause undesired behaviour.\n"
      "\"Sample_a\" master Sample deleted no\n\"Sample_b\" master Sample deleted no\n\"Sample_c\" master Sample deleted no\n"
  NOT_OUT "multiple documents[^$]*multiple documents")
# The rest of the interface, one verb or two each; the table at the end.
plr_hostsim_test(hostsim_interface_session RC 0
  ARGS --registry ${CMAKE_CURRENT_BINARY_DIR}/installed.reg ${PROJECT_SOURCE_DIR}/examples/interface.session
  OUT "Cinema 4D R10 Adaptor \\(adaptor_c4dr11\\), interface 9201, host CINEMA4D R 11008\nhost identifiers: \"CINEMA4D_R 11008\" \"CINEMA4D\" \"\"\nadaptor data: 0, empty\nreserved queries answered 0 and 0"
      "\"Sample_cam\" is the core's cam\nno node labelled \"nobody\"\n"
      "cam extensions: 10 11 37 18 17 31 32; renaming \\(32\\) supported; 0 stored, \"sample\" absent\n  transform snapshot: 0 extensions"
      "cam at 0 s: lens value 50, field of view type 0\n"
      "box now has 9 points, 8 triangles\nbox: 9 points, 8 triangles"
      "forgot box \\(the object stays\\)\n== tree\nDocument Untitled \\(active\\)\n  Crate \\[5100\\]\n  Sample_cam \\[5103\\]\n"
      "cam's keys after 0.5 s removed\n== inspect shot_cam\n[^=]*tracks: position.x 16 keys"
      "begin Try: 0\ncancel: 0\ncount \\+2\nundo: true\ncore: undo count \\+2\ncounter 0\n"
      "the adaptor made no free mesh\nasked the adaptor to merge other.scene\nadaptor.getInterfaceVersion 2\nadaptor.getDisplayName 2\n"
      "node.~CoreNode 1\n" "[0-9]+ of 116 operations called\n$"
  NOT_OUT "CrashInfo")
# The tour: a rig built, recorded along the user's path, undone and redone,
# saved and opened again with its tools bound to the same objects.
plr_hostsim_test(hostsim_tour_session RC 0
  ARGS --registry ${CMAKE_CURRENT_BINARY_DIR}/installed.reg ${PROJECT_SOURCE_DIR}/examples/tour.session
  OUT "drew spline path through 4 points\ntook \"path\" as path\npath length 685.229, kind 1, index 0\n"
      "bound path to track: object \"track_path\"\n== tree\nDocument Untitled \\(active\\)\n  dolly_cam \\[5103\\]\n  dolly_box \\[5100\\]\n  track_ground \\[5100\\]\n    track_path \\[5101\\]\n"
      "recorded dolly: 0-2 s, 61 frames\ntime 2 s \\(frame 60\\)\ntime 0 s \\(frame 0\\)\n== inspect dolly_box\n[^=]*tracks: none\n"
      "  5 undone: [^\n]*\nmodule undo steps:\n  position 3 of 4\n[^=]*  4 undone  \"Record dolly\"\n== inspect dolly_box\n[^=]*position \\(200, 25, 200\\)[^=]*tracks: position.x 61 keys"
      "core: tool dolly rebuilt, 2 of 2 nodes bound\ncore: tool track rebuilt, 2 of 2 nodes bound\n"
      "tool dolly nodes: dolly_box dolly_cam takes: 1 \\[0-2 s, 61 frames\\]\n  tool track nodes: track_ground track_path takes: 0\n\"dolly_box\" master dolly deleted no\n\"dolly_cam\" master dolly deleted no\n"
      "played frames 0 to 60\nbox at 2 s\nlocal\n  0.01 0 0 2\n  0 0.01 0 0.25\n  0 0 0.01 -2\n"
      "wrote tour.svg\nwrote tour_curves.svg\n$"
  NOT_OUT "rror" "usage" "CrashInfo" "MessageBox")
