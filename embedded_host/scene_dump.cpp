#include "scene_dump.h"

#include <sstream>

namespace tvr::plr::embedded {

static void dumpNode(std::ostream& out, const HostNode* n, int depth, char role) {
  out << std::string(size_t(depth) * 2, ' ') << role << " " << n->type << " #" << n->marker
      << (n->selected ? " *" : "") << " ";
  n->dumpOwn(out);
  out << "\n";
  for (const HostNode* t = n->tags.first; t; t = t->next) dumpNode(out, t, depth + 1, 'T');
  for (const HostNode* t = n->tracks.first; t; t = t->next) dumpNode(out, t, depth + 1, 'K');
  for (const HostNode* c = n->children.first; c; c = c->next) dumpNode(out, c, depth + 1, 'O');
}

std::string dumpTree(const HostNode* root) {
  if (!root) return std::string();
  std::ostringstream out;
  out.precision(9);
  dumpNode(out, root, 0, root->kind == NodeKind::Document ? 'D' : 'O');
  return out.str();
}

}  // namespace tvr::plr::embedded
