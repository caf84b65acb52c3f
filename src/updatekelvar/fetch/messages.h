#pragma once

#include <string>

#include "updatekelvar/data/keys.h"
#include "updatekelvar/data/materialdata.h"
#include "updatekelvar/data/packetdata.h"

namespace kelvar::types {
class MaterialVersionId;
class PacketId;
namespace extended_method {
class FullPacketDiff;
class GetUpgradePacket_Request;
} // namespace extended_method
namespace material {
class Meta;
}
namespace packet {
class Meta;
}
} // namespace kelvar::types

/// Between the plain data of the channel and the platform's messages.
namespace messages {

void fill(kelvar::types::extended_method::GetUpgradePacket_Request& request,
          const XUpgradePacketParam& param);
void fill(kelvar::types::PacketId& message, const XPacketKey& key);
void fill(kelvar::types::MaterialVersionId& message, const XMaterialVersionKey& key);

XPacketKey read(const kelvar::types::PacketId& message);
XFullPacketDiffData read(const kelvar::types::extended_method::FullPacketDiff& message);
XPacketMetaData read(const kelvar::types::packet::Meta& message);

/// The row of one material. `storage` is the address of the storage.
XMaterialMetaData read(const kelvar::types::material::Meta& message, const XMaterialVersionKey& key,
                       const std::string& storage);

} // namespace messages
