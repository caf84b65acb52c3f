#pragma once

#include <filesystem>
#include <vector>

#include "sandbox/check/mistake.h"

namespace sandbox::check {

/// The file that makes a folder an offer: the platform's answer to BatchGetMaterialMeta, with
/// the member `full_packet_diff` of its answer to GetFullPacketDiff beside, from which the
/// rows' versions and modules are.
inline constexpr const char* offerFile = "materials.json";

/// All mistakes of a folder of materials as the platform offers them: `materials.json`, and the
/// files that it names by their ids. Cabinets are expanded, one member each, into a temporary
/// folder; the folder itself is not written. Throws std::runtime_error when it is no offer.
std::vector<Mistake> checkOffer(const std::filesystem::path& folder);

} // namespace sandbox::check
