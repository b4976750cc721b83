// Loading and saving large scene files: time, and memory held per byte of file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "embedded_host/runtime/embedded_host.h"

namespace {

using tvr::plr::embedded::EmbeddedHost;
using tvr::plr::embedded::HostOptions;

HostOptions quiet() {
  HostOptions o;
  o.crashHandlers = false;
  return o;
}

// Resident memory in bytes (0 where the system does not say).
long residentBytes() {
#if defined(__linux__)
  std::ifstream statm("/proc/self/statm");
  long pages = 0, resident = 0;
  statm >> pages >> resident;
  return resident * 4096;
#else
  return 0;
#endif
}

// A scene like a working one: groups of objects, each with a name, a
// transform, a container entry, and every tenth with a track and a tag.
void fill(BaseDocument* doc, int objects) {
  BaseObject* group = nullptr;
  for (int i = 0; i < objects; ++i) {
    const bool newGroup = i % 100 == 0;
    BaseObject* op = BaseObject::Alloc(newGroup ? Onull : (i % 10 == 5 ? Opolygon : Ocamera));
    op->SetName(String("Object " + std::to_string(i)));
    op->SetPos(Vector(Real(i), Real(i % 7), Real(-i)));
    op->SetRot(Vector(0.5f, Real(i % 3), 0));
    op->GetDataInstance()->SetLong(1000 + i % 5, i);
    if (i % 10 == 5) {
      auto* poly = static_cast<PolygonObject*>(op);
      poly->ResizeObject(4, 1);
      poly->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
      op->MakeTag(Tuvw);
      CTrack* track = CTrack::Alloc(op, DescID(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_VECTOR, 0),
                                               DescLevel(VECTOR_X, DTYPE_REAL, 0)));
      op->InsertTrackSorted(track);
      CCurve* curve = track->GetCurve(CCURVE_CURVE, true);
      for (int k = 0; k < 3; ++k) curve->AddKey(BaseTime(double(k * 10), 30.0))->SetValue(curve, Real(k));
    }
    if (newGroup) {
      doc->InsertObject(op, nullptr, nullptr);
      group = op;
    } else {
      doc->InsertObject(op, group, nullptr);
    }
  }
}

std::string scenePath(int objects) {
  return (std::filesystem::temp_directory_path() / ("scene_load_bench_" + std::to_string(objects) + ".scene")).string();
}

void makeFile(int objects) {
  const std::string path = scenePath(objects);
  if (std::filesystem::exists(path)) return;
  EmbeddedHost host(quiet());
  BaseDocument* doc = host.newDocument("bench");
  fill(doc, objects);
  host.saveDocument(doc, path);
}

void BM_LoadScene(benchmark::State& state) {
  const int objects = int(state.range(0));
  makeFile(objects);
  const std::string path = scenePath(objects);
  const auto fileBytes = double(std::filesystem::file_size(path));
  EmbeddedHost host(quiet());
  host.newDocument("start");
  double heldPerFileByte = -1;
  for (auto _ : state) {
    const long before = residentBytes();
    BaseDocument* doc = host.openDocument(path);
    if (!doc) {
      state.SkipWithError("open failed");
      break;
    }
    if (heldPerFileByte < 0) heldPerFileByte = double(residentBytes() - before) / fileBytes;
    state.PauseTiming();
    host.closeDocument(doc);
    state.ResumeTiming();
  }
  state.counters["objects"] = objects;
  state.counters["file_MB"] = fileBytes / 1e6;
  // Resident memory the loaded document holds, per byte of file, on the first run (later runs
  // reuse memory freed by the previous close).
  state.counters["held_per_file_byte"] = heldPerFileByte;
  state.SetBytesProcessed(std::int64_t(fileBytes) * std::int64_t(state.iterations()));
}
BENCHMARK(BM_LoadScene)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SaveScene(benchmark::State& state) {
  const int objects = int(state.range(0));
  EmbeddedHost host(quiet());
  BaseDocument* doc = host.newDocument("bench");
  fill(doc, objects);
  const std::string path = scenePath(objects) + ".out";
  for (auto _ : state) {
    if (!host.saveDocument(doc, path)) state.SkipWithError("save failed");
  }
  state.counters["objects"] = objects;
  std::remove(path.c_str());
}
BENCHMARK(BM_SaveScene)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
