#pragma once

#include <TaPipe/TpGraphicElement.h>
#include <TaPipe/TpGraphicField.h>

#include <zApi/zObjectType.h>

#include <tuple>

// For those who make elements. An element is a record of plain values and, if it needs one, an object beside it. The
// record lists its members in `FIELDS`, in the order in which they are saved, and says in `CONTENT` what the object is.

/// The object beside the values of an element.
enum class TpContent
{
    None,
    Points, ///< a `zArray1` of `zPoint3d32f`
    Text,   ///< a `zString`, or null for the empty text
};

template <typename Values>
struct TpElementClass : zObjectClass
{
    Values values;
    zObject content; ///< holds a reference: the points of a set, the text of a label; null if there is none
};

template <typename Values>
void TpElement_Release(zObject object) noexcept
{
    zObjectType_Put(&static_cast<TpElementClass<Values>*>(object)->content, nullptr);
}

template <typename Values>
zStatus TpElement_Clone(zObject object, zAlloc alloc, zObject* clone)
{
    const auto* const source = static_cast<const TpElementClass<Values>*>(object);
    TpElementClass<Values>* made = nullptr;
    zTRY(zObjectType_New(source->type, alloc, &made));
    made->values = source->values;
    return zObjectType_Finish(made, xzObject_CloneImpl(&made->content, source->content, alloc), clone);
}

template <typename Values>
zStatus TpElement_Save(zObject object, zDat6Writer* writer)
{
    const auto* const element = static_cast<const TpElementClass<Values>*>(object);
    zStatus status = zOK;
    const auto write = [&](auto member) { return (status = TpField_Write(writer, element->values.*member)) == zOK; };
    std::apply([&](auto... members) { static_cast<void>((write(members) && ...)); }, Values::FIELDS);
    return status != zOK || Values::CONTENT == TpContent::None ? status : zDat6_WriteObject(writer, element->content);
}

/// Reads the object beside the values of an element into `*object`. -984 if it is not what `content` says.
[[nodiscard]] zStatus TpElement_LoadContent(zDat6Reader* reader, TpContent content, zAlloc alloc, zObject* object);

template <typename Values>
zStatus TpElement_Load(zDat6Reader* reader, zType type, zAlloc alloc, zObject* object)
{
    TpElementClass<Values>* made = nullptr;
    zTRY(zObjectType_New(type, alloc, &made));
    zStatus status = zOK;
    const auto read = [&](auto member) { return (status = TpField_Read(reader, &(made->values.*member))) == zOK; };
    std::apply([&](auto... members) { static_cast<void>((read(members) && ...)); }, Values::FIELDS);
    status = status == zOK ? TpElement_LoadContent(reader, Values::CONTENT, alloc, &made->content) : status;
    return zObjectType_Finish(made, status, object);
}

/// The operations of an element's type object.
template <typename Values>
inline constexpr zObjectOps TpElement_Ops = {TpElement_Release<Values>, TpElement_Clone<Values>, TpElement_Save<Values>,
                                             TpElement_Load<Values>};

/// Makes an element of `values`. It takes over the reference of `content` if it succeeds.
template <typename Values>
[[nodiscard]] zStatus TpElement_Make(zType type, const Values& values, zObject content, zAlloc alloc, zObject* element)
{
    TpElementClass<Values>* made = nullptr;
    zTRY(zObjectType_New(type, alloc, &made));
    made->values = values;
    made->content = content;
    *element = made;
    return zOK;
}

/// Makes an element without content from the values that are the default of its record. -999 if `element` is null.
template <typename Values>
[[nodiscard]] zStatus TpElement_MakeDefault(zType type, zAlloc alloc, zObject* element)
{
    return element == nullptr ? zERROR_MISSING : TpElement_Make(type, Values{}, nullptr, alloc, element);
}

/// Stores a `zArray1` with a copy of `count` points in `*array`.
[[nodiscard]] zStatus TpElement_CopyPoints(const zPoint3d32f* points, std::size_t count, zAlloc alloc, zObject* array);

/// Makes an element whose content is a copy of `count` points. -999 if `element` is null, or `points` while there are
/// some; -997 beyond `TpGRAPHIC_MAX_POINTS`.
template <typename Values>
[[nodiscard]] zStatus TpElement_MakeOfPoints(zType type, const Values& values, const zPoint3d32f* points,
                                             std::size_t count, zAlloc alloc, zObject* element)
{
    if (element == nullptr)
    {
        return zERROR_MISSING;
    }
    zObject array = nullptr;
    zTRY(TpElement_CopyPoints(points, count, alloc, &array));
    const zStatus made = TpElement_Make(type, values, array, alloc, element);
    if (made != zOK)
    {
        static_cast<void>(xzObject_DestroyImpl(array));
    }
    return made;
}

/// The element's record of values; null if it is not of `type`.
template <typename Values>
[[nodiscard]] Values* TpElement_Values(zObject element, zType type)
{
    auto* const object = zObjectType_Cast<TpElementClass<Values>>(element, type);
    return object == nullptr ? nullptr : &object->values;
}

/// The object beside the element's values; null if it is not of `type`.
template <typename Values>
[[nodiscard]] zObject TpElement_Content(zObject element, zType type)
{
    const auto* const object = zObjectType_Cast<TpElementClass<Values>>(element, type);
    return object == nullptr ? nullptr : object->content;
}

/// Sets a value. -997 if the element is not of `type`.
template <typename Values, typename Value>
[[nodiscard]] zStatus TpElement_Set(zObject element, zType type, Value Values::*member, const Value& value)
{
    auto* const values = TpElement_Values<Values>(element, type);
    if (values == nullptr)
    {
        return zERROR_PARAMETER;
    }
    values->*member = value;
    return zOK;
}

/// A value, all zero if the element is not of `type`.
template <typename Values, typename Value>
[[nodiscard]] Value TpElement_Get(zObject element, zType type, Value Values::*member)
{
    const auto* const values = TpElement_Values<Values>(element, type);
    return values == nullptr ? Value{} : values->*member;
}
