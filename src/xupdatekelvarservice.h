#pragma once

#include "host/iupdatekelvar.h"

/// Reads and writes the virus library's version in the client's version store.
class XUpdateKelvarService final : public XRefresher::IUpdateKelvar {
public:
    void getVersion(char* version) override;
    int setVersion(const char* version) override;
    void release() override;
};
