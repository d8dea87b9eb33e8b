// The numbers of codes.h as the documentation promises them. Compiled without Qt, which the header
// does not need.

#include "ls_master_k_cnet/codes.h"

#define STAYS(name, number) static_assert((name) == (number), #name " is part of the interface")

STAYS(kAddressValid, 0);
STAYS(kAddressWrongKind, 1);
STAYS(kAddressOutOfRange, 2);
STAYS(kAddressUnknownName, 3);
STAYS(kAddressMalformed, 4);
STAYS(kAddressWrongType, 5);
STAYS(kAddressReadOnly, 6);

STAYS(kAnswerUnexpected, 0);
STAYS(kAnswerGood, 1);
STAYS(kAnswerGivenUp, 2);
STAYS(kAnswerResend, 8);

STAYS(kSeriesUnknownName, 0);
STAYS(kSeriesComplete, 1);
STAYS(kSeriesClamped, 2);
STAYS(kIntervalWord, -1);
STAYS(kIntervalDoubleWord, -2);

STAYS(kWidthBit, 0);
STAYS(kWidthWord, 1);
STAYS(kWidthDoubleWord, 2);
STAYS(kAccessRead, 0);
STAYS(kAccessReadWrite, 1);
STAYS(kAccessWrite, 2);

STAYS(kSharedBlockSize, 60117);
STAYS(kRecipeWriteByte, 60115);
STAYS(kRecipeReadByte, 60116);
STAYS(kRecipeRequested, 1);
