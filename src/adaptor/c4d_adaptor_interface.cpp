#include "adaptor/c4d_adaptor_interface.h"

#include "host_api/c4d.h"
#include "util/log.h"
#include "util/xml/reader.h"

namespace tvr::plr::adaptor::cinema4d {

int C4DAdaptorInterface::getInterfaceVersion() { return 9201; }

// The identity strings live until the module is unloaded; they are built on
// first use so that nothing is allocated before the host hands over its table.
const std::string& C4DAdaptorInterface::getDisplayName() {
    static const std::string name = "Cinema 4D R10 Adaptor";
    return name;
}

const std::string& C4DAdaptorInterface::getAdaptorId() {
    static const std::string id = "adaptor_c4dr11";
    return id;
}

const std::string& C4DAdaptorInterface::getHostName() {
    static const std::string name = "CINEMA4D";
    return name;
}

const std::string& C4DAdaptorInterface::getHostVersion() {
    static std::string version;
    if (version.empty()) version = "R " + std::to_string(GetC4DVersion());
    return version;
}

void C4DAdaptorInterface::getHostIdentifiers(tvr::util::ReturnValue<core::StringList>* identifiers) {
    core::StringList list;
    list.push_back(getHostName() + "_" + getHostVersion());
    list.push_back(getHostName());
    list.push_back(std::string());
    if (identifiers) identifiers->set(list);
}

int C4DAdaptorInterface::reservedQuery6() { return 0; }

core::CoreNode* C4DAdaptorInterface::createMesh(core::CMaster*, const std::string&, const tvr::util::CMesh&) {
    tvr::util::Log(tvr::util::Log::Error).write("(NOT IMPLEMENTED) createMesh " + getDisplayName(), -1);
    return nullptr;
}

void C4DAdaptorInterface::mergeFromFile(const std::string&, core::CMaster*) {
    tvr::util::Log(tvr::util::Log::Error).write("mergeFromFile not implemented", -1);
}

void C4DAdaptorInterface::reservedNotify25(int) {}

void C4DAdaptorInterface::reservedNotify31() {}

void C4DAdaptorInterface::reservedNotify32() { reservedNotify31(); }

int C4DAdaptorInterface::reservedQuery36() { return 0; }

int C4DAdaptorInterface::getAdaptorData(tvr::util::ReturnValue<tvr::util::xml::Element>* data) {
    const tvr::util::xml::Element empty = tvr::util::xml::parse(std::string());
    if (data) data->set(empty);
    return 0;
}

void C4DAdaptorInterface::reservedNotify38(int) {}

}  // namespace tvr::plr::adaptor::cinema4d
