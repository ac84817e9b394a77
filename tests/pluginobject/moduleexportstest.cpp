#include <gtest/gtest.h>

#include "tests/support/dynamicsymbols.h"

TEST(ModuleFile, ExportsExactlyTwoFunctions)
{
  EXPECT_EQ(ReadExportedNames(FFC_MODULE_FILE),
            (std::vector<std::string>{"CreatePluginObject", "DestoryPluginObject"}));
}
