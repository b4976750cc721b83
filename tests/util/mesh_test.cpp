#include "util/mesh.h"
#include "util/return_value.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tvr::util {
namespace {

TEST(MeshTest, CountsSettersAndBounds) {
    CMesh mesh;
    EXPECT_TRUE(mesh.setPointCount(3));
    EXPECT_TRUE(mesh.setPolygonCount(2));
    EXPECT_TRUE(mesh.setUVCount(4));
    EXPECT_EQ(mesh.getPointCount(), 3);
    EXPECT_EQ(mesh.getPolygonCount(), 2);
    EXPECT_EQ(mesh.getUVCount(), 4);
    EXPECT_EQ(mesh.polygons.size(), 6u);
    EXPECT_EQ(mesh.uvIndices.size(), 6u);

    EXPECT_TRUE(mesh.setPoint(2, 1.5, -2, 3));
    EXPECT_TRUE(mesh.setPolygon(1, 0, 1, 2));
    EXPECT_TRUE(mesh.setPolygonUV(1, 3, 2, 1));
    EXPECT_TRUE(mesh.setUV(3, 0.25, 0.5, 0));
    EXPECT_EQ(mesh.getPoint(2), (Vec3d{1.5, -2, 3}));
    EXPECT_EQ(mesh.getUV(3), (Vec3d{0.25, 0.5, 0}));
    EXPECT_EQ(mesh.polygons, (std::vector<std::int32_t>{0, 0, 0, 0, 1, 2}));
    EXPECT_EQ(mesh.uvIndices, (std::vector<std::int32_t>{0, 0, 0, 3, 2, 1}));
    std::int32_t a = -1, b = -1, c = -1;
    EXPECT_TRUE(mesh.getPolygon(1, a, b, c));
    EXPECT_EQ(c, 2);

    // Out of range: refused, nothing changes.
    EXPECT_FALSE(mesh.setPoint(3, 9, 9, 9));
    EXPECT_FALSE(mesh.setPoint(-1, 9, 9, 9));
    EXPECT_FALSE(mesh.setPolygon(2, 9, 9, 9));
    EXPECT_FALSE(mesh.setPolygonUV(-1, 9, 9, 9));
    EXPECT_FALSE(mesh.setUV(4, 9, 9, 9));
    EXPECT_FALSE(mesh.getPolygon(2, a, b, c));
    EXPECT_EQ(mesh.getPoint(7), Vec3d{});
    EXPECT_FALSE(mesh.setPointCount(-1));
    EXPECT_FALSE(mesh.setPolygonCount(-5));
    EXPECT_EQ(mesh.getPointCount(), 3);
    EXPECT_EQ(mesh.getPolygonCount(), 2);

    // Shrinking keeps what fits.
    EXPECT_TRUE(mesh.setPolygonCount(1));
    EXPECT_EQ(mesh.uvIndices.size(), 3u);
}

// A mesh that counts how often its own copy operation runs.
class CountingMesh : public CMesh {
public:
    CountingMesh& operator=(const CMesh& other) override {
        ++copies;
        CMesh::operator=(other);
        return *this;
    }
    int copies = 0;
};

TEST(ReturnValueTest, SetWritesIntoTheCallersStorage) {
    std::vector<std::string> owned{"old", "values", "here"};
    ReturnValue<std::vector<std::string>> sink(&owned);
    std::vector<std::string>* result = sink.set({"a", "b"});
    EXPECT_EQ(result, &owned);
    EXPECT_EQ(sink.get(), &owned);
    const auto& constSink = sink;
    EXPECT_EQ(constSink.get(), &owned);
    EXPECT_EQ(owned, (std::vector<std::string>{"a", "b"}));

    CountingMesh coreMesh;
    ReturnValue<CMesh> meshSink(&coreMesh);
    CMesh made;
    made.setPointCount(2);
    made.setPoint(1, 4, 5, 6);
    EXPECT_EQ(meshSink.set(made), &coreMesh);
    EXPECT_EQ(coreMesh.copies, 1);
    EXPECT_EQ(coreMesh.getPoint(1), (Vec3d{4, 5, 6}));

    ReturnValue<std::string> empty(nullptr);
    EXPECT_EQ(empty.set("ignored"), nullptr);
}

}  // namespace
}  // namespace tvr::util
