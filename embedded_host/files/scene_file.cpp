#include "embedded_host/files/scene_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unordered_map>
#include <vector>

#include "embedded_host/scene/link_impl.h"
#include "embedded_host/scene/node_makers.h"
#include "embedded_host/scene/opaque_tag.h"
#include "embedded_host/geometry/polygon_object.h"
#include "embedded_host/files/scene_file_json.h"
#include "embedded_host/geometry/spline_object.h"
#include "embedded_host/scene/track_node.h"
#include "embedded_host/geometry/uvw_tag.h"

namespace tvr::plr::embedded::scenefile {

const char* const kFormatName = "embedded-host-scene";
const char* const kPreferencesName = "embedded-host-preferences";

namespace {

// ---------------------------------------------------------------- writing

Json vec(const Vector& v) { return Json::array({encodeNumber(v.x), encodeNumber(v.y), encodeNumber(v.z)}); }
Json time(const BaseTime& t) {
  return Json::array({encodeNumber(t.GetNumerator()), encodeNumber(t.GetDenominator())});
}
void appendVec(Json& flat, const Vector& v) {
  flat.push_back(encodeNumber(v.x));
  flat.push_back(encodeNumber(v.y));
  flat.push_back(encodeNumber(v.z));
}

class Writer {
 public:
  Json document(const DocumentNode& doc) {
    for (const HostNode* n = doc.children.first; n; n = n->next) number(n);
    Json out = Json::object();
    out["format"] = kFormatName;
    out["version"] = kFormatVersion;
    Json settings = Json::object();
    settings["fps"] = doc.settings.fps;
    settings["time"] = time(doc.settings.time);
    settings["minTime"] = time(doc.settings.minTime);
    settings["maxTime"] = time(doc.settings.maxTime);
    settings["loopMinTime"] = time(doc.settings.loopMinTime);
    settings["loopMaxTime"] = time(doc.settings.loopMaxTime);
    putData(settings, doc.data);
    out["document"] = std::move(settings);
    Json objects = Json::array();
    for (const HostNode* n = doc.children.first; n; n = n->next) objects.push_back(object(*n));
    out["objects"] = std::move(objects);
    return out;
  }

 private:
  // Link targets by their place in the file, in the order the reader meets them.
  void number(const HostNode* n) {
    places_.emplace(n, places_.size());
    for (const HostNode* t = n->tags.first; t; t = t->next) places_.emplace(t, places_.size());
    for (const HostNode* t = n->tracks.first; t; t = t->next) places_.emplace(t, places_.size());
    for (const HostNode* c = n->children.first; c; c = c->next) number(c);
  }

  Json object(const HostNode& n) {
    Json o = Json::object();
    o["type"] = n.type;
    o["name"] = encodeBytes(n.name.ToStd());
    if (const auto* obj = dynamic_cast<const ObjectNode*>(&n)) {
      const ObjectState& s = obj->state;
      o["pos"] = vec(s.pos);
      o["rot"] = vec(s.rot);
      o["scale"] = vec(s.scale);
      o["editorMode"] = s.editorMode;
      o["renderMode"] = s.renderMode;
      o["color"] = {{"use", s.color.usecolor}, {"rgb", vec(s.color.color)}, {"xray", s.color.xray}};
    }
    if (n.selected) o["selected"] = true;
    putData(o, n.data, true);
    if (const auto* poly = dynamic_cast<const PolygonNode*>(&n)) {
      Json pts = Json::array();
      for (const Vector& p : poly->points) appendVec(pts, p);
      Json polys = Json::array();
      for (const CPolygon& p : poly->polygons)
        for (LONG i : {p.a, p.b, p.c, p.d}) polys.push_back(i);
      o["points"] = std::move(pts);
      o["polygons"] = std::move(polys);
    }
    if (const auto* spline = dynamic_cast<const SplineNode*>(&n)) {
      Json pts = Json::array();
      for (const Vector& p : spline->points) appendVec(pts, p);
      Json segs = Json::array();
      for (const Segment& s : spline->segments) segs.push_back(Json::array({s.cnt, s.closed}));
      o["points"] = std::move(pts);
      o["segments"] = std::move(segs);
      o["closed"] = spline->closed;
    }
    if (n.tags.first) {
      Json tags = Json::array();
      for (const HostNode* t = n.tags.first; t; t = t->next) tags.push_back(tag(*t));
      o["tags"] = std::move(tags);
    }
    if (n.tracks.first) {
      Json tracks = Json::array();
      for (const HostNode* t = n.tracks.first; t; t = t->next) tracks.push_back(track(*t));
      o["tracks"] = std::move(tracks);
    }
    if (n.children.first) {
      Json children = Json::array();
      for (const HostNode* c = n.children.first; c; c = c->next) children.push_back(object(*c));
      o["children"] = std::move(children);
    }
    return o;
  }

  Json tag(const HostNode& n) {
    if (const auto* opaque = dynamic_cast<const OpaqueTagNode*>(&n)) return opaque->record;
    Json t = Json::object();
    t["type"] = n.type;
    t["name"] = encodeBytes(n.name.ToStd());
    if (n.selected) t["selected"] = true;
    putData(t, n.data);
    if (const auto* uvw = dynamic_cast<const UVWTagNode*>(&n)) {
      Json flat = Json::array();
      for (const UVWStruct& e : uvw->entries)
        for (const Vector* v : {&e.a, &e.b, &e.c, &e.d}) appendVec(flat, *v);
      t["uvw"] = std::move(flat);
    }
    return t;
  }

  Json track(const HostNode& n) {
    const auto& tr = static_cast<const TrackNode&>(n);
    Json t = Json::object();
    Json id = Json::array();
    for (LONG i = 0; i < tr.descId.GetDepth(); ++i)
      id.push_back(Json::array({tr.descId[i].id, tr.descId[i].dtype, tr.descId[i].creator}));
    t["id"] = std::move(id);
    t["name"] = encodeBytes(n.name.ToStd());
    putData(t, n.data);
    Json keys = Json::array();
    for (const auto& k : tr.curve.keys)
      keys.push_back(Json::array({encodeNumber(k->time.GetNumerator()), encodeNumber(k->time.GetDenominator()),
                                  encodeNumber(k->value), k->interpolation}));
    t["keys"] = std::move(keys);
    return t;
  }

 public:
  // Objects always carry their container: an empty one differs from a new object's defaults.
  void putData(Json& owner, const BaseContainer& bc, bool always = false) {
    if (!always && bc.GetCount() == 0 && bc.GetId() == 0) return;
    Json entries = Json::array();
    for (LONG i = 0; i < bc.GetCount(); ++i) entries.push_back(entry(bc.GetIndexId(i), *bc.GetIndexData(i)));
    owner["data"] = {{"id", bc.GetId()}, {"entries", std::move(entries)}};
  }


 private:
  Json entry(LONG id, const GeData& d) {
    switch (d.GetType()) {
      case DA_LONG: return Json::array({id, "long", d.GetLong()});
      case DA_REAL: return Json::array({id, "real", encodeNumber(d.GetReal())});
      case DA_LREAL: return Json::array({id, "lreal", encodeNumber(d.GetLReal())});
      case DA_VECTOR: return Json::array({id, "vector", vec(d.GetVector())});
      case DA_MATRIX: {
        const Matrix m = d.GetMatrix();
        Json flat = Json::array();
        for (const Vector* v : {&m.off, &m.v1, &m.v2, &m.v3}) appendVec(flat, *v);
        return Json::array({id, "matrix", std::move(flat)});
      }
      case DA_STRING: return Json::array({id, "string", encodeBytes(d.GetString().ToStd())});
      case DA_TIME: return Json::array({id, "time", time(d.GetTime())});
      case DA_VOID: return Json::array({id, "void", nullptr});
      case DA_ALIASLINK: {
        BaseLink* l = d.GetBaseLink();
        const HostNode* target = l ? nodeOf(l->ForceGetLink()) : nullptr;
        const auto it = target ? places_.find(target) : places_.end();
        return Json::array({id, "link", it == places_.end() ? Json(nullptr) : Json(it->second)});
      }
      default: return Json::array({id, "nil", nullptr});
    }
  }

  std::unordered_map<const HostNode*, std::size_t> places_;
};

// ---------------------------------------------------------------- reading

// The deepest nesting of arrays and objects, found without recursion.
std::size_t depthOf(const Json& root) {
  std::size_t deepest = 0;
  std::vector<std::pair<const Json*, std::size_t>> stack{{&root, 1}};
  while (!stack.empty()) {
    auto [v, depth] = stack.back();
    stack.pop_back();
    if (!v->is_structured()) continue;
    deepest = std::max(deepest, depth);
    for (const Json& child : *v) stack.push_back({&child, depth + 1});
  }
  return deepest;
}

class Loader {
 public:
  explicit Loader(const NodeMakers& makers) : makers_(makers) {}

  ~Loader() { delete doc_; }

  void loadPreferences(const Json& root, BaseContainer* out) {
    checkHeader(root, kPreferencesName);
    readData(root, out);
    if (!pending_.empty()) r_.fail("preferences cannot hold links");
  }

  DocumentImpl* load(const Json& root) {
    checkHeader(root, kFormatName);
    doc_ = makeDocument();
    {
      const Json& settings = r_.member(root, "document");
      Reader::Scope s(r_, "document");
      readSettings(settings);
    }
    r_.each(root, "objects", [&](const Json& o) { readObject(o, doc_, 1); });
    resolveLinks();
    DocumentImpl* out = doc_;
    doc_ = nullptr;
    return out;
  }

 private:
  void checkHeader(const Json& root, const char* name) {
    r_.object(root);
    {
      const Json& format = r_.member(root, "format");
      Reader::Scope s(r_, "format");
      if (!format.is_string() || format.get_ref<const std::string&>() != name)
        r_.fail(std::string("not the expected kind of file (\"") + name + "\")");
    }
    const std::int32_t version = r_.int32(root, "version");
    if (version > kFormatVersion)
      r_.fail("file format version " + std::to_string(version) + " is newer than this host reads (" +
              std::to_string(kFormatVersion) + ")");
    if (version < 1) r_.fail("file format version " + std::to_string(version) + " does not exist");
  }

  struct PendingLink {
    BaseContainer* container;
    LONG id;
    std::size_t place;
    std::string where;
  };

  void readSettings(const Json& s) {
    DocumentSettings& out = doc_->settings;
    if (const Json* fps = r_.optional(s, "fps")) {
      Reader::Scope sc(r_, "fps");
      out.fps = r_.int32(*fps);
      if (out.fps <= 0) r_.fail("frame rate must be positive");
    }
    readTime(s, "time", &out.time);
    readTime(s, "minTime", &out.minTime);
    readTime(s, "maxTime", &out.maxTime);
    readTime(s, "loopMinTime", &out.loopMinTime);
    readTime(s, "loopMaxTime", &out.loopMaxTime);
    readData(s, &doc_->data);
  }

  void readTime(const Json& owner, const char* key, BaseTime* out) {
    const Json* v = r_.optional(owner, key);
    if (!v) return;
    Reader::Scope sc(r_, key);
    *out = time(*v);
  }

  BaseTime time(const Json& v) {
    r_.array(v, 2);
    BaseTime t;
    t.SetNumerator(r_.number(v[0]));
    const double den = r_.number(v[1]);
    if (den == 0.0) r_.fail("time with a zero denominator");
    t.SetDenominator(den);
    return t;
  }

  Vector vector(const Json& v) {
    r_.array(v, 3);
    return Vector(r_.real(v[0]), r_.real(v[1]), r_.real(v[2]));
  }

  Vector vectorMember(const Json& owner, const char* key, const Vector& fallback) {
    const Json* v = r_.optional(owner, key);
    if (!v) return fallback;
    Reader::Scope sc(r_, key);
    return vector(*v);
  }

  std::int32_t intMember(const Json& owner, const char* key, std::int32_t fallback) {
    const Json* v = r_.optional(owner, key);
    if (!v) return fallback;
    Reader::Scope sc(r_, key);
    return r_.int32(*v);
  }

  bool boolMember(const Json& owner, const char* key, bool fallback) {
    const Json* v = r_.optional(owner, key);
    if (!v) return fallback;
    Reader::Scope sc(r_, key);
    return r_.boolean(*v);
  }

  String nameMember(const Json& owner) {
    const Json* v = r_.optional(owner, "name");
    if (!v) return String();
    Reader::Scope sc(r_, "name");
    return String(r_.bytes(*v));
  }

  // A flat array of numbers whose length is a multiple of group.
  const Json& flat(const Json& owner, const char* key, std::size_t group) {
    static const Json empty = Json::array();
    const Json* v = r_.optional(owner, key);
    if (!v) return empty;
    Reader::Scope sc(r_, key);
    r_.array(*v);
    if (v->size() % group != 0)
      r_.fail("expected a multiple of " + std::to_string(group) + " numbers, found " + std::to_string(v->size()));
    return *v;
  }

  std::vector<Vector> points(const Json& owner) {
    const Json& pts = flat(owner, "points", 3);
    Reader::Scope sc(r_, "points");
    std::vector<Vector> out;
    out.reserve(pts.size() / 3);
    for (std::size_t i = 0; i < pts.size(); i += 3) {
      Reader::Scope e(r_, i);
      out.emplace_back(r_.real(pts[i]), r_.real(pts[i + 1]), r_.real(pts[i + 2]));
    }
    return out;
  }

  void place(HostNode* n) { places_.push_back(n); }

  void readObject(const Json& o, HostNode* owner, int depth) {
    if (depth > kMaxDepth) r_.fail("objects nested deeper than " + std::to_string(kMaxDepth));
    r_.object(o);
    const std::int32_t type = r_.int32(o, "type");
    HostNode* n = makers_.makeObject(type);
    if (!n) {
      Reader::Scope sc(r_, "type");
      r_.fail("unknown object type " + std::to_string(type));
    }
    // In the tree at once, so that it is freed with the document on failure.
    n->insertLastInto(owner, ListKind::Children);
    place(n);
    n->name = nameMember(o);
    n->selected = boolMember(o, "selected", false);
    if (auto* obj = dynamic_cast<ObjectNode*>(n)) {
      ObjectState& s = obj->state;
      s.pos = vectorMember(o, "pos", s.pos);
      s.rot = vectorMember(o, "rot", s.rot);
      s.scale = vectorMember(o, "scale", s.scale);
      s.editorMode = intMember(o, "editorMode", s.editorMode);
      s.renderMode = intMember(o, "renderMode", s.renderMode);
      if (const Json* color = r_.optional(o, "color")) {
        Reader::Scope sc(r_, "color");
        r_.object(*color);
        s.color.usecolor = intMember(*color, "use", s.color.usecolor);
        s.color.color = vectorMember(*color, "rgb", s.color.color);
        s.color.xray = boolMember(*color, "xray", s.color.xray);
      }
    }
    readData(o, &n->data);
    auto* poly = dynamic_cast<PolygonNode*>(n);
    auto* spline = dynamic_cast<SplineNode*>(n);
    if (poly) {
      poly->points = points(o);
      const Json& polys = flat(o, "polygons", 4);
      Reader::Scope sc(r_, "polygons");
      poly->polygons.reserve(polys.size() / 4);
      for (std::size_t i = 0; i < polys.size(); i += 4) {
        Reader::Scope e(r_, i);
        poly->polygons.emplace_back(r_.int32(polys[i]), r_.int32(polys[i + 1]), r_.int32(polys[i + 2]),
                                    r_.int32(polys[i + 3]));
      }
    } else if (spline) {
      spline->points = points(o);
      spline->closed = boolMember(o, "closed", false);
      r_.each(o, "segments", [&](const Json& e) {
        const Json& s = r_.array(e, 2);
        Segment seg;
        seg.cnt = r_.int32(s[0]);
        seg.closed = r_.boolean(s[1]);
        spline->segments.push_back(seg);
      });
    } else {
      for (const char* key : {"points", "polygons", "segments"})
        if (r_.optional(o, key)) {
          Reader::Scope sc(r_, key);
          r_.fail("an object of type " + std::to_string(type) + " has no geometry");
        }
    }
    r_.each(o, "tags", [&](const Json& t) { readTag(t, n); });
    r_.each(o, "tracks", [&](const Json& t) { readTrack(t, n); });
    r_.each(o, "children", [&](const Json& c) { readObject(c, n, depth + 1); });
  }

  void readTag(const Json& t, HostNode* owner) {
    r_.object(t);
    const std::int32_t type = r_.int32(t, "type");
    if (!makers_.knowsTag(type)) {
      HostNode* opaque = makeOpaqueTag(type, t);
      opaque->insertLastInto(owner, ListKind::Tags);
      place(opaque);
      // Shown by its name; the record itself is what is kept.
      const Json* name = r_.optional(t, "name");
      if (name && name->is_string()) opaque->name = String(name->get<std::string>());
      return;
    }
    const Json& uvw = flat(t, "uvw", 12);
    HostNode* n = makers_.makeTag(type, LONG(uvw.size() / 12));
    if (!n) {
      Reader::Scope sc(r_, "type");
      r_.fail("the plug-in of tag type " + std::to_string(type) + " could not make the tag");
    }
    n->insertLastInto(owner, ListKind::Tags);
    place(n);
    n->name = nameMember(t);
    n->selected = boolMember(t, "selected", false);
    readData(t, &n->data);
    if (auto* uvwTag = dynamic_cast<UVWTagNode*>(n)) {
      Reader::Scope sc(r_, "uvw");
      for (std::size_t i = 0; i < uvw.size(); i += 12) {
        Reader::Scope e(r_, i);
        UVWStruct& s = uvwTag->entries[i / 12];
        Vector* corners[] = {&s.a, &s.b, &s.c, &s.d};
        for (std::size_t k = 0; k < 4; ++k)
          *corners[k] = Vector(r_.real(uvw[i + 3 * k]), r_.real(uvw[i + 3 * k + 1]), r_.real(uvw[i + 3 * k + 2]));
      }
    } else if (!uvw.empty()) {
      Reader::Scope sc(r_, "uvw");
      r_.fail("a tag of type " + std::to_string(type) + " has no texture coordinates");
    }
  }

  void readTrack(const Json& t, HostNode* owner) {
    r_.object(t);
    DescID id;
    {
      const Json& levels = r_.member(t, "id");
      Reader::Scope sc(r_, "id");
      r_.array(levels);
      if (levels.empty()) r_.fail("a track needs a parameter id");
      for (std::size_t i = 0; i < levels.size(); ++i) {
        Reader::Scope e(r_, i);
        const Json& l = r_.array(levels[i], 3);
        id.PushId(DescLevel(r_.int32(l[0]), r_.int32(l[1]), r_.int32(l[2])));
      }
    }
    TrackImpl* track = makeTrack(id);
    track->insertLastInto(owner, ListKind::Tracks);
    place(track);
    track->name = nameMember(t);
    readData(t, &track->data);
    r_.each(t, "keys", [&](const Json& e) {
      const Json& k = r_.array(e, 4);
      auto key = std::make_unique<KeyImpl>();
      key->time = time(Json::array({k[0], k[1]}));
      key->value = r_.real(k[2]);
      key->interpolation = r_.int32(k[3]);
      key->curve = &track->curve;
      track->curve.keys.push_back(std::move(key));
    });
    track->curve.resort();
  }

  // The file's container replaces what a new node starts with (a camera's lens values, say);
  // without one the node keeps its defaults.
  void readData(const Json& owner, BaseContainer* target) {
    const Json* data = r_.optional(owner, "data");
    if (!data) return;
    target->FlushAll();
    target->SetId(0);
    BaseContainer* out = target;
    Reader::Scope sc(r_, "data");
    r_.object(*data);
    out->SetId(intMember(*data, "id", 0));
    const Json* entries = r_.optional(*data, "entries");
    if (!entries) return;
    Reader::Scope se(r_, "entries");
    r_.array(*entries);
    for (std::size_t i = 0; i < entries->size(); ++i) {
      Reader::Scope e(r_, i);
      const Json& en = r_.array((*entries)[i], 3);
      const LONG id = r_.int32(en[0]);
      const std::string& kind = r_.text(en[1]);
      const Json& v = en[2];
      Reader::Scope sv(r_, 2);
      if (out->FindIndex(id) != NOTOK) r_.fail("id " + std::to_string(id) + " appears twice");
      if (kind == "long") {
        out->SetData(id, GeData(int(r_.int32(v))));
      } else if (kind == "real") {
        out->SetData(id, GeData(r_.real(v)));
      } else if (kind == "lreal") {
        out->SetData(id, GeData(r_.number(v)));
      } else if (kind == "vector") {
        out->SetData(id, GeData(vector(v)));
      } else if (kind == "matrix") {
        r_.array(v, 12);
        Vector parts[4];
        for (std::size_t k = 0; k < 4; ++k)
          parts[k] = Vector(r_.real(v[3 * k]), r_.real(v[3 * k + 1]), r_.real(v[3 * k + 2]));
        out->SetData(id, GeData(Matrix(parts[0], parts[1], parts[2], parts[3])));
      } else if (kind == "string") {
        out->SetData(id, GeData(String(r_.bytes(v))));
      } else if (kind == "time") {
        out->SetData(id, GeData(time(v)));
      } else if (kind == "void") {
        out->SetData(id, GeData(static_cast<void*>(nullptr)));
      } else if (kind == "nil") {
        out->SetData(id, GeData());
      } else if (kind == "link") {
        // Filled in once every node exists; an empty link holds the place meanwhile.
        setLink(out, id, nullptr);
        if (!v.is_null()) {
          const std::int64_t place = r_.int64(v);
          if (place < 0) r_.fail("link to a negative place");
          pending_.push_back({out, id, std::size_t(place), r_.path()});
        }
      } else {
        Reader::Scope sk(r_, 1);
        r_.fail("unknown value kind \"" + kind + "\"");
      }
    }
  }

  static void setLink(BaseContainer* bc, LONG id, HostNode* target) {
    LinkImpl* l = allocLink();
    if (!l) return;
    l->SetLink(target ? target->iface() : nullptr);
    bc->SetData(id, GeData(*static_cast<BaseLink*>(l)));
    freeLink(l);
  }

  void resolveLinks() {
    for (const PendingLink& p : pending_) {
      if (p.place >= places_.size())
        throw FormatError(p.where + ": link to place " + std::to_string(p.place) + ", but the file has " +
                          std::to_string(places_.size()) + " nodes");
      setLink(p.container, p.id, places_[p.place]);
    }
  }

  const NodeMakers& makers_;
  Reader r_;
  DocumentImpl* doc_ = nullptr;
  std::vector<HostNode*> places_;
  std::vector<PendingLink> pending_;
};

}  // namespace

std::string write(const DocumentNode& doc) {
  Writer w;
  // Compact: large scenes load and save in less time; any JSON tool can indent it.
  return w.document(doc).dump();
}

DocumentImpl* read(const std::string& text, std::string* error) {
  const auto report = [&](const std::string& what) -> DocumentImpl* {
    if (error) *error = what;
    return nullptr;
  };
  NodeMakers* makers = nodeMakers();
  if (!makers) return report("no host is running");
  Json root;
  try {
    root = Json::parse(text);
  } catch (const Json::exception& e) {  // syntax errors, and numbers beyond double's range
    return report(std::string("not a scene file: ") + e.what());
  }
  if (depthOf(root) > std::size_t(2 * kMaxDepth + 8))
    return report("not a scene file: nested deeper than " + std::to_string(kMaxDepth) + " objects");
  try {
    Loader loader(*makers);
    return loader.load(root);
  } catch (const FormatError& e) {
    return report(e.what());
  } catch (const Json::exception& e) {
    return report(std::string("not a scene file: ") + e.what());
  } catch (const std::bad_alloc&) {
    return report("out of memory while reading the scene");
  }
}

std::string writePreferences(const BaseContainer& world) {
  Json out = Json::object();
  out["format"] = kPreferencesName;
  out["version"] = kFormatVersion;
  Writer().putData(out, world);
  return out.dump(1, '\t');
}

bool readPreferences(const std::string& text, BaseContainer* world, std::string* error) {
  NodeMakers* makers = nodeMakers();
  try {
    if (!makers) throw FormatError("no host is running");
    const Json root = Json::parse(text);
    if (depthOf(root) > 16) throw FormatError("nested too deeply");
    BaseContainer read;
    Loader(*makers).loadPreferences(root, &read);
    *world = std::move(read);
    return true;
  } catch (const Json::exception& e) {
    if (error) *error = std::string("not a preferences file: ") + e.what();
  } catch (const FormatError& e) {
    if (error) *error = e.what();
  }
  return false;
}

bool writeFile(const std::string& path, const std::string& text, std::string* error) {
  namespace fs = std::filesystem;
  const auto report = [&](const std::string& what) {
    if (error) *error = what;
    return false;
  };
  const std::string temp = path + ".saving";
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    if (!out) return report(path + ": cannot write (" + std::strerror(errno) + ")");
    out.write(text.data(), std::streamsize(text.size()));
    out.flush();
    const int flushErrno = errno;
    const bool ok = bool(out);
    out.close();
    if (!ok || out.fail()) {
      std::error_code ignored;
      fs::remove(temp, ignored);
      return report(path + ": writing failed (" + std::strerror(flushErrno ? flushErrno : EIO) + ")");
    }
  }
  std::error_code ec;
  fs::rename(temp, path, ec);
  if (ec) {
    std::error_code ignored;
    fs::remove(temp, ignored);
    return report(path + ": cannot replace the file (" + ec.message() + ")");
  }
  return true;
}

bool readFile(const std::string& path, std::string* text, std::string* error) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    if (error) *error = path + ": cannot open (" + std::strerror(errno) + ")";
    return false;
  }
  std::ostringstream buffer;
  buffer << in.rdbuf();
  if (in.bad()) {
    if (error) *error = path + ": reading failed";
    return false;
  }
  *text = std::move(buffer).str();
  return true;
}

}  // namespace tvr::plr::embedded::scenefile
