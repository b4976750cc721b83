#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "embedded_host/geometry/geometry_ray.h"
#include "embedded_host/geometry/geometry_spline.h"

using namespace tvr::plr::embedded::geometry;

namespace {
void expectNear(const Vec3& actual, const Vec3& expected, double eps = 1e-9) {
    EXPECT_NEAR(actual.x, expected.x, eps);
    EXPECT_NEAR(actual.y, expected.y, eps);
    EXPECT_NEAR(actual.z, expected.z, eps);
}
}  // namespace

TEST(LinearSegment, OpenPolylineMeasuresMatchArcLength) {
    // Edges of lengths 1 and 3: a quarter of the arc ends the first edge.
    LinearSegment s({{0, 0, 0}, {1, 0, 0}, {1, 3, 0}}, false);
    EXPECT_DOUBLE_EQ(s.length(), 4.0);
    EXPECT_DOUBLE_EQ(s.uniformToNatural(0.25), 0.5);
    EXPECT_NEAR(s.uniformToNatural(0.5), (1.0 + 1.0 / 3.0) / 2.0, 1e-12);
    EXPECT_DOUBLE_EQ(s.uniformToNatural(0.0), 0.0);
    EXPECT_DOUBLE_EQ(s.uniformToNatural(1.0), 1.0);
    EXPECT_NEAR(s.naturalToUniform(s.uniformToNatural(0.8)), 0.8, 1e-12);
    expectNear(s.point(s.uniformToNatural(0.5)), {1, 1, 0});
    expectNear(s.point(0.25), {0.5, 0, 0});
    expectNear(s.point(1.0), {1, 3, 0});
    expectNear(s.tangent(0.25), {1, 0, 0});
    expectNear(s.tangent(0.5), {0, 1, 0});  // a shared vertex takes the following edge
    expectNear(s.tangent(1.0), {0, 1, 0});
    // Out-of-range parameters clamp to the ends.
    expectNear(s.point(-2.0), {0, 0, 0});
    expectNear(s.point(7.0), {1, 3, 0});
    EXPECT_DOUBLE_EQ(s.uniformToNatural(std::nan("")), 0.0);
}

TEST(LinearSegment, DegenerateSegmentsStayFinite) {
    EXPECT_DOUBLE_EQ(LinearSegment().length(), 0.0);
    expectNear(LinearSegment().point(0.5), {0, 0, 0});
    LinearSegment single({{4, 5, 6}}, true);
    expectNear(single.point(0.3), {4, 5, 6});
    expectNear(single.tangent(0.3), {0, 0, 0});
    EXPECT_DOUBLE_EQ(single.uniformToNatural(0.3), 0.3);
    // A repeated point makes a zero-length edge: it is skipped by arc length
    // and borrows its neighbour's direction.
    LinearSegment repeated({{0, 0, 0}, {0, 0, 0}, {0, 0, 5}}, false);
    EXPECT_DOUBLE_EQ(repeated.length(), 5.0);
    EXPECT_DOUBLE_EQ(repeated.uniformToNatural(0.2), 0.5 + 0.1);
    expectNear(repeated.tangent(0.1), {0, 0, 1});
}

TEST(LinearSegment, RandomPolylinesAgreeWithSummedEdges) {
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> coord(-10, 10);
    for (int round = 0; round < 50; ++round) {
        std::vector<Vec3> pts(2 + round % 9);
        for (auto& p : pts) p = {coord(rng), coord(rng), coord(rng)};
        const bool closed = round % 2 == 0;
        LinearSegment s(pts, closed);
        double sum = 0;
        for (std::size_t i = 0; i + 1 < pts.size(); ++i) sum += length(pts[i + 1] - pts[i]);
        if (closed) sum += length(pts.front() - pts.back());
        ASSERT_NEAR(s.length(), sum, 1e-9);
        // Walking the uniform parameter covers equal arc lengths.
        Vec3 prev = s.point(s.uniformToNatural(0));
        for (int k = 1; k <= 20; ++k) {
            const double t = s.uniformToNatural(k / 20.0);
            const Vec3 p = s.point(t);
            EXPECT_LE(length(p - prev), sum / 20.0 + 1e-9);
            EXPECT_NEAR(length(s.tangent(t)), 1.0, 1e-12);
            prev = p;
        }
    }
}

TEST(RayMesh, PlaneHitsGiveDistanceFaceAndSideAndSkipBrokenPolygons) {
    // Unit quad in the plane z = 2, and a triangle behind it at z = 5.
    RayMesh mesh({{-1, -1, 2}, {1, -1, 2}, {1, 1, 2}, {-1, 1, 2}, {-5, -5, 5}, {5, -5, 5}, {0, 5, 5}},
                 {{0, 1, 2, 3}, {4, 5, 6, 6}});
    EXPECT_EQ(mesh.triangleCount(), 3u);
    auto hits = mesh.intersect({0.5, 0.5, 0}, {0, 0, 10}, 1e9);  // direction need not be unit
    ASSERT_EQ(hits.size(), 2u);
    EXPECT_EQ(hits[0].faceId, 0);
    EXPECT_DOUBLE_EQ(hits[0].distance, 2.0);
    expectNear(hits[0].position, {0.5, 0.5, 2});
    EXPECT_EQ(hits[1].faceId, 1);
    EXPECT_DOUBLE_EQ(hits[1].distance, 5.0);
    EXPECT_EQ(hits[1].triFaceId, 2);
    // The second half of the quadrangle is hit below the diagonal from a to c
    // the other way round.
    hits = mesh.intersect({-0.5, 0.5, 0}, {0, 0, 1}, 1e9);
    ASSERT_FALSE(hits.empty());
    EXPECT_EQ(hits[0].triFaceId, 1);
    // Facing: the quad's normal (b - a) x (c - a) points along +z.
    EXPECT_TRUE(hits[0].backface);
    EXPECT_FALSE(mesh.intersect({0.5, 0.5, 9}, {0, 0, -1}, 1e9).at(0).backface);
    // The diagonal itself counts once for the polygon.
    hits = mesh.intersect({0, 0, 0}, {0, 0, 1}, 3);
    ASSERT_EQ(hits.size(), 1u);
    // Length limit, rays pointing away, parallel rays and a zero direction miss.
    EXPECT_TRUE(mesh.intersect({0.5, 0.5, 0}, {0, 0, 1}, 1.9).empty());
    EXPECT_TRUE(mesh.intersect({0.5, 0.5, 0}, {0, 0, -1}, 1e9).empty());
    EXPECT_TRUE(mesh.intersect({0, 0, 2}, {1, 0, 0}, 1e9).empty());
    EXPECT_TRUE(mesh.intersect({0, 0, 0}, {0, 0, 0}, 1e9).empty());
    EXPECT_TRUE(mesh.intersect({3, 3, 0}, {0, 0, 1}, 4).empty());
    // Polygons naming missing points are skipped; the last keeps its valid first half.
    RayMesh broken({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}}, {{0, 1, 7, 7}, {-1, 0, 1, 2}, {0, 1, 2, 9}});
    EXPECT_EQ(broken.triangleCount(), 1u);
    EXPECT_EQ(broken.intersect({0.2, 0.2, 0}, {0, 0, 1}, 10).size(), 1u);
}

TEST(RayMesh, BoxHitsEntryAndExitFaces) {
    // Axis-aligned box [-1, 1]^3 as six quadrangles.
    std::vector<Vec3> p;
    for (int i = 0; i < 8; ++i) p.push_back({i & 1 ? 1.0 : -1.0, i & 2 ? 1.0 : -1.0, i & 4 ? 1.0 : -1.0});
    std::vector<Quad> faces{{0, 1, 3, 2}, {4, 6, 7, 5}, {0, 4, 5, 1}, {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 5, 7, 3}};
    RayMesh box(p, faces);
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> inside(-0.9, 0.9);
    for (int round = 0; round < 100; ++round) {
        // From outside along x: enters at x = -1, leaves at x = 1.
        const Vec3 origin{-4, inside(rng), inside(rng)};
        const auto hits = box.intersect(origin, {1, 0, 0}, 100);
        ASSERT_EQ(hits.size(), 2u);
        EXPECT_NEAR(hits[0].distance, 3.0, 1e-12);
        EXPECT_NEAR(hits[1].distance, 5.0, 1e-12);
        EXPECT_EQ(hits[0].faceId, 4);
        EXPECT_EQ(hits[1].faceId, 5);
        // From the centre, any direction leaves through exactly one face at
        // the distance where the largest component reaches 1.
        Vec3 d{inside(rng), inside(rng), inside(rng)};
        const double n = length(d);
        if (n < 1e-3) continue;
        const auto out = box.intersect({0, 0, 0}, d, 100);
        ASSERT_GE(out.size(), 1u);
        const double m = std::max({std::fabs(d.x), std::fabs(d.y), std::fabs(d.z)}) / n;
        EXPECT_NEAR(out[0].distance, 1.0 / m, 1e-9);
    }
}
