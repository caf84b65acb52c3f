#pragma once

#include <optional>
#include <string>

#include "crash/evidence.h"

/// Why something may be as it is, although it is not as without the disturbance. Each takes the
/// thing as it stands; nothing: the required behaviour does not explain it.
namespace crash {

using Reason = std::optional<Loss>;

/// A target that is neither old nor new nor safe aside, at the break or in a later moment.
Reason whyUnsafe(const Trial& trial, const Snapshot& at, const Target& target);
/// A target that differs in the end.
Reason whyDifferent(const Trial& trial, const Target& target, const Bytes& bytes);
/// Its entry in filelist.xml.
Reason whyEntry(const Trial& trial, const Target& target, const std::string& entry);
/// Its version, or that of the packet or of the virus library, in the store.
Reason whyVersion(const Trial& trial, const std::string& key, const std::string& version);
/// Its program that was never started.
Reason whyNotStarted(const Trial& trial, const Target& target);
/// A file that is listed as waiting and that no restart will place.
Reason whyWaiting(const Trial& trial, const std::string& path, const std::string& file);
/// A file of the client that the undisturbed machine does not have.
Reason whyThere(const Trial& trial, const std::string& path);
/// filelist.xml unreadable at the break.
Reason whyNoFileList(const Trial& trial);

/// Whether some run may have written the entry, or nobody has touched it.
bool isPossibleEntry(const Packet& packet, const Target& target, const std::string& entry);

} // namespace crash
