// One document object that carried saved core state when the state was last
// loaded, with that state parsed.
#pragma once

#include "util/xml/element.h"

class BaseObject;

namespace tvr::plr::adaptor::cinema4d {

struct StoredStateRecord {
    BaseObject* object = nullptr;
    tvr::util::xml::Element state;
};

}  // namespace tvr::plr::adaptor::cinema4d
