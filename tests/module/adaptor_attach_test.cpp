// The adaptor's identity as the core sees it, and the whole path from the
// command to a running core: the sample core loaded from an installation root
// through the system's platform, ticking while attached and detached at the end.
#include <string>

#include "module_host.h"
#include "platform/message_pump.h"
#include "platform/registry_overlay.h"
#include "sample_core/stats.h"
#include "util/log.h"
#include "util/mesh.h"
#include "util/xml/element.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

namespace pf = tvr::platform;

using AdaptorIdentity = ModuleHost;

// The names themselves reach the core in the end-to-end sessions; here the
// pieces the adaptor builds from the host.
TEST_F(AdaptorIdentity, BuildsIdentifiersFromTheHost) {
    EXPECT_EQ(adaptor->getInterfaceVersion(), 9201);

    core::StringList ids{"left over"};
    tvr::util::ReturnValue<core::StringList> sink(&ids);
    adaptor->getHostIdentifiers(&sink);
    EXPECT_EQ(ids, (core::StringList{"CINEMA4D_R 11008", "CINEMA4D", ""}));

    // The names, the fixed answers, and the operations this adaptor does not offer, which only log.
    EXPECT_EQ(adaptor->getDisplayName() + "|" + adaptor->getAdaptorId() + "|" + adaptor->getHostName() + "|" +
                  adaptor->getHostVersion(),
              "Cinema 4D R10 Adaptor|adaptor_c4dr11|CINEMA4D|R 11008");
    EXPECT_EQ(adaptor->reservedQuery6(), 0);
    EXPECT_EQ(adaptor->reservedQuery36(), 0);
    const std::size_t logged = tvr::util::Log::contents().size();
    EXPECT_EQ(adaptor->createMesh(nullptr, "mesh", tvr::util::CMesh()), nullptr);
    adaptor->mergeFromFile("scene", nullptr);
    const std::string lines = tvr::util::Log::contents().substr(logged);
    EXPECT_NE(lines.find("ERROR): (NOT IMPLEMENTED) createMesh Cinema 4D R10 Adaptor\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("ERROR): mergeFromFile not implemented\n"), std::string::npos) << lines;
    tvr::util::xml::Tag data("stale");
    tvr::util::ReturnValue<tvr::util::xml::Element> dataSink(&data);
    EXPECT_EQ(adaptor->getAdaptorData(&dataSink), 0);
    EXPECT_TRUE(data.isEmpty());
}

#ifndef PLR_TEST_ROOT
#error PLR_TEST_ROOT names the installation root with the sample core
#endif

TEST(AdaptorAttach, CommandAttachesTheSampleCoreWhoseTimerRunsUntilTheModuleEnds) {
    pf::Platform& system = pf::platform();
    const std::string regedit =
        std::string("REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo]\n\"path\"=\"") + PLR_TEST_ROOT +
        "\"\n";
    auto registry = pf::RegistryOverlayPlatform::fromText(system, regedit);
    ASSERT_NE(registry, nullptr);
    pf::setPlatform(registry.get());
    // Held open here too, so its counters outlive the module's own release of it.
    std::string corePath = std::string(PLR_TEST_ROOT) + "\\pelloran\\data\\core\\win\\x64\\core.dll";
    pf::ModuleHandle core = system.loadLibrary(corePath.c_str());
    ASSERT_NE(core, nullptr) << corePath;
    auto statsFn = reinterpret_cast<PlrSampleCoreStatsFn>(system.getProcAddress(core, "plr_sample_core_stats"));
    ASSERT_NE(statsFn, nullptr);
    const PlrSampleCoreStats* stats = statsFn();
    const PlrSampleCoreStats before = *stats;

    {
        emb::EmbeddedHost host(quietHost());
        host.setMessagePump([](std::uint64_t now) { pf::pumpMessages(now); });
        ASSERT_TRUE(host.loadModule(&c4d_main, "pelloran"));
        host.newDocument();
        host.advance(200);
        EXPECT_EQ(stats->timeSlices, before.timeSlices);  // nothing attached yet

        ASSERT_TRUE(host.runCommand(1023575));
        EXPECT_EQ(stats->attaches, before.attaches + 1);
        EXPECT_EQ(stats->mainWindowsOpened, before.mainWindowsOpened + 1);
        EXPECT_EQ(stats->hostIdentifiers, 3);
        EXPECT_TRUE(host.dialogs().empty());
#if defined(_WIN32)
        host.runRealTime(400);  // the system's own timer, in real time
        EXPECT_GT(stats->timeSlices, before.timeSlices);
#else
        host.advance(400);
        EXPECT_EQ(stats->timeSlices, before.timeSlices + 10);
#endif

        host.shutdown();
        EXPECT_EQ(stats->detaches, before.detaches + 1);
        const std::int64_t ended = stats->timeSlices;
        pf::pumpMessages(10000);  // no window of the module is left to tick
        EXPECT_EQ(stats->timeSlices, ended);
    }
    pf::setPlatform(nullptr);
    system.freeLibrary(core);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
