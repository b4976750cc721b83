#pragma once
// Registers the geometry kinds with the running host: polygon objects, spline
// objects and texture-coordinate tags.
namespace tvr::plr::embedded {

void registerGeometryKinds();

}  // namespace tvr::plr::embedded
