#pragma once

#include <QtCore/QByteArray>

/// Decodes an accepted read answer with the frame in flight. Exchange thread.
/// @return  0
int dealReadFrameReturnSaveData(const QByteArray &reply);
