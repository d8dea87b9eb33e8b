#include "ls_master_k_cnet/boundary.h"

#include <QtCore/QtGlobal>

#include "ls_master_k_cnet/records.h"

// PROCOTOL_VERSION is made from the first member, so compilers and linkers cannot drop the record.
__attribute__((section("ls_master_k_cnet"))) const Boundary boundary = {
    "2.0.0.0",
    QT_VERSION,
    {sizeof(VARIABLE), sizeof(KEY_ADDRESS), sizeof(FRAME_PRO), sizeof(_RCP_VAR_PRO)},
};
