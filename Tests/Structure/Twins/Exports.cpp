// Exports one name of its own and three that it should not.
#define SHOWN __attribute__((visibility("default")))

namespace Mu
{
SHOWN int Own();
int Own()
{
    return 1;
}
} // namespace Mu

namespace Other
{
SHOWN int Foreign();
int Foreign()
{
    return 2;
}
} // namespace Other

extern "C" SHOWN int Plain_Foreign();
int Plain_Foreign()
{
    return 3;
}

SHOWN int Bare();
int Bare()
{
    return 4;
}
