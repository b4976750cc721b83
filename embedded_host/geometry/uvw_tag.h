#pragma once
// The texture-coordinate tag: four vectors (UVWStruct) per polygon.
#include <vector>

#include "embedded_host/scene/tag_node.h"

namespace tvr::plr::embedded {

class UVWTagNode : public TagNode {
 public:
  explicit UVWTagNode(LONG type) : TagNode(type) {}

  void copyOwnFrom(const HostNode& src) override;
  void swapOwnWith(HostNode& other) override;
  void dumpOwn(DumpOut& out) const override;
  bool resize(LONG count);

  std::vector<UVWStruct> entries;
};

class UVWTagImpl : public TagImplT<UVWTag, UVWTagNode> {
 public:
  using TagImplT<UVWTag, UVWTagNode>::TagImplT;

  LONG GetDataCount() const override { return LONG(entries.size()); }
  const void* GetDataAddressR() const override { return entries.empty() ? nullptr : entries.data(); }
  void* GetDataAddressW() override { return entries.empty() ? nullptr : entries.data(); }
  // Outside the entries: zero vectors, and writes are ignored.
  UVWStruct GetSlow(LONG i) const override;
  void SetSlow(LONG i, const UVWStruct& s) override;
  Bool Resize(LONG count) override { return resize(count); }
};

}  // namespace tvr::plr::embedded
