#include "tests/support/dynamicsymbols.h"

#include <gtest/gtest.h>

using namespace ffc::test;

TEST(OmbrixExports, TheBuiltLibraryExportsExactlyItsTwoFunctions)
{
  EXPECT_EQ(ReadExportedNames(OMBRIX_FILE),
            (std::vector<std::string>{"OmbrixApplyFlatField", "OmbrixComputeFlatField"}));
}
