// The one object through which the core drives the host's scene.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "adaptor/multi_document_check.h"
#include "adaptor/stored_state_record.h"
#include "core_api/adaptor_interface.h"
#include "core_api/core_interface.h"
#include "platform/platform.h"
#include "util/singleton.h"

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode;

class C4DAdaptorInterface : public tvr::plr::core::AdaptorInterface, public tvr::util::Singleton<C4DAdaptorInterface> {
public:
    // Identity.
    int getInterfaceVersion() override;
    const std::string& getDisplayName() override;
    const std::string& getAdaptorId() override;
    const std::string& getHostName() override;
    const std::string& getHostVersion() override;
    void getHostIdentifiers(tvr::util::ReturnValue<core::StringList>* identifiers) override;
    int reservedQuery6() override;

    // Nodes.
    core::CoreNode* createCamera(core::CMaster* master, const std::string& name, core::CoreNode* parent,
                                 core::CNodePeer* peer) override;
    core::CoreNode* createMeshNode(core::CMaster* master, const std::string& name, core::CoreNode* parent,
                                   const tvr::util::CMesh& mesh, core::CNodePeer* peer) override;
    core::CoreNode* createMesh(core::CMaster* master, const std::string& name, const tvr::util::CMesh& mesh) override;
    core::CoreNode* findNode(core::CMaster* master, const std::string& label) override;

    // Stored state.
    void storeMasterState(core::CMaster* master) override;
    bool loadState() override;
    void getNodes(tvr::util::ReturnValue<core::NodeList>* sink) override;
    void getMasterNodes(core::CMaster* master, tvr::util::ReturnValue<core::NodeList>* sink) override;
    void acquireNodes(const std::string& masterName, const tvr::util::xml::Element& masterElement,
                      tvr::util::ReturnValue<core::NodeList>* result) override;
    void mergeFromFile(const std::string& fileName, core::CMaster* master) override;

    // The undo bracket.
    int beginUndo(const std::string& groupName) override;
    int addUndo(tvr::plr::CUndo* step) override;
    int acceptUndo() override;
    int cancelUndo() override;
    bool isAcceptingUndo() override;
    bool undo() override;

    // Time and recording.
    double getTime() override;
    void setTime(double seconds) override;
    void reservedNotify25(int value) override;
    std::pair<double, double> getTimeRange() override;
    void setTimeRange(std::pair<double, double> range) override;
    double getFrameRate() override;
    double getFrameDuration() override;
    void refreshScene() override;
    void reservedNotify31() override;
    void reservedNotify32() override;
    int prepareDirectRecording(tvr::util::ReturnValue<core::MasterList>* masters) override;
    int prepareCacheRecording(void* argument) override;
    int stopRecording() override;
    int reservedQuery36() override;
    int getAdaptorData(tvr::util::ReturnValue<tvr::util::xml::Element>* data) override;
    void reservedNotify38(int value) override;

    core::CoreInterface* getCore() const { return core; }

    // The live nodes (node_operations.cpp). registerNode appends after the
    // multi-document check; unregisterNode erases, absent or not.
    void registerNode(CC4DNode* node);
    void unregisterNode(CC4DNode* node);
    // The first live node whose object is `object`; null if none.
    CC4DNode* findNodeForObject(BaseObject* object);

    // Stored state (state_loading.cpp). Gathers the state stored on the
    // active document's objects into the core's state tree, hands it to the
    // core when asked, and consumes it; true when every object that carried
    // state is now driven by a node.
    bool loadStoredStates(bool handToCore);
    // Whether an object of `doc` carries stored state.
    static bool hasStoredState(BaseDocument* doc);
    // The core's state through its saveState; left as it is without a core.
    void exportState(tvr::util::xml::Element& state);
    // Empties the stored texts of the objects of the nodes held for `doc`.
    void clearStoredStates(BaseDocument* doc);
    // Tells every master with a node in `doc` that the document goes away.
    void releaseDocumentMasters(BaseDocument* doc);

    // Records a step the adaptor made itself through addUndo (slot 18, as the
    // core would). The undo manager then owns it; a refused step is released.
    // Answers what addUndo answered.
    int recordOwnStep(tvr::plr::CUndo* step);

    bool undoCancelled = false;
    std::vector<std::string> undoLevels;
    std::vector<CC4DNode*> nodes;
    std::vector<std::unique_ptr<StoredStateRecord>> storedStates;
    core::CoreInterface* core = nullptr;
    // Set by prepareDirectRecording, cleared by stopRecording; while it is
    // set node writes also set keys.
    bool recording = false;
    MultiDocumentCheck multiDocumentCheck;
    // The loaded core library; set and cleared by the loader.
    tvr::platform::ModuleHandle coreLibrary = nullptr;

private:
    // The step recordOwnStep is handing to addUndo.
    tvr::plr::CUndo* ownStepPending_ = nullptr;

    friend class tvr::util::Singleton<C4DAdaptorInterface>;
    C4DAdaptorInterface() = default;
    ~C4DAdaptorInterface() override = default;
};

}  // namespace tvr::plr::adaptor::cinema4d
