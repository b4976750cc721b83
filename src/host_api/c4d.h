#pragma once
// Everything a module needs from the host.
#include "host_api/c4d_types.h"
#include "host_api/c4d_constants.h"
#include "host_api/c4d_host_table.h"
#include "host_api/c4d_vector.h"
#include "host_api/c4d_string.h"
#include "host_api/c4d_basetime.h"
#include "host_api/c4d_descid.h"
#include "host_api/c4d_gedata.h"
#include "host_api/c4d_basecontainer.h"
#include "host_api/c4d_baselink.h"
#include "host_api/c4d_baselist.h"
#include "host_api/c4d_baseobject.h"
#include "host_api/c4d_basetag.h"
#include "host_api/c4d_animation.h"
#include "host_api/c4d_basedocument.h"
#include "host_api/c4d_raycollider.h"
#include "host_api/c4d_nodedata.h"
#include "host_api/c4d_plugins.h"
#include "host_api/c4d_general.h"

// The entry point a module exports.
#if defined(_WIN32)
#define C4D_MAIN_EXPORT extern "C" __declspec(dllexport)
#else
#define C4D_MAIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif
