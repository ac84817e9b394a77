#include <exception>
#include <iostream>
#include <new>

#include <QCoreApplication>
#include <QTextCodec>

#include "tools/ffc/commands.h"
#include "tools/ffc/terminal.h"

namespace {

/// The toolkit's remarks about damaged files: the tool has words of its own for them.
void DropRemarks(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int nArguments, char **pArguments)
{
  try {
    const std::vector<std::string> listArguments = ffc::tool::GetArguments(nArguments, pArguments);
    qInstallMessageHandler(DropRemarks);
    // The toolkit has options of its own, which are not ours.
    int nToolkitArguments = 1;
    const QCoreApplication app(nToolkitArguments, pArguments);
    // Names of files are bytes to the system, whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    return ffc::tool::RunTool(listArguments, ffc::tool::IsErrorStreamTerminal(), std::cout, std::cerr);
  } catch (const std::bad_alloc &) {
    std::cerr << "ffc: there is not enough memory" << std::endl;
  } catch (const std::exception &exception) {
    std::cerr << "ffc: " << exception.what() << std::endl;
  }
  return ffc::tool::EXIT_SOME_FAILED;
}
