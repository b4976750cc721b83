#include "embedded_host/runtime/host_context.h"

#include <cstdio>

#include "embedded_host/scene/tag_node.h"

namespace tvr::plr::embedded {

namespace {
HostContext* g_context = nullptr;
}

HostContext* context() { return g_context; }
void setContext(HostContext* c) { g_context = c; }

HostContext::HostContext() = default;
HostContext::~HostContext() = default;

HostNode* HostContext::makeObject(LONG type) {
  auto it = objectMakers.find(type);
  return it == objectMakers.end() ? nullptr : it->second(type, 0);
}

HostNode* HostContext::makeTag(LONG type, LONG count) {
  auto it = tagMakers.find(type);
  if (it != tagMakers.end()) return it->second(type, count);
  if (const TagPlugin* p = plugins.tag(type)) return makePluginTag(type, p->allocator);
  return nullptr;
}

void HostContext::print(const std::string& line) {
  console.push_back(line);
  journal.add("GePrint", line);
  if (echoConsole) std::printf("%s\n", line.c_str());
}

void HostContext::dialog(const std::string& text) {
  // A dialog is gone once closed; the console keeps what it said.
  dialogs.push_back(text);
  console.push_back(text);
  journal.add("MessageDialog", text);
  if (echoConsole) std::printf("[dialog] %s\n", text.c_str());
}

}  // namespace tvr::plr::embedded
