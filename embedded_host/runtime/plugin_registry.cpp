#include "embedded_host/runtime/plugin_registry.h"

#include <set>

namespace tvr::plr::embedded {

namespace {

template <class Plugin>
const Plugin* findId(const std::vector<Plugin>& plugins, LONG id) {
  for (const auto& p : plugins)
    if (p.id == id) return &p;
  return nullptr;
}

}  // namespace

bool PluginRegistry::isRegistered(LONG id) const {
  return findId(commands, id) || findId(messages, id) || findId(tags, id) || findId(sceneHooks, id);
}

const CommandPlugin* PluginRegistry::command(LONG id) const { return findId(commands, id); }
const TagPlugin* PluginRegistry::tag(LONG id) const { return findId(tags, id); }

void PluginRegistry::freeData() {
  std::set<BaseData*> done;
  auto release = [&done](BaseData* d) {
    if (d && done.insert(d).second) delete d;
  };
  auto releaseAll = [&release](auto& plugins) {
    for (auto& p : plugins) {
      release(p.data);
      p.data = nullptr;
    }
  };
  releaseAll(commands);
  releaseAll(messages);
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
