#pragma once
// BaseLink by identity: resolves through the registry of live nodes.
#include <cstdint>

#include "host_api/c4d.h"

namespace tvr::plr::embedded {

class LinkImpl : public BaseLink {
 public:
  LinkImpl() = default;
  ~LinkImpl() override = default;

  void SetLink(BaseList2D* node) override;
  BaseList2D* GetLink(const BaseDocument* doc, LONG instanceOf) const override;
  BaseList2D* ForceGetLink() const override;
  BaseLink* GetClone(LONG flags, AliasTrans* trn) const override;
  Bool CopyTo(BaseLink* dest, LONG flags, AliasTrans* trn) const override;

  std::uint64_t marker = 0;  // 0: empty
};

// Links made by this host (so a foreign pointer is never used as one).
LinkImpl* allocLink();
void freeLink(BaseLink* link);
LinkImpl* linkOf(BaseLink* link);

}  // namespace tvr::plr::embedded
