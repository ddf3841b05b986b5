#pragma once

#include <zApi/zTypes.h>

#include <atomic>

// Fault injection: a test makes the n-th base-library call that may fail return a status of its choice. Walking n from
// 1 until nothing fails any more proves every failure path of a caller. Unarmed, a gate is one branch on an atomic.

extern "C"
{
    /// Non-zero while a fault is armed. Read by the gates only.
    MU_PLATFORM_EXPORT extern std::atomic<int> zFault_Armed;

    /// Counts the call of `operation` and returns `zOK`, or the armed status when its turn has come.
    MU_PLATFORM_EXPORT zStatus zFault_Take(const char* operation);

    /// Lets the `callNumber`-th gated call from now on (1 is the next one) return `status`. Replaces an armed fault.
    MU_PLATFORM_EXPORT void zFault_Arm(std::size_t callNumber, zStatus status);

    /// Ends injection; `zFault_Operation` keeps its answer until the next `zFault_Arm`.
    MU_PLATFORM_EXPORT void zFault_Disarm();

    /// The name of the operation that was made to fail since the last `zFault_Arm`, null if none was.
    MU_PLATFORM_EXPORT const char* zFault_Operation();
}

/// Status of the gate of the operation that encloses it: `zOK`, or the injected failure.
#define zFAULT_STATUS() (zFault_Armed.load(std::memory_order_relaxed) == 0 ? zOK : zFault_Take(__func__))

/// First statement of an operation that may fail.
#define zFAULT_GATE()                                                                                                  \
    do                                                                                                                 \
    {                                                                                                                  \
        if (zFault_Armed.load(std::memory_order_relaxed) != 0) [[unlikely]]                                            \
        {                                                                                                              \
            if (const zStatus gateStatus = zFault_Take(__func__); gateStatus != zOK)                                   \
            {                                                                                                          \
                return gateStatus;                                                                                     \
            }                                                                                                          \
        }                                                                                                              \
    } while (false)

/// Passes a failing status on to the caller, as it is.
#define zTRY(call)                                                                                                     \
    do                                                                                                                 \
    {                                                                                                                  \
        if (const zStatus tryStatus = (call); tryStatus != zOK) [[unlikely]]                                           \
        {                                                                                                              \
            return tryStatus;                                                                                          \
        }                                                                                                              \
    } while (false)
