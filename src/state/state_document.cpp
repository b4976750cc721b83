#include "state/state_document.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>

#include "state/compressed_state.h"
#include "state/state_builder.h"
#include "state/state_scans.h"
#include "util/base64.h"
#include "util/log.h"
#include "util/xml/reader.h"

namespace tvr::plr::state {

using tvr::util::Log;
using tvr::util::xml::Element;

namespace {

// One "masternode" element and the object it came from.
struct Master {
    Element element;
    std::size_t source;
};

void refuse(const std::string& object, const std::string& why, std::int32_t level = Log::Error) {
    Log(level).write("Stored state of object \"" + object + "\": " + why, -1);
}

// The text that names a master in log lines.
std::string masterLabel(const Element& master) {
    const Element* plugin = master.child("PLT_Plugin");
    const std::string& name = plugin ? plugin->childText("name") : master.childText("name");
    return name.empty() ? std::string("a master") : "master \"" + name + "\"";
}

// Replaces a compressed "PLT_Plugin" child by the state it holds. False when
// the master cannot be loaded (logged).
bool expand(Element& master, const std::string& object) {
    Element* plugin = master.child("PLT_Plugin");
    if (!plugin || plugin->attribute("compressed") != "1" || plugin->childCount() != 1 ||
        plugin->childAt(0)->kind() != tvr::util::xml::kText)
        return true;
    const tvr::util::ByteArray decoded = tvr::util::Base64::decode(plugin->childAt(0)->name());
    master.removeChild(plugin);
    if (decoded.empty()) {
        refuse(object, "a compressed master state that is empty or not base64; the master is not loaded");
        return false;
    }
    const DecompressResult result = decompress(decoded.data(), decoded.size());
    if (!result.ok()) {
        refuse(object,
               "a compressed master state that does not decode (" + result.error + "); the master is not loaded");
        return false;
    }
    std::string text(result.bytes.begin(), result.bytes.end());
    const std::size_t zero = text.find('\0');
    if (zero != std::string::npos) text.resize(zero);
    Element inner = tvr::util::xml::parse(text);
    if (inner.kind() != tvr::util::xml::kTag || inner.name() != "PLT_Plugin") {
        refuse(object, "a compressed master state whose text is not readable; the master is not loaded");
        return false;
    }
    master.appendChild(std::move(inner));
    return true;
}

// A master the core can use has its own state with a name.
bool usable(const Element& master, const std::string& object) {
    const Element* plugin = master.child("PLT_Plugin");
    if (!plugin) {
        refuse(object, "a master without its state (\"PLT_Plugin\"); it is not loaded");
        return false;
    }
    if (!plugin->child("name") || plugin->childText("name").empty()) {
        refuse(object, "a master state without a name; it is not loaded");
        return false;
    }
    if (!master.child("parent"))
        refuse(object, masterLabel(master) + " names no parent; it is loaded at the top", Log::Warning);
    return true;
}

std::int32_t childIndexOf(const Element& master) {
    const Element* index = master.child("childindex");
    if (!index || index->childCount() == 0) return 0;
    const Element* first = index->childAt(0);
    return readWholeNumber(first->kind() == tvr::util::xml::kText ? first->name() : first->text());
}

// Links that close a loop of parents would leave the whole loop out of the
// tree. Each loop is cut at the first master met on it, which is loaded at
// the top instead.
void breakParentLoops(std::vector<std::unique_ptr<StateBuilder>>& roots, std::vector<StateBuilder*>& builders,
                      const std::vector<Master>& masters, const std::vector<std::string>& names,
                      const std::vector<StoredText>& texts) {
    std::unordered_map<const StateBuilder*, std::size_t> position;
    for (std::size_t i = 0; i < builders.size(); ++i) position[builders[i]] = i;
    // 0 unknown, 1 reachable from a root, otherwise the walk that met it.
    std::vector<std::size_t> mark(builders.size(), 0);
    const auto markSubtree = [&](StateBuilder* top) {
        std::vector<StateBuilder*> work{top};
        while (!work.empty()) {
            StateBuilder* b = work.back();
            work.pop_back();
            mark[position[b]] = 1;
            for (std::size_t c = 0; c < b->childCount(); ++c) work.push_back(b->child(c));
        }
    };
    for (const auto& root : roots) markSubtree(root.get());
    for (std::size_t start = 0; start < builders.size(); ++start) {
        if (mark[start] != 0) continue;
        const std::size_t walk = start + 2;
        std::size_t at = start;
        while (mark[at] == 0) {
            mark[at] = walk;
            at = position[builders[at]->parent()];
        }
        if (mark[at] != walk) continue;  // ran into a part already handled
        StateBuilder* cut = builders[at];
        refuse(texts[masters[at].source].object,
               "master \"" + names[at] + "\" is its own ancestor; it is loaded at the top", Log::Warning);
        roots.push_back(cut->parent()->takeChild(cut));
        markSubtree(cut);
    }
}

}  // namespace

std::int32_t readWholeNumber(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t' || text[i] == '\n' || text[i] == '\r')) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    std::int64_t value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > std::int64_t{1} << 32) value = std::int64_t{1} << 32;
    }
    if (negative) value = -value;
    if (value > INT32_MAX) return INT32_MAX;
    if (value < INT32_MIN) return INT32_MIN;
    return static_cast<std::int32_t>(value);
}

GatheredState gatherState(const std::vector<StoredText>& texts) {
    GatheredState out;
    out.parsed.reserve(texts.size());
    std::vector<Master> masters;
    for (std::size_t t = 0; t < texts.size(); ++t) {
        Element parsed = tvr::util::xml::parse(texts[t].text);
        if (parsed.isEmpty()) refuse(texts[t].object, "the text is not readable; it is left on the object");
        // The masters' states move into the tree; the rest of the text stays.
        for (std::size_t c = 0; c < parsed.childCount();) {
            const Element* child = parsed.childAt(c);
            if (child->kind() == tvr::util::xml::kTag && child->name() == "masternode")
                masters.push_back({std::move(*parsed.takeChildAt(c)), t});
            else
                ++c;
        }
        out.parsed.push_back(std::move(parsed));
    }

    std::vector<Master> loadable;
    loadable.reserve(masters.size());
    for (Master& m : masters) {
        const std::string& object = texts[m.source].object;
        if (expand(m.element, object) && usable(m.element, object)) loadable.push_back(std::move(m));
    }

    std::vector<std::string> names;
    names.reserve(loadable.size());
    for (const Master& m : loadable) names.push_back(m.element.child("PLT_Plugin")->childText("name"));
    const std::vector<std::size_t> kept = firstOfEachName(names);
    {
        std::unordered_map<std::string, std::size_t> firstSource;
        for (std::size_t k : kept) firstSource.emplace(names[k], loadable[k].source);
        std::size_t next = 0;
        for (std::size_t i = 0; i < loadable.size(); ++i) {
            if (next < kept.size() && kept[next] == i) {
                ++next;
                continue;
            }
            refuse(texts[loadable[i].source].object,
                   "master \"" + names[i] + "\" is already loaded from object \"" +
                       texts[firstSource[names[i]]].object + "\"; this copy is not loaded",
                   Log::Warning);
        }
    }
    std::vector<Master> unique;
    std::vector<std::string> uniqueNames, parents;
    unique.reserve(kept.size());
    for (std::size_t k : kept) {
        uniqueNames.push_back(names[k]);
        parents.push_back(loadable[k].element.childText("parent"));
        unique.push_back(std::move(loadable[k]));
    }

    std::vector<std::unique_ptr<StateBuilder>> owned;
    std::vector<StateBuilder*> builders;
    owned.reserve(unique.size());
    // Each master's state moves into its builder; the rest of the master
    // (parent, place) stays behind for the steps below.
    for (Master& m : unique) {
        owned.push_back(std::make_unique<StateBuilder>(std::move(*m.element.child("PLT_Plugin"))));
        builders.push_back(owned.back().get());
    }
    const std::vector<std::ptrdiff_t> parentOf = findParents(uniqueNames, parents);
    for (std::size_t j = unique.size(); j-- > 0;) {
        if (parents[j].empty()) continue;
        if (parentOf[j] == kNone) {
            refuse(texts[unique[j].source].object,
                   "the parent \"" + parents[j] + "\" of master \"" + uniqueNames[j] +
                       "\" is not loaded; it is loaded at the top",
                   Log::Warning);
            continue;
        }
        builders[static_cast<std::size_t>(parentOf[j])]->addChild(std::move(owned[j]));
        builders[j]->setChildIndex(childIndexOf(unique[j].element));
    }
    std::vector<std::unique_ptr<StateBuilder>> roots;
    for (auto& b : owned)
        if (b) roots.push_back(std::move(b));
    breakParentLoops(roots, builders, unique, uniqueNames, texts);

    out.document = tvr::util::xml::Tag("PLT");
    // Roots in builder order: loop cuts were appended after the others.
    std::unordered_map<const StateBuilder*, std::size_t> order;
    for (std::size_t i = 0; i < builders.size(); ++i) order[builders[i]] = i;
    std::stable_sort(roots.begin(), roots.end(),
                     [&](const auto& a, const auto& b) { return order[a.get()] < order[b.get()]; });
    for (const auto& root : roots) out.document.appendChild(root->takeElement());
    return out;
}

}  // namespace tvr::plr::state
