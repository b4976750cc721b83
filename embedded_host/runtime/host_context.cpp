#include "embedded_host/runtime/host_context.h"

namespace tvr::plr::embedded {

namespace {
HostContext* g_context = nullptr;
}

HostContext* context() { return g_context; }
void setContext(HostContext* c) { g_context = c; }

HostContext::HostContext() = default;
HostContext::~HostContext() = default;

// Each piece of the running host, for code that needs only that piece.
NodeRegistry* nodeRegistry() { return g_context ? &g_context->registry : nullptr; }
NodeMakers* nodeMakers() { return g_context ? &g_context->makers : nullptr; }
Journal* hostJournal() { return g_context ? &g_context->journal : nullptr; }
PluginRegistry* hostPlugins() { return g_context ? &g_context->plugins : nullptr; }
NodeList* documentList() { return g_context ? &g_context->documents : nullptr; }

void consolePrint(const std::string& line) {
  if (g_context) g_context->console.print(line);
}

void postEvent() {
  if (g_context) g_context->eventPending = true;
}

}  // namespace tvr::plr::embedded
