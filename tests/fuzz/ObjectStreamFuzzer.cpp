#include <memory>
#include <optional>
#include <vector>

#include "tavo/base/objects/InputObjectStream.h"
#include "tavo/base/objects/OutputObjectStream.h"
#include "tavo/base/objects/PException.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/tavo/base/objects/Shapes.h"

// Any text as an object stream.

namespace {

using namespace tavo;
using vireo_fuzz::require;
using vireo_fuzz::requireGoodMessage;

// Why the stream does not give its next object; nothing if it does.
template <typename Read>
std::optional<std::string> refusalOf(Read read)
{
    try {
        read();
        return std::nullopt;
    } catch (const PException& error) {
        requireGoodMessage(error.what());
        return error.getMessage();
    }
}

// Reads the next object into a box, in a stream of its own.
void checkReceiver(InputObjectStream stream)
{
    Box box = boxOf(10, 20, 30, 40);
    const std::vector<Card32> former = valuesOf(box);
    const auto read = [&] { stream.readObject(box); };
    if (const std::optional<std::string> refusal = refusalOf(read)) {
        require(valuesOf(box) == former, "a refused object leaves its receiver as it was");
        require(refusalOf(read) == refusal, "a refused object leaves the stream at its place");
    }
}

// The next object, with which the stream moves on; null if it is refused.
std::unique_ptr<Persistent> readNext(InputObjectStream& stream)
{
    std::unique_ptr<Persistent> object;
    const auto read = [&] { object = stream.readObject(); };
    if (const std::optional<std::string> refusal = refusalOf(read)) {
        require(refusalOf(read) == refusal, "a refused object leaves the stream at its place");
        stream.skipObject();
    }
    return object;
}

void checkWrittenAgain(const std::vector<std::unique_ptr<Persistent>>& objects)
{
    OutputObjectStream output;
    for (const auto& object : objects)
        output.writeObject(*object);
    InputObjectStream input(output.getText());
    for (const auto& object : objects)
        require(object->equal(input.readObject().get()), "an object that is written and read again is the same");
    require(input.isAtEnd(), "as many objects are read as were written");
}

void readAll(InputObjectStream stream)
{
    std::vector<std::unique_ptr<Persistent>> objects;
    while (!stream.isAtEnd()) {
        checkReceiver(stream);
        if (std::unique_ptr<Persistent> object = readNext(stream))
            objects.push_back(std::move(object));
    }
    require(refusalOf([&] { stream.skipObject(); }).has_value(), "behind the last object there is none");
    checkWrittenAgain(objects);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    registerShapes();
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    std::optional<InputObjectStream> stream;
    refusalOf([&] { stream.emplace(text); });
    if (stream)
        readAll(*stream);
    return 0;
}
