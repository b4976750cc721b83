#pragma once
// Registered plug-ins. The host owns the data objects handed to it and frees
// them after the modules have ended (their destructors live in the modules).
#include <string>
#include <vector>

#include "host_api/c4d.h"

namespace tvr::plr::embedded {

struct CommandPlugin {
  LONG id = 0;
  std::string name, icon, help;
  LONG info = 0;
  CommandData* data = nullptr;
};

struct MessagePlugin {
  LONG id = 0;
  std::string name;
  LONG info = 0;
  MessageData* data = nullptr;
};

struct TagPlugin {
  LONG id = 0;
  std::string name, description, icon;
  LONG info = 0;
  LONG diskLevel = 0;
  DataAllocator* allocator = nullptr;
};

struct SceneHookPlugin {
  LONG id = 0;
  std::string name;
  LONG info = 0;
  LONG priority = 0;
  LONG diskLevel = 0;
  DataAllocator* allocator = nullptr;
};

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

}  // namespace tvr::plr::embedded
