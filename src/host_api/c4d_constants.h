#pragma once
// Host ids and flags used by modules.
#include "host_api/c4d_types.h"

// Object and tag types.
constexpr LONG Obase = 5155;
constexpr LONG Opoint = 5153;
constexpr LONG Opolygon = 5100;
constexpr LONG Ospline = 5101;
constexpr LONG Ocamera = 5103;
constexpr LONG Onull = 5140;
constexpr LONG Tbase = 5612;
constexpr LONG Tuvw = 5671;
constexpr LONG CTbase = 5350;

// Undo types.
constexpr LONG UNDO_CHANGE = 40;
constexpr LONG UNDO_CHANGE_NOCHILDS = 41;
constexpr LONG UNDO_CHANGE_SMALL = 42;
constexpr LONG UNDO_CHANGE_SELECTION = 43;
constexpr LONG UNDO_NEW = 44;
constexpr LONG UNDO_DELETE = 45;

// Messages.
constexpr LONG MSG_UPDATE = 604;
constexpr LONG MSG_DOCUMENTINFO = 1001078;
constexpr LONG MSG_DOCUMENTINFO_TYPE_SETACTIVE = 1000;
constexpr LONG MSG_DOCUMENTINFO_TYPE_UNSETACTIVE = 1001;
constexpr LONG MSG_DOCUMENTINFO_TYPE_LOAD = 1002;
constexpr LONG MSG_DOCUMENTINFO_TYPE_MERGE = 1003;
constexpr LONG MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE = 1004;
constexpr LONG MSG_DOCUMENTINFO_TYPE_SAVE_AFTER = 1005;
constexpr LONG MSG_DOCUMENTINFO_TYPE_UNDO = 1006;
constexpr LONG MSG_DOCUMENTINFO_TYPE_REDO = 1007;
constexpr LONG MSG_DOCUMENTINFO_TYPE_REMOVE = 1008;

// Event and core-message codes.
constexpr LONG EVMSG_CHANGE = 604;
constexpr LONG EVMSG_TIMECHANGED = 0x74636867;  // 'tchg'
constexpr LONG BFM_CORE_PAR1 = 0x4D636931;      // 'Mci1'
constexpr LONG BFM_CORE_PAR2 = 0x4D636932;      // 'Mci2'
constexpr LONG EVENT_0 = 0;
constexpr LONG EVENT_FORCEREDRAW = 1;
constexpr LONG DRAWFLAG_0 = 0;

// Description data types.
constexpr LONG DTYPE_NONE = 0;
constexpr LONG DTYPE_LONG = 15;
constexpr LONG DTYPE_REAL = 19;
constexpr LONG DTYPE_TIME = 22;
constexpr LONG DTYPE_VECTOR = 23;
constexpr LONG DTYPE_MATRIX = 25;
constexpr LONG DTYPE_STRING = 130;

// Object parameters.
constexpr LONG ID_BASELIST_NAME = 900;
constexpr LONG ID_BASEOBJECT_POSITION = 903;
constexpr LONG ID_BASEOBJECT_ROTATION = 904;
constexpr LONG ID_BASEOBJECT_SCALE = 905;
constexpr LONG VECTOR_X = 1000;
constexpr LONG VECTOR_Y = 1001;
constexpr LONG VECTOR_Z = 1002;
constexpr LONG CAMERAOBJECT_FOV = 1008;       // field of view, radians
constexpr LONG CAMERAOBJECT_APERTURE = 1010;  // film width
constexpr Real CAMERAOBJECT_FOV_DEFAULT = 0.8575f;
constexpr Real CAMERAOBJECT_APERTURE_DEFAULT = 36.0f;

// Editor and render modes.
constexpr LONG MODE_ON = 0;
constexpr LONG MODE_OFF = 1;
constexpr LONG MODE_UNDEF = 2;

// Display colour modes.
constexpr LONG ID_BASEOBJECT_USECOLOR_OFF = 0;
constexpr LONG ID_BASEOBJECT_USECOLOR_AUTOMATIC = 1;
constexpr LONG ID_BASEOBJECT_USECOLOR_ALWAYS = 2;
constexpr LONG ID_BASEOBJECT_USECOLOR_LAYER = 3;

// Selection.
constexpr LONG SELECTION_NEW = 0;
constexpr LONG SELECTION_ADD = 1;
constexpr LONG SELECTION_SUB = 2;

// Copy flags.
constexpr LONG COPY_NO_HIERARCHY = 4;

// Animation.
constexpr LONG CCURVE_CURVE = 1;
constexpr LONG CINTERPOLATION_SPLINE = 1;
constexpr LONG CINTERPOLATION_LINEAR = 2;
constexpr LONG CINTERPOLATION_STEP = 3;
constexpr LONG FINDANIM_EXACT = 0;
constexpr LONG FINDANIM_LEFT = 1;
constexpr LONG FINDANIM_RIGHT = 2;

// Rotation order understood by HPBToMatrix/MatrixToHPB.
constexpr LONG ROTATIONORDER_HPB = 3;

// Plug-in info flags.
constexpr LONG PLUGINFLAG_HIDE = 1 << 29;
constexpr LONG TAG_VISIBLE = 1;
constexpr LONG TAG_MULTIPLE = 2;
constexpr LONG TAG_EXPRESSION = 8;

// Tag execution.
constexpr LONG EXECUTION_RESULT_OK = 0;
constexpr LONG EXECUTION_RESULT_USERBREAK = 1;
constexpr LONG EXECUTION_RESULT_MEMORYERROR = 2;

// Module entry actions.
constexpr LONG C4DPL_INIT_SYS = 1;
constexpr LONG C4DPL_START = 2;
constexpr LONG C4DPL_END = 3;
constexpr LONG C4DPL_INIT_VERSION = 4;
constexpr LONG C4DPL_MESSAGE = 6;

// World container.
constexpr LONG WPREF_UNITS_BASIC = 10000;
constexpr LONG UNIT_M = 2;
constexpr LONG UNIT_CM = 3;
constexpr LONG UNIT_INCH = 10;

// Host API versions.
constexpr LONG C4D_API_VERSION_R11 = 11000;
