// Every example session played in one process, each in a fresh host as
// hostsim plays it: each must succeed, together they must reach every
// operation the adaptor offers the core, and the tour's last picture must
// show the rig where the core put it.
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "embedded_host/runtime/embedded_host.h"
#include "hostsim/embedded_driver.h"
#include "hostsim/session.h"
#include "platform/message_box.h"
#include "platform/message_pump.h"
#include "platform/platform.h"
#include "platform/registry_overlay.h"

namespace hostsim {
namespace {

namespace fs = std::filesystem;
namespace pf = tvr::platform;

using CoverageFn = int (*)(int index, const char** name, std::int64_t* count);

int printBox(const char* text, const char* caption, std::uint32_t) {
    std::printf("[MessageBox] %s: %s\n", caption ? caption : "", text ? text : "");
    return 1;
}

struct Played {
    std::string name;
    int status = 0;
    std::string errors;
};

// What the sessions left behind: their results and the summed coverage table, in table order.
struct Results {
    std::vector<Played> sessions;
    std::vector<std::pair<std::string, std::int64_t>> coverage;
};

// Adds the loaded core's table to `sum`; false when no core with a table is loaded.
bool addCoverage(std::vector<std::pair<std::string, std::int64_t>>& sum) {
    pf::Platform& os = pf::platform();
    pf::ModuleHandle core = os.getModuleHandle("core.dll");
    auto* fn = core ? reinterpret_cast<CoverageFn>(os.getProcAddress(core, "plr_sample_core_coverage")) : nullptr;
    if (!fn) return false;
    const char* name = nullptr;
    std::int64_t count = 0;
    for (int i = 0; fn(i, &name, &count); ++i) {
        if (sum.size() <= static_cast<std::size_t>(i)) sum.emplace_back(name, 0);
        sum[static_cast<std::size_t>(i)].second += count;
    }
    return true;
}

const Results& playAll() {
    static const Results results = [] {
        Results r;
        // Sessions write files where they run: each test process in a folder of its own.
        const fs::path folder = fs::current_path() / (std::string("played_") +
                                                      ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(folder);
        fs::current_path(folder);
        std::ifstream reg(PLR_TEST_REGISTRY, std::ios::binary);
        std::ostringstream text;
        text << reg.rdbuf();
        auto overlay = pf::RegistryOverlayPlatform::fromText(pf::platform(), text.str());
        if (!overlay) return r;
        pf::setPlatform(overlay.get());
        pf::setMessageBoxSink(&printBox);

        std::vector<fs::path> scripts;
        for (const auto& entry : fs::directory_iterator(PLR_EXAMPLES_DIR))
            if (entry.path().extension() == ".session") scripts.push_back(entry.path());
        std::sort(scripts.begin(), scripts.end());
        for (const fs::path& script : scripts) {
            tvr::plr::embedded::HostOptions options;
            options.crashHandlers = false;
            tvr::plr::embedded::EmbeddedHost host(options);
            host.setMessagePump([](std::uint64_t nowMs) { pf::pumpMessages(nowMs); });
            Played played;
            played.name = script.filename().string();
            if (!host.loadModule(PLR_MODULE_PATH)) played.errors = "the module did not load\n";
            host.newDocument();
            EmbeddedDriver driver(host, false);
            std::ostringstream out, err;
            Session session(driver, out, err);
            std::ifstream in(script);
            played.status = session.playScript(in, played.name);
            played.errors += err.str();
            // The core's counts live as long as the library, which the host frees with the module.
            addCoverage(r.coverage);
            host.shutdown();
            r.sessions.push_back(played);
        }
        pf::setPlatform(nullptr);
        return r;
    }();
    return results;
}

TEST(ExampleSessions, EachSucceedsAndTogetherTheyCallEveryOperation) {
    const Results& r = playAll();
    ASSERT_GE(r.sessions.size(), 6u) << "examples not found in " << PLR_EXAMPLES_DIR;
    for (const Played& p : r.sessions) EXPECT_EQ(p.status, 0) << p.name << "\n" << p.errors;

    // 39 adaptor slots, 35 node slots, 42 snapshot operations.
    ASSERT_EQ(r.coverage.size(), 116u);
    std::string never;
    for (const auto& row : r.coverage)
        if (row.second == 0) never += " " + row.first;
    EXPECT_EQ(never, "") << "operations no example session reaches";
    const auto count = [&](const std::string& name) {
        for (const auto& row : r.coverage)
            if (row.first == name) return row.second;
        return std::int64_t(-1);
    };
    // Names and slots line up: the node's destructor is reached only by `forget`, once.
    EXPECT_EQ(count("adaptor.getAdaptorId"), 1);
    EXPECT_EQ(count("node.~CoreNode"), 1);
}

// The tour's last frame as its camera sees it. Where things should appear is
// worked out here from where the tour put them (host units): the camera the
// core placed at (2, 4, 4) m in its own axes, looking at the box, which the
// recording left at the end of the user's path.
TEST(ExampleSessions, TourEndsWithTheBoxAtThePathsEndInTheCamerasCentre) {
    playAll();
    pugi::xml_document svg;
    ASSERT_TRUE(svg.load_file("tour.svg")) << "the tour wrote no picture";
    const pugi::xml_node root = svg.child("svg");
    EXPECT_STREQ(root.attribute("data-view").value(), "camera");
    EXPECT_STREQ(root.attribute("data-camera").value(), "dolly_cam");
    const auto object = [&](const char* name) { return root.find_child_by_attribute("g", "data-name", name); };

    struct V {
        double x, y, z;
    };
    const V camera{200, 400, -400}, box{200, 25, 200};
    const auto sub = [](V a, V b) { return V{a.x - b.x, a.y - b.y, a.z - b.z}; };
    const auto dot = [](V a, V b) { return a.x * b.x + a.y * b.y + a.z * b.z; };
    const auto unit = [&](V a) {
        const double l = std::sqrt(dot(a, a));
        return V{a.x / l, a.y / l, a.z / l};
    };
    const auto cross = [](V a, V b) { return V{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; };
    const V forward = unit(sub(box, camera));
    const V right = unit(cross(V{0, 1, 0}, forward));
    const V up = cross(forward, right);
    const double focal = 400.0 / std::tan(0.8575 / 2);  // the host's default lens
    const auto expectAt = [&](const pugi::xml_node& g, V world) {
        const V d = sub(world, camera);
        EXPECT_NEAR(g.attribute("data-x").as_double(), 400 + focal * dot(d, right) / dot(d, forward), 0.02)
            << g.attribute("data-name").value();
        EXPECT_NEAR(g.attribute("data-y").as_double(), 300 - focal * dot(d, up) / dot(d, forward), 0.02)
            << g.attribute("data-name").value();
    };

    const pugi::xml_node boxObject = object("dolly_box");
    EXPECT_STREQ(boxObject.attribute("data-kind").value(), "mesh");
    EXPECT_NEAR(boxObject.attribute("data-x").as_double(), 400, 0.02);
    EXPECT_NEAR(boxObject.attribute("data-y").as_double(), 300, 0.02);
    EXPECT_EQ(boxObject.select_nodes("line").size(), 36u);  // 12 triangles

    // The ground and the path start at the ground's origin; the path's last
    // edge ends where the box stands.
    const pugi::xml_node ground = object("track_ground"), path = object("track_path");
    EXPECT_STREQ(ground.attribute("data-kind").value(), "mesh");
    EXPECT_EQ(ground.select_nodes("line").size(), 96u);  // 32 triangles
    expectAt(ground, V{0, 0, 0});
    EXPECT_STREQ(path.attribute("data-kind").value(), "spline");
    expectAt(path, V{0, 0, 0});
    const pugi::xpath_node_set edges = path.select_nodes("line");
    ASSERT_EQ(edges.size(), 3u);
    const pugi::xml_node last = edges[2].node();
    EXPECT_NEAR(last.attribute("x2").as_double(), 400, 0.02);
    EXPECT_NEAR(last.attribute("y2").as_double(), 300, 0.02);
}

}  // namespace
}  // namespace hostsim
