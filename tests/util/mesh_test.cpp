#include "util/mesh.h"
#include "util/return_value.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tvr::util {
namespace {

TEST(MeshTest, SizesIndicesAndBounds) {
    CMesh mesh;
    EXPECT_TRUE(mesh.setPointCount(3));
    EXPECT_TRUE(mesh.setPolygonCount(2));
    EXPECT_EQ(mesh.getPolygonCount(), 2);
    EXPECT_EQ(mesh.uvIndices.size(), 6u);
    EXPECT_TRUE(mesh.setPolygon(1, 0, 1, 2));
    EXPECT_TRUE(mesh.setPolygonUV(1, 3, 2, 1));
    EXPECT_EQ(mesh.polygons, (std::vector<std::int32_t>{0, 0, 0, 0, 1, 2}));
    EXPECT_EQ(mesh.uvIndices, (std::vector<std::int32_t>{0, 0, 0, 3, 2, 1}));

    EXPECT_FALSE(mesh.setPoint(3, 9, 9, 9));
    EXPECT_FALSE(mesh.setPoint(-1, 9, 9, 9));
    EXPECT_FALSE(mesh.setPolygon(2, 9, 9, 9));
    EXPECT_FALSE(mesh.setUV(0, 9, 9, 9));
    EXPECT_FALSE(mesh.setPolygonCount(-5));
    EXPECT_EQ(mesh.getPolygonCount(), 2);
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
    EXPECT_EQ(sink.set({"a", "b"}), &owned);
    EXPECT_EQ(owned, (std::vector<std::string>{"a", "b"}));

    CountingMesh coreMesh;
    ReturnValue<CMesh> meshSink(&coreMesh);
    CMesh made;
    made.setPointCount(2);
    made.setPoint(1, 4, 5, 6);
    EXPECT_EQ(meshSink.set(made), &coreMesh);
    EXPECT_EQ(coreMesh.copies, 1);
    EXPECT_EQ(coreMesh.getPoint(1), (Vec3d{4, 5, 6}));

    EXPECT_EQ(ReturnValue<std::string>(nullptr).set("ignored"), nullptr);
}

}  // namespace
}  // namespace tvr::util
