#pragma once
// The embedded host: what tests and hostsim drive. It implements the host
// table, keeps documents, runs the event loop on a virtual (or real) clock,
// loads modules and records what they ask of it in a journal.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host_api/c4d.h"
#include "embedded_host/runtime/journal.h"

namespace tvr::plr::embedded {

class HostContext;

struct HostOptions {
  LONG apiVersion = 11000;     // first word of the table
  LONG c4dVersion = 11008;     // GetC4DVersion
  std::uint64_t timerStepMs = 40;
  bool crashHandlers = true;   // fatal signals call the table's crash-handler slot
  bool echoConsole = false;    // console lines and dialogs also go to stdout
};

class EmbeddedHost {
 public:
  explicit EmbeddedHost(const HostOptions& options = HostOptions());
  ~EmbeddedHost();
  EmbeddedHost(const EmbeddedHost&) = delete;
  EmbeddedHost& operator=(const EmbeddedHost&) = delete;

  // Modules: initialise (1) with the table and the path, then start (2). On refusal the module
  // is unloaded and error says why ("<path>: no c4d_main", "<path>: initialise answered -3").
  bool loadModule(const std::string& path, std::string* error = nullptr);
  // A module linked into this program, by its entry function.
  bool loadModule(C4DMainFunction entry, const std::string& path, std::string* error = nullptr);
  std::size_t moduleCount() const;
  // Action 6 to every module; true when all answered 1.
  bool sendPluginMessage(LONG id, void* data);
  // Ends modules (3), frees plug-in data and documents, unloads modules. Idempotent.
  void shutdown();

  // Documents (created, activated and removed here only). Scene hooks hear each step as
  // MSG_DOCUMENTINFO: new or switch 1001 to the one left, then 1000; open 1001, then the
  // opened document is active and hears 1002 and 1000; save 1004, the file written, 1005;
  // close 1001 (when active), 1008, then the neighbour or a new empty document becomes active.
  BaseDocument* newDocument(const std::string& name = "Untitled");
  BaseDocument* activeDocument() const;
  void activateDocument(BaseDocument* doc);
  // By position in the document list; false when there is none there.
  bool activateDocumentAt(std::size_t index);
  void removeDocument(BaseDocument* doc);
  // The active document when doc is null.
  void closeDocument(BaseDocument* doc = nullptr);
  // Adds a document made elsewhere (BaseDocument::Alloc) to the host's list and makes it the
  // active one: the one left hears 1001, the inserted one 1000.
  void insertDocument(BaseDocument* doc);
  // Tells doc's scene hooks document event type (any type, also ones the host never sends by
  // itself), the record naming file; journaled like the host's own. False for a document that
  // is not in the host's list.
  bool tellDocument(BaseDocument* doc, LONG type, const std::string& file = std::string());
  // Any message to doc's scene hooks, data as given (null included).
  bool messageSceneHooks(BaseDocument* doc, LONG id, void* data);
  std::vector<BaseDocument*> documents() const;
  // A scene file becomes a new active document; on failure nothing changes, the console
  // and a dialog say why, and so does *error.
  BaseDocument* openDocument(const std::string& path, std::string* error = nullptr);
  // Writes doc (the active one when null) to path, which it is then named after. A failed
  // save reports like a failed open and leaves an earlier file at path as it was.
  bool saveDocument(BaseDocument* doc, const std::string& path, std::string* error = nullptr);
  // One line per object, indented by depth: name, [type], tags and track count.
  std::string tree(BaseDocument* doc = nullptr) const;
  // The world container to and from a preferences file.
  bool savePreferences(const std::string& path, std::string* error = nullptr) const;
  bool loadPreferences(const std::string& path, std::string* error = nullptr);

  // The user's actions.
  bool runCommand(LONG id);
  bool undo();
  bool redo();

  // Event loop.
  void runCycle();
  // Moves the virtual clock forward; one cycle per timer step crossed.
  void advance(std::uint64_t ms);
  // Runs cycles for ms of real time (sleeping between timer steps).
  void runRealTime(std::uint64_t ms);
  std::uint64_t nowMs() const;
  // Called at the start of every cycle with the clock's milliseconds (the platform's message pump).
  void setMessagePump(std::function<void(std::uint64_t)> pump);

  // Observation.
  Journal& journal();
  const std::vector<std::string>& console() const;
  const std::vector<std::string>& dialogs() const;
  BaseContainer& world();
  C4D_HostTable& table();
  HostContext& context();
  // Canonical text of a document or object (with identities), equal exactly when the scenes are.
  std::string dump(BaseDocument* doc) const;
  std::string dump(BaseObject* op) const;

 private:
  struct Module;
  bool startModule(std::unique_ptr<Module> m, std::string* error);
  // Prints text, hands it to error and answers false.
  bool refuseModule(const std::string& text, std::string* error);
  void deliverSpecialEvents();
  void freeDocuments();
  std::string untitledName();

  HostOptions options_;
  std::unique_ptr<HostContext> context_;
  std::vector<std::unique_ptr<Module>> modules_;
  std::function<void(std::uint64_t)> pump_;
  std::uint64_t now_ = 0;
  std::uint64_t nextTick_ = 0;
  bool shutDown_ = false;
  int untitled_ = 0;
};

}  // namespace tvr::plr::embedded
