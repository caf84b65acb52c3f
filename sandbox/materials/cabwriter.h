#pragma once

#include "sandbox/materials/content.h"

#include <vector>

namespace materials {

/// Compression methods of a cabinet's folder.
enum class CabMethod { stored, mszip, quantum, lzx };

struct CabMember {
    std::string name; ///< "\" separates; written as it is, up to 255 bytes
    Bytes content;
};

/// Members that share one compressed stream.
struct CabFolder {
    CabMethod method = CabMethod::mszip;
    std::vector<CabMember> members;
};

/// A cabinet of its own (no part of a set), with the checksum of every data block.
/// Source: "Microsoft Cabinet Format". Throws std::length_error when the
/// members do not fit into the format's fields.
Bytes buildCabinet(const std::vector<CabFolder>& folders);

/// The same with one folder for all members.
Bytes buildCabinet(CabMethod method, const std::vector<CabMember>& members);

} // namespace materials
