#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <vector>

// The module reaches the host only through host_api/: none of its files may include a header of
// the embedded host, by path or by a name that only the embedded host's folder holds.
namespace {

namespace fs = std::filesystem;

std::set<std::string> headerNames(const fs::path& dir) {
  std::set<std::string> names;
  for (const auto& e : fs::recursive_directory_iterator(dir))
    if (e.path().extension() == ".h") names.insert(e.path().filename().string());
  return names;
}

// Every quoted include in the sources below root that names the embedded host.
std::vector<std::string> hostIncludes(const fs::path& root, const std::set<std::string>& hostHeaders) {
  static const std::regex include(R"re(^\s*#\s*include\s*"([^"]+)")re");
  std::vector<std::string> found;
  for (const auto& e : fs::recursive_directory_iterator(root)) {
    const std::string ext = e.path().extension().string();
    if (!e.is_regular_file() || (ext != ".h" && ext != ".cpp")) continue;
    std::ifstream in(e.path());
    std::string line;
    for (int n = 1; std::getline(in, line); ++n) {
      std::smatch m;
      if (!std::regex_search(line, m, include)) continue;
      const fs::path target = m[1].str();
      const bool ownFile = fs::exists(root / target) || fs::exists(e.path().parent_path() / target);
      if (m[1].str().find("embedded_host") != std::string::npos ||
          (!ownFile && hostHeaders.count(target.filename().string())))
        found.push_back(e.path().string() + ":" + std::to_string(n) + ": " + line);
    }
  }
  return found;
}

TEST(ModuleBoundary, NoModuleFileIncludesTheEmbeddedHost) {
  const fs::path source = PLR_SOURCE_DIR;
  // A cross-built copy run elsewhere may not see the source tree; the native run checks it.
  if (!fs::is_directory(source / "embedded_host")) GTEST_SKIP() << "no source tree at " << source;
  const std::set<std::string> hostHeaders = headerNames(source / "embedded_host");
  ASSERT_TRUE(hostHeaders.count("host_node.h"));  // the scan looks where the headers are
  EXPECT_EQ(hostIncludes(source / "src", hostHeaders), std::vector<std::string>{});

  // The scan itself notices both forms.
  const fs::path probe = fs::temp_directory_path() / ("module_boundary_" + std::to_string(std::random_device{}()));
  fs::create_directories(probe / "nodes");
  std::ofstream(probe / "nodes" / "bad.cpp") << "#include \"host_api/c4d.h\"\n"
                                                << "#include \"embedded_host/journal.h\"\n"
                                                << "  #  include \"host_node.h\"\n";
  EXPECT_EQ(hostIncludes(probe, hostHeaders).size(), 2u);
  fs::remove_all(probe);
}

}  // namespace
