// Pictures of a document for people who would rather look than read: the
// scene as the active camera sees it, and an object's animation curves.
#pragma once

#include <string>

#include "host_api/c4d.h"

namespace hostsim {

constexpr int kPictureWidth = 800;
constexpr int kPictureHeight = 600;

// The document drawn from its camera: the active object when it is a camera,
// else the first camera of the tree, else a front view (looking along +Z)
// fitted to the scene. Meshes as wireframe, splines as lines, other cameras
// with their viewing cone, every object's name at its origin. Each object is
// one <g class="object"> with data-name, data-kind, data-x and data-y (its
// origin on the picture; absent when it lies behind the camera).
std::string drawScene(BaseDocument* doc);

// Finds an object by name, depth first; null when none has it.
BaseObject* findObjectByName(BaseDocument* doc, const std::string& name);

// The object's tracks over the document's time: one panel a group (position,
// rotation, scale, lens), one line a track sampled each frame, one
// <circle class="key"> a key. Answers "" and sets error when there is nothing
// to draw.
std::string drawCurves(BaseDocument* doc, BaseObject* op, std::string& error);

}  // namespace hostsim
