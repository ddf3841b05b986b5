#pragma once

#include <fstream>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>

namespace Support
{
/// Lowers a limit of the process, so that the system refuses, for the time of a scope.
class ResourceLimit
{
public:
    ResourceLimit(__rlimit_resource limited, rlim_t limit)
        : resource(limited)
    {
        if (::getrlimit(resource, &former) != 0)
        {
            throw std::runtime_error("the limit cannot be read");
        }
        const rlimit lowered{limit, former.rlim_max};
        if (::setrlimit(resource, &lowered) != 0)
        {
            throw std::runtime_error("the limit cannot be set");
        }
    }

    ResourceLimit(const ResourceLimit&) = delete;
    ResourceLimit& operator=(const ResourceLimit&) = delete;

    ~ResourceLimit()
    {
        ::setrlimit(resource, &former);
    }

private:
    __rlimit_resource resource;
    rlimit former{};
};

/// The bytes of address space that the process has taken: what `RLIMIT_AS` counts.
inline rlim_t TakenAddressSpace()
{
    std::ifstream figures("/proc/self/statm");
    rlim_t pages = 0;
    if (!(figures >> pages))
    {
        throw std::runtime_error("the size of the process cannot be read");
    }
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}
} // namespace Support
