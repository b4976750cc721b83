#pragma once
// A tag read from a scene file whose plug-in is not registered in this host.
// It keeps the tag's file record as it was and is written back unchanged, so
// a scene passes through a host without that plug-in without losing it.
#include <nlohmann/json.hpp>

#include "embedded_host/scene/tag_node.h"

namespace tvr::plr::embedded {

class OpaqueTagNode : public TagNode {
 public:
  explicit OpaqueTagNode(LONG type) : TagNode(type) {}

  HostNode* makeBlank() const override;
  void copyOwnFrom(const HostNode& src) override;
  void swapOwnWith(HostNode& other) override;
  void dumpOwn(DumpOut& out) const override;

  nlohmann::json record;  // the tag as the file held it
};

using OpaqueTagImpl = TagImplT<BaseTag, OpaqueTagNode>;

OpaqueTagImpl* makeOpaqueTag(LONG type, nlohmann::json record);

}  // namespace tvr::plr::embedded
