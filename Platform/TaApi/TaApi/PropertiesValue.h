#pragma once

#include <TaApi/Datum.h>
#include <TaApi/Node.h>
#include <TaApi/NodeVisitor.h>
#include <TaApi/Raise.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Ta::Properties
{
/// A node with a value, seen without its C++ type.
class MU_PLATFORM_EXPORT Leaf : public Node
{
public:
    using Node::Node;
    ~Leaf() override;
    void Accept(INodeVisitorConst& visitor) const override;
    void Accept(INodeVisitor& visitor) override;

    [[nodiscard]] virtual DatumKind Kind() const noexcept = 0;
    [[nodiscard]] virtual Datum Read() const = 0;

    /// Whether `Write` would be right: kind, range of the type, then the node's own validation with its log lines.
    /// @throws Ta::Exception -997 if not
    virtual void Check(const Datum& datum) const = 0;

    /// Stores without the node's own validation. @throws Ta::Exception -997 if kind or range do not fit the type
    virtual void Write(const Datum& datum) = 0;

    /// A plain value of the same type and content, unnamed and without schema.
    [[nodiscard]] virtual std::unique_ptr<Leaf> Clone() const = 0;

protected:
    [[noreturn]] void FailConversion(const Place& place, const Datum& datum) const;
    [[noreturn]] void FailCopy(const Place& place, const Node& other) const;
};

/// A typed leaf. T is bool, an integer, double, std::string, an enumeration, or a vector of std::int64_t, double or
/// std::string.
template <typename T>
class MU_PLATFORM_EXPORT Value : public Leaf
{
public:
    using ValueType = T;

    Value() = default;

    explicit Value(T first)
        : held(std::move(first))
    {
    }

    [[nodiscard]] const T& Get() const noexcept
    {
        return held;
    }

    /// Validates, then stores. @throws Ta::Exception -997 if the node does not take the value; the old one stays
    void Set(const T& newValue)
    {
        CheckValidation(newValue);
        held = newValue;
    }

    /// Stores without validation and its log lines: for the owner of the node.
    void SetUnchecked(const T& newValue)
    {
        held = newValue;
    }

    /// What `Set` does before it stores; a plain value takes everything.
    virtual void CheckValidation(const T& newValue) const
    {
        static_cast<void>(newValue);
    }

    void CopyValues(const Node& other) override
    {
        const auto* source = dynamic_cast<const Value<T>*>(&other);
        if (source == nullptr)
        {
            FailCopy(MU_HERE, other);
        }
        held = source->held;
    }

    [[nodiscard]] DatumKind Kind() const noexcept override
    {
        return static_cast<DatumKind>(Datum(std::in_place_type<DatumType<T>>).index());
    }

    [[nodiscard]] Datum Read() const override
    {
        return ToDatum(held);
    }

    void Check(const Datum& datum) const override
    {
        CheckValidation(Converted(MU_HERE, datum));
    }

    void Write(const Datum& datum) override
    {
        held = Converted(MU_HERE, datum);
    }

    [[nodiscard]] std::unique_ptr<Leaf> Clone() const override
    {
        return std::make_unique<Value<T>>(held);
    }

private:
    [[nodiscard]] T Converted(const Place& place, const Datum& datum) const
    {
        auto converted = FromDatum<T>(datum);
        if (!converted)
        {
            FailConversion(place, datum);
        }
        return *std::move(converted);
    }

    T held{};
};

extern template class Value<bool>;
extern template class Value<int>;
extern template class Value<std::uint32_t>;
extern template class Value<std::size_t>;
extern template class Value<double>;
extern template class Value<std::string>;
extern template class Value<std::vector<std::int64_t>>;
extern template class Value<std::vector<double>>;
extern template class Value<std::vector<std::string>>;
} // namespace Ta::Properties
