#include <cstdio>
#include <cstdlib>
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

/// Where memory ends in something that must not throw, a destructor of the toolkit's, nobody can catch it.
[[noreturn]] void EndUncaught()
{
  try {
    throw;
  } catch (const std::bad_alloc &) {
    std::fputs("ffc: there is not enough memory to end in good order; files .ffc-*.part may be left\n", stderr);
    std::_Exit(ffc::tool::EXIT_SOME_FAILED);
  } catch (...) {
    std::abort();
  }
}

/// Without memory no handler of the toolkit's is called: it may wait for what an allocation that failed has locked.
[[noreturn]] void EndWithoutMemory()
{
  std::cout.flush();
  std::fputs("ffc: there is not enough memory\n", stderr);
  std::_Exit(ffc::tool::EXIT_SOME_FAILED);
}

} // namespace

int main(int nArguments, char **pArguments)
{
  std::set_terminate(EndUncaught);
  try {
    const std::vector<std::string> listArguments = ffc::tool::GetArguments(nArguments, pArguments);
    qInstallMessageHandler(DropRemarks);
    // The event loop's other library ends a program without memory. There is no loop here.
    qputenv("QT_NO_GLIB", "1");
    // The toolkit has options of its own, which are not ours.
    int nToolkitArguments = 1;
    const QCoreApplication app(nToolkitArguments, pArguments);
    // It has all that is needed built in. A search for more, later, is not up to memory that ends within it.
    QCoreApplication::setLibraryPaths({});
    // Names of files are bytes to the system, whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    return ffc::tool::RunTool(listArguments, ffc::tool::IsErrorStreamTerminal(), std::cout, std::cerr);
  } catch (const std::bad_alloc &) {
    EndWithoutMemory();
  } catch (const std::exception &exception) {
    std::cerr << "ffc: " << exception.what() << std::endl;
  }
  return ffc::tool::EXIT_SOME_FAILED;
}
