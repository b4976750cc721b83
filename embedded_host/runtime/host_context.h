#pragma once
// The state of the running host, reachable from the table's plain function
// pointers and from the scene model. One host runs at a time.
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host_api/c4d.h"
#include "embedded_host/scene/host_node.h"
#include "embedded_host/runtime/journal.h"
#include "embedded_host/scene/node_registry.h"
#include "embedded_host/runtime/plugin_registry.h"

namespace tvr::plr::embedded {

// Makes the host node for a type; count is the element count some tag types take.
using NodeMaker = std::function<HostNode*(LONG type, LONG count)>;

struct SpecialEvent {
  LONG id;
  VULONG p1, p2;
};

class EmbeddedHost;

class HostContext {
 public:
  HostContext();
  ~HostContext();
  HostContext(const HostContext&) = delete;
  HostContext& operator=(const HostContext&) = delete;

  // Object and tag kinds by type; geometry and other kinds register here.
  std::map<LONG, NodeMaker> objectMakers;
  std::map<LONG, NodeMaker> tagMakers;
  HostNode* makeObject(LONG type);
  HostNode* makeTag(LONG type, LONG count);

  // Console and dialogs (also journaled).
  void print(const std::string& line);
  void dialog(const std::string& text);

  NodeRegistry registry;
  Journal journal;
  PluginRegistry plugins;
  std::vector<std::string> console;
  std::vector<std::string> dialogs;
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
  bool echoConsole = false;  // also print console lines and dialogs to stdout
};

// The running host's context (null when none).
HostContext* context();
void setContext(HostContext* c);

}  // namespace tvr::plr::embedded
