#pragma once

#include <TaApi/Raise.h>
#include <TaCommon/IPersistHandler.h>
#include <TaPipe/IToolHost.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A store in memory, and a host's side of persistence on top of one, for tests.

namespace Support
{
class MemoryStore final : public TaCommon::IPersistStore
{
public:
    virtual ~MemoryStore() = default;

    [[nodiscard]] std::vector<std::string> List(const std::string& folder, bool recursive) const override
    {
        const std::string bare = WithoutSlashes(folder);
        const std::string prefix = bare.empty() ? "" : bare + "/";
        std::vector<std::string> names;
        for (const auto& [name, bytes] : files)
        {
            if (name.compare(0, prefix.size(), prefix) == 0 &&
                (recursive || name.find('/', prefix.size()) == std::string::npos))
            {
                names.push_back(name.substr(prefix.size()));
            }
        }
        return names;
    }

    [[nodiscard]] std::vector<z8u> Read(const std::string& name) const override
    {
        const auto found = files.find(Checked(MU_HERE, name));
        if (found == files.end())
        {
            MU_FAIL(zERROR_MISSING, "%s: there is no such file.", name.c_str());
        }
        return found->second;
    }

    void Write(const std::string& name, const void* data, std::size_t size) override
    {
        const std::string key = Checked(MU_HERE, name);
        if (data == nullptr && size > 0)
        {
            MU_FAIL(zERROR_MISSING, "%s: %zu bytes were to be written, but none were given.", name.c_str(), size);
        }
        const auto* const bytes = static_cast<const z8u*>(data);
        files[key] = size == 0 ? std::vector<z8u>() : std::vector<z8u>(bytes, bytes + size);
    }

    void Delete(const std::string& name) override
    {
        files.erase(Checked(MU_HERE, name));
    }

    [[nodiscard]] bool Exists(const std::string& name) const override
    {
        const std::optional<std::string> key = KeyOf(name);
        return key.has_value() && files.count(*key) == 1;
    }

private:
    static std::string WithoutSlashes(const std::string& folder)
    {
        const std::size_t first = folder.compare(0, 1, "/") == 0 ? 1 : 0;
        const std::size_t last = folder.size() > first + 1 && folder.back() == '/' ? folder.size() - 1 : folder.size();
        return folder.substr(first, last - first);
    }

    static bool IsComponent(std::string_view part)
    {
        return !part.empty() && part != "." && part != ".." && std::none_of(part.begin(), part.end(), [](char c) {
            const auto code = static_cast<unsigned char>(c);
            return c == '\\' || code < 0x20U || code == 0x7FU;
        });
    }

    /// The name without '/' in front; nothing if it is none.
    static std::optional<std::string> KeyOf(const std::string& name)
    {
        const std::string key = name.compare(0, 1, "/") == 0 ? name.substr(1) : name;
        std::size_t begin = 0;
        for (std::size_t end = 0; end != std::string::npos; begin = end + 1)
        {
            end = key.find('/', begin);
            if (!IsComponent(std::string_view(key).substr(begin, end == std::string::npos ? end : end - begin)))
            {
                return std::nullopt;
            }
        }
        return key;
    }

    static std::string Checked(const Ta::Place& place, const std::string& name)
    {
        const std::optional<std::string> key = KeyOf(name);
        if (!key.has_value())
        {
            MU_FAIL_AT(place, zERROR_PARAMETER,
                       "\"%s\" is no name of a file. Write folders and name with '/' between them.", name.c_str());
        }
        return *key;
    }

    std::map<std::string, std::vector<z8u>> files;
};

/// A host's persistence: it keeps a store, knows handlers, and calls them back at once.
class PersistingHost : public TaPipe::IToolHost
{
public:
    virtual ~PersistingHost() = default;

    TaPipe::PersistToken RegisterPersistHandler(TaCommon::IPersistHandler* handler,
                                                const std::string& component) override
    {
        Require(MU_HERE, handler);
        auto& entry = handlers.emplace_back(std::make_unique<Handler>(Handler{handler, component}));
        return entry.get();
    }

    void UnregisterPersistHandler(TaPipe::PersistToken token) override
    {
        const auto found =
            std::find_if(handlers.begin(), handlers.end(), [token](const auto& entry) { return entry.get() == token; });
        if (found != handlers.end())
        {
            handlers.erase(found);
        }
        else if (token != nullptr)
        {
            MU_FAIL(zERROR_PARAMETER, "The token is not in use. Give each back once.");
        }
    }

    void RequestPersistSave(TaCommon::IPersistHandler* handler, TaCommon::PersistDomain domain,
                            bool filesComeOrGo) override
    {
        Require(MU_HERE, handler);
        saves.push_back(filesComeOrGo);
        handler->SavePersistDomain(domain, store);
    }

    void RequestPersistLoad(TaCommon::IPersistHandler* handler, TaCommon::PersistDomain domain) override
    {
        Require(MU_HERE, handler);
        ++loads;
        handler->LoadPersistDomain(domain, store);
    }

    /// The components of the handlers that are known, in the order of registration.
    [[nodiscard]] std::vector<std::string> Components() const
    {
        std::vector<std::string> names;
        for (const auto& entry : handlers)
        {
            names.push_back(entry->component);
        }
        return names;
    }

    MemoryStore store;
    std::vector<bool> saves; ///< `filesComeOrGo` of each request to save, in order
    std::size_t loads = 0;   ///< requests to load

private:
    struct Handler
    {
        TaCommon::IPersistHandler* handler;
        std::string component;
    };

    static void Require(const Ta::Place& place, const TaCommon::IPersistHandler* handler)
    {
        if (handler == nullptr)
        {
            MU_FAIL_AT(place, zERROR_MISSING, "There is no handler to call.");
        }
    }

    std::vector<std::unique_ptr<Handler>> handlers;
};
} // namespace Support
