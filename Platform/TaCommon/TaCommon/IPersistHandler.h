#pragma once

#include <TaCommon/IPersistStore.h>
#include <TaCommon/PersistDomain.h>

namespace TaCommon
{
/// Whom the host calls back when a domain of its store may be read or written. The store is valid during the call
/// only. What a callback raises goes to whoever asked for it.
class MU_PLATFORM_EXPORT IPersistHandler
{
public:
    virtual ~IPersistHandler() = default;

    /// The name of what the handler keeps in the store, for the host's eyes.
    [[nodiscard]] virtual std::string Component() const = 0;

    /// A domain that has not been used before is made.
    virtual void InitPersistDomain(PersistDomain domain, IPersistStore& store) = 0;

    /// A domain may be read.
    virtual void LoadPersistDomain(PersistDomain domain, const IPersistStore& store) = 0;

    /// A domain may be written.
    virtual void SavePersistDomain(PersistDomain domain, IPersistStore& store) = 0;
};
} // namespace TaCommon
