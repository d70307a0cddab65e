#pragma once

#include "tavo/base/objects/ClassProperty.h"

namespace tavo {

/// A property that is a field of type Card32. A class registers it with the field's position, as seen from Object:
///
///     struct Shape : Object
///     {
///         Card32 m_Size = 0;
///     };
///
///     void addProperties(MetaClass& record)
///     {
///         const auto size = static_cast<Card32ClassProperty::Position>(&Shape::m_Size);
///         record.addProperty(new Card32ClassProperty("m_Size", 1000, size, nullptr, nullptr, 0));
///     }
class TAVO_BASE_EXPORT Card32ClassProperty : public ClassProperty
{
public:
    using Position = Card32 Object::*;
    using Accessor = Card32 (Object::*)() const;
    using TextConverter = std::string (*)(Card32 value);

    /// Names the property and says where it is. The value is read through the accessor, or from the field if that is
    /// null, and always written to the field. The converter makes the text for people; null shows a plain number.
    Card32ClassProperty(const char* name, unsigned int version, Position position, Accessor accessor,
        TextConverter converter, unsigned int flags);
    ~Card32ClassProperty() override;

    void assign(Object& object, const Object& source) const override;
    bool equal(const Object& a, const Object& b) const override;
    Card32 getHashValue(const Object& object) const override;
    std::string getText(const Object& object) const override;
    QJsonValue write(const Object& object) const override;
    std::string getFault(const QJsonValue& value) const override;
    void read(Object& object, const QJsonValue& value) const override;

private:
    Card32 getValue(const Object& object) const;

    Position m_Position;
    Accessor m_Accessor;
    TextConverter m_Converter;
};

} // namespace tavo
