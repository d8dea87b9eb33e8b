#pragma once

#include <QtCore/QByteArray>

#include "ls_master_k_cnet/register_row.h"

/// Copies the answer of recipe block `driver.rcpIndex` to the host's recipe buffer, each item to
/// its own position, and calls the host with (0, -1, "RWI", word index) for each word. Contacts
/// have no words there and are skipped. Exchange thread.
///
/// @param widths   widths of the block's register
/// @param dataPos  index of the answer's first data character
void deliverRecipeBlock(const RegisterWidths &widths, const QByteArray &answer, int dataPos);
