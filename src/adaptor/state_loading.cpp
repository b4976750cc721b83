// The core's state in the document: written per object by storeMasterState,
// gathered back into one tree by loadStoredStates, and bound back to objects
// by acquireNodes.
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "adaptor/state_links.h"
#include "core_api/master.h"
#include "host_api/c4d.h"
#include "plugin/plugin_ids.h"
#include "state/state_document.h"
#include "state/state_scans.h"
#include "util/log.h"
#include "util/xml/reader.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;
using tvr::util::xml::Element;

StoredStateRecord::StoredStateRecord(BaseObject* object, Element element)
    : object(object), element(std::move(element)), link(BaseLink::Alloc()) {
    if (link) link->SetLink(object);
}

StoredStateRecord::~StoredStateRecord() { BaseLink::Free(link); }

BaseObject* StoredStateRecord::liveObject() const {
    return link ? static_cast<BaseObject*>(link->ForceGetLink()) : object;
}

namespace {

// Every object of the document: an object, then its children, then its next sibling.
template <class Visit>
void forEachObject(BaseDocument* doc, Visit visit) {
    BaseObject* op = doc ? doc->GetFirstObject() : nullptr;
    while (op) {
        visit(op);
        if (BaseObject* down = op->GetDown()) {
            op = down;
            continue;
        }
        while (op && !op->GetNext()) op = op->GetUp();
        if (op) op = op->GetNext();
    }
}

std::string storedText(BaseObject* op) {
    const BaseContainer* data = op->GetDataInstance();
    return data ? data->GetString(kStoredStateId).ToStd() : std::string();
}

void setStoredText(BaseObject* op, const std::string& text) {
    if (BaseContainer* data = op ? op->GetDataInstance() : nullptr) data->SetString(kStoredStateId, String(text));
}

std::unordered_set<BaseObject*> drivenObjects(const std::vector<CC4DNode*>& nodes) {
    std::unordered_set<BaseObject*> driven;
    for (CC4DNode* node : nodes)
        if (BaseObject* op = nodeObject(node)) driven.insert(op);
    return driven;
}

// The labels of a saved master's "node" children, in order.
std::vector<std::string> savedLabels(const Element& master) {
    std::vector<std::string> labels;
    for (const auto& child : master.children())
        if (child->kind() == tvr::util::xml::kTag && child->name() == "node")
            labels.push_back(child->childText("objectname"));
    return labels;
}

// The objects of a document that carry state, in document order, with what
// their texts say, for binding saved nodes that no record bound.
struct DocumentObjects {
    explicit DocumentObjects(BaseDocument* doc) : doc(doc) {
        std::vector<tvr::plr::state::NameAndLabel> said;
        forEachObject(doc, [&](BaseObject* op) {
            const std::string text = storedText(op);
            if (text.empty()) return;
            const Element parsed = tvr::util::xml::parse(text);
            Log notice(Log::Notice);
            notice.write("TEST START:", -1);
            notice.write(text, -1);
            notice.write("TEST END", -1);
            said.push_back({parsed.childText("name"), parsed.childText("objectname")});
            BaseLink* link = BaseLink::Alloc();
            if (link) link->SetLink(op);
            links.push_back(link);
        });
        index = std::make_unique<tvr::plr::state::ObjectIndex>(said);
    }
    ~DocumentObjects() {
        for (BaseLink*& link : links) BaseLink::Free(link);
    }
    DocumentObjects(const DocumentObjects&) = delete;
    DocumentObjects& operator=(const DocumentObjects&) = delete;

    BaseObject* object(std::size_t i) const {
        return links[i] ? static_cast<BaseObject*>(links[i]->GetLink(doc, Obase)) : nullptr;
    }

    BaseDocument* doc;
    std::vector<BaseLink*> links;
    std::unique_ptr<tvr::plr::state::ObjectIndex> index;
};

// While the core is handed its state it binds every master's nodes; the
// searches are built once for all of those calls and dropped afterwards.
struct HandOver {
    std::unique_ptr<tvr::plr::state::RecordIndex> records;
    std::unique_ptr<DocumentObjects> objects;
};
HandOver* handOver = nullptr;

}  // namespace

bool C4DAdaptorInterface::hasStoredState(BaseDocument* doc) {
    bool found = false;
    forEachObject(doc, [&](BaseObject* op) {
        if (!found && !storedText(op).empty()) found = true;
    });
    return found;
}

void C4DAdaptorInterface::exportState(Element& state) {
    if (core) core->saveState(state);
}

bool C4DAdaptorInterface::loadStoredStates(bool handToCore) {
    while (!storedStates.empty()) storedStates.pop_back();
    BaseDocument* doc = GetActiveDocument();

    std::vector<BaseObject*> sources;
    std::vector<tvr::plr::state::StoredText> texts;
    {
        const std::unordered_set<BaseObject*> driven = drivenObjects(nodes);
        forEachObject(doc, [&](BaseObject* op) {
            std::string text = storedText(op);
            if (text.empty() || driven.count(op)) return;
            sources.push_back(op);
            texts.push_back({op->GetName().ToStd(), std::move(text)});
        });
    }
    tvr::plr::state::GatheredState gathered = tvr::plr::state::gatherState(texts);
    for (std::size_t i = 0; i < sources.size(); ++i)
        if (!gathered.parsed[i].isEmpty())
            storedStates.push_back(std::make_unique<StoredStateRecord>(sources[i], std::move(gathered.parsed[i])));

    if (Log::isEnabled(Log::Notice)) {
        Log notice(Log::Notice);
        notice.write("STATE:", -1);
        notice.write(gathered.document.toString("\n", "\t", ""), -1);
        notice.write("STATE", -1);
    }

    if (handToCore && core) {
        HandOver scope;
        HandOver* outer = handOver;
        handOver = &scope;
        core->loadState(gathered.document);
        handOver = outer;
    }

    bool allDriven = true;
    {
        const std::unordered_set<BaseObject*> driven = drivenObjects(nodes);
        for (const auto& record : storedStates)
            if (!driven.count(record->liveObject())) allDriven = false;
    }
    if (!handToCore) {
        // Nobody was handed the state, so nothing is consumed: the answer is
        // whether state is waiting for a core, which then loads it.
        while (!storedStates.empty()) storedStates.pop_back();
        return !allDriven;
    }
    // Consumed: the next storeMasterState writes the state again.
    for (const auto& record : storedStates) setStoredText(record->liveObject(), std::string());
    while (!storedStates.empty()) storedStates.pop_back();
    return allDriven;
}

bool C4DAdaptorInterface::loadState() { return loadStoredStates(true); }

void C4DAdaptorInterface::acquireNodes(const std::string& masterName, const Element& masterElement,
                                       tvr::util::ReturnValue<core::NodeList>* result) {
    const std::vector<std::string> labels = savedLabels(masterElement);
    core::NodeList found(labels.size(), nullptr);

    if (!storedStates.empty()) {
        std::unique_ptr<tvr::plr::state::RecordIndex> local;
        const tvr::plr::state::RecordIndex* index = handOver ? handOver->records.get() : nullptr;
        if (!index) {
            std::vector<tvr::plr::state::NameAndLabel> said;
            said.reserve(storedStates.size());
            for (const auto& record : storedStates)
                said.push_back({record->element.childText("name"), record->element.childText("objectname")});
            local = std::make_unique<tvr::plr::state::RecordIndex>(said);
            index = local.get();
            if (handOver) handOver->records = std::move(local);
        }
        const std::vector<std::ptrdiff_t> hits = index->find(masterName, labels);
        for (std::size_t i = 0; i < labels.size(); ++i) {
            if (hits[i] == tvr::plr::state::kNone) continue;
            if (BaseObject* op = storedStates[static_cast<std::size_t>(hits[i])]->liveObject())
                found[i] = wrapObject(op);
        }
    }

    std::vector<bool> bound(found.size());
    bool complete = true;
    for (std::size_t i = 0; i < found.size(); ++i) {
        bound[i] = found[i] != nullptr;
        complete = complete && bound[i];
    }
    BaseDocument* doc = GetActiveDocument();
    if (!complete && doc) {
        std::unique_ptr<DocumentObjects> local;
        const DocumentObjects* objects =
            handOver && handOver->objects && handOver->objects->doc == doc ? handOver->objects.get() : nullptr;
        if (!objects) {
            local = std::make_unique<DocumentObjects>(doc);
            objects = local.get();
            if (handOver) handOver->objects = std::move(local);
        }
        const std::vector<std::ptrdiff_t> hits = objects->index->assign(masterName, labels, bound);
        for (std::size_t i = 0; i < labels.size(); ++i) {
            if (hits[i] == tvr::plr::state::kNone) continue;
            if (BaseObject* op = objects->object(static_cast<std::size_t>(hits[i]))) found[i] = wrapObject(op);
        }
    }
    if (result) result->set(found);
}

void C4DAdaptorInterface::storeMasterState(core::CMaster* master) {
    if (!master) return;
    BaseDocument* doc = GetActiveDocument();
    const std::string name = master->name();
    bool writeEnabled = true;
    bool firstDone = false;
    // The master may make or drop nodes while it fills its state.
    const std::vector<CC4DNode*> held = nodes;
    for (CC4DNode* node : held) {
        if (nodeMaster(node) != master || nodeDeleted(node)) continue;
        tvr::util::xml::Tag tag("PLT_tag");
        tag.addChild(tvr::util::xml::TagWithData("name", name));
        tag.addChild(tvr::util::xml::TagWithData("objectname", nodeLabel(node)));
        if (!firstDone) {
            tvr::util::xml::Tag masterNodes("masternodes");
            master->message(core::kMasterStoreState, &masterNodes);
            if (masterNodes.childCount() == 0) writeEnabled = false;
            for (const auto& child : masterNodes.children()) tag.addChild(*child);
            firstDone = true;
        }
        if (!writeEnabled) continue;
        BaseObject* op = nodeObject(node);
        if (op && doc && op->GetDocument() == doc) setStoredText(op, tag.toString("", "", ""));
    }
}

void C4DAdaptorInterface::clearStoredStates(BaseDocument* doc) {
    if (!doc) return;
    for (CC4DNode* node : nodes) {
        BaseObject* op = nodeObject(node);
        if (op && op->GetDocument() == doc) setStoredText(op, std::string());
    }
}

void C4DAdaptorInterface::releaseDocumentMasters(BaseDocument* doc) {
    if (!doc) return;
    std::vector<core::CMaster*> masters;
    std::unordered_set<core::CMaster*> seen;
    for (CC4DNode* node : nodes) {
        BaseObject* op = nodeObject(node);
        core::CMaster* master = nodeMaster(node);
        if (op && op->GetDocument() == doc && seen.insert(master).second) masters.push_back(master);
    }
    for (core::CMaster* master : masters)
        if (master) master->message(core::kMasterDocumentGone, nullptr);
}

}  // namespace tvr::plr::adaptor::cinema4d
