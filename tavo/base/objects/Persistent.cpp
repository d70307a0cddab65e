#include "tavo/base/objects/Persistent.h"

#include "tavo/base/objects/ClassRecord.h"
#include "tavo/base/objects/InputObjectStream.h"
#include "tavo/base/objects/OutputObjectStream.h"
#include "tavo/base/objects/PException.h"

namespace tavo {

Persistent::~Persistent() = default;

const MetaClass* Persistent::getClass()
{
    static MetaClass* persistentMetaClass = nullptr;
    if (!persistentMetaClass)
        initClassRecord(
            createClassRecord<Persistent>(persistentMetaClass, "Persistent", nullptr), Object::getClass(), 1000);
    return persistentMetaClass;
}

const MetaClass* Persistent::getInstanceClass() const
{
    return getClass();
}

void Persistent::write(OutputObjectStream* stream) const
{
    if (!stream)
        throw PException("Persistent::write() - there is no stream to write to");
    stream->writeObject(*this);
}

void Persistent::read(InputObjectStream* stream)
{
    if (!stream)
        throw PException("Persistent::read() - there is no stream to read from");
    stream->readObject(*this);
}

} // namespace tavo
