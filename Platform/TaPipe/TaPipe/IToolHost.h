#pragma once

#include <TaApi/Object.h>
#include <TaCommon/IPersistHandler.h>
#include <TaPipe/ToolOutputInfo.h>

#include <string>
#include <vector>

namespace TaPipe
{
class ITool;

/// Takes what leaves a tool. It is called from within the calls on the tool, in the order of sending.
class MU_PLATFORM_EXPORT IOutputReceiver
{
public:
    /// A message on an output. A null handle stands for an empty array. `sendKind` is what the tool passed to `Send`.
    virtual void OnMessage(ITool& tool, const ToolOutputInfo& output, const Ta::Object<void*>& message,
                           int sendKind) = 0;

    /// A finished array of messages on an output.
    virtual void OnArray(ITool& tool, const ToolOutputInfo& output, const std::vector<Ta::Object<void*>>& messages) = 0;

protected:
    ~IOutputReceiver() = default;
};

/// What the host gives for a handler that it knows; null for none. Opaque.
using PersistToken = void*;

/// The host as a tool sees it. It outlives the tool.
///
/// The operations of persistence serve a tool's files. A host that keeps a store overrides all four, and calls the
/// handler back from within `RequestPersistSave` and `RequestPersistLoad`, so that their effects are there on return;
/// what a callback raises comes through. A host without a store leaves them: they raise -992, "The host keeps no
/// persistent store."
class MU_PLATFORM_EXPORT IToolHost
{
public:
    /// Where messages go.
    virtual IOutputReceiver& OutputReceiver() = 0;

    /// Makes a handler known under the name of its component. The handler stays its owner's and lives until it is
    /// unregistered. @return the token to do so with
    /// @throws Ta::Exception -999 for no handler, -992 without a store
    virtual PersistToken RegisterPersistHandler(TaCommon::IPersistHandler* handler, const std::string& component);

    /// Forgets a handler. Null is no error, with or without a store: it is what an owner has whose registration failed.
    /// @throws Ta::Exception -997 for a token that is not in use, -992 without a store
    virtual void UnregisterPersistHandler(PersistToken token);

    /// Calls the handler's `SavePersistDomain`. `filesComeOrGo` says that the save may make or remove files, not just
    /// rewrite one. @throws Ta::Exception -999 for no handler, -992 without a store
    virtual void RequestPersistSave(TaCommon::IPersistHandler* handler, TaCommon::PersistDomain domain,
                                    bool filesComeOrGo);

    /// Calls the handler's `LoadPersistDomain`. @throws Ta::Exception -999 for no handler, -992 without a store
    virtual void RequestPersistLoad(TaCommon::IPersistHandler* handler, TaCommon::PersistDomain domain);

protected:
    ~IToolHost() = default;
};
} // namespace TaPipe
