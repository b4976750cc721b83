#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "util/mesh.h"
#include "util/return_value.h"
#include "util/xml/element.h"

namespace tvr::plr {
class CUndo;
}  // namespace tvr::plr

namespace tvr::plr::core {

class CMaster;
class CNodePeer;
class CoreNode;

using NodeList = std::vector<CoreNode*>;
using MasterList = std::vector<CMaster*>;
using StringList = std::vector<std::string>;

// What the host adaptor offers the core: identity, nodes, the undo bracket,
// stored state, time and recording. The core calls these by position; the
// slot number of each is given before it. Results that the core stores go
// through sinks (util::ReturnValue) that point at the core's own storage.
class AdaptorInterface {
public:
    /* 0 */ virtual int getInterfaceVersion() = 0;
    /* 1 */ virtual const std::string& getDisplayName() = 0;
    /* 2 */ virtual const std::string& getAdaptorId() = 0;
    /* 3 */ virtual const std::string& getHostName() = 0;
    /* 4 */ virtual const std::string& getHostVersion() = 0;
    /* 5 */ virtual void getHostIdentifiers(util::ReturnValue<StringList>* identifiers) = 0;
    /* 6 */ virtual int reservedQuery6() = 0;

    // parent may be null (top level); peer may be null.
    /* 7 */ virtual CoreNode* createCamera(CMaster* master, const std::string& name, CoreNode* parent,
                                           CNodePeer* peer) = 0;
    /* 8 */ virtual CoreNode* createMeshNode(CMaster* master, const std::string& name, CoreNode* parent,
                                             const util::CMesh& mesh, CNodePeer* peer) = 0;
    /* 9 */ virtual CoreNode* createMesh(CMaster* master, const std::string& name, const util::CMesh& mesh) = 0;
    /* 10 */ virtual CoreNode* findNode(CMaster* master, const std::string& label) = 0;

    /* 11 */ virtual void storeMasterState(CMaster* master) = 0;
    /* 12 */ virtual bool loadState() = 0;
    /* 13 */ virtual void getNodes(util::ReturnValue<NodeList>* nodes) = 0;
    /* 14 */ virtual void getMasterNodes(CMaster* master, util::ReturnValue<NodeList>* nodes) = 0;
    // One entry per "node" child of masterElement, null where no object was found.
    /* 15 */ virtual void acquireNodes(const std::string& masterName, const util::xml::Element& masterElement,
                                       util::ReturnValue<NodeList>* nodes) = 0;
    /* 16 */ virtual void mergeFromFile(const std::string& fileName, CMaster* master) = 0;

    // The undo bracket: 0 done, 1 refused or mismatched.
    /* 17 */ virtual int beginUndo(const std::string& groupName) = 0;
    /* 18 */ virtual int addUndo(CUndo* step) = 0;
    /* 19 */ virtual int acceptUndo() = 0;
    /* 20 */ virtual int cancelUndo() = 0;
    /* 21 */ virtual bool isAcceptingUndo() = 0;
    /* 22 */ virtual bool undo() = 0;

    // Times in seconds.
    /* 23 */ virtual double getTime() = 0;
    /* 24 */ virtual void setTime(double seconds) = 0;
    /* 25 */ virtual void reservedNotify25(int value) = 0;
    /* 26 */ virtual std::pair<double, double> getTimeRange() = 0;
    // Start and end, as getTimeRange answers them. Taken by value: on Windows x64
    // a 16-byte pair travels as a pointer to the caller's copy, so the slot reads
    // two doubles from memory whichever way a core spells the call.
    /* 27 */ virtual void setTimeRange(std::pair<double, double> range) = 0;
    /* 28 */ virtual double getFrameRate() = 0;
    /* 29 */ virtual double getFrameDuration() = 0;
    /* 30 */ virtual void refreshScene() = 0;
    /* 31 */ virtual void reservedNotify31() = 0;
    /* 32 */ virtual void reservedNotify32() = 0;

    // The sink holds the core's masters on entry and the ones fit for
    // recording in the active document on return.
    /* 33 */ virtual int prepareDirectRecording(util::ReturnValue<MasterList>* masters) = 0;
    /* 34 */ virtual int prepareCacheRecording(void* argument) = 0;
    /* 35 */ virtual int stopRecording() = 0;
    /* 36 */ virtual int reservedQuery36() = 0;
    /* 37 */ virtual int getAdaptorData(util::ReturnValue<util::xml::Element>* data) = 0;
    /* 38 */ virtual void reservedNotify38(int value) = 0;

    // After the last slot, so it moves none of them. The core never deletes
    // the adaptor; this only keeps deletion through the base well defined.
    virtual ~AdaptorInterface() = default;
};

}  // namespace tvr::plr::core
