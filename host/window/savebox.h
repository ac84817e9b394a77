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
/// \param fnFiles the files that are written for that name, all or the first; empty: that of the name alone
SSaveAnswer AskSavePath(QWidget *pParent, const SSaveBox &stBox,
                        const std::function<QString(const QString &, const QString &)> &fnComplete,
                        const std::function<QStringList(const QString &)> &fnFiles = {});

/// The same for one kind of file.
/// \param strSuffix without a point, for names that do not end so
/// \return empty: the user has cancelled
QString AskSavePath(QWidget *pParent, const SSaveBox &stBox, const QString &strSuffix,
                    const std::function<QStringList(const QString &)> &fnFiles = {});

} // namespace ffc::host
