#include "ParameterTree.h"

#include <Support/Entry.h>
#include <Support/HeapPeak.h>
#include <Support/Require.h>

#include <TaApi/Logging.h>

#include <optional>
#include <string>
#include <string_view>

// The reader of parameters. An input is the text of a document with values for a `ParameterTree`.

namespace
{
using nlohmann::json;
using Ta::Properties::DeliveryReport;
using Ta::Properties::JsonSerializer;

/// Reading asks for no more than this and `PEAK_PER_BYTE` for each byte of the text. The dearest are short keys and
/// empty lists: a key with its node of a map takes 5 bytes of text and over 100 of memory.
constexpr std::size_t PEAK_BASE = std::size_t{64} << 10U;
constexpr std::size_t PEAK_PER_BYTE = 64;

zStatus DropLine(const Ta::Logging::LogRecord& /*record*/, void* /*context*/)
{
    return zOK;
}

/// What `action` gives, or nothing if it raises, which it may with -997 and -999 only.
template <typename Action>
auto Result(const Action& action) -> std::optional<decltype(action())>
{
    try
    {
        return action();
    }
    catch (const Ta::Exception& failure)
    {
        MU_REQUIRE(failure.Status() == zERROR_PARAMETER || failure.Status() == zERROR_MISSING);
        MU_REQUIRE(failure.Message()[0] != '\0');
        return std::nullopt;
    }
}

std::string Values(const ParameterTree& tree)
{
    return JsonSerializer::Serialize(tree.root).dump();
}

std::string Schema(const ParameterTree& tree)
{
    return JsonSerializer::SerializeSchema(tree.root).dump();
}

/// Whether the tree takes the values; if not, it is as it was.
bool Deliver(ParameterTree& tree, const json& values)
{
    const std::string before = Values(tree);
    const auto taken = Result([&] {
        JsonSerializer::Deserialize(tree.root, values);
        return true;
    });
    MU_REQUIRE(taken || Values(tree) == before);
    return taken.has_value();
}

std::optional<DeliveryReport> DeliverKnown(ParameterTree& tree, const json& values)
{
    const std::string before = Values(tree);
    auto report = Result([&] { return JsonSerializer::DeserializeKnown(tree.root, values); });
    MU_REQUIRE(report || Values(tree) == before);
    return report;
}

/// Written and read again, the values are the same, in another tree and in the same.
void CheckRoundTrip(ParameterTree& tree)
{
    const std::string written = Values(tree);
    ParameterTree other;
    MU_REQUIRE(Deliver(other, JsonSerializer::Parse(written)));
    MU_REQUIRE(Values(other) == written);
    MU_REQUIRE(Deliver(tree, JsonSerializer::Parse(written)));
    MU_REQUIRE(Values(tree) == written);
}

void CheckValues(const json& values)
{
    static const std::string schema = Schema(ParameterTree());
    ParameterTree strict;
    ParameterTree lenient;
    const bool isTaken = Deliver(strict, values);
    const auto report = DeliverKnown(lenient, values);
    // The two differ in unknown keys only.
    MU_REQUIRE(isTaken == (report && report->unknownKeys.empty()));
    if (isTaken)
    {
        MU_REQUIRE(Values(strict) == Values(lenient));
    }
    if (report)
    {
        CheckRoundTrip(lenient);
        const auto again = DeliverKnown(lenient, values);
        MU_REQUIRE(again && again->delivered == report->delivered && again->unknownKeys == report->unknownKeys);
    }
    MU_REQUIRE(Schema(lenient) == schema);
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    Ta::Logging::SetLogHandler({DropLine, nullptr});
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const Support::HeapPeak heap;
    const auto document = Result([&] { return JsonSerializer::Parse(text); });
    if (document)
    {
        CheckValues(*document);
        MU_REQUIRE(heap.Bytes() <= PEAK_BASE + PEAK_PER_BYTE * size);
        // A document that is read can be written, and is the same when read again.
        MU_REQUIRE(JsonSerializer::Parse(document->dump()) == *document);
        return 0;
    }
    MU_REQUIRE(heap.Bytes() <= PEAK_BASE + PEAK_PER_BYTE * size);
    return 0;
}
