#include "tavo/base/objects/Card32ClassProperty.h"

#include <cmath>
#include <limits>

#include "tavo/base/objects/Object.h"

namespace tavo {

Card32ClassProperty::Card32ClassProperty(const char* name, unsigned int version, Position position, Accessor accessor,
    TextConverter converter, unsigned int flags)
    : ClassProperty(name, version, flags)
    , m_Position(position)
    , m_Accessor(accessor)
    , m_Converter(converter)
{}

Card32ClassProperty::~Card32ClassProperty() = default;

void Card32ClassProperty::assign(Object& object, const Object& source) const
{
    object.*m_Position = getValue(source);
}

bool Card32ClassProperty::equal(const Object& a, const Object& b) const
{
    return getValue(a) == getValue(b);
}

Card32 Card32ClassProperty::getHashValue(const Object& object) const
{
    return getValue(object);
}

std::string Card32ClassProperty::getText(const Object& object) const
{
    const Card32 value = getValue(object);
    return m_Converter ? m_Converter(value) : std::to_string(value);
}

QJsonValue Card32ClassProperty::write(const Object& object) const
{
    return qint64{getValue(object)};
}

std::string Card32ClassProperty::getFault(const QJsonValue& value) const
{
    const double number = value.toDouble();
    if (!value.isDouble())
        return "is not a number";
    if (number < 0)
        return "is negative";
    if (number > std::numeric_limits<Card32>::max())
        return "is larger than " + std::to_string(std::numeric_limits<Card32>::max());
    if (number != std::floor(number))
        return "is not a whole number";
    return {};
}

void Card32ClassProperty::read(Object& object, const QJsonValue& value) const
{
    object.*m_Position = static_cast<Card32>(value.toDouble());
}

Card32 Card32ClassProperty::getValue(const Object& object) const
{
    return m_Accessor ? (object.*m_Accessor)() : object.*m_Position;
}

} // namespace tavo
