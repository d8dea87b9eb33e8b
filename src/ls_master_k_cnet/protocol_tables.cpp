#include "ls_master_k_cnet/protocol_tables.h"

#include "ls_master_k_cnet/boundary.h"

// The constructor of `driver`, in another file, copies REG_LIST. The priority makes sure that the
// tables exist by then, in whatever order the files were linked.
#define BUILT_FIRST __attribute__((init_priority(101)))

// Nobody can catch an exception while the library is being loaded: if there is no memory even for
// these texts, the process ends here.
static inline QString text(const char *latin1) noexcept
{
    return QString::fromLatin1(latin1);
}

BUILT_FIRST const QString PROCOTOL_DEFALT_COM_PAR = text("38400,8,NONE,1");
BUILT_FIRST const QString PROCOTOL_DEFALT_IP_PAR = text("192.168.0.100,8000");
BUILT_FIRST const QString PROCOTOL_NAME = text("ls_master_k_cnet");
BUILT_FIRST const QString PROCOTOL_VERSION = text(boundary.interfaceVersion);
BUILT_FIRST const QString PROCOTOL_PAR_HMI_SET_MODE = text("0_0");

BUILT_FIRST const QString REG_LIST[kRegisterCount] = {
    text("D_W"),   text("C_W"), text("T_W"),   text("K_W"),   text("P_W"),   text("F_W"),
    text("L_W"),   text("M_W"), text("P_bit"), text("K_bit"), text("M_bit"), text("L_bit"),
    text("F_bit"), text("TX"),  text("CX"),    text("D_bit"),
};

#define ROW(format, lowest, highest, unit, access, word)                                \
    {                                                                                   \
        text(format), text(lowest), text(highest), text(unit), text(access), text(word) \
    }

// Installed projects rely on all of these limits, even the odd ones.
BUILT_FIRST const QString ADDRESS_RANGE_PRO[kRowCount][kColumnCount] = {
    /* D_W   */ ROW("DDDD", "0", "9999", "16", "RW", "16"),
    /* C_W   */ ROW("DDDD", "0", "255", "16", "RW", "16"),
    /* T_W   */ ROW("DDDDD", "0", "255", "16", "RW", "16"),
    /* K_W   */ ROW("DD", "0", "31", "16", "RW", "16"),
    /* P_W   */ ROW("DD", "0", "63", "16", "RW", "16"),
    /* F_W   */ ROW("DDD", "0", "255", "16", "RW", "16"),
    /* L_W   */ ROW("DDD", "0", "255", "16", "RW", "16"),
    /* M_W   */ ROW("DDD", "0", "255", "16", "RW", "16"),
    /* P_bit */ ROW("DDD.dd", "0", "255.15", "1", "RW", "16"),
    /* K_bit */ ROW("DDD.dd", "0", "255.15", "1", "RW", "16"),
    /* M_bit */ ROW("DDD.dd", "0", "255.15", "1", "RW", "16"),
    /* L_bit */ ROW("DDD.dd", "0", "255.15", "1", "RW", "16"),
    /* F_bit */ ROW("DDD.dd", "0", "255.15", "1", "RW", "16"),
    /* TX    */ ROW("DDD", "0", "255", "1", "RW", "1"),
    /* CX    */ ROW("DDD", "0", "255", "1", "RW", "1"),
    /* D_bit */ ROW("DDDD.dd", "0.0", "9999.15", "1", "RW", "16"),
    /* spare */ ROW("DDDD.dd", "0.0", "9999.15", "1", "RW", "16"),
};

// A relay bit is read with its word but written individually. A data register has no bit device:
// its bits are written through the word. Contacts are bits in both directions.
BUILT_FIRST const QString ADDRESS_R_COMMAND[kRegisterCount] = {
    text("DW"), text("CW"), text("TW"), text("KW"), text("PW"), text("FW"), text("LW"), text("MW"),
    text("PW"), text("KW"), text("MW"), text("LW"), text("FW"), text("TX"), text("CX"), text("DW"),
};
BUILT_FIRST const QString ADDRESS_W_COMMAND[kRegisterCount] = {
    text("DW"), text("CW"), text("TW"), text("KW"), text("PW"), text("FW"), text("LW"), text("MW"),
    text("PX"), text("KX"), text("MX"), text("LX"), text("FX"), text("TX"), text("CX"), text("DW"),
};
