#include "host/window/figuretable.h"

#include <algorithm>

#include <QCoreApplication>
#include <QHeaderView>
#include <QStringList>
#include <QTableWidget>

namespace ffc::host {
namespace {

using quality::SFigureRow;

const QStringList PLANES{QStringLiteral("R"), QStringLiteral("G"), QStringLiteral("B")};
const QString GAP = QStringLiteral("  "); ///< between a plane's name and that of the figure
constexpr int MARGIN = 12;                ///< pixels on both sides of a name

QString Translate(const char *pText)
{
  return QCoreApplication::translate("FigureTable", pText);
}

/// The plane that a row is of; -1 for all together.
int FindPlane(const SFigureRow &stRow)
{
  return PLANES.indexOf(stRow.strName.section(GAP, 0, 0));
}

void SetCell(QTableWidget &table, int nRow, int nColumn, const QString &strText)
{
  QTableWidgetItem *pItem = new QTableWidgetItem(strText);
  pItem->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  table.setItem(nRow, nColumn, pItem);
}

int AddRow(QTableWidget &table, const QString &strName)
{
  const int nRow = table.rowCount();
  table.insertRow(nRow);
  table.setVerticalHeaderItem(nRow, new QTableWidgetItem(strName));
  return nRow;
}

/// Names in two lines leave the columns their room: rows with a figure of each plane are two lines high anyway.
void NarrowNames(QTableWidget &table, const QList<SFigureRow> &listRows)
{
  QHeaderView *pNames = table.verticalHeader();
  int nWidth = 0;
  for (const SFigureRow &stRow : listRows) {
    nWidth = FindPlane(stRow) < 0 ? std::max(nWidth, pNames->fontMetrics().horizontalAdvance(stRow.strName)) : nWidth;
  }
  pNames->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter | static_cast<Qt::Alignment>(Qt::TextWordWrap));
  pNames->setMaximumWidth(nWidth + MARGIN);
}

void FillColors(QTableWidget &table, const QList<SFigureRow> &listRows)
{
  NarrowNames(table, listRows);
  QStringList listNames; // row by row
  table.setColumnCount(PLANES.size());
  table.setHorizontalHeaderLabels(PLANES);
  for (const SFigureRow &stRow : listRows) {
    const int nPlane = FindPlane(stRow);
    const QString strName = nPlane < 0 ? stRow.strName : stRow.strName.section(GAP, 1);
    if (!listNames.contains(strName)) {
      listNames << strName;
      const int nAdded = AddRow(table, strName);
      if (nPlane >= 0) {
        // Three columns are too narrow for both values in a line.
        table.verticalHeader()->resizeSection(nAdded, 2 * table.verticalHeader()->defaultSectionSize());
      }
    }
    const int nRow = listNames.indexOf(strName);
    const QString strBoth = nPlane < 0 ? QStringLiteral("%1 → %2") : QStringLiteral("%1→\n%2");
    SetCell(table, nRow, std::max(0, nPlane), strBoth.arg(stRow.strBefore, stRow.strAfter));
    if (nPlane < 0) {
      table.setSpan(nRow, 0, 1, PLANES.size());
    }
  }
}

void FillMono(QTableWidget &table, const QList<SFigureRow> &listRows)
{
  table.verticalHeader()->setMaximumWidth(QWIDGETSIZE_MAX);
  table.setColumnCount(2);
  table.setHorizontalHeaderLabels({Translate("before"), Translate("after")});
  for (const SFigureRow &stRow : listRows) {
    const int nRow = AddRow(table, stRow.strName);
    SetCell(table, nRow, 0, stRow.strBefore);
    SetCell(table, nRow, 1, stRow.strAfter);
  }
}

} // namespace

void FillFigureTable(QTableWidget &table, const QList<SFigureRow> &listRows)
{
  table.clearSpans();
  table.setRowCount(0);
  bool bColors = false;
  for (const SFigureRow &stRow : listRows) {
    bColors = bColors || FindPlane(stRow) >= 0;
  }
  if (bColors) {
    FillColors(table, listRows);
  } else {
    FillMono(table, listRows);
  }
  table.setVisible(!listRows.isEmpty());
  table.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // the panel scrolls
  table.setFixedHeight(table.horizontalHeader()->sizeHint().height() + table.verticalHeader()->length() +
                       2 * table.frameWidth());
}

} // namespace ffc::host
