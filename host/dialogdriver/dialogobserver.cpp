#include "host/dialogdriver/dialogobserver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QProgressDialog>

#include "host/dialogdriver/modalanswerer.h"

namespace ffc::host {
namespace {

const struct {
  const char *pButton;
  EDialogAction eAction;
} BUTTONS[] = {
  {"AcquisitionDarkFrame_Button", EDialogAction::AcquireDark},
  {"AcquisitionBrightFrame_Button", EDialogAction::AcquireBright},
  {"ExecuteShadingCorrection_Button", EDialogAction::Execute},
  {"LoadFlash_Button", EDialogAction::LoadFlash},
  {"SaveFlash_Button", EDialogAction::SaveFlash},
  {"LoadPC_Button", EDialogAction::LoadFile},
  {"SavePC_Button", EDialogAction::SaveFile},
};

const QString SUFFIX = QStringLiteral("ffc");

} // namespace

CDialogObserver::CDialogObserver(QObject *pParent) : QObject(pParent)
{
  qApp->installEventFilter(this);
}

CDialogObserver::~CDialogObserver() = default;

void CDialogObserver::Observe(QDialog &dialog)
{
  for (const auto &stButton : BUTTONS) {
    if (auto *pButton = dialog.findChild<QAbstractButton *>(QLatin1String(stButton.pButton))) {
      ObserveButton(*pButton, stButton.eAction);
    }
  }
}

void CDialogObserver::ObserveButton(QAbstractButton &button, EDialogAction eAction)
{
  button.disconnect(this);
  connect(&button, &QAbstractButton::released, this, [this, eAction] {
    m_eAction = eAction;
    m_listErrors.clear();
    m_strFile.clear();
  });
  // Connected after the plug-in's own slot, so that it runs when that has ended.
  connect(&button, &QAbstractButton::clicked, this, [this, eAction] {
    m_eAction.reset();
    emit SigDone({eAction, m_listErrors.join(QLatin1Char(' ')), m_strFile});
  });
}

bool CDialogObserver::eventFilter(QObject *pObject, QEvent *pEvent)
{
  if (pEvent->type() != QEvent::Show || !pObject->isWidgetType()) {
    return false;
  }
  QDialog *pBox = qobject_cast<QDialog *>(pObject);
  // The plug-in's boxes have no parent, the host's own have.
  if (pBox == nullptr || pBox->parentWidget() != nullptr || !pBox->isModal()) {
    return false;
  }
  if (QFileDialog *pFileBox = qobject_cast<QFileDialog *>(pBox)) {
    ObserveFileBox(*pFileBox);
  } else if (qobject_cast<QProgressDialog *>(pBox) == nullptr) {
    const QString strText = ReadMessage(*pBox);
    m_listErrors << strText;
    emit SigBox(pBox, strText);
  }
  return false;
}

void CDialogObserver::ObserveFileBox(QFileDialog &box)
{
  if (m_pFileBox == &box || !box.nameFilters().join(QLatin1Char(' ')).contains(QLatin1String("*.") + SUFFIX)) {
    return;
  }
  m_pFileBox = &box;
  const QFileInfo last(m_strLastFile);
  if (!m_strLastFile.isEmpty() && last.dir().exists()) {
    box.setDirectory(last.path());
  }
  if (box.acceptMode() == QFileDialog::AcceptSave) {
    box.setDefaultSuffix(SUFFIX);
  } else if (last.isFile()) {
    box.selectFile(last.fileName());
  }
  connect(&box, &QFileDialog::fileSelected, this, [this](const QString &strFile) { m_strFile = strFile; });
  if (box.acceptMode() == QFileDialog::AcceptOpen) {
    connect(&box, &QFileDialog::fileSelected, this, &CDialogObserver::SigOpening);
  }
}

} // namespace ffc::host
