// Geometry through snapshots: meshes read in the core's axes and written as
// given, texture coordinates with and without a UVW tag, meshes the core gets
// wrong, splines, ray tests and the helper.
#include "core_api/csnapshot.h"
#include "node_fixture.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

using tvr::util::CMesh;
using tvr::util::Vec3d;

// A unit quad's two triangles at depth z, with a coordinate per point.
CMesh quadMesh(double z) {
    CMesh m;
    m.setPointCount(4);
    m.setPoint(0, 0, 0, z);
    m.setPoint(1, 1, 0, z);
    m.setPoint(2, 1, 1, z);
    m.setPoint(3, 0, 1, z);
    m.setPolygonCount(2);
    m.setPolygon(0, 0, 1, 2);
    m.setPolygon(1, 0, 2, 3);
    m.setUVCount(4);
    for (int i = 0; i < 4; ++i) m.setUV(i, i * 0.25, 1.0 - i * 0.25, 0);
    m.setPolygonUV(0, 0, 1, 2);
    m.setPolygonUV(1, 0, 2, 3);
    return m;
}

class GeometryTest : public NodeTest {
protected:
    CMesh read(CC4DNode* node) {
        CMeshSnapshot* s = node->acquireMeshSnapshot(0);
        EXPECT_NE(s, nullptr);
        if (!s) return CMesh();
        CMesh out;
        tvr::util::ReturnValue<CMesh> sink(&out);
        EXPECT_TRUE(s->getMesh(&sink));
        node->releaseMeshSnapshot(s);
        delete s;
        return out;
    }
};

TEST_F(GeometryTest, MeshesAreWrittenAsGivenAndReadInTheCoresAxes) {
    CC4DNode* node = mesh("quad", quadMesh(3));
    ASSERT_NE(node, nullptr);
    auto* poly = static_cast<PolygonObject*>(node->object());
    ASSERT_EQ(poly->GetType(), Opolygon);
    EXPECT_EQ(poly->GetPointCount(), 4);
    EXPECT_EQ(poly->GetPointR()[2], Vector(1, 1, 3));  // not negated on the way in
    EXPECT_EQ(poly->GetPolygonR()[1], CPolygon(0, 2, 3));
    EXPECT_EQ(poly->GetTag(Tuvw), nullptr);  // no tag was there, none is made

    const CMesh back = read(node);
    EXPECT_EQ(back.getPointCount(), 4);
    EXPECT_EQ(back.getPoint(2), (Vec3d{1, 1, -3}));  // negated on the way out
    std::int32_t a, b, c;
    ASSERT_TRUE(back.getPolygon(1, a, b, c));
    EXPECT_EQ((std::vector<int>{a, b, c}), (std::vector<int>{0, 2, 3}));
    EXPECT_EQ(back.getUVCount(), 0);  // without a UVW tag

    // A quadrangle arrives as its first triangle; with a tag, the coordinate
    // count is the polygon count.
    poly->ResizeObject(4, 1);
    poly->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
    poly->InsertTag(UVWTag::Alloc(1));
    const CMesh quad = read(node);
    ASSERT_EQ(quad.getPolygonCount(), 1);
    ASSERT_TRUE(quad.getPolygon(0, a, b, c));
    EXPECT_EQ((std::vector<int>{a, b, c}), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(quad.getUVCount(), 1);
    CMeshSnapshot* s = node->acquireMeshSnapshot(0);
    EXPECT_EQ(s->getMeshValue().getPolygonCount(), 1);
    delete s;
}

TEST_F(GeometryTest, TextureCoordinatesGoIntoTheObjectsUvwTag) {
    CC4DNode* node = mesh("quad", CMesh());
    auto* poly = static_cast<PolygonObject*>(node->object());
    auto* uvw = UVWTag::Alloc(2);
    poly->InsertTag(uvw);
    CMesh m = quadMesh(0);
    // The second triangle names point 3, which is not below the coordinate
    // count of 3 here: it gets zeros.
    m.setUVCount(3);
    m.setPolygonUV(1, 0, 2, 2);
    CMeshSnapshot* s = node->acquireMeshSnapshot(0);
    s->setMesh(m);
    delete s;
    const UVWStruct first = uvw->GetSlow(0);
    EXPECT_EQ(first.a, Vector(0, 1, 0));
    EXPECT_EQ(first.b, Vector(0.25f, 0.75f, 0));
    EXPECT_EQ(first.c, Vector(0.5f, 0.5f, 0));
    EXPECT_EQ(uvw->GetSlow(1), UVWStruct());
}

TEST_F(GeometryTest, MeshesNamingWhatTheyDoNotHaveAreRefusedWithNothingWritten) {
    CC4DNode* node = mesh("quad", quadMesh(0));
    node->object()->InsertTag(UVWTag::Alloc(2));
    const std::string scene = host.dump(doc);
    CMeshSnapshot* s = node->acquireMeshSnapshot(0);
    CMesh badPoint = quadMesh(0);
    badPoint.polygons[4] = 9;
    CMesh badCoordinate = quadMesh(0);
    badCoordinate.uvIndices[0] = 4;
    CMesh mismatched = quadMesh(0);
    mismatched.uvIndices.pop_back();
    const auto mark = logMark();
    for (const CMesh* m : {&badPoint, &badCoordinate, &mismatched}) s->setMesh(*m);
    delete s;
    EXPECT_EQ(host.dump(doc), scene);
    const std::string log = logSince(mark);
    EXPECT_NE(log.find("(ERROR): \tSet SSh Helper Mesh refused: triangle 1 names point 9 of 4\n"), std::string::npos)
        << log;
    EXPECT_NE(log.find("refused: triangle 0 names coordinate 4 of 4\n"), std::string::npos) << log;
    EXPECT_NE(log.find("refused: its triangle and coordinate index lists do not match\n"), std::string::npos);

    // Creating a mesh node from such a mesh makes nothing at all.
    EXPECT_EQ(adaptor->createMeshNode(&master, "bad", nullptr, badPoint, nullptr), nullptr);
    EXPECT_EQ(host.dump(doc), scene);
    EXPECT_EQ(liveNodes().size(), 1u);

    // A camera has no polygons to write or read.
    CC4DNode* cam = camera("cam");
    CMeshSnapshot* onCamera = cam->acquireMeshSnapshot(0);
    ASSERT_NE(onCamera, nullptr);
    onCamera->setMesh(quadMesh(0));
    CMesh out;
    tvr::util::ReturnValue<CMesh> sink(&out);
    EXPECT_FALSE(onCamera->getMesh(&sink));
    delete onCamera;
}

TEST_F(GeometryTest, CreatingAMeshNodeClearsAndWritesUnderThreeChangeRecords) {
    mesh("quad", quadMesh(0));
    EXPECT_EQ(journal("AddUndo"),
              (std::vector<std::string>{"44 object:5100 'Tool_quad'", "40 object:5100 'Tool_quad'",
                                        "40 object:5100 'Tool_quad'", "40 object:5100 'Tool_quad'"}));
    EXPECT_EQ(journal("Message"), (std::vector<std::string>{"object:5100 'Tool_quad' 604"}));
}

TEST_F(GeometryTest, MeshSnapshotsOutliveTheirNodeAndAnswerNothingOnceTheObjectIsGone) {
    CC4DNode* node = mesh("quad", quadMesh(5));
    CMeshSnapshot* s = node->acquireMeshSnapshot(0);
    BaseObject* op = node->object();
    drop(node);
    delete node;
    // Rays in the core's axes: the quad lies at host z 5, core z -5.
    const double origin[3] = {0.25, 0.5, -10};
    const double away[3] = {0, 0, -1};
    double distance = 0;
    double hit[3] = {};
    EXPECT_FALSE(s->intersectRay(origin, away, &distance, hit));
    const double down[3] = {0, 0, 1};
    const double from[3] = {0.25, 0.5, -10};
    ASSERT_TRUE(s->intersectRay(from, down, &distance, hit));
    EXPECT_NEAR(distance, 5.0, 1e-5);
    EXPECT_NEAR(hit[0], 0.25, 1e-6);
    EXPECT_NEAR(hit[2], -5.0, 1e-5);
    EXPECT_TRUE(s->intersectRay(from, down, nullptr, nullptr));
    const double aside[3] = {5, 5, -10};
    EXPECT_FALSE(s->intersectRay(aside, down, &distance, hit));

    BaseObject::Free(op);
    EXPECT_FALSE(s->intersectRay(from, down, &distance, hit));
    EXPECT_EQ(s->getMeshValue().getPointCount(), 0);
    s->setMesh(quadMesh(0));
    delete s;
}

TEST_F(GeometryTest, ShapesMeasureSplinesInTheCoresAxes) {
    SplineObject* spline = SplineObject::Alloc(3);
    Vector* p = spline->GetPointW();
    p[0] = Vector(0, 0, 0);
    p[1] = Vector(10, 0, 0);
    p[2] = Vector(10, 0, 10);
    spline->SetName("path");
    doc->InsertObject(spline, nullptr, nullptr);
    CC4DNode* node = wrap(spline, "path");
    CShapeSnapshot* shape = node->acquireShape(0);
    EXPECT_EQ(shape->getShapeKind(), 1);
    shape->setShapeIndex(4);
    EXPECT_EQ(shape->getShapeIndex(), 0);  // never stored
    EXPECT_NEAR(shape->getLength(), 20.0, 1e-5);
    const Vec3d start = shape->getPoint(0);
    const Vec3d end = shape->getPoint(1);
    EXPECT_EQ(start, (Vec3d{0, 0, -0.0}));
    EXPECT_NEAR(end.x, 10, 1e-5);
    EXPECT_NEAR(end.z, -10, 1e-5);
    const Vec3d corner = shape->getPoint(0.5);
    EXPECT_NEAR(corner.x, 10, 1e-4);
    EXPECT_NEAR(corner.z, 0, 1e-4);
    const Vec3d along = shape->getTangent(0.75);
    EXPECT_NEAR(along.z, -1, 1e-5);
    // Not a spline: nothing to measure.
    CShapeSnapshot* none = camera("cam")->acquireShape(0);
    EXPECT_EQ(none->getLength(), 0.0);
    EXPECT_EQ(none->getTangent(0.5), Vec3d{});
}

TEST_F(GeometryTest, TheHelperShowsItsMeshAndColour) {
    CC4DNode* node = mesh("helper", CMesh());
    CHelperSnapshot* helper = node->createHelperSnapshot();
    ASSERT_NE(helper, nullptr);
    const auto mark = logMark();
    helper->setHelperMesh(quadMesh(1));
    EXPECT_EQ(static_cast<PolygonObject*>(node->object())->GetPolygonCount(), 2);
    host.journal().clear();
    helper->setHelperColor(1.0f, 0.5f, 0.25f);
    ObjectColorProperties colour;
    node->object()->GetColorProperties(&colour);
    EXPECT_EQ(colour.usecolor, 2);
    EXPECT_EQ(colour.color, Vector(1.0f, 0.5f, 0.25f));
    EXPECT_EQ(host.journal().toString(),
              "AddUndo 40 object:5100 'Tool_helper'\nMessage object:5100 'Tool_helper' 5\nEventAdd 0\n");
    helper->setWireframeMode(true);
    helper->setBackfaceCulling(true);
    const std::string log = logSince(mark);
    EXPECT_NE(log.find("Set SSh Helper Mesh\n"), std::string::npos);
    EXPECT_NE(log.find("\tSet SSh Helper Mesh done\n"), std::string::npos) << log;
    EXPECT_NE(log.find("Set Wireframe Mode (Not implemented)\n"), std::string::npos);
    EXPECT_NE(log.find("Set BackCull (Not implemented)\n"), std::string::npos);
    node->releaseHelperSnapshot(helper);
    delete helper;
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
