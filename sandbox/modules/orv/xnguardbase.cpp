#include <algorithm>
#include <string>
#include <vector>

#include "platform/text.h"
#include "sandbox/common/config.h"
#include "sandbox/faults/clientfaults.h"
#include "sandbox/modules/orv/comobject.h"

namespace {

/// An object that the client's modules hold and nobody calls.
constexpr orv::GUID inertId{
    0x427FB576, 0xCFB6, 0x4786, {0x94, 0x0D, 0xE1, 0xD0, 0x0E, 0x55, 0x21, 0xBA}};

class GuardBase final : public sandbox::ComObject<IXNGuardBase> {
public:
    GuardBase() : ComObject(IXNGuardBase::id) {}

    void reserved3() override {}
    void reserved4() override {}
    void reserved5() override {}
    void reserved6() override {}
    void reserved7() override {}
    void reserved8() override {}
    void reserved9() override {}
    void reserved10() override {}
    void reserved11() override {}
    void reserved12() override {}
    int instanceExists(const wchar_t* name, int /*flag*/) override {
        const std::string wanted = name ? platform::toUtf8(name) : "";
        const bool isOpen = std::find(open.begin(), open.end(), wanted) != open.end();
        return isOpen || isOpenByFault(wanted) ? 1 : 0;
    }

private:
    static bool isOpenByFault(const std::string& wanted) {
        const auto faults = sandbox::ClientFaults::read();
        for (const sandbox::Fault& fault : faults.all("window")) {
            if (fault.text("name") == wanted) {
                faults.met(fault);
                return true;
            }
        }
        return false;
    }

    const std::vector<std::string> open = sandbox::readConfig().instances;
};

} // namespace

extern "C" long CreateOrvObject(const orv::GUID& id, void** object) {
    if (!object) {
        return orv::invalidArgument;
    }
    *object = nullptr;
    if (id == IXNGuardBase::id) {
        return sandbox::handOut<IXNGuardBase>(new GuardBase, object);
    }
    if (id == inertId) {
        return sandbox::handOut<orv::IUnknown>(new sandbox::ComObject<>(id), object);
    }
    return orv::noInterface;
}
