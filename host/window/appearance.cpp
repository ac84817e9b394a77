#include "host/window/appearance.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QMenu>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>

namespace ffc::host {
namespace {

constexpr const char *KEY = "window/look";

/// What the desktop gave the program, before any look was applied.
struct SDesktop {
  QString strStyle;
  QPalette palette;
};

const SDesktop &GetDesktop()
{
  static const SDesktop stDesktop{QApplication::style()->objectName(), QApplication::palette()};
  return stDesktop;
}

ELook &CurrentLook()
{
  static ELook eLook = ELook::AsDesktop;
  return eLook;
}

/// \param clrFaint of what is disabled
QPalette MakePalette(const QColor &clrWindow, const QColor &clrBase, const QColor &clrButton, const QColor &clrText,
                     const QColor &clrFaint, const QColor &clrAccent)
{
  QPalette palette(clrButton, clrWindow);
  for (const QPalette::ColorRole eRole :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(eRole, clrText);
    palette.setColor(QPalette::Disabled, eRole, clrFaint);
  }
  palette.setColor(QPalette::Base, clrBase);
  palette.setColor(QPalette::AlternateBase, clrWindow);
  palette.setColor(QPalette::ToolTipBase, clrWindow);
  palette.setColor(QPalette::PlaceholderText, clrFaint);
  palette.setColor(QPalette::Highlight, clrAccent);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, clrAccent);
  return palette;
}

/// The greys and the blue of the plug-in's dialog.
QPalette MakeDark()
{
  return MakePalette(QColor(0x26, 0x29, 0x2d), QColor(0x33, 0x38, 0x3e), QColor(0x3d, 0x43, 0x4a),
                     QColor(0xdf, 0xe3, 0xe8), QColor(0x7d, 0x86, 0x90), QColor(0x2d, 0x7d, 0xc0));
}

QPalette MakeLight()
{
  return MakePalette(QColor(0xef, 0xf0, 0xf1), Qt::white, QColor(0xf4, 0xf5, 0xf6), QColor(0x23, 0x26, 0x29),
                     QColor(0x90, 0x95, 0x9a), QColor(0x2d, 0x7d, 0xc0));
}

QString Translate(const char *pText)
{
  return QCoreApplication::translate("Appearance", pText);
}

} // namespace

void ApplyLook(ELook eLook)
{
  const SDesktop &stDesktop = GetDesktop();
  CurrentLook() = eLook;
  // A desktop's own style may draw in its own colours, whatever the palette.
  QApplication::setStyle(eLook == ELook::AsDesktop ? stDesktop.strStyle : QStringLiteral("fusion"));
  QApplication::setPalette(eLook == ELook::AsDialog ? MakeDark()
                           : eLook == ELook::Light  ? MakeLight()
                                                    : stDesktop.palette);
}

ELook GetLook()
{
  return CurrentLook();
}

ELook RestoreLook()
{
  const int nLook = QSettings().value(QLatin1String(KEY), static_cast<int>(ELook::AsDialog)).toInt();
  return nLook >= 0 && nLook <= static_cast<int>(ELook::AsDesktop) ? static_cast<ELook>(nLook) : ELook::AsDialog;
}

void AddLooks(QMenu &menu, QWidget *pParent)
{
  QMenu *pLooks = menu.addMenu(Translate("Loo&k"));
  QActionGroup *pGroup = new QActionGroup(pParent);
  const auto AddLook = [&](ELook eLook, const QString &strText) {
    QAction *pAction = pLooks->addAction(strText);
    pAction->setCheckable(true);
    pAction->setChecked(eLook == GetLook());
    pGroup->addAction(pAction);
    QObject::connect(pAction, &QAction::triggered, pParent, [eLook] {
      ApplyLook(eLook);
      QSettings().setValue(QLatin1String(KEY), static_cast<int>(eLook));
    });
  };
  AddLook(ELook::AsDialog, Translate("&Dark, as the dialog"));
  AddLook(ELook::Light, Translate("&Light"));
  AddLook(ELook::AsDesktop, Translate("As the des&ktop"));
}

bool IsNewLook(const QEvent &event)
{
  return event.type() == QEvent::PaletteChange || event.type() == QEvent::StyleChange;
}

void SetWarning(QLabel &label, bool bWarning)
{
  // The default palette's own colours, so that a change of look reaches a label that is not a warning.
  QPalette palette;
  if (bWarning) {
    const bool bDark = QApplication::palette().color(QPalette::Window).lightness() < 128;
    palette.setColor(QPalette::WindowText, bDark ? QColor(0xff, 0x8a, 0x80) : QColor(0xb3, 0x26, 0x1e));
  }
  label.setPalette(bWarning ? palette : QPalette());
}

} // namespace ffc::host
