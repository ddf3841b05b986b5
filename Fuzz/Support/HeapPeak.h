#pragma once

#include <cstddef>

namespace Support
{
/// Measures what `new` holds, for readers that take no allocator. A program that uses it is built with HeapPeak.cpp,
/// which replaces the operators for the whole process; one measurement at a time.
class HeapPeak
{
public:
    HeapPeak();

    /// The most bytes that lived at one time since construction, beyond those that lived before.
    [[nodiscard]] std::size_t Bytes() const;

private:
    std::size_t before;
};
} // namespace Support
