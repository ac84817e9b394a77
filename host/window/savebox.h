/// \file
/// Where to save something, asked for in a file box.
#pragma once

#include <functional>

#include <QString>
#include <QStringList>

class QWidget;

namespace ffc::host {

struct SSaveBox {
  QString strTitle;
  QString strPath; ///< where the box begins: a folder, or a file that it proposes
  QStringList listFilters;
  QString strFilter; ///< of those, chosen first
};

struct SSaveAnswer {
  QString strPath; ///< with its ending; empty: the user has cancelled
  QString strFilter;
};

/// Asks before a file that is there is replaced, by the name that it will really have: the desktop's own boxes ask by
/// the name as it was typed.
/// \param fnComplete makes the name with its ending out of the typed one and the chosen filter
/// \param fnFirstFile the file that is written first for that name; empty: that of the name
SSaveAnswer AskSavePath(QWidget *pParent, const SSaveBox &stBox,
                        const std::function<QString(const QString &, const QString &)> &fnComplete,
                        const std::function<QString(const QString &)> &fnFirstFile = {});

/// The same for one kind of file.
/// \param strSuffix without a point, for names that do not end so
/// \return empty: the user has cancelled
QString AskSavePath(QWidget *pParent, const SSaveBox &stBox, const QString &strSuffix);

} // namespace ffc::host
