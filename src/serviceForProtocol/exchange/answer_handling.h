#pragma once

#include <QtCore/QByteArray>

/// Decodes an accepted answer to the read in flight. Exchange thread.
/// @return  0
int dealReadFrameReturnSaveData(const QByteArray &reply);
