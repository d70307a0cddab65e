#pragma once

#include "tavo/base/objects/Object.h"

namespace tavo {

class InputObjectStream;
class OutputObjectStream;

/// The base of objects that can be written to an object stream and read back, through their registered properties.
///
///     OutputObjectStream saved;
///     shape.write(&saved);
///     InputObjectStream stream(saved.getText());
///     const std::unique_ptr<Persistent> copy = stream.readObject();
class TAVO_BASE_EXPORT Persistent : public Object
{
public:
    const MetaClass* getInstanceClass() const override;
    ~Persistent() override;

    /// Appends the object to the stream.
    /// @throws PException If the stream is null or the class is not registered.
    virtual void write(OutputObjectStream* stream) const;

    /// Takes over the properties of the stream's next object, which must be of this object's very class. Properties
    /// unknown to the class are skipped; those missing in the stream keep their values.
    /// @throws PException If there is no next object, or it is of another class or damaged. Object and stream are then
    /// as they were.
    virtual void read(InputObjectStream* stream);

    /// The class record, which is registered under that of Object and has no factory.
    static const MetaClass* getClass();

protected:
    Persistent() = default;
    Persistent(const Persistent&) = default;
    Persistent& operator=(const Persistent&) = default;
};

} // namespace tavo
