#pragma once
// A host with one active document, for the scene and undo tests.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded_host/runtime/embedded_host.h"

namespace tvr::plr::embedded::testing {

inline HostOptions quietOptions() {
  HostOptions o;
  o.crashHandlers = false;
  return o;
}

using Names = std::vector<std::string>;

class HostTest : public ::testing::Test {
 protected:
  HostTest() : host(quietOptions()) { doc = host.newDocument("scene"); }

  BaseObject* add(const char* name, BaseObject* parent = nullptr, BaseObject* pred = nullptr, LONG type = Onull) {
    BaseObject* op = BaseObject::Alloc(type);
    op->SetName(name);
    doc->InsertObject(op, parent, pred);
    return op;
  }

  // Names of op's children (or the document's top level), in order.
  std::vector<std::string> childNames(BaseObject* op) {
    std::vector<std::string> out;
    for (BaseObject* c = op ? op->GetDown() : doc->GetFirstObject(); c; c = c->GetNext())
      out.push_back(c->GetName().ToStd());
    return out;
  }

  EmbeddedHost host;
  BaseDocument* doc = nullptr;
};

}  // namespace tvr::plr::embedded::testing
