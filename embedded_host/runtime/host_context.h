#pragma once
// The state of the running host, reachable from the table's plain function
// pointers. One host runs at a time. The context owns the pieces; code that
// needs one piece includes that piece's header and reaches it through its own
// accessor (nodeRegistry(), nodeMakers(), hostJournal(), hostPlugins(),
// consolePrint(), documentList(), postEvent()), so only the runtime's top
// (the host table, EmbeddedHost, documents' life) includes this file.
#include <deque>

#include "host_api/c4d.h"
#include "embedded_host/runtime/console.h"
#include "embedded_host/runtime/host_events.h"
#include "embedded_host/runtime/journal.h"
#include "embedded_host/runtime/plugin_registry.h"
#include "embedded_host/scene/host_node.h"
#include "embedded_host/scene/node_makers.h"
#include "embedded_host/scene/node_registry.h"

namespace tvr::plr::embedded {

class EmbeddedHost;

class HostContext {
 public:
  HostContext();
  ~HostContext();
  HostContext(const HostContext&) = delete;
  HostContext& operator=(const HostContext&) = delete;

  NodeRegistry registry;
  Journal journal;
  PluginRegistry plugins;
  NodeMakers makers{plugins};  // object and tag kinds; geometry and others add theirs
  Console console{journal};
  BaseContainer world;

  // Documents: the host's list and the active one.
  NodeList documents;
  DocumentNode* active = nullptr;

  // Events.
  bool eventPending = false;
  std::deque<SpecialEvent> specialEvents;

  // Registration is open only while modules are being started.
  bool starting = false;
  LONG c4dVersion = 11008;
  EmbeddedHost* host = nullptr;
};

// The running host's context (null when none).
HostContext* context();
void setContext(HostContext* c);

}  // namespace tvr::plr::embedded
