#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

#include "host/orvobject.h"

/// Transfers through the libcurl service. Each blocks the calling thread until it has
/// ended, with libcurl's own limits. Any thread.
namespace transfer {

/// libcurl's write function: takes `count` times `size` bytes and gives what it has taken
/// of them; less ends the transfer as failed.
using WriteFunction = std::size_t (*)(char* data, std::size_t size, std::size_t count,
                                      void* target);

/// Whether the server has to prove who it is.
enum class Peer { verified, anyone };

/// Result when the service gives no handle; the others are libcurl's.
inline constexpr int failedInit = 2;

/// Hands what `url` gives to `write`, with `target`. 0 when all has arrived; another
/// result of the transfer is logged.
int perform(IXCurlService* service, const std::string& url, WriteFunction write, void* target,
            Peer peer);

/// Opens a file for what a transfer gives, which goes to the system piece by piece: what does not
/// reach it fails the transfer, and not a fclose behind it. Null with the system's error.
std::FILE* openTarget(const std::string& path);

/// A write function that takes an open std::FILE* as its target.
std::size_t writeToFile(char* data, std::size_t size, std::size_t count, void* file);

} // namespace transfer
