#include "embedded_host/runtime/embedded_host.h"

#include <chrono>
#include <sstream>
#include <thread>
#include <unordered_set>

#include "embedded_host/runtime/crash_handler.h"
#include "embedded_host/scene/document_node.h"
#include "embedded_host/geometry/geometry_kinds.h"
#include "embedded_host/runtime/host_context.h"
#include "embedded_host/runtime/host_table.h"
#include "embedded_host/runtime/module_loader.h"
#include "embedded_host/scene/node_memory.h"
#include "embedded_host/scene/object_node.h"
#include "embedded_host/scene/scene_dump.h"

namespace tvr::plr::embedded {

struct EmbeddedHost::Module {
  std::string path;
  void* library = nullptr;  // null for a module linked into the program
  C4DMainFunction entry = nullptr;
  Filename fileName;
};

EmbeddedHost::EmbeddedHost(const HostOptions& options) : options_(options), context_(std::make_unique<HostContext>()) {
  setContext(context_.get());
  context_->host = this;
  context_->c4dVersion = options.c4dVersion;
  context_->console.echo = options.echoConsole;
  context_->world.SetLong(WPREF_UNITS_BASIC, UNIT_CM);
  fillHostTable(options.apiVersion);
  C4DOS() = &hostTable();
  registerPlainObjectKinds();
  registerGeometryKinds();
  if (options.timerStepMs == 0) options_.timerStepMs = 1;
  nextTick_ = options_.timerStepMs;
  if (options.crashHandlers) installCrashHandlers();
}

EmbeddedHost::~EmbeddedHost() {
  shutdown();
  if (options_.crashHandlers) removeCrashHandlers();
  context_->host = nullptr;
  // Nodes still alive here were made by tests and never freed; they go with the host.
  setContext(nullptr);
  context_.reset();
  nodememory::drain();
}

bool EmbeddedHost::refuseModule(const std::string& text, std::string* error) {
  context_->console.print(text);
  if (error) *error = text;
  return false;
}

bool EmbeddedHost::loadModule(const std::string& path, std::string* error) {
  std::string why;
  void* library = openLibrary(path, why);
  if (!library) return refuseModule(path + ": cannot load (" + why + ")", error);
  C4DMainFunction entry = findEntry(library);
  if (!entry) {
    closeLibrary(library);
    return refuseModule(path + ": no c4d_main", error);
  }
  auto m = std::make_unique<Module>();
  m->path = path;
  m->library = library;
  m->entry = entry;
  return startModule(std::move(m), error);
}

bool EmbeddedHost::loadModule(C4DMainFunction entry, const std::string& path, std::string* error) {
  if (!entry) return refuseModule(path + ": no c4d_main", error);
  auto m = std::make_unique<Module>();
  m->path = path;
  m->entry = entry;
  return startModule(std::move(m), error);
}

bool EmbeddedHost::startModule(std::unique_ptr<Module> m, std::string* error) {
  if (shutDown_) {
    if (error) *error = m->path + ": the host has shut down";
    closeLibrary(m->library);
    return false;
  }
  m->fileName = Filename(String(m->path));
  context_->journal.add("Module", "initialise " + m->path);
  const LONG init = m->entry(C4DPL_INIT_SYS, &hostTable(), nullptr, &m->fileName);
  if (init != 1) {
    closeLibrary(m->library);
    return refuseModule(m->path + ": initialise answered " + std::to_string(init), error);
  }
  // Asked once the module knows the host; the answer is only noted, as modules of every
  // version this host knows start the same way.
  const LONG version = m->entry(C4DPL_INIT_VERSION, nullptr, nullptr, nullptr);
  context_->journal.add("Module", "version " + m->path + " " + std::to_string(version));
  context_->journal.add("Module", "start " + m->path);
  context_->starting = true;
  const LONG started = m->entry(C4DPL_START, nullptr, nullptr, nullptr);
  context_->starting = false;
  modules_.push_back(std::move(m));
  // Documents that exist already get the new scene hooks.
  for (HostNode* d = context_->documents.first; d; d = d->next) static_cast<DocumentNode*>(d)->ensureSceneHooks();
  if (started != 1) {
    const std::string text = modules_.back()->path + ": start answered " + std::to_string(started);
    context_->console.print(text);
    if (error) *error = text;
  }
  return true;
}

std::size_t EmbeddedHost::moduleCount() const { return modules_.size(); }

bool EmbeddedHost::sendPluginMessage(LONG id, void* data) {
  bool all = true;
  for (auto& m : modules_) all = m->entry(C4DPL_MESSAGE, reinterpret_cast<void*>(static_cast<VLONG>(id)), data, nullptr) == 1 && all;
  return all;
}

void EmbeddedHost::freeDocuments() {
  while (HostNode* d = context_->documents.first) {
    d->unlink();
    delete d;
  }
  context_->active = nullptr;
}

void EmbeddedHost::shutdown() {
  if (shutDown_) return;
  shutDown_ = true;
  for (auto it = modules_.rbegin(); it != modules_.rend(); ++it) {
    context_->journal.add("Module", "end " + (*it)->path);
    (*it)->entry(C4DPL_END, nullptr, nullptr, nullptr);
  }
  // Plug-in data (tags, scene hooks, undo copies, registered objects) has its code in the
  // modules: all of it goes before they are unloaded.
  freeDocuments();
  context_->specialEvents.clear();
  std::vector<HostNode*> leftovers = context_->registry.roots();
  if (!leftovers.empty()) context_->console.print("shutdown: freeing " + std::to_string(leftovers.size()) + " nodes left by modules");
  for (HostNode* n : leftovers) delete n;
  context_->plugins.clear();
  for (auto it = modules_.rbegin(); it != modules_.rend(); ++it) closeLibrary((*it)->library);
  modules_.clear();
  // Slots a module swapped may point into code that is gone now.
  fillHostTable(options_.apiVersion);
}

bool EmbeddedHost::runCommand(LONG id) {
  const CommandPlugin* p = context_->plugins.command(id);
  context_->journal.add("Command", std::to_string(id));
  if (!p || !p->data) {
    context_->console.print("no command " + std::to_string(id));
    return false;
  }
  return p->data->Execute(activeDocument());
}

bool EmbeddedHost::undo() {
  DocumentNode* d = context_->active;
  context_->journal.add("UserUndo", "");
  if (!d || d->undo.isOpen()) return false;
  const bool done = d->undo.undo(false);
  context_->eventPending = true;
  return done;
}

bool EmbeddedHost::redo() {
  DocumentNode* d = context_->active;
  context_->journal.add("UserRedo", "");
  if (!d) return false;
  const bool done = d->undo.redo();
  context_->eventPending = true;
  return done;
}

void EmbeddedHost::deliverSpecialEvents() {
  // What is posted while delivering waits for the next cycle.
  std::deque<SpecialEvent> events;
  events.swap(context_->specialEvents);
  for (const SpecialEvent& e : events) deliverCoreMessage(context_->plugins, e.id, e.p1, e.p2);
}

void EmbeddedHost::runCycle() {
  if (pump_) pump_(now_);
  deliverSpecialEvents();
  if (!context_->eventPending) return;
  context_->eventPending = false;
  if (DocumentNode* d = context_->active) {
    d->executePasses(nullptr, true, true);
    if (context_->active == d) d->messageSceneHooks(MSG_UPDATE, nullptr);
  }
}

void EmbeddedHost::advance(std::uint64_t ms) {
  const std::uint64_t target = now_ + ms;
  while (nextTick_ <= target) {
    now_ = nextTick_;
    nextTick_ += options_.timerStepMs;
    runCycle();
  }
  now_ = target;
}

void EmbeddedHost::runRealTime(std::uint64_t ms) {
  const auto start = std::chrono::steady_clock::now();
  const auto step = std::chrono::milliseconds(options_.timerStepMs);
  for (;;) {
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    if (std::uint64_t(elapsed.count()) >= ms) break;
    std::this_thread::sleep_for(step);
    advance(options_.timerStepMs);
  }
}

std::uint64_t EmbeddedHost::nowMs() const { return now_; }
void EmbeddedHost::setMessagePump(std::function<void(std::uint64_t)> pump) { pump_ = std::move(pump); }

Journal& EmbeddedHost::journal() { return context_->journal; }
const std::vector<std::string>& EmbeddedHost::console() const { return context_->console.lines(); }
const std::vector<std::string>& EmbeddedHost::dialogs() const { return context_->console.dialogs(); }
BaseContainer& EmbeddedHost::world() { return context_->world; }
C4D_HostTable& EmbeddedHost::table() { return hostTable(); }
HostContext& EmbeddedHost::context() { return *context_; }

std::string EmbeddedHost::dump(BaseDocument* doc) const { return dumpTree(nodeOf(doc)); }
std::string EmbeddedHost::dump(BaseObject* op) const { return dumpTree(nodeOf(op)); }

}  // namespace tvr::plr::embedded
