#pragma once
// Scene files: a document as one JSON object.
//
//   {"format": "embedded-host-scene", "version": 1,
//    "document": {"fps", "time", "minTime", "maxTime", "loopMinTime", "loopMaxTime", "data"},
//    "objects": [object...]}
//   object: {"type", "name", "pos", "rot", "scale", "editorMode", "renderMode",
//            "color": {"use", "rgb", "xray"}, "selected", "data", "tags", "tracks",
//            "points" (x y z ...), "polygons" (a b c d ...),          polygon objects
//            "points", "segments" ([cnt, closed] ...), "closed",      spline objects
//            "children"}
//   tag:    {"type", "name", "data", "uvw" (12 numbers a polygon)}; a tag of a plug-in this
//           host does not know is kept as it was read and written back unchanged
//   track:  {"id": [[id, dtype, creator]...], "name", "data", "keys": [[num, den, value, interp]...]}
//   data:   {"id", "entries": [[id, kind, value]...]}, kind one of nil long real lreal vector
//           matrix string time void link; a link names a node by its place in the file
//           (objects, then their tags, tracks and children, depth first) or is null
// Times are [numerator, denominator]. Texts are strings when they are UTF-8 and
// {"bytes": base64} otherwise. Numbers keep their exact bits; non-finite ones
// are "nan", "inf", "-inf". Void pointers cannot outlive the process and are
// written as null pointers. Members with default values may be left out.
#include <string>

#include "embedded_host/scene/document_node.h"

namespace tvr::plr::embedded::scenefile {

constexpr int kFormatVersion = 1;
extern const char* const kFormatName;
// Objects nested deeper than this are refused (deep trees would exhaust the stack).
constexpr int kMaxDepth = 1000;

std::string write(const DocumentNode& doc);
// A new document holding the file's scene: in no document list, without scene
// hooks, named by nothing. Null on failure with *error saying what and where.
DocumentImpl* read(const std::string& text, std::string* error);

// The host's world container as a preferences file:
//   {"format": "embedded-host-preferences", "version": 1, "data": {...}}
extern const char* const kPreferencesName;
std::string writePreferences(const BaseContainer& world);
// Replaces *world only when the whole text reads.
bool readPreferences(const std::string& text, BaseContainer* world, std::string* error);

// Writes a temporary file beside path and renames it over path, so a failed
// save leaves an earlier file as it was.
bool writeFile(const std::string& path, const std::string& text, std::string* error);
bool readFile(const std::string& path, std::string* text, std::string* error);

}  // namespace tvr::plr::embedded::scenefile
