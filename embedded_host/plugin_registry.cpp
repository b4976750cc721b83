#include "plugin_registry.h"

#include <set>

namespace tvr::plr::embedded {

bool PluginRegistry::isRegistered(LONG id) const {
  for (const auto& p : commands)
    if (p.id == id) return true;
  for (const auto& p : messages)
    if (p.id == id) return true;
  for (const auto& p : tags)
    if (p.id == id) return true;
  for (const auto& p : sceneHooks)
    if (p.id == id) return true;
  return false;
}

const CommandPlugin* PluginRegistry::command(LONG id) const {
  for (const auto& p : commands)
    if (p.id == id) return &p;
  return nullptr;
}

const TagPlugin* PluginRegistry::tag(LONG id) const {
  for (const auto& p : tags)
    if (p.id == id) return &p;
  return nullptr;
}

void PluginRegistry::freeData() {
  std::set<BaseData*> done;
  auto release = [&done](BaseData* d) {
    if (d && done.insert(d).second) delete d;
  };
  for (auto& p : commands) {
    release(p.data);
    p.data = nullptr;
  }
  for (auto& p : messages) {
    release(p.data);
    p.data = nullptr;
  }
  for (BaseData* d : orphans) release(d);
  orphans.clear();
}

void PluginRegistry::clear() {
  freeData();
  commands.clear();
  messages.clear();
  tags.clear();
  sceneHooks.clear();
}

}  // namespace tvr::plr::embedded
