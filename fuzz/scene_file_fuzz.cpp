// Arbitrary bytes as a scene file (and as a preferences file). Reading must
// either fail with a message or give a scene that saves, reads back from the
// saved text, and saves again to the same text and the same scene.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "embedded_host/scene/document_node.h"
#include "embedded_host/runtime/embedded_host.h"
#include "embedded_host/runtime/host_context.h"
#include "embedded_host/scene/scene_dump.h"
#include "embedded_host/files/scene_file.h"

using namespace tvr::plr::embedded;

namespace {

// A tag type a module registers, so that files can hold plug-in tags the host
// knows besides built-in ones and unknown (kept as read) ones.
constexpr LONG kPluginTag = 1029001;

class FuzzTag : public TagData {};
NodeData* allocFuzzTag() { return new FuzzTag; }

LONG tagModule(LONG action, void* p1, void*, void*) {
  if (action == C4DPL_INIT_SYS) {
    C4DOS() = static_cast<C4D_HostTable*>(p1);
    return 1;
  }
  if (action == C4DPL_START) return RegisterTagPlugin(kPluginTag, "Fuzz tag", TAG_VISIBLE, allocFuzzTag, "", nullptr, 0) ? 1 : 0;
  return 1;
}

EmbeddedHost& host() {
  static EmbeddedHost* running = [] {
    HostOptions options;
    options.crashHandlers = false;  // a fault must reach the sanitizer, not the host's handler
    static EmbeddedHost h(options);
    if (!h.loadModule(&tagModule, "fuzz-tag-module")) std::abort();
    return &h;
  }();
  return *running;
}

[[noreturn]] void fail(const char* what, const std::string& a, const std::string& b) {
  std::fprintf(stderr, "scene_file_fuzz: %s\n--- first\n%.4000s\n--- second\n%.4000s\n", what, a.c_str(), b.c_str());
  std::abort();
}

struct Loaded {
  std::unique_ptr<DocumentImpl> doc;
  std::string error;
};

Loaded load(const std::string& text) {
  Loaded l;
  l.doc.reset(scenefile::read(text, &l.error));
  return l;
}

// The next object depth first, without recursion (files nest objects a thousand deep).
BaseObject* following(BaseObject* op) {
  if (BaseObject* down = op->GetDown()) return down;
  for (; op; op = op->GetUp())
    if (BaseObject* next = op->GetNext()) return next;
  return nullptr;
}

// What a module may ask of loaded geometry: a file's points, polygons and segments
// need not agree with each other, and any number may be infinite or not a number.
void useGeometry(BaseDocument* doc) {
  GeRayCollider* collider = GeRayCollider::Alloc();
  if (!collider) fail("no ray collider", "", "");
  for (BaseObject* op = doc->GetFirstObject(); op; op = following(op)) {
    if (op->GetType() == Opolygon) {
      auto* poly = static_cast<PolygonObject*>(op);
      const Vector origin = poly->GetPointCount() > 0 ? poly->GetPointR()[0] + Vector(0, 0, -1) : Vector(0, 0, -1);
      if (collider->Init(op, true) && collider->Intersect(origin, Vector(0, 0.25f, 1), 1e6f, false)) {
        GeRayColResult hit;
        for (LONG i = 0; i < collider->GetIntersectionCount(); ++i) collider->GetIntersection(i, &hit);
        collider->GetNearestIntersection(&hit);
      }
    } else if (op->GetType() == Ospline) {
      auto* spline = static_cast<SplineObject*>(op);
      const LONG segments = std::min<LONG>(spline->GetSegmentCount(), 8);
      for (LONG i = 0; i <= segments; ++i) {  // also the segment past the last
        if (spline->InitLength(i, nullptr)) {
          (void)spline->GetLength();
          for (Real t : {Real(-1), Real(0), Real(0.3), Real(1), Real(2)}) (void)spline->UniformToNatural(t);
          spline->FreeLength();
        }
        for (Real t : {Real(0), Real(0.5), Real(1)}) {
          (void)spline->GetSplinePoint(t, i, nullptr);
          (void)spline->GetSplineTangent(t, i, nullptr);
        }
      }
    }
  }
  GeRayCollider::Free(collider);
}

void sceneRoundTrip(const std::string& text) {
  const Loaded first = load(text);
  if (!first.doc) {
    if (first.error.empty()) fail("a refused file gave no reason", text, "");
    return;
  }
  useGeometry(first.doc.get());
  const std::string saved = scenefile::write(*first.doc);
  const Loaded second = load(saved);
  if (!second.doc) fail(("saved scene does not read back: " + second.error).c_str(), text, saved);
  const std::string savedAgain = scenefile::write(*second.doc);
  if (saved != savedAgain) fail("saving the reloaded scene gives other text", saved, savedAgain);
  // Node identities differ between loads; the dump numbers them by place.
  const std::string dumpA = dumpTreeByPlace(first.doc.get());
  const std::string dumpB = dumpTreeByPlace(second.doc.get());
  if (dumpA != dumpB) fail("the reloaded scene differs", dumpA, dumpB);
}

void preferencesRoundTrip(const std::string& text) {
  BaseContainer world;
  world.SetLong(1, 7);  // must survive a refused file
  std::string error;
  if (!scenefile::readPreferences(text, &world, &error)) {
    if (error.empty()) fail("refused preferences gave no reason", text, "");
    if (world.GetCount() != 1 || world.GetLong(1) != 7) fail("refused preferences changed the container", text, "");
    return;
  }
  const std::string saved = scenefile::writePreferences(world);
  BaseContainer again;
  if (!scenefile::readPreferences(saved, &again, &error)) fail(("saved preferences do not read back: " + error).c_str(), text, saved);
  const std::string savedAgain = scenefile::writePreferences(again);
  if (saved != savedAgain) fail("saving reloaded preferences gives other text", saved, savedAgain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::size_t nodesBefore = host().context().registry.allocatedCount();
  const std::string text(reinterpret_cast<const char*>(data), size);
  sceneRoundTrip(text);
  // Every node a read made, kept or refused, is gone again: none stays registered.
  if (host().context().registry.allocatedCount() != nodesBefore) fail("nodes outlive their scene", text, "");
  preferencesRoundTrip(text);
  return 0;
}
