#include "updatekelvar/data/materialdata.h"

#include "host/log.h"

XBatchGetMaterialMetaData::~XBatchGetMaterialMetaData() {
    XLOG(logProgress, "updatekelvar, XBatchGetMaterialMetaData::~XBatchGetMaterialMetaData");
}
