// A host that only knows the installed headers and the CMake package.
#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

#include <cstdio>

int main()
{
    const quarry::QuarryError error(2000, QStringLiteral("Consumer.main()"), QStringLiteral("ok"));
    quarry::CSysCfg cfg;
    std::puts(error.what());
    return error.number() == 2000 ? 0 : 1;
}
