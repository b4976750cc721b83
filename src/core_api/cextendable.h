#pragma once

#include <map>
#include <string>

namespace tvr::plr {

// Extension records keyed by name; the values belong to whoever stored them.
using ExtensionMap = std::map<std::string, void*>;

// Receives a whole extension store from CExtendable::exportExtensions.
// Virtual table order: two reserved slots, then visitExtensions.
class CExtensionVisitor {
public:
    virtual void visitorReserved0() {}
    virtual void visitorReserved1() {}
    virtual void visitExtensions(const ExtensionMap& extensions) = 0;

protected:
    ~CExtensionVisitor() = default;
};

// Second base of a scene node, with its own virtual table:
// destructor ("destroy"), getExtension, exportExtensions.
class CExtendable {
public:
    virtual ~CExtendable() = default;

    // Null when nothing is stored under the key.
    virtual void* getExtension(const std::string& key) {
        auto it = extensions.find(key);
        return it == extensions.end() ? nullptr : it->second;
    }

    virtual void exportExtensions(CExtensionVisitor* visitor) {
        if (visitor) visitor->visitExtensions(extensions);
    }

    ExtensionMap extensions;
};

}  // namespace tvr::plr
