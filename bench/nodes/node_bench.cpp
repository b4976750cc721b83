// Scene nodes at scale, through the module loaded into the embedded host:
//  - one run-loop step of a recording: 1,000 nodes three levels deep, global
//    matrix read and written back, keys set;
//  - a mesh of 1,000,000 triangles read and written through a snapshot,
//    beside a plain copy of the same arrays.
#include <benchmark/benchmark.h>

#include <vector>

#include "core_api/csnapshot.h"
#include "loaded_host.h"
#include "nodes/c4d_node.h"

namespace {

using namespace tvr::plr::bench;
using tvr::plr::adaptor::cinema4d::CC4DNode;

// Ten roots, ten children each, ten grandchildren each: nodes on the 1,000
// grandchildren, prepared for a direct recording.
void BM_RecordingStep(benchmark::State& state) {
    LoadedHost h;
    std::vector<CC4DNode*> nodes;
    for (int a = 0; a < 10; ++a) {
        BaseObject* root = addObject(h.doc, nullptr);
        root->SetPos(Vector(float(a), 0, 0));
        for (int b = 0; b < 10; ++b) {
            BaseObject* mid = addObject(h.doc, root);
            mid->SetRot(Vector(0.1f * float(b), 0, 0));
            for (int c = 0; c < 10; ++c) {
                BaseObject* leaf = addObject(h.doc, mid);
                leaf->SetPos(Vector(0, float(c), 1));
                nodes.push_back(new CC4DNode(&h.master, "leaf", nullptr, leaf, false));
            }
        }
    }
    for (CC4DNode* n : nodes) n->prepareRecording(h.doc);
    h.adaptor->recording = true;
    long frame = 0;
    for (auto _ : state) {
        // Three seconds of frames, over and over: curves hold at most 90 keys.
        const double seconds = static_cast<double>(frame++ % 90) / 30.0;
        for (CC4DNode* n : nodes) {
            tvr::plr::CTransformSnapshot* s = n->acquireSnapshot(seconds);
            const tvr::util::Matrix4d m = s->getGlobalMatrix();
            s->setGlobalMatrix(m);
            n->releaseSnapshot(s);
        }
    }
    h.adaptor->recording = false;
    for (auto it = nodes.rbegin(); it != nodes.rend(); ++it) delete *it;
}
BENCHMARK(BM_RecordingStep)->Unit(benchmark::kMillisecond);

// 1,000 by 500 squares, two triangles each: 1,000,000 triangles.
tvr::util::CMesh bigMesh() {
    tvr::util::CMesh m;
    const int w = 1000, d = 500, side = w + 1;
    m.setPointCount(side * (d + 1));
    for (int z = 0; z <= d; ++z)
        for (int x = 0; x <= w; ++x) m.setPoint(z * side + x, x, 0, z);
    m.setPolygonCount(2 * w * d);
    int t = 0;
    for (int z = 0; z < d; ++z) {
        for (int x = 0; x < w; ++x) {
            const int a = z * side + x;
            m.setPolygon(t++, a, a + 1, a + side + 1);
            m.setPolygon(t++, a, a + side + 1, a + side);
        }
    }
    return m;
}

struct MeshFixture {
    LoadedHost h;
    tvr::util::CMesh mesh = bigMesh();
    core::CoreNode* node = h.adaptor->createMeshNode(&h.master, "big", nullptr, mesh, nullptr);
    tvr::plr::CMeshSnapshot* snapshot = node->acquireMeshSnapshot(0);
    ~MeshFixture() {
        delete snapshot;
        node->release();
    }
};

void BM_GetMesh(benchmark::State& state) {
    MeshFixture f;
    tvr::util::CMesh out;
    tvr::util::ReturnValue<tvr::util::CMesh> sink(&out);
    for (auto _ : state) {
        benchmark::DoNotOptimize(f.snapshot->getMesh(&sink));
        benchmark::DoNotOptimize(out.points.data());
    }
}
BENCHMARK(BM_GetMesh)->Unit(benchmark::kMillisecond);

void BM_SetMesh(benchmark::State& state) {
    MeshFixture f;
    for (auto _ : state) f.snapshot->setMesh(f.mesh);
}
BENCHMARK(BM_SetMesh)->Unit(benchmark::kMillisecond);

// What any exchange of the mesh costs at least: its points and triangles copied.
void BM_PlainMeshCopy(benchmark::State& state) {
    const tvr::util::CMesh mesh = bigMesh();
    for (auto _ : state) {
        std::vector<tvr::util::Vec3d> points = mesh.points;
        std::vector<std::int32_t> polygons = mesh.polygons;
        benchmark::DoNotOptimize(points.data());
        benchmark::DoNotOptimize(polygons.data());
    }
}
BENCHMARK(BM_PlainMeshCopy)->Name("BM_SetMesh | copy")->Unit(benchmark::kMillisecond);

// The reference for getMesh: every array it hands back copied, the UV index
// list (sized with the triangles) and any UVW entries included.
void BM_PlainCopyOfReadMesh(benchmark::State& state) {
    MeshFixture f;
    tvr::util::CMesh mesh;
    tvr::util::ReturnValue<tvr::util::CMesh> sink(&mesh);
    if (!f.snapshot->getMesh(&sink)) state.SkipWithError("no mesh to copy");
    // Into kept arrays, as getMesh fills the core's kept mesh: fresh ones
    // would measure the system's page faults rather than the copy.
    std::vector<tvr::util::Vec3d> points, uvw;
    std::vector<std::int32_t> polygons, uvIndices;
    for (auto _ : state) {
        points = mesh.points;
        uvw = mesh.uvw;
        polygons = mesh.polygons;
        uvIndices = mesh.uvIndices;
        benchmark::DoNotOptimize(points.data());
        benchmark::DoNotOptimize(uvw.data());
        benchmark::DoNotOptimize(polygons.data());
        benchmark::DoNotOptimize(uvIndices.data());
    }
}
BENCHMARK(BM_PlainCopyOfReadMesh)->Name("BM_GetMesh | copy")->Unit(benchmark::kMillisecond);

}  // namespace
