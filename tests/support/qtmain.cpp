// \file
// Entry point of the test programs that drive widgets.

#include <memory>

#include <QApplication>
#include <QDir>
#include <QLockFile>
#include <QStringList>
#include <QStyle>
#include <QThread>
#include <QtGlobal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

// Gives every test an application without style sheet and wait cursor, whatever the one before it left.
class CCleanApplication : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo &) override
  {
    while (QApplication::overrideCursor() != nullptr) {
      QApplication::restoreOverrideCursor();
    }
    if (!qApp->styleSheet().isEmpty()) {
      qApp->setStyleSheet(QString());
    }
  }
};

// Programs that run at once on one display take each other's input focus. FFC_TEST_DISPLAYS names as many as run at
// once (":101 :102"); one of them is this program's, and its children's, until it ends.
std::unique_ptr<QLockFile> TakeDisplay()
{
  const QStringList listDisplays =
    qEnvironmentVariable("FFC_TEST_DISPLAYS").split(QLatin1Char(' '), Qt::SkipEmptyParts);
  qunsetenv("FFC_TEST_DISPLAYS");
  while (!listDisplays.isEmpty()) {
    for (const QString &strDisplay : listDisplays) {
      auto pLock = std::make_unique<QLockFile>(
        QDir::temp().filePath(QStringLiteral("ffc-test-display-%1.lock").arg(strDisplay.mid(1))));
      pLock->setStaleLockTime(0); // stale as soon as its owner is dead, but never by age
      if (pLock->tryLock(0)) {
        qputenv("DISPLAY", strDisplay.toLocal8Bit());
        return pLock;
      }
    }
    QThread::msleep(20);
  }
  return nullptr;
}

QtMessageHandler s_fnDefaultHandler = nullptr;

// Leaves out what the off-screen platform says whenever a fixed-size window shows.
void HandleMessage(QtMsgType eType, const QMessageLogContext &context, const QString &strMessage)
{
  if (!strMessage.startsWith(QLatin1String("This plugin does not support propagateSizeHints"))) {
    s_fnDefaultHandler(eType, context, strMessage);
  }
}

} // namespace

int main(int nArgc, char **apArgv)
{
  testing::InitGoogleMock(&nArgc, apArgv);
  if (GTEST_FLAG_GET(list_tests)) {
    // Listing happens outside the tests' environment, where a platform's leaks would count.
    return RUN_ALL_TESTS();
  }
  const std::unique_ptr<QLockFile> pDisplay = TakeDisplay();
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qEnvironmentVariableIsSet("DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  s_fnDefaultHandler = qInstallMessageHandler(HandleMessage);
  // A desktop's own file dialogs and style would make the tests depend on where they run.
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication application(nArgc, apArgv);
  QApplication::style()->setParent(&application); // one that is set before belongs to nobody
  QApplication::setQuitOnLastWindowClosed(false);
  testing::UnitTest::GetInstance()->listeners().Append(new CCleanApplication);
  return RUN_ALL_TESTS();
}
