#pragma once

#include <TaApi/Object.h>
#include <TaApi/Raise.h>
#include <zApi/zMemory.h>
#include <zApi/zSave6.h>

#include <string>

namespace Support
{
/// The bytes that saving an object writes. A failing status is raised.
inline std::string SavedBytes(zObject object)
{
    Ta::Object<void*> stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zSave6_ToStream(object, stream.Get()));
    return {static_cast<const char*>(zMemory_At(stream.Get(), 0)), zMemory_Length(stream.Get())};
}

/// Loads from bytes as `zLoad6_FromStream` does, whose status it returns.
inline zStatus LoadBytes(zObject* object, std::string bytes, zAlloc alloc)
{
    Ta::Object<void*> stream;
    MU_CHECK(zMemory_Construct(stream.Out(), nullptr));
    MU_CHECK(zMemory_Attach(stream.Get(), bytes.data(), 0, bytes.size(), bytes.size()));
    return zLoad6_FromStream(object, stream.Get(), alloc);
}
} // namespace Support
