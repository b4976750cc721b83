#pragma once
// Basic scalar types with the host's spellings.
#include <cstddef>
#include <cstdint>

using Real = float;
using LReal = double;
#if defined(_WIN32)
// The same types the system headers give these names (32 bits there), so both can be included.
using LONG = long;
using ULONG = unsigned long;
#else
using LONG = std::int32_t;
using ULONG = std::uint32_t;
#endif
static_assert(sizeof(LONG) == 4 && sizeof(ULONG) == 4, "LONG and ULONG are 32-bit");
using LLONG = std::int64_t;
using VLONG = std::intptr_t;
using VULONG = std::uintptr_t;
using UCHAR = unsigned char;
using CHAR = char;
using Bool = bool;

#ifndef TRUE
#define TRUE true
#endif
#ifndef FALSE
#define FALSE false
#endif

constexpr LONG NOTOK = -1;
constexpr Real pi = 3.14159265358979323846f;

class GeListNode;
class BaseList2D;
class BaseObject;
class PointObject;
class PolygonObject;
class SplineObject;
class BaseTag;
class PluginTag;
class UVWTag;
class BaseDocument;
class BaseLink;
class BaseContainer;
class GeData;
class CTrack;
class CCurve;
class CKey;
class BaseThread;
class BaseDraw;
class BaseDrawHelp;
class AliasTrans;
class HyperFile;
class Description;
class PriorityList;
class BaseSceneHook;
class GeRayCollider;
class NodeData;
class TagData;
class SceneHookData;
class MessageData;
class CommandData;
class BaseBitmap;
class String;
class Filename;
class DescID;
struct DescLevel;
struct Vector;
struct Matrix;
class BaseTime;
