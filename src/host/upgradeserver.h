#pragma once

#include <string>

#include "host/httprequest.h"

/// The upgrade server, which the file and package channels ask: JSON over POST. Any thread.
namespace upgradeserver {

/// The server's address followed directly by `path`; empty when there is no environment or
/// no address.
std::string makeUrl(const char* path);

/// Sends `body` as sendRequest does, `step` run twice for an empty address included. A token
/// that is not empty goes along.
void post(const std::string& url, const std::string& token, const std::string& body,
          const xnhttp::ResponseStep& step);

} // namespace upgradeserver
