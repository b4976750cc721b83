// Random sequences of core groups (nested, with data, time and node steps,
// moves and renames among them), the user's own edits, undo and redo of
// random depth by the user and by the core, cancelled groups and document
// switches. After every action each document must equal the state recorded
// for its undo position, and the core's data the sum of what every document
// has applied. Seeded and reproducible; a failure prints the shortest
// sequence that still fails.
#include "undo_fixture.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

#include "core_api/csnapshot.h"
#include "nodes/c4d_node.h"
#include "undo/set_time_restore_obj.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

enum class Kind { Group, Cancel, UserEdit, UserUndo, UserRedo, CoreUndo, Switch };

struct Action {
    Kind kind;
    // Group and Cancel: 'd' a data step, 't' a time step, '(' and ')' a nested
    // group; node edits: 'c' a new camera, 'p' a reparent, 'h' a hide, 'x' a
    // deletion, 'm' a move and 'r' a rename (neither records host undo).
    std::string shape;
    int count = 0;  // undo and redo presses; the document of a switch
};

std::string describe(const Action& a) {
    switch (a.kind) {
    case Kind::Group:
        return "group " + a.shape;
    case Kind::Cancel:
        return "cancelled group " + a.shape;
    case Kind::UserEdit:
        return "user edit";
    case Kind::UserUndo:
        return "user undo x" + std::to_string(a.count);
    case Kind::UserRedo:
        return "user redo x" + std::to_string(a.count);
    case Kind::CoreUndo:
        return "core undo";
    case Kind::Switch:
        return "switch to document " + std::to_string(a.count);
    }
    return "?";
}

struct Snapshot {
    std::string dump;
    CoreData part;  // what this document contributes to the core's data
};

struct DocumentModel {
    BaseDocument* doc = nullptr;
    BaseObject* cube = nullptr;
    std::vector<Snapshot> done;  // done.front() is the document as made
    std::vector<Snapshot> undone;
};

constexpr std::size_t kMaxDocuments = 3;

// One sequence played against a fresh host with the module loaded.
class Player {
public:
    Player() : host_(emb::testing::quietOptions()) {
        host_.loadModule(&c4d_main, "pelloran");
        tvr::util::Log::instance()->setLevel(tvr::util::Log::Error);  // keeps the run lean
        adaptor_ = C4DAdaptorInterface::instance();
        addDocument();
    }
    ~Player() {
        // The core gives back the nodes it holds; undone creations and
        // deletions in force belong to their undo steps.
        const std::vector<CC4DNode*> held = adaptor_->nodes;
        for (CC4DNode* node : held) node->release();
        host_.shutdown();
        for (DataStep* s : steps_) delete s;
    }

    // Empty when every action kept the documents at their recorded states.
    std::string play(const std::vector<Action>& actions) {
        for (std::size_t i = 0; i < actions.size(); ++i) {
            std::string error = apply(actions[i]);
            if (error.empty()) error = editError_;
            if (error.empty()) error = check();
            if (!error.empty())
                return "after action " + std::to_string(i + 1) + " (" + describe(actions[i]) + "): " + error;
        }
        return "";
    }

private:
    DocumentModel& active() { return docs_[activeIndex_]; }

    bool settle() { return testing::settle(host_); }

    // A camera's name and placement are the core's own business: renames and
    // moves record no host undo, so the user's undo keeps them, except where a
    // host record of another edit copies the whole object back. Cameras are
    // compared without them; everything else of the scene is compared exactly.
    std::string dump(BaseDocument* doc) {
        std::istringstream lines(host_.dump(doc));
        std::string text;
        for (std::string line; std::getline(lines, line); text += line + '\n') {
            if (line.find("O " + std::to_string(Ocamera) + " ") != line.find_first_not_of(' ')) continue;
            for (const char* key : {" name=", " pos=", " rot=", " scale="}) {
                const std::size_t at = line.find(key);
                if (at == std::string::npos) continue;
                const std::size_t from = at + std::strlen(key);
                std::size_t to = from + 1;
                if (line[from] == '"') {
                    while (to < line.size() && line[to] != '"') to += line[to] == '\\' ? 2 : 1;
                } else {
                    to = line.find(')', from);
                }
                line.replace(from, to == std::string::npos ? std::string::npos : to + 1 - from, "~");
            }
        }
        return text;
    }
    Snapshot snapshot(DocumentModel& m, const CoreData& part) { return {dump(m.doc), part}; }

    void addDocument() {
        DocumentModel m;
        m.doc = docs_.empty() ? host_.newDocument("doc 0") : host_.newDocument("doc " + std::to_string(docs_.size()));
        m.cube = BaseObject::Alloc(Onull);
        m.cube->SetName("cube");
        m.doc->InsertObject(m.cube, nullptr, nullptr);
        // An empty group makes the hidden object before anything is recorded.
        adaptor_->beginUndo("make");
        adaptor_->acceptUndo();
        settle();
        docs_.push_back(std::move(m));
        activeIndex_ = docs_.size() - 1;
        docs_.back().done.push_back(snapshot(docs_.back(), CoreData()));
    }

    // Runs a group's shape up to its outermost close, adding to part what its
    // data steps add; false when no edit was made (the host drops an empty group).
    bool runShape(const std::string& shape, CoreData& part) {
        bool recorded = false;
        adaptor_->beginUndo("group");
        for (char c : shape) {
            if (c == '(') {
                adaptor_->beginUndo("inner");
            } else if (c == ')') {
                adaptor_->acceptUndo();
            } else if (c == 'd') {
                recorded = true;
                const std::string name = "s" + std::to_string(++serial_);
                steps_.push_back(new DataStep(data_, serial_, name, nullptr));
                adaptor_->addUndo(steps_.back());
                part.counter += serial_;
                part.names.insert(name);
            } else if (c == 'c') {
                recorded = true;
                adaptor_->createCamera(&master_, "n" + std::to_string(++serial_), nullptr, nullptr);
            } else if (c == 'p' || c == 'h' || c == 'x' || c == 'm' || c == 'r') {
                const std::vector<CC4DNode*> live = liveNodes(active().doc);
                if (live.empty()) continue;
                ++serial_;
                CC4DNode* node = live[static_cast<std::size_t>(serial_) % live.size()];
                if (c == 'x') {
                    recorded |= node->deleteNode(true) == 0;
                } else if (c == 'h') {
                    recorded |= node->hide() == 0;
                } else if (c == 'p') {
                    // The top level, or another node; one below the node is refused.
                    const std::size_t pick = static_cast<std::size_t>(serial_ * 7) % (live.size() + 1);
                    recorded |= node->setParent(pick == live.size() ? nullptr : live[pick]) == 0;
                } else if (c == 'm') {
                    move(node);
                } else {
                    // Through the label extension, which nests a bracket of its
                    // own, unless groups are kept flat after a cancel.
                    std::string label = "r" + std::to_string(serial_);
                    if (cancelled_)
                        node->setName(label);
                    else
                        node->executeExtension(32, &label);
                    if (node->getName() != label)
                        editError_ = "a rename to " + label + " reads back " + node->getName();
                }
            } else if (c == 't') {
                recorded = true;
                adaptor_->recordOwnStep(new CSetTimeRestoreObj(adaptor_->getTime()));
                active().doc->SetTime(BaseTime(static_cast<Real>(static_cast<double>(++serial_ % 977) / 1000.0)));
            }
        }
        return recorded;
    }

    // Moves the node's object along x and reads the placement back.
    void move(CC4DNode* node) {
        CTransformSnapshot* s = node->acquireSnapshot(adaptor_->getTime());
        if (!s) {
            editError_ = "no transform snapshot";
            return;
        }
        tvr::util::Matrix4d m = s->getGlobalMatrix();
        m(0, 3) = static_cast<double>(serial_ % 97);
        s->setGlobalMatrix(m);
        if (s->getGlobalMatrix()(0, 3) != m(0, 3)) editError_ = "a move does not read back";
        node->releaseSnapshot(s);
    }

    std::string apply(const Action& a) {
        DocumentModel& m = active();
        switch (a.kind) {
        case Kind::Group:
        case Kind::Cancel: {
            CoreData part = m.done.back().part;
            const bool recorded = runShape(a.shape, part);
            // A cancel undoes the group, and once a group has been cancelled
            // every close does: the host keeps it to redo, its state the one
            // before the close.
            const Snapshot closing = snapshot(m, part);
            if (a.kind == Kind::Cancel) {
                adaptor_->cancelUndo();
                cancelled_ = true;
            } else {
                adaptor_->acceptUndo();
            }
            if (!settle()) return "the event loop does not rest";
            if (!recorded) return "";
            if (cancelled_) {
                m.undone.assign(1, closing);
            } else {
                m.done.push_back(snapshot(m, part));
                m.undone.clear();
            }
            return "";
        }
        case Kind::UserEdit: {
            m.doc->StartUndo();
            m.doc->AddUndo(UNDO_CHANGE_SMALL, m.cube);
            m.cube->SetName("cube " + std::to_string(++serial_));
            m.doc->EndUndo();
            if (!settle()) return "the event loop does not rest";
            m.done.push_back(snapshot(m, m.done.back().part));
            m.undone.clear();
            return "";
        }
        case Kind::UserUndo:
        case Kind::CoreUndo:
            for (int i = 0; i < (a.kind == Kind::CoreUndo ? 1 : a.count); ++i) {
                const bool expected = m.done.size() > 1;
                const bool done = a.kind == Kind::CoreUndo ? adaptor_->undo() : host_.undo();
                if (done != expected) return std::string("undo answered ") + (done ? "true" : "false");
                if (expected) {
                    m.undone.push_back(m.done.back());
                    m.done.pop_back();
                }
            }
            return settle() ? "" : "the event loop does not rest";
        case Kind::UserRedo:
            for (int i = 0; i < a.count; ++i) {
                const bool expected = !m.undone.empty();
                if (host_.redo() != expected) return "redo answered " + std::string(expected ? "false" : "true");
                if (expected) {
                    m.done.push_back(m.undone.back());
                    m.undone.pop_back();
                }
            }
            return settle() ? "" : "the event loop does not rest";
        case Kind::Switch: {
            const std::size_t target = static_cast<std::size_t>(a.count) % (docs_.size() + 1);
            if (target == docs_.size()) {
                if (docs_.size() < kMaxDocuments) addDocument();
            } else {
                host_.activateDocument(docs_[target].doc);
                activeIndex_ = target;
            }
            return settle() ? "" : "the event loop does not rest";
        }
        }
        return "";
    }

    // The adaptor's live nodes whose object lies in doc.
    std::vector<CC4DNode*> liveNodes(BaseDocument* doc) {
        std::vector<CC4DNode*> live;
        for (CC4DNode* node : adaptor_->nodes) {
            BaseObject* op = node->object();
            if (op && op->GetDocument() == doc) live.push_back(node);
        }
        return live;
    }
    static int cameras(BaseObject* op) {
        int n = 0;
        for (; op; op = op->GetNext()) n += (op->GetType() == Ocamera) + cameras(op->GetDown());
        return n;
    }

    std::string check() {
        for (std::size_t i = 0; i < docs_.size(); ++i) {
            const std::size_t live = liveNodes(docs_[i].doc).size();
            const int objects = cameras(docs_[i].doc->GetFirstObject());
            if (static_cast<int>(live) != objects)
                return "document " + std::to_string(i) + " has " + std::to_string(objects) + " cameras but " +
                       std::to_string(live) + " live nodes";
        }
        CoreData expected;
        for (std::size_t i = 0; i < docs_.size(); ++i) {
            const Snapshot& s = docs_[i].done.back();
            expected.counter += s.part.counter;
            expected.names.insert(s.part.names.begin(), s.part.names.end());
            const std::string now = dump(docs_[i].doc);
            if (now != s.dump) return "document " + std::to_string(i) + " is\n" + now + "expected\n" + s.dump;
        }
        if (!(data_ == expected))
            return "core data " + testing::describe(data_) + ", expected " + testing::describe(expected);
        return "";
    }

    emb::EmbeddedHost host_;
    C4DAdaptorInterface* adaptor_ = nullptr;
    ToolMaster master_;
    std::vector<DocumentModel> docs_;
    std::size_t activeIndex_ = 0;
    CoreData data_;
    std::vector<DataStep*> steps_;
    long long serial_ = 0;
    bool cancelled_ = false;
    std::string editError_;
};

std::string play(const std::vector<Action>& actions) { return Player().play(actions); }

// A balanced shape of one to four steps; nested only when allowed.
std::string randomShape(std::mt19937& rng, bool nested) {
    std::string shape;
    int open = 0;
    const int steps = 1 + static_cast<int>(rng() % 4);
    for (int i = 0; i < steps; ++i) {
        if (nested && open < 2 && rng() % 4 == 0) {
            shape += '(';
            ++open;
        }
        static const char kEdits[] = "ddddttcccpphxmmr";
        shape += kEdits[rng() % (sizeof kEdits - 1)];
        if (open > 0 && rng() % 2 == 0) {
            shape += ')';
            --open;
        }
    }
    shape.append(static_cast<std::size_t>(open), ')');
    return shape;
}

// After a cancel the bracket undoes at every close; nested groups then take
// back entries before them, which the snapshots here do not follow, so a
// sequence that cancels keeps its later groups flat.
std::vector<Action> randomSequence(std::mt19937& rng) {
    std::vector<Action> actions;
    const int length = 4 + static_cast<int>(rng() % 20);
    bool cancelled = false;
    const bool mayCancel = rng() % 8 == 0;
    for (int i = 0; i < length; ++i) {
        const unsigned roll = rng() % 100;
        Action a{Kind::Group, "", 0};
        if (roll < 35) {
            a.shape = randomShape(rng, !cancelled);
        } else if (roll < 38 && mayCancel) {
            a.kind = Kind::Cancel;
            a.shape = randomShape(rng, false);
            cancelled = true;
        } else if (roll < 45) {
            a.kind = Kind::UserEdit;
        } else if (roll < 65) {
            a.kind = Kind::UserUndo;
            a.count = 1 + static_cast<int>(rng() % 3);
        } else if (roll < 80) {
            a.kind = Kind::UserRedo;
            a.count = 1 + static_cast<int>(rng() % 3);
        } else if (roll < 88) {
            a.kind = Kind::CoreUndo;
        } else {
            a.kind = Kind::Switch;
            a.count = static_cast<int>(rng() % 4);
        }
        actions.push_back(a);
    }
    return actions;
}

// Drops actions one at a time for as long as the rest still fails.
std::vector<Action> shrink(std::vector<Action> actions) {
    for (bool smaller = true; smaller;) {
        smaller = false;
        for (std::size_t i = actions.size(); i-- > 0;) {
            std::vector<Action> fewer = actions;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
            if (!play(fewer).empty()) {
                actions = std::move(fewer);
                smaller = true;
            }
        }
    }
    return actions;
}

unsigned long envNumber(const char* name, unsigned long fallback) {
    const char* text = std::getenv(name);
    return text && *text ? std::strtoul(text, nullptr, 10) : fallback;
}

TEST(UndoRandom, EveryUndoPositionComesBackAsRecorded) {
    const unsigned long seed = envNumber("PLR_UNDO_SEED", 20261123);
    const unsigned long sequences = envNumber("PLR_UNDO_SEQUENCES", 10000);
    for (unsigned long n = 0; n < sequences; ++n) {
        std::mt19937 rng(static_cast<std::mt19937::result_type>(seed + n));
        const std::vector<Action> actions = randomSequence(rng);
        if (play(actions).empty()) continue;
        const std::vector<Action> shortest = shrink(actions);
        std::ostringstream text;
        text << "sequence " << n << " (PLR_UNDO_SEED=" << seed + n << " PLR_UNDO_SEQUENCES=1) fails; shortest:\n";
        for (const Action& a : shortest) text << "  " << describe(a) << "\n";
        text << play(shortest);
        FAIL() << text.str();
    }
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
