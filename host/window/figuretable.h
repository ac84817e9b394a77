/// \file
/// Figures before and after as a table.
#pragma once

#include <QList>

#include "quality/htmlreport.h"

class QTableWidget;

namespace ffc::host {

/// One row per figure. Of a monochrome camera the columns are before and after; of a mosaic they are the colours, with
/// "before → after" in each, and what is of all colours together spans them. As high as its rows.
void FillFigureTable(QTableWidget &table, const QList<quality::SFigureRow> &listRows);

} // namespace ffc::host
