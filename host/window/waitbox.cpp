#include "host/window/waitbox.h"

#include <QEventLoop>
#include <QTimer>

namespace ffc::host {
namespace {

constexpr int BOX_WIDTH = 360; ///< wide enough for every step, so that the box does not jump
constexpr int PASS_MS = 20;

} // namespace

CWaitBox::CWaitBox(const QString &strTitle, QWidget *pParent) : QProgressDialog(pParent)
{
  setObjectName(QStringLiteral("WaitBox"));
  setWindowTitle(strTitle);
  setCancelButtonText(tr("&Cancel"));
  setWindowModality(Qt::ApplicationModal);
  setMinimumDuration(0);
  setMinimumWidth(BOX_WIDTH);
  setAutoReset(false);
  setAutoClose(false);
  show();
}

void CWaitBox::ShowProgress(const QString &strStep, uint32_t nDone, uint32_t nTotal)
{
  if (wasCanceled()) {
    return;
  }
  setLabelText(strStep);
  setMaximum(static_cast<int>(nTotal));
  setValue(static_cast<int>(nDone));
}

void CWaitBox::LetPass()
{
  QEventLoop loop;
  QTimer::singleShot(PASS_MS, &loop, &QEventLoop::quit);
  loop.exec();
}

} // namespace ffc::host
