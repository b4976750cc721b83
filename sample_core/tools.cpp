#include "sample_core/tools.h"

#include <algorithm>
#include <utility>

#include "sample_core/coverage.h"
#include "state/compressed_state.h"
#include "util/base64.h"
#include "util/return_value.h"
#include "util/xml/reader.h"

namespace tvr::plr::core::sample {

using util::xml::Element;
using util::xml::Tag;
using util::xml::TagWithData;

Tool::Tool(AdaptorInterface* adaptor, std::string name, std::string parent, int place)
    : CMaster(&descriptor_), parent(std::move(parent)), place(place), adaptor_(adaptor),
      descriptor_{std::move(name)} {}

Tool::~Tool() = default;

Element Tool::pluginState() const {
    Element state(util::xml::kTag, "PLT_Plugin");
    state.addChild(TagWithData("name", toolName()));
    Tag takeList("takes");
    for (const std::string& take : takes) takeList.addChild(TagWithData("take", take));
    state.addChild(takeList);
    if (!path.empty()) state.addChild(TagWithData("path", path));
    const auto addNode = [&](const std::string& label, const std::string& nodeName) {
        Tag node("node");
        node.addChild(TagWithData("objectname", label));
        node.addChild(TagWithData("nodename", nodeName));
        state.addChild(node);
    };
    for (CoreNode* node : nodes) addNode(on(node).getName(), node->name);
    for (const SavedNode& saved : unbound) addNode(saved.label, saved.nodeName);
    return state;
}

bool Tool::readPluginState(const Element& state) {
    if (state.name() != "PLT_Plugin" || state.childText("name") != toolName()) return false;
    takes.clear();
    if (const Element* list = state.child("takes"))
        for (const auto& take : list->children()) takes.push_back(take->text());
    path = state.childText("path");
    return true;
}

int Tool::message(int code, void* data) {
    if (code == kMasterStoreState && data) {
        auto& masterNodes = *static_cast<Element*>(data);
        Tag masterNode("masternode");
        const Element state = pluginState();
        const std::string text = state.toString("", "", "");
        if (text.size() > kCompressAbove) {
            // Long states travel compressed: base64 of the coded text, zero-terminated.
            const state::Bytes packed = state::compress(reinterpret_cast<const std::uint8_t*>(text.c_str()),
                                                        text.size() + 1);
            Tag compressed("PLT_Plugin");
            compressed.setAttribute("compressed", "1");
            compressed.addChild(util::xml::Text(util::Base64::encode(packed.data(), packed.size())));
            masterNode.addChild(compressed);
        } else {
            masterNode.addChild(state);
        }
        masterNode.addChild(TagWithData("parent", parent));
        masterNode.addChild(TagWithData("childindex", std::to_string(place)));
        for (const auto& node : state.children())
            if (node->name() == "node") masterNode.addChild(*node);
        masterNodes.addChild(masterNode);
        return 1;
    }
    if (code == kMasterDocumentGone) {
        // The book gives the nodes back when it drops the tool; until then
        // they and this tool stay valid for the adaptor.
        gone = true;
        return 1;
    }
    return 0;
}

bool Tool::query(int code, CoreNode*) { return code == kMasterDocumentGone && !nodes.empty(); }

Tool* ToolBook::add(const std::string& name, const std::string& parent, std::string& error) {
    purge();
    if (name.empty()) {
        error = "a tool needs a name";
        return nullptr;
    }
    if (find(name)) {
        error = "there is already a tool \"" + name + "\"";
        return nullptr;
    }
    if (!parent.empty() && !find(parent)) {
        error = "no tool \"" + parent + "\" to put \"" + name + "\" under";
        return nullptr;
    }
    const int place = static_cast<int>(std::count_if(tools_.begin(), tools_.end(),
                                                     [&](const auto& t) { return t->parent == parent; }));
    tools_.push_back(std::make_unique<Tool>(adaptor_, name, parent, place));
    return tools_.back().get();
}

Tool* ToolBook::find(const std::string& name) const {
    for (const auto& tool : tools_)
        if (!tool->gone && tool->toolName() == name) return tool.get();
    return nullptr;
}

void ToolBook::purge() {
    for (const auto& tool : tools_) {
        if (!tool->gone) continue;
        for (CoreNode* node : tool->nodes) {
            const std::string name = nodes_->nameOf(node);
            if (!name.empty()) nodes_->forget(name);
            on(node).release();
        }
        tool->nodes.clear();
    }
    tools_.erase(std::remove_if(tools_.begin(), tools_.end(), [](const auto& t) { return t->gone; }), tools_.end());
}

std::string ToolBook::rebuild(const Element& document) {
    purge();
    std::string report;
    struct Pending {
        const Element* state;
        std::string parent;
        int place;
    };
    std::vector<Pending> work;
    const auto queueChildren = [&](const Element& from, const std::string& parent) {
        std::vector<Pending> children;
        for (const auto& child : from.children())
            if (child->kind() == util::xml::kTag && child->name() == "PLT_Plugin")
                children.push_back({child.get(), parent, static_cast<int>(children.size())});
        work.insert(work.end(), children.rbegin(), children.rend());
    };
    queueChildren(document, std::string());
    while (!work.empty()) {
        const Pending next = work.back();
        work.pop_back();
        const std::string name = next.state->childText("name");
        if (name.empty() || find(name)) {
            report += "core: tool \"" + name + "\" not rebuilt: " + (name.empty() ? "no name" : "already there") + "\n";
            continue;
        }
        tools_.push_back(std::make_unique<Tool>(adaptor_, name, next.parent, next.place));
        Tool& tool = *tools_.back();
        tool.readPluginState(*next.state);
        std::vector<SavedNode> saved;
        for (const auto& child : next.state->children())
            if (child->name() == "node") saved.push_back({child->childText("objectname"), child->childText("nodename")});
        NodeList found;
        util::ReturnValue<NodeList> sink(&found);
        adaptor_->acquireNodes(name, *next.state, &sink);
        for (std::size_t i = 0; i < saved.size(); ++i) {
            CoreNode* linked = i < found.size() ? found[i] : nullptr;
            CoreNode* own = linked ? on(linked).reacquire(&tool, saved[i].nodeName) : nullptr;
            if (linked) on(linked).release();
            if (own) {
                nodes_->add(nodes_->freeName(saved[i].nodeName), own);
                tool.bind(own);
            } else {
                tool.unbound.push_back(saved[i]);
            }
        }
        report += "core: tool " + name + " rebuilt, " + std::to_string(tool.nodes.size()) + " of " +
                  std::to_string(saved.size()) + " nodes bound\n";
        queueChildren(*next.state, name);
    }
    return report;
}

std::string ToolBook::describe() const {
    std::string out;
    std::vector<std::pair<const Tool*, int>> work;
    const auto queue = [&](const std::string& parent, int depth) {
        std::vector<const Tool*> children;
        for (const auto& t : tools_)
            if (!t->gone && t->parent == parent) children.push_back(t.get());
        std::stable_sort(children.begin(), children.end(),
                         [](const Tool* a, const Tool* b) { return a->place < b->place; });
        for (auto it = children.rbegin(); it != children.rend(); ++it) work.emplace_back(*it, depth);
    };
    queue(std::string(), 0);
    while (!work.empty()) {
        const auto [tool, depth] = work.back();
        work.pop_back();
        out += std::string(static_cast<std::size_t>(depth) * 2, ' ') + "tool " + tool->toolName() + " nodes:";
        if (tool->nodes.empty() && tool->unbound.empty()) out += " none";
        for (CoreNode* node : tool->nodes) out += " " + on(node).getName();
        for (const SavedNode& saved : tool->unbound) out += " (" + saved.label + " unbound)";
        out += " takes: " + std::to_string(tool->takes.size());
        for (const std::string& take : tool->takes) out += " [" + take + "]";
        out += "\n";
        queue(tool->toolName(), depth + 1);
    }
    return out.empty() ? std::string("no tools\n") : out;
}

std::string ToolBook::bind(Tool& tool, const std::string& nodeName) {
    CoreNode* node = nodes_->find(nodeName);
    if (!node) return "no node named \"" + nodeName + "\"";
    if (node->master == &tool) return nodeName + " is already " + tool.toolName() + "'s";
    for (const auto& other : tools_) {
        auto& list = other->nodes;
        list.erase(std::remove(list.begin(), list.end(), node), list.end());
    }
    on(node).detach();
    CoreNode* own = on(node).reacquire(&tool, node->name);
    if (!own) return "the object of " + nodeName + " is gone or driven by another node";
    nodes_->forget(nodeName);
    on(node).release();
    nodes_->add(nodeName, own);
    tool.bind(own);
    return std::string();
}

void ToolBook::storeAll() {
    purge();
    for (const auto& tool : tools_) adaptor_->storeMasterState(tool.get());
}

}  // namespace tvr::plr::core::sample
