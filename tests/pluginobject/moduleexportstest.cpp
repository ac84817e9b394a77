#include <gtest/gtest.h>

#include "tests/support/dynamicsymbols.h"

using namespace ffc::test;

TEST(ModuleFile, ExportsExactlyTwoFunctions)
{
  EXPECT_EQ(ReadExportedNames(FFC_MODULE_FILE),
            (std::vector<std::string>{"CreatePluginObject", "DestoryPluginObject"}));
}
