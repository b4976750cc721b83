#include "embedded_host/scene/opaque_tag.h"

#include "embedded_host/scene/scene_dump.h"

namespace tvr::plr::embedded {

HostNode* OpaqueTagNode::makeBlank() const { return createNode<OpaqueTagImpl>(type); }

void OpaqueTagNode::copyOwnFrom(const HostNode& src) {
  TagNode::copyOwnFrom(src);
  if (auto* t = dynamic_cast<const OpaqueTagNode*>(&src)) record = t->record;
}

void OpaqueTagNode::swapOwnWith(HostNode& other) {
  TagNode::swapOwnWith(other);
  if (auto* t = dynamic_cast<OpaqueTagNode*>(&other)) record.swap(t->record);
}

void OpaqueTagNode::dumpOwn(DumpOut& out) const {
  TagNode::dumpOwn(out);
  // ASCII with escapes, like every other text of the dump.
  out.key("opaque") << record.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

OpaqueTagImpl* makeOpaqueTag(LONG type, nlohmann::json record) {
  OpaqueTagImpl* tag = createNode<OpaqueTagImpl>(type);
  tag->record = std::move(record);
  return tag;
}

}  // namespace tvr::plr::embedded
