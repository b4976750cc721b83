// The pictures read back with an independent XML parser: what a person would
// see (which objects, where, how many keys) must be what the scene holds.
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <cmath>
#include <string>

#include "embedded_host/runtime/embedded_host.h"
#include "hostsim/scene_picture.h"

namespace hostsim {
namespace {

using tvr::plr::embedded::EmbeddedHost;
using tvr::plr::embedded::HostOptions;

HostOptions quiet() {
    HostOptions o;
    o.crashHandlers = false;
    return o;
}

class PictureTest : public ::testing::Test {
protected:
    PictureTest() : host(quiet()) { doc = host.newDocument("pictures"); }

    BaseObject* add(const char* name, LONG type, const Vector& pos, BaseObject* parent = nullptr) {
        BaseObject* op = type == Opolygon ? PolygonObject::Alloc(4, 1)
                         : type == Ospline ? SplineObject::Alloc(3)
                                           : BaseObject::Alloc(type);
        op->SetName(name);
        op->SetPos(pos);
        doc->InsertObject(op, parent, nullptr);
        return op;
    }

    pugi::xml_node object(const pugi::xml_document& svg, const char* name) {
        return svg.child("svg").find_child_by_attribute("g", "data-name", name);
    }

    EmbeddedHost host;
    BaseDocument* doc = nullptr;
};

void parse(pugi::xml_document& svg, const std::string& text) {
    const pugi::xml_parse_result r = svg.load_string(text.c_str());
    ASSERT_TRUE(r) << r.description() << "\n" << text;
}

TEST_F(PictureTest, SceneIsSeenThroughTheActiveCamera) {
    BaseObject* eye = add("Eye", Ocamera, Vector(0, 0, 0));
    eye->GetDataInstance()->SetReal(CAMERAOBJECT_FOV, Real(std::acos(-1.0) / 2));  // 90 degrees: focal 400 px
    add("Target", Onull, Vector(100, 50, 200));
    add("Behind", Onull, Vector(0, 0, -10));
    auto* mesh = static_cast<PolygonObject*>(add("Quad", Opolygon, Vector(0, 0, 100)));
    Vector* p = mesh->GetPointW();
    p[0] = Vector(-10, -10, 0), p[1] = Vector(10, -10, 0), p[2] = Vector(10, 10, 0), p[3] = Vector(-10, 10, 0);
    mesh->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
    auto* path = static_cast<SplineObject*>(add("Path", Ospline, Vector(0, 0, 50)));
    path->GetPointW()[1] = Vector(5, 0, 0), path->GetPointW()[2] = Vector(5, 5, 0);
    add("Other", Ocamera, Vector(0, 0, 300));
    doc->SetActiveObject(eye);

    pugi::xml_document svg;
    parse(svg, drawScene(doc));
    EXPECT_STREQ(svg.child("svg").attribute("data-camera").value(), "Eye");
    EXPECT_EQ(svg.select_nodes("//g[@class='object']").size(), 6u);
    pugi::xml_node target = object(svg, "Target");
    EXPECT_DOUBLE_EQ(target.attribute("data-x").as_double(), 600.0);
    EXPECT_DOUBLE_EQ(target.attribute("data-y").as_double(), 200.0);
    EXPECT_STREQ(target.child("text").child_value(), "Target");
    EXPECT_TRUE(object(svg, "Behind").attribute("data-x").empty());
    EXPECT_EQ(object(svg, "Quad").select_nodes("line").size(), 4u);
    EXPECT_EQ(object(svg, "Path").select_nodes("line").size(), 2u);
    EXPECT_EQ(object(svg, "Other").select_nodes("line").size(), 8u);  // the cone: four edges, four rim lines
    EXPECT_EQ(object(svg, "Eye").select_nodes("line").size(), 0u);    // no cone for the camera we look through
    EXPECT_STREQ(object(svg, "Quad").attribute("data-kind").value(), "mesh");

    // Another active camera, another view: the same target now straight ahead.
    BaseObject* side = add("Side", Ocamera, Vector(100, 50, 0));
    doc->SetActiveObject(side);
    parse(svg, drawScene(doc));
    EXPECT_STREQ(svg.child("svg").attribute("data-camera").value(), "Side");
    EXPECT_DOUBLE_EQ(object(svg, "Target").attribute("data-x").as_double(), 400.0);
    EXPECT_DOUBLE_EQ(object(svg, "Target").attribute("data-y").as_double(), 300.0);
}

TEST_F(PictureTest, WithoutACameraTheFrontViewFitsTheScene) {
    add("Low", Onull, Vector(-1, -1, 0));
    BaseObject* parent = add("Parent", Onull, Vector(0.5, 0.5, 5));
    add("High", Onull, Vector(0.5, 0.5, 0), parent);  // placed through its parent
    add("Name <&>", Onull, Vector(0, 0, 0));
    pugi::xml_document svg;
    parse(svg, drawScene(doc));
    EXPECT_STREQ(svg.child("svg").attribute("data-view").value(), "front");
    // Two units fill 520 of the 600 pixels' height, so 260 a unit about the centre.
    EXPECT_DOUBLE_EQ(object(svg, "Low").attribute("data-x").as_double(), 140.0);
    EXPECT_DOUBLE_EQ(object(svg, "Low").attribute("data-y").as_double(), 560.0);
    EXPECT_DOUBLE_EQ(object(svg, "High").attribute("data-x").as_double(), 660.0);
    EXPECT_DOUBLE_EQ(object(svg, "High").attribute("data-y").as_double(), 40.0);
    EXPECT_FALSE(object(svg, "Name <&>").empty());
}

TEST_F(PictureTest, CurvesShowEveryTrackSampledEachFrameWithItsKeys) {
    doc->SetFps(30);
    doc->SetMinTime(BaseTime(0.0));
    doc->SetMaxTime(BaseTime(1.0));
    BaseObject* op = add("Mover", Onull, Vector());
    const auto track = [&](LONG group, LONG component, std::initializer_list<std::pair<double, Real>> keys) {
        CTrack* t = CTrack::Alloc(op, DescID(DescLevel(group, DTYPE_VECTOR, 0), DescLevel(component, DTYPE_REAL, 0)));
        op->InsertTrackSorted(t);
        CCurve* curve = t->GetCurve();
        for (const auto& k : keys) curve->AddKey(BaseTime(Real(k.first)))->SetValue(curve, k.second);
    };
    track(ID_BASEOBJECT_POSITION, VECTOR_X, {{0.0, 0}, {1.0, 10}});
    track(ID_BASEOBJECT_ROTATION, VECTOR_X + 1, {{0.5, 1}});

    std::string error;
    pugi::xml_document svg;
    parse(svg, drawCurves(doc, op, error));
    EXPECT_EQ(error, "");
    EXPECT_EQ(svg.select_nodes("//g[@class='panel']").size(), 2u);
    pugi::xml_node x = svg.select_node("//polyline[@data-track='position.x']").node();
    ASSERT_FALSE(x.empty());
    const std::string points = x.attribute("points").value();
    EXPECT_EQ(std::count(points.begin(), points.end(), ','), 31);  // frames 0 to 30
    EXPECT_EQ(svg.select_nodes("//circle[@class='key'][@data-track='position.x']").size(), 2u);
    EXPECT_EQ(svg.select_nodes("//circle[@class='key'][@data-track='rotation.p']").size(), 1u);
    // The panel's order is fixed: position above rotation.
    EXPECT_STREQ(svg.select_node("//g[@class='panel'][1]").node().attribute("data-group").value(), "position");

    BaseObject* still = add("Still", Onull, Vector());
    EXPECT_EQ(drawCurves(doc, still, error), "");
    EXPECT_EQ(error, "Still has no animation tracks");
}

}  // namespace
}  // namespace hostsim
