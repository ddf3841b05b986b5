#pragma once

#include <Support/CountingAlloc.h>
#include <Support/SavedBytes.h>

#include <TaPipe/TpTypes.h>

#include <xxhash.h>

#include <gtest/gtest.h>

#include <string>

// Containers made by hand, and what comes of loading them.

namespace Support
{
/// Loads with all types known.
inline zStatus Load(zObject* object, std::string bytes, zAlloc alloc)
{
    MU_CHECK(TaPipe_RegisterTypes());
    return LoadBytes(object, std::move(bytes), alloc);
}

/// Bytes that are not to be loaded give a failing status and leave nothing behind.
inline void ExpectRefused(const std::string& bytes)
{
    const CountingAlloc alloc;
    zObject object = nullptr;
    EXPECT_NE(Load(&object, bytes, alloc.Get()), zOK);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(alloc.LiveBlocks(), 0U);
}

inline std::string Number(z64u number)
{
    return {reinterpret_cast<const char*>(&number), sizeof(number)};
}

inline std::string Name(const std::string& text)
{
    return Number(text.size()) + text;
}

inline std::string Container(const std::string& content, z64u version = 1)
{
    return std::string("zDat6\r\n\x1A", 8) + Number(version) + content + Number(0);
}

/// A container with another checksum: that of its bytes.
inline std::string Sealed(const std::string& container)
{
    const std::string content = container.substr(0, container.size() - sizeof(z64u));
    return content + Number(XXH3_64bits(content.data(), content.size()));
}
} // namespace Support
