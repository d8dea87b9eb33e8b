#pragma once

#include <QtCore/QByteArray>

#include "ls_master_k_cnet/register_row.h"

/// Carries the answer of recipe block `driver.rcpIndex` to the host's recipe buffer: each item of
/// the block to its own place, and the host is called with (0, -1, "RWI", word index) for each
/// word. Contacts have no words there and are left out. Exchange thread.
///
/// @param widths   widths of the block's register
/// @param dataPos  index of the answer's first data character
void deliverRecipeBlock(const RegisterWidths &widths, const QByteArray &answer, int dataPos);
