#include "embedded_host/scene/scene_dump.h"

#include <cmath>
#include <cstdio>
#include <sstream>

namespace tvr::plr::embedded {

DumpOut& DumpOut::key(const char* name) {
  out_ << ' ' << name << '=';
  return *this;
}

DumpOut& DumpOut::real(double v, bool single) {
  if (std::isnan(v)) {
    out_ << "nan";
    return *this;
  }
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, single ? "%.9g" : "%.17g", v);
  out_ << buffer;
  return *this;
}

DumpOut& DumpOut::vec(const Vector& v) {
  out_ << '(';
  real(v.x) << ',';
  real(v.y) << ',';
  real(v.z) << ')';
  return *this;
}

DumpOut& DumpOut::time(const BaseTime& t) {
  real(t.GetNumerator(), false) << '/';
  return real(t.GetDenominator(), false);
}

DumpOut& DumpOut::text(const std::string& bytes) {
  static const char hex[] = "0123456789abcdef";
  out_ << '"';
  for (const char c : bytes) {
    const auto b = static_cast<unsigned char>(c);
    if (b == '"' || b == '\\')
      out_ << '\\' << c;
    else if (b >= 0x20 && b < 0x7f)
      out_ << c;
    else
      out_ << "\\x" << hex[b >> 4] << hex[b & 15];
  }
  out_ << '"';
  return *this;
}

DumpOut& DumpOut::value(const GeData& d) {
  switch (d.GetType()) {
    case DA_NIL: out_ << "nil"; break;
    case DA_LONG: out_ << 'L' << d.GetLong(); break;
    case DA_REAL: out_ << 'R'; real(d.GetReal()); break;
    case DA_LREAL: out_ << 'D'; real(d.GetLReal(), false); break;
    case DA_VECTOR: out_ << 'V'; vec(d.GetVector()); break;
    case DA_MATRIX: {
      const Matrix m = d.GetMatrix();
      out_ << "M[";
      vec(m.off) << ' ';
      vec(m.v1) << ' ';
      vec(m.v2) << ' ';
      vec(m.v3) << ']';
      break;
    }
    case DA_STRING: out_ << 'S'; text(d.GetString().ToStd()); break;
    case DA_TIME: out_ << 'T'; time(d.GetTime()); break;
    case DA_VOID: out_ << (d.GetVoid() ? "Pset" : "Pnull"); break;
    case DA_ALIASLINK: {
      BaseLink* l = d.GetBaseLink();
      out_ << "link";
      node(l ? nodeOf(l->ForceGetLink()) : nullptr);
      break;
    }
    default: out_ << "?" << d.GetType(); break;
  }
  return *this;
}

DumpOut& DumpOut::container(const BaseContainer& bc) {
  out_ << "{id " << bc.GetId();
  for (LONG i = 0; i < bc.GetCount(); ++i) {
    out_ << ", " << bc.GetIndexId(i) << ':';
    value(*bc.GetIndexData(i));
  }
  out_ << '}';
  return *this;
}

DumpOut& DumpOut::node(const HostNode* n) {
  if (!n) {
    out_ << "none";
  } else if (!labels_) {
    out_ << '#' << n->marker;
  } else {
    const auto it = labels_->find(n->marker);
    if (it == labels_->end())
      out_ << "#outside";
    else
      out_ << '#' << it->second;
  }
  return *this;
}

namespace {

// Tags, tracks and children of a node, in the order their lines appear.
template <class F>
void eachBelow(const HostNode* n, F&& f) {
  for (const HostNode* t = n->tags.first; t; t = t->next) f(t, 'T');
  for (const HostNode* t = n->tracks.first; t; t = t->next) f(t, 'K');
  for (const HostNode* c = n->children.first; c; c = c->next) f(c, 'O');
}

void label(const HostNode* n, DumpOut::Labels& labels) {
  labels.emplace(n->marker, labels.size());
  eachBelow(n, [&](const HostNode* below, char) { label(below, labels); });
}

void dumpNode(std::ostream& os, DumpOut& out, const HostNode* n, int depth, char role) {
  os << std::string(std::size_t(depth) * 2, ' ') << role << ' ' << n->type << ' ';
  out.node(n) << (n->selected ? " *" : "");
  n->dumpOwn(out);
  os << '\n';
  eachBelow(n, [&](const HostNode* below, char r) { dumpNode(os, out, below, depth + 1, r); });
}

std::string dump(const HostNode* root, const DumpOut::Labels* labels) {
  if (!root) return std::string();
  std::ostringstream os;
  DumpOut out(os, labels);
  dumpNode(os, out, root, 0, root->kind == NodeKind::Document ? 'D' : 'O');
  return os.str();
}

}  // namespace

std::string dumpTree(const HostNode* root) { return dump(root, nullptr); }

std::string dumpTreeByPlace(const HostNode* root) {
  DumpOut::Labels labels;
  if (root) label(root, labels);
  return dump(root, &labels);
}

}  // namespace tvr::plr::embedded
