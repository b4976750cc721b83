#pragma once
// Canonical text of a scene: one line per node with its identity and every
// field of its own state, tags, tracks and children indented below. Numbers
// print exactly (9 significant digits for single precision, 17 for double;
// -0 and infinities kept, every NaN as "nan" since files keep no payload),
// texts as escaped bytes, times as numerator/denominator and links as their
// target's marker. Equal text means equal scenes.
#include <cstdint>
#include <ostream>
#include <string>
#include <unordered_map>

#include "embedded_host/scene/host_node.h"

namespace tvr::plr::embedded {

// What each node's dumpOwn writes through, so that every field prints one way.
class DumpOut {
 public:
  // labels renumbers markers (marker -> label); null prints markers as they are.
  using Labels = std::unordered_map<std::uint64_t, std::size_t>;
  DumpOut(std::ostream& out, const Labels* labels) : out_(out), labels_(labels) {}

  DumpOut& key(const char* name);  // " name="
  template <class T>
  DumpOut& operator<<(const T& plain) {
    out_ << plain;
    return *this;
  }
  DumpOut& real(double v, bool single = true);
  DumpOut& vec(const Vector& v);
  DumpOut& time(const BaseTime& t);
  DumpOut& text(const std::string& bytes);
  DumpOut& value(const GeData& d);
  DumpOut& container(const BaseContainer& bc);
  DumpOut& node(const HostNode* n);  // "#label", "#outside" (not in the dumped tree) or "none"

 private:
  std::ostream& out_;
  const Labels* labels_;
};

std::string dumpTree(const HostNode* root);
// The same text with markers (the nodes' own and links') numbered by line, so
// that two loads of one file, or a scene and its saved copy, dump equal.
std::string dumpTreeByPlace(const HostNode* root);

}  // namespace tvr::plr::embedded
