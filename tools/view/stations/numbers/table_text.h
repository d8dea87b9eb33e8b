#pragma once

#include <QString>

class QAbstractItemModel;

namespace cnet::view {

/**
 * What a table shows, as spreadsheets take it from the clipboard: a line for each row with the
 * names of the columns first, fields apart by tabs.
 */
QString tableText(const QAbstractItemModel &model);

} // namespace cnet::view
