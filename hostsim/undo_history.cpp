// hostsim's `history`: the active document's undo stack as the host keeps it,
// each entry with its records, and beside it the module's undo steps of that
// document, which the module lists when asked with its listing message.
#include <string>
#include <vector>

#include "embedded_host/runtime/host_context.h"
#include "embedded_host/runtime/host_table.h"
#include "embedded_host/scene/document_node.h"
#include "hostsim/embedded_driver.h"

namespace hostsim {

namespace {

namespace emb = tvr::plr::embedded;

// The module's listing message and the form of the function it calls per line.
constexpr LONG kUndoListingMessageId = 1023577;
void collectLine(void* context, const char* line) {
    static_cast<std::vector<std::string>*>(context)->push_back(line ? line : "");
}

const char* recordKind(LONG type) {
    switch (type) {
    case UNDO_CHANGE: return "change";
    case UNDO_CHANGE_NOCHILDS: return "change without children";
    case UNDO_CHANGE_SMALL: return "change of its own data";
    case UNDO_CHANGE_SELECTION: return "selection";
    case UNDO_NEW: return "new";
    case UNDO_DELETE: return "delete";
    default: return "record";
    }
}

void printGroups(std::ostream& out, emb::HostContext& c, const std::vector<emb::UndoStack::GroupView>& groups,
                 const char* state, std::size_t& number) {
    for (const emb::UndoStack::GroupView& g : groups) {
        out << "  " << ++number << " " << state << ":";
        const char* separator = " ";
        for (const emb::UndoStack::RecordView& r : g) {
            const emb::HostNode* n = c.registry.fromMarker(r.marker);
            out << separator << recordKind(r.type) << " " << (n ? emb::describeNode(n) : std::string("(gone)"));
            separator = "; ";
        }
        out << "\n";
    }
}

}  // namespace

std::string EmbeddedDriver::printHistory(std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    emb::HostNode* node = emb::nodeOf(doc);
    if (!doc || !node || node->kind != emb::NodeKind::Document) return "no document is open";
    emb::HostContext& c = host_.context();
    const emb::UndoStack& stack = static_cast<emb::DocumentNode*>(node)->undo;
    out << "== history of " << doc->GetDocumentName().GetString().ToStd() << "\n";
    out << "host undo stack, oldest first:\n";
    std::size_t number = 0;
    printGroups(out, c, stack.doneGroups(), "done", number);
    // Undone entries are redone newest-undone first: listed in the order redo reaches them.
    std::vector<emb::UndoStack::GroupView> undone = stack.undoneGroups();
    printGroups(out, c, std::vector<emb::UndoStack::GroupView>(undone.rbegin(), undone.rend()), "undone", number);
    if (stack.isOpen()) out << "  open group: " << stack.openRecordCount() << " records\n";
    if (number == 0 && !stack.isOpen()) out << "  (empty)\n";

    std::vector<std::string> lines;
    emb::deliverCoreMessage(c.plugins, kUndoListingMessageId, reinterpret_cast<VULONG>(&collectLine),
                            reinterpret_cast<VULONG>(&lines));
    out << "module undo steps:\n";
    if (lines.empty()) out << "  (none)\n";
    for (const std::string& line : lines) out << "  " << line << "\n";
    return "";
}

// Presses as a user does, then lets the host evaluate and deliver what the
// presses set off, so the next command sees the result.
static std::string press(emb::EmbeddedHost& host, bool undo, std::int64_t times) {
    std::int64_t done = 0;
    while (done < times && (undo ? host.undo() : host.redo())) ++done;
    emb::HostContext& c = host.context();
    for (int i = 0; i < 100 && (c.eventPending || !c.specialEvents.empty()); ++i) host.runCycle();
    const char* verb = undo ? "undo" : "redo";
    if (done == 0) return std::string("nothing to ") + verb;
    if (done < times) return "only " + std::to_string(done) + " of " + std::to_string(times) + " steps to " + verb;
    return "";
}

std::string EmbeddedDriver::undo(std::int64_t times) { return press(host_, true, times); }

std::string EmbeddedDriver::redo(std::int64_t times) { return press(host_, false, times); }

}  // namespace hostsim
