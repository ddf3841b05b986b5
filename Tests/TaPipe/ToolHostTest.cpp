#include <Support/MemoryStore.h>
#include <Support/RecordingHost.h>

#include <gtest/gtest.h>

using namespace Support;

namespace
{
using TaCommon::PersistDomain;

/// Notes how it is called back, and keeps a count in the store.
class CountingHandler final : public TaCommon::IPersistHandler
{
public:
    [[nodiscard]] std::string Component() const override
    {
        return "Counting";
    }

    void InitPersistDomain(PersistDomain /*domain*/, TaCommon::IPersistStore& /*store*/) override
    {
        calls.emplace_back("init");
    }

    void LoadPersistDomain(PersistDomain domain, const TaCommon::IPersistStore& store) override
    {
        calls.push_back("load " + std::to_string(static_cast<int>(domain)));
        count = store.Exists("/count") ? store.Read("/count").at(0) : z8u{0};
    }

    void SavePersistDomain(PersistDomain domain, TaCommon::IPersistStore& store) override
    {
        calls.push_back("save " + std::to_string(static_cast<int>(domain)));
        store.Write("/count", &count, 1);
    }

    std::vector<std::string> calls;
    z8u count = 0;
};

/// A host that keeps a store and has no use for messages.
class StoringHost final : public PersistingHost
{
public:
    TaPipe::IOutputReceiver& OutputReceiver() override
    {
        return receiver;
    }

private:
    RecordingHost receiver;
};

struct Refusal
{
    zStatus status = zOK;
    std::string what;
    std::string function;
};

template <typename Act>
Refusal RefusalOf(const Act& act)
{
    try
    {
        act();
    }
    catch (const Ta::Exception& exception)
    {
        return {exception.Status(), exception.Message(), exception.Function()};
    }
    return {};
}
} // namespace

TEST(ToolHost, Without_a_store_refuses_what_needs_one)
{
    RecordingHost recording;
    TaPipe::IToolHost& host = recording;
    CountingHandler handler;
    int token = 0;
    const std::vector<std::pair<std::string, Refusal>> refusals = {
        {"RegisterPersistHandler", RefusalOf([&] { host.RegisterPersistHandler(&handler, "Counting"); })},
        {"UnregisterPersistHandler", RefusalOf([&] { host.UnregisterPersistHandler(&token); })},
        {"RequestPersistSave", RefusalOf([&] { host.RequestPersistSave(&handler, PersistDomain::Files, true); })},
        {"RequestPersistLoad", RefusalOf([&] { host.RequestPersistLoad(&handler, PersistDomain::Files); })}};
    for (const auto& [operation, refusal] : refusals)
    {
        EXPECT_EQ(refusal.status, zERROR_INTERFACE) << operation;
        EXPECT_EQ(refusal.what, "The host keeps no persistent store.") << operation;
        EXPECT_EQ(refusal.function, "TaPipe::IToolHost::" + operation);
    }
    EXPECT_TRUE(handler.calls.empty());
}

TEST(ToolHost, Without_a_store_lets_those_go_that_were_never_registered)
{
    RecordingHost recording;
    TaPipe::IToolHost& host = recording;
    EXPECT_NO_THROW(host.UnregisterPersistHandler(nullptr));
}

TEST(PersistingHost, Calls_back_within_the_request)
{
    StoringHost host;
    CountingHandler handler;
    handler.count = 7;
    host.RequestPersistSave(&handler, PersistDomain::Files, false);
    handler.count = 0;
    host.RequestPersistLoad(&handler, PersistDomain::Files);
    EXPECT_EQ(handler.count, 7);
    EXPECT_EQ(handler.calls, (std::vector<std::string>{"save 1", "load 1"}));
    EXPECT_EQ(host.saves, std::vector<bool>{false});
    EXPECT_EQ(host.loads, 1U);
}

TEST(PersistingHost, Knows_handlers_until_their_token_comes_back)
{
    StoringHost host;
    CountingHandler first;
    CountingHandler second;
    TaPipe::PersistToken const firstToken = host.RegisterPersistHandler(&first, "First");
    TaPipe::PersistToken const secondToken = host.RegisterPersistHandler(&second, "Second");
    EXPECT_NE(firstToken, nullptr);
    EXPECT_NE(firstToken, secondToken);
    EXPECT_EQ(host.Components(), (std::vector<std::string>{"First", "Second"}));
    host.UnregisterPersistHandler(firstToken);
    host.UnregisterPersistHandler(nullptr);
    EXPECT_EQ(host.Components(), std::vector<std::string>{"Second"});
    EXPECT_EQ(RefusalOf([&] { host.UnregisterPersistHandler(firstToken); }).status, zERROR_PARAMETER);
}

TEST(PersistingHost, Requests_without_a_handler_are_refused)
{
    StoringHost host;
    EXPECT_EQ(RefusalOf([&] { host.RegisterPersistHandler(nullptr, "First"); }).status, zERROR_MISSING);
    EXPECT_EQ(RefusalOf([&] { host.RequestPersistSave(nullptr, PersistDomain::Files, true); }).status, zERROR_MISSING);
    EXPECT_EQ(RefusalOf([&] { host.RequestPersistLoad(nullptr, PersistDomain::Files); }).status, zERROR_MISSING);
    EXPECT_TRUE(host.Components().empty());
}

TEST(PersistingHost, What_a_handler_raises_comes_through)
{
    class FailingHandler final : public TaCommon::IPersistHandler
    {
    public:
        [[nodiscard]] std::string Component() const override
        {
            return "Failing";
        }

        void InitPersistDomain(PersistDomain /*domain*/, TaCommon::IPersistStore& /*store*/) override {}

        void LoadPersistDomain(PersistDomain /*domain*/, const TaCommon::IPersistStore& store) override
        {
            static_cast<void>(store.Read("/nothing"));
        }

        void SavePersistDomain(PersistDomain /*domain*/, TaCommon::IPersistStore& store) override
        {
            store.Delete("..");
        }
    };

    StoringHost host;
    FailingHandler handler;
    EXPECT_EQ(RefusalOf([&] { host.RequestPersistLoad(&handler, PersistDomain::Files); }).status, zERROR_MISSING);
    EXPECT_EQ(RefusalOf([&] { host.RequestPersistSave(&handler, PersistDomain::Files, true); }).status,
              zERROR_PARAMETER);
}
