#pragma once
// Shared by the scene-file tests: a host with a module that registers a plug-in tag and a scene hook
// recording document messages, a scratch folder, whole-scene text and random scenes.
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "embedded_host/geometry/polygon_object.h"
#include "embedded_host/geometry/spline_object.h"
#include "embedded_host/geometry/uvw_tag.h"
#include "embedded_host/scene/document_node.h"
#include "embedded_host/scene/opaque_tag.h"
#include "embedded_host/scene/scene_dump.h"
#include "embedded_host/scene/track_node.h"
#include "test_support/host_fixture.h"

namespace tvr::plr::embedded::testing {

constexpr LONG kPluginTag = 1029001;  // registered by the test module below
constexpr LONG kRecordingHook = 1029002;

// The whole scene as text with nodes numbered by place (a loaded scene has new
// nodes); EXPECT_EQ on two of them shows where scenes differ.
inline std::string sceneText(BaseDocument* doc) { return dumpTreeByPlace(nodeOf(doc)); }

// Fills a document with a random scene through the host API, as a module would.
class RandomScene {
 public:
  explicit RandomScene(unsigned seed) : rng_(seed) {}

  void fill(BaseDocument* doc, int objects) {
    doc->SetFps(LONG(pick(1, 120)));
    doc->SetTime(BaseTime(double(pick(-500, 500)), double(pick(1, 1000))));
    doc->SetMinTime(BaseTime(Real(real(-10, 0))));
    doc->SetMaxTime(BaseTime(Real(real(0, 100))));
    doc->SetLoopMinTime(BaseTime(3, 7));
    doc->SetLoopMaxTime(BaseTime(Real(real(0, 100))));
    container(*doc->GetDataInstance());
    std::vector<BaseObject*> all;
    for (int i = 0; i < objects; ++i) {
      BaseObject* op = object();
      BaseObject* parent = all.empty() || pick(0, 2) == 0 ? nullptr : all[std::size_t(pick(0, long(all.size()) - 1))];
      doc->InsertObject(op, parent, nullptr);
      all.push_back(op);
    }
    // Links once every node exists, to objects, tags and tracks alike.
    std::vector<BaseList2D*> targets;
    for (BaseObject* op : all) {
      targets.push_back(op);
      for (BaseTag* t = op->GetFirstTag(); t; t = t->GetNext()) targets.push_back(t);
      for (CTrack* t = op->GetFirstCTrack(); t; t = t->GetNext()) targets.push_back(t);
    }
    for (BaseList2D* n : targets)
      if (pick(0, 2) == 0) n->GetDataInstance()->SetLink(LONG(pick(1, 99)), targets[std::size_t(pick(0, long(targets.size()) - 1))]);
  }

  std::string bytes(long maxLength) {
    std::string s(std::size_t(pick(0, maxLength)), '\0');
    const bool text = pick(0, 1) == 0;
    for (char& c : s) c = char(text ? pick(32, 126) : pick(0, 255));
    return s;
  }

 private:
  long pick(long lo, long hi) { return std::uniform_int_distribution<long>(lo, hi)(rng_); }
  double real(double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng_); }
  Vector vector() { return Vector(Real(real(-1e3, 1e3)), Real(real(-1, 1)), Real(real(-1e-3, 1e-3))); }

  void container(BaseContainer& bc) {
    if (pick(0, 3) == 0) bc.SetId(LONG(pick(-5, 5)));
    const long n = pick(0, 8);
    for (long i = 0; i < n; ++i) {
      const LONG id = LONG(pick(-3, 2000000));
      switch (pick(0, 8)) {
        case 0: bc.SetLong(id, LONG(pick(INT32_MIN, INT32_MAX))); break;
        case 1: bc.SetReal(id, Real(real(-1e30, 1e30))); break;
        case 2: bc.SetLReal(id, real(-1, 1) * 1e-300); break;
        case 3: bc.SetVector(id, vector()); break;
        case 4: bc.SetMatrix(id, Matrix(vector(), vector(), vector(), vector())); break;
        case 5: bc.SetString(id, String(bytes(pick(0, 3) == 0 ? 4000 : 40))); break;
        case 6: bc.SetTime(id, BaseTime(double(pick(-1000, 1000)), double(pick(1, 600)))); break;
        case 7: bc.SetData(id, GeData()); break;
        default: bc.SetVoid(id, nullptr); break;
      }
    }
  }

  BaseObject* object() {
    static const LONG types[] = {Onull, Ocamera, Opolygon, Ospline};
    const LONG type = types[pick(0, 3)];
    BaseObject* op = BaseObject::Alloc(type);
    op->SetName(String(bytes(12)));
    op->SetPos(vector());
    op->SetRot(vector());
    op->SetScale(vector());
    op->SetEditorMode(LONG(pick(0, 2)));
    op->SetRenderMode(LONG(pick(0, 2)));
    ObjectColorProperties color;
    color.usecolor = LONG(pick(0, 3));
    color.color = vector();
    color.xray = pick(0, 1) == 1;
    op->SetColorProperties(&color);
    container(*op->GetDataInstance());
    LONG polygons = 0;
    if (type == Opolygon) {
      auto* poly = static_cast<PolygonObject*>(op);
      polygons = LONG(pick(0, 20));
      poly->ResizeObject(LONG(pick(0, 30)), polygons);
      for (LONG i = 0; i < poly->GetPointCount(); ++i) poly->GetPointW()[i] = vector();
      for (LONG i = 0; i < polygons; ++i)
        poly->GetPolygonW()[i] = CPolygon(LONG(pick(0, 29)), LONG(pick(0, 29)), LONG(pick(0, 29)), LONG(pick(0, 29)));
    } else if (type == Ospline) {
      auto* spline = static_cast<SplineObject*>(op);
      spline->ResizeObject(LONG(pick(0, 30)), LONG(pick(0, 3)));
      for (LONG i = 0; i < spline->GetPointCount(); ++i) spline->GetPointW()[i] = vector();
      for (LONG i = 0; i < spline->GetSegmentCount(); ++i) spline->GetSegmentW()[i] = Segment{LONG(pick(0, 10)), pick(0, 1) == 1};
      if (pick(0, 1)) spline->SetClosed(true);
    }
    if (type == Opolygon && pick(0, 1)) {
      auto* uvw = static_cast<UVWTag*>(op->MakeTag(Tuvw));
      uvw->Resize(polygons);
      for (LONG i = 0; i < polygons; ++i) uvw->SetSlow(i, UVWStruct(vector(), vector(), vector(), vector()));
      uvw->SetName(String(bytes(6)));
    }
    if (pick(0, 1)) container(*op->MakeTag(kPluginTag)->GetDataInstance());
    for (long i = pick(0, 2) - 1; i >= 0; --i) {
      CTrack* track = CTrack::Alloc(op, DescID(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_VECTOR, 0),
                                               DescLevel(LONG(VECTOR_X + i), DTYPE_REAL, 0)));
      op->InsertTrackSorted(track);
      CCurve* curve = track->GetCurve(CCURVE_CURVE, true);
      for (long k = pick(0, 5); k > 0; --k) {
        CKey* key = curve->AddKey(BaseTime(double(pick(0, 300)), 30.0));
        key->SetValue(curve, Real(real(-10, 10)));
        key->SetInterpolation(curve, LONG(pick(1, 3)));
      }
    }
    return op;
  }

  std::mt19937 rng_;
};

// A document message as the recording hook heard it.
struct Heard {
  LONG type;
  BaseDocument* doc;
  BaseDocument* active;  // the host's active document when the message arrived
  std::string file;
  BaseDocument* hookDocument;
  std::string name;  // the document's name when the message arrived
  bool hasObjects;   // the document still held objects
};
inline std::vector<Heard> heard;
// A hook that reloads on the next message after a document's removal: the documents it reloaded.
inline bool reloadPending = false;
inline std::vector<BaseDocument*> reloadedFrom;

class RecordingHook : public SceneHookData {
 public:
  Bool Message(GeListNode* node, LONG type, void* data) override {
    if (reloadPending) {
      reloadPending = false;
      reloadedFrom.push_back(GetActiveDocument());
    }
    if (type == MSG_DOCUMENTINFO && data) {
      auto* info = static_cast<DocumentInfoData*>(data);
      heard.push_back({info->type, info->doc, GetActiveDocument(), info->filename.GetString().ToStd(),
                       node ? node->GetDocument() : nullptr, info->doc->GetDocumentName().GetString().ToStd(),
                       info->doc->GetFirstObject() != nullptr});
      reloadPending = info->type == MSG_DOCUMENTINFO_TYPE_REMOVE;
    }
    return true;
  }
};

inline LONG sceneTestModule(LONG action, void* p1, void*, void*) {
  if (action == C4DPL_INIT_SYS) C4DOS() = static_cast<C4D_HostTable*>(p1);
  if (action != C4DPL_START) return 1;
  struct SavedTag : TagData {};
  return RegisterTagPlugin(kPluginTag, "Saved tag", TAG_VISIBLE, [] { return static_cast<NodeData*>(new SavedTag); },
                           "", nullptr, 0) &&
         RegisterSceneHookPlugin(kRecordingHook, "Recorder", 0, [] { return static_cast<NodeData*>(new RecordingHook); },
                                 1000, 0);
}

class SceneHostTest : public ::testing::Test {
 protected:
  SceneHostTest() : host(quietOptions()) {
    dir = std::filesystem::temp_directory_path() /
          ("scene_file_test_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
           ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(dir);
    host.loadModule(&sceneTestModule, "scene-test-module");
    heard.clear();
    reloadPending = false;
    reloadedFrom.clear();
  }
  ~SceneHostTest() override {
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
  }
  std::string file(const char* name) const { return (dir / name).string(); }
  static std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
  }
  static void spit(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

  EmbeddedHost host;
  std::filesystem::path dir;
};

}  // namespace tvr::plr::embedded::testing
