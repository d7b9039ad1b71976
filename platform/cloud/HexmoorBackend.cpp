// The factory of backends behind the cloud client.
#include "platform/cloud/HexmoorBackend.h"

#include "platform/cloud/embedded/BomCentre.h"

namespace {

HexmoorBackendFactory& installedFactory() {
    static HexmoorBackendFactory factory;
    return factory;
}

} // namespace

IHexmoorBackend::~IHexmoorBackend() = default;

void SetHexmoorBackendFactory(HexmoorBackendFactory factory) { installedFactory() = std::move(factory); }

std::unique_ptr<IHexmoorBackend> MakeHexmoorBackend() {
    if (installedFactory()) return installedFactory()();
    return std::make_unique<CEmbeddedBomCentre>();
}
