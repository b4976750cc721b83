#pragma once
// Registered plug-ins. The host owns the data objects handed to it and frees
// them after the modules have ended (their destructors live in the modules).
#include <string>
#include <vector>

#include "host_api/c4d.h"

namespace tvr::plr::embedded {

// What every registration carries.
struct PluginEntry {
  LONG id = 0;
  std::string name;
  LONG info = 0;
};

struct CommandPlugin : PluginEntry {
  std::string icon, help;
  CommandData* data = nullptr;
};

struct MessagePlugin : PluginEntry {
  MessageData* data = nullptr;
};

// Tags and scene hooks: the allocator makes one data object per node.
struct NodePlugin : PluginEntry {
  std::string description, icon;
  LONG priority = 0;
  LONG diskLevel = 0;
  DataAllocator* allocator = nullptr;
};
using TagPlugin = NodePlugin;
using SceneHookPlugin = NodePlugin;

class PluginRegistry {
 public:
  ~PluginRegistry() { freeData(); }

  bool isRegistered(LONG id) const;
  const CommandPlugin* command(LONG id) const;
  const TagPlugin* tag(LONG id) const;

  std::vector<CommandPlugin> commands;
  std::vector<MessagePlugin> messages;
  std::vector<TagPlugin> tags;
  std::vector<SceneHookPlugin> sceneHooks;
  // Data objects handed over with refused registrations; freed with the rest.
  std::vector<BaseData*> orphans;

  // Deletes every data object the host owns (once each) and forgets them.
  void freeData();
  // Forgets every plug-in (after freeData, before the modules are unloaded).
  void clear();
};

// The running host's plug-ins (null when no host runs).
PluginRegistry* hostPlugins();

}  // namespace tvr::plr::embedded
