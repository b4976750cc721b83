// Gathering stored texts into the core's state tree: random scenes round trip,
// damaged texts are refused one by one, and the linear searches answer what
// the plain ones in the stated order would.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "state/compressed_state.h"
#include "state/state_builder.h"
#include "state/state_document.h"
#include "state/state_scans.h"
#include "util/base64.h"
#include "util/log.h"
#include "util/xml/reader.h"

namespace tvr::plr::state {
namespace {

using util::xml::Element;
using util::xml::Tag;
using util::xml::TagWithData;

std::string logSince(std::size_t mark) { return util::Log::contents().substr(mark); }

std::string compressedText(const std::string& text) {
    const Bytes packed = compress(reinterpret_cast<const std::uint8_t*>(text.c_str()), text.size() + 1);
    return util::Base64::encode(packed.data(), packed.size());
}

Element compressedPlugin(const std::string& base64) {
    Tag plugin("PLT_Plugin");
    plugin.setAttribute("compressed", "1");
    plugin.addChild(util::xml::Text(base64));
    return std::move(plugin);
}

// One master as the core would store it.
struct MasterSpec {
    std::string name;
    int parent = -1;  // index into the scene's masters
    int place = 0;
    bool compressed = false;
    std::vector<std::string> labels;  // its nodes' objects
};

Element pluginOf(const MasterSpec& m) {
    Tag plugin("PLT_Plugin");
    plugin.addChild(TagWithData("name", m.name));
    plugin.addChild(TagWithData("data", std::string(m.name.size() * 7, 'x') + " & <" + m.name + ">"));
    for (const std::string& label : m.labels) {
        Tag node("node");
        node.addChild(TagWithData("objectname", label));
        plugin.addChild(node);
    }
    return std::move(plugin);
}

Element masterNodeOf(const std::vector<MasterSpec>& all, const MasterSpec& m) {
    Tag masterNode("masternode");
    const Element plugin = pluginOf(m);
    masterNode.addChild(m.compressed ? compressedPlugin(compressedText(plugin.toString("", "", ""))) : plugin);
    masterNode.addChild(TagWithData("parent", m.parent < 0 ? std::string() : all[std::size_t(m.parent)].name));
    masterNode.addChild(TagWithData("childindex", std::to_string(m.place)));
    return std::move(masterNode);
}

// The text one node's object carries: the first node's also holds the master's state.
std::string storedText(const std::vector<MasterSpec>& all, const MasterSpec& m, std::size_t node) {
    Tag tag("PLT_tag");
    tag.addChild(TagWithData("name", m.name));
    tag.addChild(TagWithData("objectname", m.labels[node]));
    if (node == 0) tag.addChild(masterNodeOf(all, m));
    return tag.toString("", "", "");
}

struct Scene {
    std::vector<MasterSpec> masters;
    std::vector<StoredText> texts;
};

// Masters nested at random (a parent is made before its children), places
// among siblings shuffled, a third compressed, objects in random order.
Scene randomScene(std::mt19937& rng, int count) {
    Scene scene;
    std::map<int, int> children;
    for (int i = 0; i < count; ++i) {
        MasterSpec m;
        m.name = "tool" + std::to_string(i);
        m.parent = i == 0 || rng() % 3 == 0 ? -1 : int(rng() % unsigned(i));
        m.compressed = rng() % 3 == 0;
        for (unsigned n = 0, nodes = 1 + rng() % 3; n < nodes; ++n)
            m.labels.push_back(m.name + "_node" + std::to_string(n));
        scene.masters.push_back(m);
    }
    // Places: a shuffled permutation among each parent's children.
    std::map<int, std::vector<int>> byParent;
    for (int i = 0; i < count; ++i) byParent[scene.masters[std::size_t(i)].parent].push_back(i);
    for (auto& [parent, kids] : byParent) {
        std::vector<int> places(kids.size());
        for (std::size_t k = 0; k < places.size(); ++k) places[k] = int(k) * 2;  // gaps are fine
        std::shuffle(places.begin(), places.end(), rng);
        for (std::size_t k = 0; k < kids.size(); ++k) scene.masters[std::size_t(kids[k])].place = places[k];
    }
    for (const MasterSpec& m : scene.masters)
        for (std::size_t n = 0; n < m.labels.size(); ++n)
            scene.texts.push_back({m.labels[n], storedText(scene.masters, m, n)});
    std::shuffle(scene.texts.begin(), scene.texts.end(), rng);
    return scene;
}

// What the core must get: top masters in the order their state is met, each
// with its children ordered by place.
Element expectedDocument(const Scene& scene) {
    std::map<std::string, std::size_t> index;
    for (std::size_t i = 0; i < scene.masters.size(); ++i) index[scene.masters[i].name] = i;
    std::vector<std::size_t> met;
    for (const StoredText& t : scene.texts) {
        const Element parsed = util::xml::parse(t.text);
        if (parsed.child("masternode")) met.push_back(index[parsed.childText("name")]);
    }
    std::function<Element(std::size_t)> build = [&](std::size_t i) {
        Element e = pluginOf(scene.masters[i]);
        std::vector<std::size_t> kids;
        for (std::size_t k = 0; k < scene.masters.size(); ++k)
            if (scene.masters[k].parent == int(i)) kids.push_back(k);
        std::sort(kids.begin(), kids.end(),
                  [&](std::size_t a, std::size_t b) { return scene.masters[a].place < scene.masters[b].place; });
        for (std::size_t k : kids) e.addChild(build(k));
        return e;
    };
    Tag document("PLT");
    for (std::size_t i : met)
        if (scene.masters[i].parent < 0) document.addChild(build(i));
    return std::move(document);
}

TEST(StateDocument, RandomScenesComeBackAsTheTreeTheCoreStored) {
    std::mt19937 rng(12);
    for (int round = 0; round < 60; ++round) {
        const Scene scene = randomScene(rng, round % 17);  // nothing stored at all in the first
        const std::size_t mark = util::Log::contents().size();
        const GatheredState got = gatherState(scene.texts);
        ASSERT_EQ(got.document, expectedDocument(scene)) << "round " << round << "\n"
                                                         << got.document.toString("\n", "  ", "");
        ASSERT_EQ(got.parsed.size(), scene.texts.size());
        for (std::size_t i = 0; i < scene.texts.size(); ++i) {
            Element own = util::xml::parse(scene.texts[i].text);  // what is left after the masters moved out
            if (const Element* master = own.child("masternode")) own.removeChild(master);
            EXPECT_EQ(got.parsed[i], own);
        }
        EXPECT_EQ(logSince(mark).find("ERROR"), std::string::npos) << logSince(mark);
    }
}

// A stored text with one master: its state, and its parent and place when given.
std::string masterText(const std::string& name, const Element& plugin, const std::string* parent, const char* place) {
    Tag tag("PLT_tag");
    tag.addChild(TagWithData("name", name));
    Tag masterNode("masternode");
    masterNode.addChild(plugin);
    if (parent) masterNode.addChild(TagWithData("parent", *parent));
    if (place) masterNode.addChild(TagWithData("childindex", place));
    tag.addChild(masterNode);
    return tag.toString("", "", "");
}

// One good master stays loaded next to each damaged text, and the damage is
// reported naming the object that carried it.
TEST(StateDocument, DamagedStatesAreRefusedOneByOneNamingTheirObject) {
    const std::vector<MasterSpec> good{{"keep", -1, 0, true, {"keep_cam"}}};
    const StoredText keep{"keep_cam", storedText(good, good[0], 0)};
    const std::string noParent;
    const auto withPlugin = [&](const Element& plugin) { return masterText("bad", plugin, &noParent, "0"); };
    const auto bytesText = [](Bytes b) { return util::Base64::encode(b.data(), b.size()); };
    const Bytes valid =
        compress(reinterpret_cast<const std::uint8_t*>("<PLT_Plugin><name>bad</name></PLT_Plugin>"), 42);
    // The valid stream with one byte set.
    const auto damaged = [&](std::size_t at, std::uint8_t value) {
        Bytes b = valid;
        b[at] = value;
        return withPlugin(compressedPlugin(bytesText(b)));
    };
    const Bytes truncated(valid.begin(), valid.end() - 3);
    std::string deep;
    for (int i = 0; i < 2000; ++i) deep += "<a>";

    const struct {
        const char* what;
        std::string text;
        const char* log;
    } cases[] = {
        {"malformed", "<PLT_tag><name>bad</name><masternode>", "the text is not readable"},
        {"deep nesting", deep, "the text is not readable"},
        {"bad base64", withPlugin(compressedPlugin("&&&&")), "empty or not base64"},
        {"bad magic", damaged(0, std::uint8_t(valid[0] ^ 0xFF)), "whose text is not readable"},
        {"bad version", damaged(4, 99), "whose text is not readable"},
        {"bad symbol count", damaged(9, 0x7F), "whose text is not readable"},
        {"length beyond the data", damaged(14, 0x40), "does not decode"},  // megabytes from a few bytes
        {"length beyond the cap", damaged(15, 0x7F), "does not decode"},
        {"truncated bits", withPlugin(compressedPlugin(bytesText(truncated))), "does not decode"},
        {"no name", withPlugin(Tag("PLT_Plugin")), "without a name"},
        {"no state", "<PLT_tag><masternode><parent></parent></masternode></PLT_tag>", "without its state"},
    };
    for (const auto& c : cases) {
        const std::size_t mark = util::Log::contents().size();
        const GatheredState got = gatherState({{"damaged object", c.text}, keep});
        ASSERT_EQ(got.document.childCount(), 1u) << c.what;
        EXPECT_EQ(got.document.childAt(0)->childText("name"), "keep") << c.what;
        const std::string lines = logSince(mark);
        EXPECT_NE(lines.find("(ERROR): Stored state of object \"damaged object\": "), std::string::npos)
            << c.what << "\n"
            << lines;
        EXPECT_NE(lines.find(c.log), std::string::npos) << c.what << "\n" << lines;
    }
}

TEST(StateDocument, LoopsRepeatsAndMissingPartsStillLoadWithAWarning) {
    const auto master = [](const std::string& name, const std::string* parent, const char* place = "0") {
        Tag plugin("PLT_Plugin");
        plugin.addChild(TagWithData("name", name));
        return masterText(name, plugin, parent, place);
    };
    const std::string a = "a", b = "b", self = "self", ghost = "ghost", loose = "loose";
    const std::size_t mark = util::Log::contents().size();
    const GatheredState got = gatherState({{"obj a", master("a", &b)},
                                           {"obj b", master("b", &a, "7")},
                                           {"obj self", master("self", &self)},
                                           {"obj copy", master("a", nullptr)},
                                           {"obj orphan", master("orphan", &ghost)},
                                           {"obj loose", master("loose", nullptr, "x")},
                                           {"obj unplaced", master("unplaced", &loose, nullptr)},
                                           {"obj placed", master("placed", &loose, "1")}});
    // The loop is cut at its first master; every master is there once; no place is place 0.
    EXPECT_EQ(got.document.toString("", "", ""),
              "<PLT><PLT_Plugin><name>a</name><PLT_Plugin><name>b</name></PLT_Plugin></PLT_Plugin>"
              "<PLT_Plugin><name>self</name></PLT_Plugin><PLT_Plugin><name>orphan</name></PLT_Plugin>"
              "<PLT_Plugin><name>loose</name><PLT_Plugin><name>unplaced</name></PLT_Plugin>"
              "<PLT_Plugin><name>placed</name></PLT_Plugin></PLT_Plugin></PLT>");
    const std::string lines = logSince(mark);
    for (const char* line : {"(WARNING): Stored state of object \"obj a\": master \"a\" is its own ancestor",
                             "(WARNING): Stored state of object \"obj self\": master \"self\" is its own ancestor",
                             "\"obj copy\": master \"a\" is already loaded from object \"obj a\"",
                             "\"obj orphan\": the parent \"ghost\" of master \"orphan\" is not loaded",
                             "\"obj loose\": master \"loose\" names no parent; it is loaded at the top"})
        EXPECT_NE(lines.find(line), std::string::npos) << line << "\n" << lines;
}

TEST(StateDocument, ChildrenFollowTheirOwnStateOrderedByPlaceAndLongChainsCostNoStack) {
    StateBuilder root(TagWithData("PLT_Plugin", "root"));
    const std::int32_t places[] = {5, -2, 5, 0};
    for (int i = 0; i < 4; ++i) {
        auto child = std::make_unique<StateBuilder>(TagWithData("PLT_Plugin", "c" + std::to_string(i)));
        child->setChildIndex(places[i]);
        root.addChild(std::move(child));
    }
    root.addChild(std::make_unique<StateBuilder>(Element()))->setChildIndex(-9);  // an empty state is left out
    const Element copied = root.toElement();
    EXPECT_EQ(copied.toString("", "", ""),
              "<PLT_Plugin>root<PLT_Plugin>c1</PLT_Plugin><PLT_Plugin>c3</PLT_Plugin>"
              "<PLT_Plugin>c0</PLT_Plugin><PLT_Plugin>c2</PLT_Plugin></PLT_Plugin>");
    // Moving the tree out gives the same, and leaves nothing behind.
    EXPECT_EQ(root.takeElement(), copied);
    EXPECT_TRUE(root.toElement().isEmpty());
    EXPECT_TRUE(root.child(0)->element().isEmpty());

    auto top = std::make_unique<StateBuilder>(Tag("m"));
    StateBuilder* at = top.get();
    for (int i = 0; i < 20000; ++i) at = at->addChild(std::make_unique<StateBuilder>(Tag("m")));
    const Element chain = top->toElement();
    std::size_t depth = 0;
    for (const Element* e = &chain; e->childCount(); e = e->childAt(0)) ++depth;
    EXPECT_EQ(depth, 20000u);
    top.reset();
    EXPECT_EQ(readWholeNumber(" 42x") + readWholeNumber("-7") + readWholeNumber("x1"), 35);
    EXPECT_EQ(readWholeNumber("99999999999"), INT32_MAX);
    for (std::size_t digits = 19; digits < 60; digits += 7) {  // past what 64 bits hold
        EXPECT_EQ(readWholeNumber(std::string(digits, '9')), INT32_MAX);
        EXPECT_EQ(readWholeNumber("-" + std::string(digits, '8')), INT32_MIN);
    }
}

// ---- The searches, compared with plain ones written as stated.

// Each name's first place, in order.
std::vector<std::size_t> plainFirstOfEachName(const std::vector<std::string>& names) {
    std::vector<std::size_t> out;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto here = names.begin() + std::ptrdiff_t(i);
        if (std::find(names.begin(), here, names[i]) == here) out.push_back(i);
    }
    return out;
}

// Each parent's first place among the names; none for no parent.
std::vector<std::ptrdiff_t> plainParents(const std::vector<std::string>& names,
                                         const std::vector<std::string>& parents) {
    std::vector<std::ptrdiff_t> out(parents.size(), kNone);
    for (std::size_t j = 0; j < parents.size(); ++j) {
        const auto at = std::find(names.begin(), names.end(), parents[j]);
        if (!parents[j].empty() && at != names.end()) out[j] = at - names.begin();
    }
    return out;
}

std::vector<std::ptrdiff_t> plainRecords(const std::vector<NameAndLabel>& records, const std::string& master,
                                         const std::vector<std::string>& labels) {
    std::vector<std::ptrdiff_t> out(labels.size(), kNone);
    for (std::size_t i = 0; i < labels.size(); ++i)
        for (std::size_t r = 0; r < records.size(); ++r)
            if (records[r].name == master && records[r].label == labels[i]) out[i] = std::ptrdiff_t(r);
    return out;
}

std::vector<std::ptrdiff_t> plainObjects(const std::vector<NameAndLabel>& objects, const std::string& master,
                                         const std::vector<std::string>& labels, std::vector<bool> bound) {
    std::vector<std::ptrdiff_t> out(labels.size(), kNone);
    for (std::size_t o = 0; o < objects.size(); ++o) {
        if (objects[o].name != master) continue;
        for (std::size_t i = labels.size(); i-- > 0;)
            if (labels[i] == objects[o].label) {
                if (!bound[i]) {
                    bound[i] = true;
                    out[i] = std::ptrdiff_t(o);
                }
                break;
            }
    }
    return out;
}

TEST(StateScans, AnswerWhatThePlainSearchesAnswer) {
    std::mt19937 rng(7);
    const auto word = [&](unsigned spread) {
        return rng() % 5 == 0 ? std::string() : "w" + std::to_string(rng() % spread);
    };
    for (int round = 0; round < 400; ++round) {
        const unsigned spread = 1 + rng() % 12;
        std::vector<std::string> names(rng() % 30), parents(names.size()), labels(rng() % 12);
        for (auto& n : names) n = word(spread);
        for (auto& p : parents) p = word(spread);
        for (auto& l : labels) l = word(spread);
        ASSERT_EQ(firstOfEachName(names), plainFirstOfEachName(names));
        ASSERT_EQ(findParents(names, parents), plainParents(names, parents));

        std::vector<NameAndLabel> entries(rng() % 40);
        for (auto& e : entries) e = {word(3), word(spread)};
        std::vector<bool> bound(labels.size());
        for (std::size_t i = 0; i < bound.size(); ++i) bound[i] = rng() % 4 == 0;
        for (const std::string master : {"w0", "w1", "", "absent"}) {
            ASSERT_EQ(RecordIndex(entries).find(master, labels), plainRecords(entries, master, labels));
            ASSERT_EQ(ObjectIndex(entries).assign(master, labels, bound), plainObjects(entries, master, labels, bound));
        }
    }
}

}  // namespace
}  // namespace tvr::plr::state
