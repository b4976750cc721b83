// One document object that carried saved core state when the state was last
// loaded, with that state parsed.
#pragma once

#include "host_api/c4d.h"
#include "util/xml/element.h"

namespace tvr::plr::adaptor::cinema4d {

struct StoredStateRecord {
    StoredStateRecord(BaseObject* object, tvr::util::xml::Element element);
    ~StoredStateRecord();
    StoredStateRecord(const StoredStateRecord&) = delete;
    StoredStateRecord& operator=(const StoredStateRecord&) = delete;

    // The object, or null once it has been freed (the core may delete objects
    // while it is being handed its state).
    BaseObject* liveObject() const;

    BaseObject* object = nullptr;
    tvr::util::xml::Element element;
    // Follows `object`, so that a freed object is never touched.
    BaseLink* link = nullptr;
};

}  // namespace tvr::plr::adaptor::cinema4d
