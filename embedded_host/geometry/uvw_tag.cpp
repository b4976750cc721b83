#include "embedded_host/geometry/uvw_tag.h"

#include "embedded_host/scene/scene_dump.h"

namespace tvr::plr::embedded {

void UVWTagNode::copyOwnFrom(const HostNode& src) {
  TagNode::copyOwnFrom(src);
  if (auto* t = dynamic_cast<const UVWTagNode*>(&src)) entries = t->entries;
}

void UVWTagNode::swapOwnWith(HostNode& other) {
  TagNode::swapOwnWith(other);
  if (auto* t = dynamic_cast<UVWTagNode*>(&other)) entries.swap(t->entries);
}

void UVWTagNode::dumpOwn(DumpOut& out) const {
  TagNode::dumpOwn(out);
  out.key("uvw") << '[';
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const UVWStruct& e = entries[i];
    (i ? out << ' ' : out).vec(e.a).vec(e.b).vec(e.c).vec(e.d);
  }
  out << ']';
}

bool UVWTagNode::resize(LONG count) {
  if (count < 0 || count > (1 << 26)) return false;
  entries.resize(std::size_t(count));
  return true;
}

UVWStruct UVWTagImpl::GetSlow(LONG i) const {
  return i >= 0 && std::size_t(i) < entries.size() ? entries[std::size_t(i)] : UVWStruct();
}

void UVWTagImpl::SetSlow(LONG i, const UVWStruct& s) {
  if (i >= 0 && std::size_t(i) < entries.size()) entries[std::size_t(i)] = s;
}

}  // namespace tvr::plr::embedded
