#pragma once

#include "tavo/base/objects/Object.h"

namespace tavo {

class InputObjectStream;
class OutputObjectStream;

// The base of objects that can be written to an object stream and read back, through the properties that their classes
// have registered.
class TAVO_BASE_EXPORT Persistent : public Object
{
public:
    const MetaClass* getInstanceClass() const override;
    ~Persistent() override;

    // Appends the object to the stream. Throws PException if the stream is null or the class is not registered.
    virtual void write(OutputObjectStream* stream) const;

    // Takes over the properties of the stream's next object, which must be of this object's very class. Properties that
    // the class does not have are skipped; those that the stream lacks stay as they are, in a new object at their
    // defaults. Throws PException if there is no next object, it is of another class or damaged; then this object and
    // the position of the stream are as they were.
    virtual void read(InputObjectStream* stream);

    // The class record, registered under that of Object, without a factory.
    static const MetaClass* getClass();

protected:
    Persistent() = default;
    Persistent(const Persistent&) = default;
    Persistent& operator=(const Persistent&) = default;
};

} // namespace tavo
