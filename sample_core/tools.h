// The sample core's tools ("masters"): named, nested under a parent tool at a
// place among its siblings, driving scene nodes, and keeping what they
// recorded. Their state goes into the document through the adaptor and comes
// back as the "PLT" tree.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core_api/adaptor_interface.h"
#include "core_api/core_node.h"
#include "core_api/master.h"
#include "sample_core/node_book.h"
#include "util/xml/element.h"

namespace tvr::plr::core::sample {

// A saved node that found no object when the tool was rebuilt; kept so that
// saving again loses nothing.
struct SavedNode {
    std::string label;     // the object's name
    std::string nodeName;  // the node's own name
};

class Tool final : public CMaster {
public:
    // States longer than this are stored compressed.
    static constexpr std::size_t kCompressAbove = 256;

    Tool(AdaptorInterface* adaptor, std::string name, std::string parent, int place);
    ~Tool() override;

    // 56: fills "masternodes" with this tool's state. 43: the document of
    // its nodes goes away; the tool lets go of them and of itself.
    int message(int code, void* data) override;
    // 43: whether the tool has nodes to let go of.
    bool query(int code, CoreNode* node) override;

    const std::string& toolName() const { return descriptor_.name; }
    // The tool's own state, "PLT_Plugin", uncompressed.
    util::xml::Element pluginState() const;
    // Reads what pluginState wrote (nodes aside); false when it is not a tool's state.
    bool readPluginState(const util::xml::Element& state);

    void bind(CoreNode* node) { nodes.push_back(node); }

    std::string parent;
    int place = 0;
    // The nodes it drives; the core's node book owns them.
    std::vector<CoreNode*> nodes;
    std::vector<SavedNode> unbound;
    // One line per recording: "<start>-<end> s, <frames> frames".
    std::vector<std::string> takes;
    // The positions keyed by the last recording, "frame:x" words.
    std::string path;
    // Set by message 43; the book drops such tools.
    bool gone = false;

private:
    AdaptorInterface* adaptor_;
    CMasterDescriptor descriptor_;
};

class ToolBook {
public:
    // Nodes the tools bind are filed in `nodes`, which owns them.
    ToolBook(AdaptorInterface* adaptor, NodeBook* nodes) : adaptor_(adaptor), nodes_(nodes) {}

    // A new tool under `parent` (empty: at the top), last among its siblings.
    // Null and `error` set when the name is taken or the parent unknown.
    Tool* add(const std::string& name, const std::string& parent, std::string& error);
    Tool* find(const std::string& name) const;
    // Drops the tools that let go of themselves.
    void purge();
    // Rebuilds tools from a "PLT" tree and binds their nodes through the
    // adaptor. Answers one line per tool.
    std::string rebuild(const util::xml::Element& document);
    // Tools depth first, children in place order, one line each with nodes and takes.
    std::string describe() const;
    // Stores every tool's state in the document.
    void storeAll();
    // Makes the book's node `nodeName` the tool's: the node is made again
    // with the tool as its master (its object is renamed after the tool).
    // Empty on success, else why not.
    std::string bind(Tool& tool, const std::string& nodeName);

    const std::vector<std::unique_ptr<Tool>>& all() const { return tools_; }

private:
    AdaptorInterface* adaptor_;
    NodeBook* nodes_;
    std::vector<std::unique_ptr<Tool>> tools_;
};

}  // namespace tvr::plr::core::sample
