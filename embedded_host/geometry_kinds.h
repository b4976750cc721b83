#pragma once
// Registers the geometry kinds with the running host: polygon objects, spline
// objects, texture-coordinate tags, and the ray collider's table services
// (after the table is filled).
namespace tvr::plr::embedded {

void registerGeometryKinds();

}  // namespace tvr::plr::embedded
