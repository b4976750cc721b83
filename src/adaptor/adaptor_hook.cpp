#include "adaptor/adaptor_hook.h"

#include <new>

namespace tvr::plr::adaptor::cinema4d {

NodeData* AdaptorHook::Alloc() { return new (std::nothrow) AdaptorHook; }

}  // namespace tvr::plr::adaptor::cinema4d
