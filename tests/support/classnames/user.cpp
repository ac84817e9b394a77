// Another function in the same namespace, and every weak symbol that the home has too.
#include "tests/support/classnames/header.h"

namespace ffc::test {

std::string DescribeUser()
{
  CSample sample;
  sample.Add("user");
  return DescribeSample(sample) + CSampleBase().GetName();
}

std::string DescribeUser(const CSample &sample)
{
  return DescribeSample(sample);
}

} // namespace ffc::test
