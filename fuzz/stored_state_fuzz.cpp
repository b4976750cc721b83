// Random stored texts on the objects of a real document, loaded by the module
// and handed to a core that binds every master's nodes. Nothing may crash,
// and every object whose text was handed over is consumed.
//
// Input: pieces separated by 0x01, one object each; a piece starting with
// 0x02 nests its object under the one before.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/core_node.h"
#include "embedded_host/runtime/embedded_host.h"
#include "plugin/plugin_main.h"
#include "test_support/no_installation.h"
#include "util/log.h"

namespace {

using tvr::util::xml::Element;

class BindingCore final : public tvr::plr::core::CoreInterface {
public:
    void saveState(Element&) override {}
    void loadState(const Element& state) override {
        std::vector<const Element*> work{&state};
        while (!work.empty()) {
            const Element* e = work.back();
            work.pop_back();
            for (const auto& child : e->children()) {
                tvr::plr::core::NodeList nodes;
                tvr::util::ReturnValue<tvr::plr::core::NodeList> sink(&nodes);
                tvr::plr::adaptor::cinema4d::C4DAdaptorInterface::instance()->acquireNodes(child->childText("name"),
                                                                                           *child, &sink);
                for (tvr::plr::core::CoreNode* node : nodes)
                    if (node) node->release();
                work.push_back(child.get());
            }
        }
    }
    void showMain(int) override {}
    void runLoopStep() override {}
};

tvr::plr::embedded::EmbeddedHost& host() {
    static tvr::plr::embedded::EmbeddedHost* h = [] {
        // No installation and no dialogs: a text that makes the module look for a
        // core must not cost a library load and a message box on every run.
        static tvr::plr::test::NoInstallation noInstallation;
        tvr::plr::embedded::HostOptions options;
        options.crashHandlers = false;
        auto* made = new tvr::plr::embedded::EmbeddedHost(options);
        made->loadModule(&c4d_main, "pelloran");
        tvr::util::Log::instance()->setLevel(tvr::util::Log::Critical);  // keeps the log from growing without end
        return made;
    }();
    return *h;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static BindingCore core;
    BaseDocument* doc = host().newDocument();
    auto* adaptor = tvr::plr::adaptor::cinema4d::C4DAdaptorInterface::instance();
    adaptor->core = &core;

    std::vector<BaseObject*> objects;
    std::string piece;
    const auto flush = [&] {
        BaseObject* op = BaseObject::Alloc(Onull);
        const bool nest = !piece.empty() && piece[0] == '\x02' && !objects.empty();
        op->SetName(String("object" + std::to_string(objects.size())));
        doc->InsertObject(op, nest ? objects.back() : nullptr, nullptr);
        op->GetDataInstance()->SetString(1023579, String(nest ? piece.substr(1) : piece));
        objects.push_back(op);
        piece.clear();
    };
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0x01)
            flush();
        else
            piece += static_cast<char>(data[i]);
    }
    flush();

    adaptor->loadState();
    if (!adaptor->storedStates.empty()) std::abort();
    adaptor->core = nullptr;
    host().closeDocument(doc);
    return 0;
}
