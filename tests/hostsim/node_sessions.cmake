# hostsim sessions of scene nodes; included by CMakeLists.txt after plr_hostsim_test is defined.
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
