#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "embedded_host/files/scene_file.h"
#include "scene_file_fixture.h"

#if !defined(_WIN32)
#include <csignal>
#include <sys/resource.h>
#endif

namespace tvr::plr::embedded::testing {
namespace {

namespace fs = std::filesystem;

class SceneFileTest : public SceneHostTest {
protected:
    BaseDocument* doc = host.newDocument("scene");
};

TEST_F(SceneFileTest, RandomScenesSurviveSaveAndLoad) {
    for (unsigned seed = 1; seed <= 25; ++seed) {
        BaseDocument* original = host.newDocument("random");
        RandomScene(seed).fill(original, int(seed * 3));
        const std::string path = file("random.scene");
        std::string error;
        ASSERT_TRUE(host.saveDocument(original, path, &error)) << error;
        BaseDocument* loaded = host.openDocument(path, &error);
        ASSERT_NE(loaded, nullptr) << error;
        EXPECT_EQ(sceneText(original), sceneText(loaded)) << "seed " << seed;
        EXPECT_EQ(host.activeDocument(), loaded);
        EXPECT_EQ(loaded->GetDocumentName().GetString().ToStd(), "random.scene");
        // Writing the loaded scene gives the same file: nothing drifts on a second pass.
        const std::string first = slurp(path);
        ASSERT_TRUE(host.saveDocument(loaded, path, &error)) << error;
        EXPECT_EQ(slurp(path), first) << "seed " << seed;
        host.closeDocument(loaded);
        host.closeDocument(original);
    }
}

// A scene with one of every field a file holds.
void fillFullScene(BaseDocument* doc) {
    doc->SetFps(25);
    doc->SetTime(BaseTime(7, 25));
    doc->SetMinTime(BaseTime(-1, 3));
    doc->SetMaxTime(BaseTime(200, 25));
    doc->SetLoopMinTime(BaseTime(1, 25));
    doc->SetLoopMaxTime(BaseTime(100, 25));
    doc->GetDataInstance()->SetLong(4, 5);
    auto* poly = PolygonObject::Alloc(3, 1);
    poly->SetName(String(std::string("poly\xff")));
    poly->SetPos(Vector(1, 0, 3));
    poly->SetRot(Vector(0.5f));
    poly->SetScale(Vector(2));
    poly->GetPointW()[1] = Vector(1e-45f, -0.0f, 3.4028235e38f);
    poly->GetPointW()[2] = Vector(0.1f, 0.2f, 0.3f);
    poly->GetPolygonW()[0] = CPolygon(0, 1, 2);
    ObjectColorProperties color;
    color.usecolor = 1;
    poly->SetColorProperties(&color);
    doc->InsertObject(poly, nullptr, nullptr);
    auto* uvw = static_cast<UVWTag*>(poly->MakeTag(Tuvw));
    uvw->Resize(1);
    uvw->SetSlow(0, UVWStruct(Vector(0.25f), Vector(0.5f), Vector(0.75f), Vector(1)));
    poly->MakeTag(kPluginTag)->GetDataInstance()->SetReal(1, 0.5f);
    poly->InsertTag(makeOpaqueTag(1099999, nlohmann::json{{"type", 1099999}, {"private", {1, 2}}}), uvw);
    CTrack* track = CTrack::Alloc(
        poly, DescID(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_VECTOR, 0), DescLevel(VECTOR_X, DTYPE_REAL, 0)));
    poly->InsertTrackSorted(track);
    CCurve* curve = track->GetCurve(CCURVE_CURVE, true);
    curve->AddKey(BaseTime(3, 30))->SetValue(curve, 1.5f);
    auto* spline = SplineObject::Alloc(4);
    spline->ResizeObject(4, 2);
    spline->GetPointW()[3] = Vector(4, 5, 6);
    spline->GetSegmentW()[1] = Segment{2, true};
    doc->InsertObject(spline, poly, nullptr);
    BaseObject* camera = BaseObject::Alloc(Ocamera);
    doc->InsertObject(camera, nullptr, poly);
    BaseObject* bareCamera = BaseObject::Alloc(Ocamera);  // a loaded copy must not gain lens defaults
    bareCamera->GetDataInstance()->FlushAll();
    doc->InsertObject(bareCamera, camera, nullptr);
    doc->SetActiveObject(spline, SELECTION_NEW);
    BaseContainer& bc = *poly->GetDataInstance();
    bc.SetLong(10, 1);
    bc.SetReal(11, 0.1f);
    bc.SetLReal(12, 0.1);
    bc.SetVector(13, Vector(1, 2, 3));
    bc.SetMatrix(14, Matrix());
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += char(i);
    bc.SetString(15, String(bytes + "\xC3\xA9"
                                    "b"));
    bc.SetTime(16, BaseTime(1, 3));
    bc.SetVoid(17, nullptr);
    bc.SetData(18, GeData());
    bc.SetLink(19, spline);
    bc.SetReal(20, 0.0f);
    bc.SetLReal(21, std::numeric_limits<double>::quiet_NaN());
    bc.SetReal(22, -std::numeric_limits<float>::infinity());
}

// The file with one thing changed, for each place in turn: a number by its lowest bit (as a double
// and, where it is one, as a float; a zero by its sign), a whole number by one, a text's first
// character, a flag, or the first two of a list of records swapped.
std::vector<nlohmann::json> everyOneEdit(const nlohmann::json& file) {
    std::vector<nlohmann::json> out;
    const std::function<void(const nlohmann::json::json_pointer&, const nlohmann::json&)> walk =
        [&](const nlohmann::json::json_pointer& at, const nlohmann::json& v) {
            std::vector<nlohmann::json> changes;
            if (v.is_boolean()) {
                changes.push_back(!v.get<bool>());
            } else if (v.is_number_integer()) {
                changes.push_back(v.get<std::int64_t>() + 1);
            } else if (v.is_number_float()) {
                const double d = v.get<double>();
                const double away = d > 0 ? HUGE_VAL : -HUGE_VAL;
                changes.push_back(d == 0 ? -d : std::nextafter(d, away));
                const bool single = std::fabs(d) <= std::numeric_limits<float>::max() && double(float(d)) == d;
                if (d != 0 && single) changes.push_back(double(std::nextafter(float(d), float(away))));
            } else if (v.is_string()) {
                std::string t = v.get<std::string>();
                if (t.empty())
                    t = "x";
                else
                    t[0] = t[0] == 'a' ? 'b' : 'a';
                changes.push_back(t);
            } else if (v.is_array() && v.size() >= 2 && v[0].is_structured() && v[0] != v[1]) {
                nlohmann::json swapped = v;
                std::swap(swapped[0], swapped[1]);
                changes.push_back(swapped);
            }
            for (const nlohmann::json& change : changes) {
                out.push_back(file);
                out.back()[at] = change;
            }
            if (v.is_structured())
                for (auto it = v.begin(); it != v.end(); ++it)
                    walk(v.is_object() ? at / it.key() : at / std::size_t(it - v.begin()), *it);
        };
    walk(nlohmann::json::json_pointer(), file);
    return out;
}

TEST_F(SceneFileTest, SceneTextNoticesEveryKindOfChange) {
    // The round trips are only as strong as the scene text they compare: a loaded copy matches exactly
    // (NaN, -0, denormals, every byte), and any change to the file that reaches the loaded scene (saving
    // it again writes another file) must show in its text. A change the reader refuses is said so.
    fillFullScene(doc);
    const std::string path = file("base.scene"), edited = file("edited.scene"), again = file("again.scene");
    ASSERT_TRUE(host.saveDocument(doc, path));
    const nlohmann::json base = nlohmann::json::parse(slurp(path));
    const auto load = [&](const nlohmann::json& content, std::string* text, std::string* saved) {
        spit(edited, content.dump());
        std::string error;
        BaseDocument* loaded = host.openDocument(edited, &error);
        if (!loaded) {
            EXPECT_NE(error, "") << content.dump();
            EXPECT_EQ(host.documents().size(), 1u);  // nothing half loaded stays
            return false;
        }
        *text = sceneText(loaded);
        EXPECT_TRUE(host.saveDocument(loaded, again));
        *saved = slurp(again);
        host.closeDocument(loaded);
        return true;
    };
    std::string baseText, baseSaved, text, saved;
    ASSERT_TRUE(load(base, &baseText, &baseSaved));
    EXPECT_EQ(baseText, sceneText(doc));
    int changed = 0, refused = 0;
    for (const nlohmann::json& variant : everyOneEdit(base)) {
        if (!load(variant, &text, &saved)) {
            ++refused;
            continue;
        }
        changed += saved != baseSaved;
        EXPECT_EQ(text != baseText, saved != baseSaved) << variant.dump();
    }
    EXPECT_GT(changed, 100);
    EXPECT_GT(refused, 20);
}

TEST_F(SceneFileTest, UnregisteredPluginTagsPassThroughUnchangedAndShowInTheTree) {
    const std::string path = file("foreign.scene");
    const char* foreign = R"({"type": 1099999, "name": "Foreign", "private": {"state": [1, 2.5, "x"], "more": null},
                           "data": {"id": 0, "entries": [[1, "weird", {"deep": true}]]}})";
    spit(path, std::string(R"({"format": "embedded-host-scene", "version": 1, "document": {},
    "objects": [{"type": 5140, "name": "holder", "children": [{"type": 5103, "name": "cam"}],
                 "tracks": [{"id": [[903, 23, 0]], "keys": []}], "tags": [)") +
                   foreign + R"(, {"type": 1029001}]}]})");
    std::string error;
    BaseDocument* loaded = host.openDocument(path, &error);
    ASSERT_NE(loaded, nullptr) << error;
    // The registered one is a real plug-in tag.
    EXPECT_NE(loaded->GetFirstObject()->GetTag(1029001)->GetNodeData(), nullptr);
    // The tree shows the hierarchy, each object's type, its tags and how many tracks it has.
    EXPECT_NE(host.tree(loaded).find("  holder [5140] tags: 1099999 'Foreign' 1029001 tracks: 1\n    cam [5103]\n"),
              std::string::npos)
        << host.tree(loaded);
    // Through a clone (as undo makes) and a save, the record stays what it was.
    BaseObject* clone = loaded->GetFirstObject()->GetClone(0, nullptr);
    loaded->InsertObject(clone, nullptr, nullptr);
    const std::string again = file("again.scene");
    ASSERT_TRUE(host.saveDocument(loaded, again, &error)) << error;
    const nlohmann::json written = nlohmann::json::parse(slurp(again));
    for (int i = 0; i < 2; ++i) EXPECT_EQ(written["objects"][i]["tags"][0], nlohmann::json::parse(foreign));
}

// Each bad file: what the message must mention.
TEST_F(SceneFileTest, BadFilesLoadNothingAndSayWhereTheyFail) {
    RandomScene(5).fill(doc, 6);
    const std::string good = file("good.scene");
    ASSERT_TRUE(host.saveDocument(doc, good));
    const std::string before = host.dump(doc);
    const std::string text = slurp(good);
    const std::string head = R"({"format": "embedded-host-scene", "version": 1, "document": {}, "objects": )";
    // Objects nested one level past the limit; one level less still loads (below).
    std::string deep = head, tail;
    for (int i = 0; i <= scenefile::kMaxDepth; ++i) {
        deep += R"([{"type": 5140, "children": )";
        tail += "}]";
    }
    const std::vector<std::pair<std::string, std::string>> cases{
        {deep + "[]" + tail + "}", "objects nested deeper than 1000"},
        {text.substr(0, text.size() / 2), "not a scene file"},
        {"", "not a scene file"},
        {"[1, 2]", "top level: expected an object"},
        {R"({"format": "other", "version": 1, "document": {}})", "format: not the expected kind"},
        {R"({"format": "embedded-host-scene", "version": 2, "document": {}})",
         "version 2 is newer than this host reads (1)"},
        {R"({"format": "embedded-host-scene", "version": 0, "document": {}})", "version 0 does not exist"},
        {R"({"format": "embedded-host-scene", "version": 1})", "missing member \"document\""},
        {R"({"format": "embedded-host-scene", "version": 1, "document": {"fps": 0}})", "document.fps: frame rate"},
        {R"({"format": "embedded-host-scene", "version": 1, "document": {"time": [1]}})",
         "document.time: expected 2 elements"},
        {head + R"([{"type": 5140}, {"type": 7}]})", "objects[1].type: unknown object type 7"},
        {head + R"([{"type": 5140, "pos": [1, 2, "x"]}]})", "objects[0].pos: expected a number"},
        {head + R"([{"type": 5140, "scale": [1, 2, 1e300]}]})", "too large for single precision"},
        {head + R"([{"type": 5140, "children": [{"type": 5100, "points": [1, 2]}]}]})",
         "objects[0].children[0].points: expected a multiple of 3"},
        {head + R"([{"type": 5140, "points": []}]})", "objects[0].points: an object of type 5140 has no geometry"},
        {head + R"([{"type": 5100, "polygons": [0, 1, 2, 3000000000]}]})",
         "objects[0].polygons[0]: integer 3000000000 does not fit"},
        {head + R"([{"type": 5140, "data": {"entries": [[1, "long", 1.5]]}}]})",
         "objects[0].data.entries[0][2]: expected an integer"},
        {head + R"([{"type": 5140, "data": {"entries": [[1, "blob", 1]]}}]})", "unknown value kind \"blob\""},
        {head + R"([{"type": 5140, "data": {"entries": [[1, "long", 1], [1, "long", 2]]}}]})", "id 1 appears twice"},
        {head + R"([{"type": 5140, "data": {"entries": [[1, "link", 5]]}}]})",
         "objects[0].data.entries[0][2]: link to place 5, but the file has 1 nodes"},
        {head + R"([{"type": 5140, "data": {"entries": [[1, "string", {"bytes": "!!"}]]}}]})", "not valid base64"},
        {head + R"([{"type": 5140, "tracks": [{"id": [], "keys": []}]}]})", "objects[0].tracks[0].id: a track needs"},
        {head + R"([{"type": 5140, "tracks": [{"id": [[903, 23, 0]], "keys": [[0, 0, 1, 2]]}]}]})", "zero denominator"},
        {head + R"([{"type": 5140, "tags": [{"type": 5671, "uvw": [1]}]}]})", "tags[0].uvw: expected a multiple of 12"},
        {head + std::string(3000, '[') + std::string(3000, ']') + "}", "nested deeper"},
    };
    const std::string bad = file("bad.scene");
    for (const auto& [content, expected] : cases) {
        spit(bad, content);
        std::string error;
        const std::size_t consoleBefore = host.console().size();
        EXPECT_EQ(host.openDocument(bad, &error), nullptr) << expected;
        EXPECT_NE(error.find(expected), std::string::npos) << "expected \"" << expected << "\" in: " << error;
        EXPECT_NE(error.find(bad), std::string::npos) << error;  // names the file
        EXPECT_EQ(host.console().size(), consoleBefore + 2);     // the failure, then what the dialog said
        EXPECT_EQ(host.documents().size(), 1u);
        EXPECT_EQ(host.activeDocument(), doc);
    }
    EXPECT_EQ(host.dump(doc), before);
    std::string error;
    deep.erase(head.size(), std::strlen(R"([{"type": 5140, "children": )"));
    spit(bad, deep + "[]" + tail.substr(2) + "}");
    EXPECT_NE(host.openDocument(bad, &error), nullptr) << error;
    EXPECT_EQ(host.openDocument(file("missing.scene"), &error), nullptr);
    EXPECT_NE(error.find("cannot open"), std::string::npos);
}

TEST_F(SceneFileTest, FailedSavesLeaveTheEarlierFile) {
    doc->InsertObject(BaseObject::Alloc(Onull), nullptr, nullptr);
    const std::string path = file("kept.scene");
    ASSERT_TRUE(host.saveDocument(doc, path));
    const std::string earlier = slurp(path);
    RandomScene(3).fill(doc, 40);
    std::string error;
    EXPECT_FALSE(host.saveDocument(doc, (dir / "no-such-dir" / "x.scene").string(), &error));
    EXPECT_NE(error.find("cannot write"), std::string::npos) << error;
    EXPECT_EQ(host.dialogs().size(), 1u);
#if !defined(_WIN32)
    // A full disk: the file-size limit makes writes fail part way, as ENOSPC would.
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    auto previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = old;
    small.rlim_cur = 100;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool saved = host.saveDocument(doc, path, &error);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previous);
    EXPECT_FALSE(saved);
    EXPECT_NE(error.find("writing failed"), std::string::npos) << error;
    EXPECT_EQ(slurp(path), earlier);
    EXPECT_FALSE(fs::exists(path + ".saving"));
#endif
    // A directory in the way of the rename.
    fs::create_directories(dir / "taken.scene" / "inside");
    EXPECT_FALSE(host.saveDocument(doc, file("taken.scene"), &error));
    EXPECT_NE(error.find("cannot replace"), std::string::npos) << error;
    EXPECT_EQ(slurp(path), earlier);
}

TEST_F(SceneFileTest, PreferencesKeepTheWorldContainer) {
    BaseContainer& world = host.world();
    world.SetLong(WPREF_UNITS_BASIC, UNIT_INCH);
    world.SetString(1023579, String(std::string("<state>\xff\x00</state>", 17)));
    const std::string path = file("prefs.json");
    ASSERT_TRUE(host.savePreferences(path));
    const BaseContainer saved = world;
    // Documents come and go; the world container stays.
    host.closeDocument(doc);
    host.newDocument("other");
    EXPECT_EQ(world, saved);
    world.FlushAll();
    ASSERT_TRUE(host.loadPreferences(path));
    EXPECT_EQ(world, saved);
    spit(path, R"({"format": "embedded-host-preferences", "version": 1, "data": {"entries": [[10000, "long", "3"]]}})");
    std::string error;
    EXPECT_FALSE(host.loadPreferences(path, &error));
    EXPECT_NE(error.find("data.entries[0][2]: expected an integer"), std::string::npos) << error;
    EXPECT_EQ(world, saved);
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
