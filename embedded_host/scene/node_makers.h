#pragma once
// Which kinds of object and tag the host can make, by type. The scene wing
// (blank copies, MakeTag), geometry (its kinds), scene files and the host
// table all make nodes here; tags of registered tag plug-ins are made through
// the plug-in's allocator.
#include <functional>
#include <map>

#include "host_api/c4d.h"

namespace tvr::plr::embedded {

class HostNode;
class PluginRegistry;

// Makes the host node for a type; count is the element count some tag types take.
using NodeMaker = std::function<HostNode*(LONG type, LONG count)>;

class NodeMakers {
 public:
  explicit NodeMakers(const PluginRegistry& plugins) : plugins_(plugins) {}

  void addObject(LONG type, NodeMaker maker) { objects_[type] = std::move(maker); }
  void addTag(LONG type, NodeMaker maker) { tags_[type] = std::move(maker); }
  // Null for a type nobody registered.
  HostNode* makeObject(LONG type) const;
  HostNode* makeTag(LONG type, LONG count) const;
  // A tag type this host or a registered plug-in can make.
  bool knowsTag(LONG type) const;

 private:
  const PluginRegistry& plugins_;
  std::map<LONG, NodeMaker> objects_;
  std::map<LONG, NodeMaker> tags_;
};

// The running host's makers (null when no host runs).
NodeMakers* nodeMakers();

}  // namespace tvr::plr::embedded
