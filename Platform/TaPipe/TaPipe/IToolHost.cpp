#include <TaPipe/IToolHost.h>

namespace TaPipe
{
namespace
{
[[noreturn]] void RefuseAt(const Ta::Place& place)
{
    MU_FAIL_AT(place, zERROR_INTERFACE, "The host keeps no persistent store.");
}
} // namespace

PersistToken IToolHost::RegisterPersistHandler(TaCommon::IPersistHandler* /*handler*/, const std::string& /*component*/)
{
    RefuseAt(MU_HERE);
}

void IToolHost::UnregisterPersistHandler(PersistToken token)
{
    if (token != nullptr)
    {
        RefuseAt(MU_HERE);
    }
}

void IToolHost::RequestPersistSave(TaCommon::IPersistHandler* /*handler*/, TaCommon::PersistDomain /*domain*/,
                                   bool /*filesComeOrGo*/)
{
    RefuseAt(MU_HERE);
}

void IToolHost::RequestPersistLoad(TaCommon::IPersistHandler* /*handler*/, TaCommon::PersistDomain /*domain*/)
{
    RefuseAt(MU_HERE);
}
} // namespace TaPipe
