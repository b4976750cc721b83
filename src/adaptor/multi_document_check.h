// The warning shown once when the core's nodes turn out to live in more than
// one document. A node registered with a master and a document is compared
// with every node already registered; this keeps the answer of that
// comparison while doing it in constant time for the usual case, one
// document, by remembering the one document all nodes were last found in.
#pragma once

#include <vector>

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode;

class MultiDocumentCheck {
public:
    static const char* const kWarning;

    // Before `node` is appended to `nodes`. Shows the warning at the first
    // node of another document, then never again while the module is loaded.
    void beforeRegister(const std::vector<CC4DNode*>& nodes, CC4DNode* node);

    bool pending() const { return pending_; }

private:
    // True when a node of another document than `document` is registered.
    bool otherDocumentIn(const std::vector<CC4DNode*>& nodes, BaseDocument* document);

    bool pending_ = true;
    // Every registered node with a document was in this one when last looked
    // at, unless `unsure_` says that something changed since.
    BaseDocument* known_ = nullptr;
    bool unsure_ = true;
};

}  // namespace tvr::plr::adaptor::cinema4d
