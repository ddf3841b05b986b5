#include <Host/Lzf.h>

#include <algorithm>
#include <cstdint>

namespace Mu::Host
{
namespace
{
constexpr std::string_view endsEarly = "the packed bytes end in the middle of an instruction";
constexpr std::string_view tooMuch = "more bytes come out than are stated";

class Unpacking
{
public:
    Unpacking(std::span<const char> packed, std::span<char> unpacked)
        : source(packed)
        , target(unpacked)
    {
    }

    /// What is wrong; empty if nothing is.
    std::string_view Step()
    {
        const std::uint8_t control = Next();
        return control < 32 ? Copy(std::size_t{control} + 1) : Repeat(control);
    }

    std::size_t Read() const
    {
        return read;
    }

    bool IsFull() const
    {
        return written == target.size();
    }

private:
    std::uint8_t Next()
    {
        return static_cast<std::uint8_t>(source[read++]);
    }

    std::string_view Copy(std::size_t length)
    {
        if (length > source.size() - read)
        {
            return endsEarly;
        }
        if (length > target.size() - written)
        {
            return tooMuch;
        }
        std::copy_n(source.data() + read, length, target.data() + written);
        read += length;
        written += length;
        return {};
    }

    std::string_view Repeat(std::uint8_t control)
    {
        constexpr std::size_t longLength = 7;
        std::size_t length = control >> 5U;
        if (source.size() - read < (length == longLength ? 2U : 1U))
        {
            return endsEarly;
        }
        length += length == longLength ? Next() : 0U;
        length += 2;
        const std::size_t back = ((control & 31U) << 8U) + Next() + std::size_t{1};
        if (back > written)
        {
            return "bytes are to be taken from before the first one";
        }
        if (length > target.size() - written)
        {
            return tooMuch;
        }
        // Byte by byte, as what is taken may reach into what it gives.
        for (std::size_t i = 0; i < length; ++i, ++written)
        {
            target[written] = target[written - back];
        }
        return {};
    }

    std::span<const char> source;
    std::span<char> target;
    std::size_t read = 0;
    std::size_t written = 0;
};
} // namespace

std::optional<LzfFault> UnpackLzf(std::span<const char> packed, std::span<char> unpacked)
{
    Unpacking unpacking(packed, unpacked);
    while (unpacking.Read() < packed.size())
    {
        const std::size_t place = unpacking.Read();
        const std::string_view problem = unpacking.Step();
        if (!problem.empty())
        {
            return LzfFault{place, problem};
        }
    }
    return unpacking.IsFull() ? std::nullopt
                              : std::optional(LzfFault{packed.size(), "fewer bytes come out than are stated"});
}
} // namespace Mu::Host
