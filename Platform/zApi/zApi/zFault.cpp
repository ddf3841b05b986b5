#include <zApi/zFault.h>

namespace
{
constinit std::atomic<z64s> remainingCalls{0};
constinit std::atomic<zStatus> armedStatus{zOK};
constinit std::atomic<const char*> failedOperation{nullptr};
} // namespace

constinit std::atomic<int> zFault_Armed{0};

zStatus zFault_Take(const char* operation)
{
    if (remainingCalls.fetch_sub(1, std::memory_order_acq_rel) != 1)
    {
        return zOK;
    }
    failedOperation.store(operation, std::memory_order_release);
    zFault_Armed.store(0, std::memory_order_release);
    return armedStatus.load(std::memory_order_acquire);
}

void zFault_Arm(std::size_t callNumber, zStatus status)
{
    failedOperation.store(nullptr, std::memory_order_release);
    armedStatus.store(status, std::memory_order_release);
    remainingCalls.store(static_cast<z64s>(callNumber), std::memory_order_release);
    zFault_Armed.store(1, std::memory_order_release);
}

void zFault_Disarm()
{
    zFault_Armed.store(0, std::memory_order_release);
}

const char* zFault_Operation()
{
    return failedOperation.load(std::memory_order_acquire);
}
