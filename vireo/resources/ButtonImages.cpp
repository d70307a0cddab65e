#include "vireo/resources/ButtonImages.h"

#include <QtEndian>
#include <QtGlobal>

QT_BEGIN_NAMESPACE
// Exported by Qt for the sources that its resource compiler writes; no header declares it.
Q_CORE_EXPORT bool qRegisterResourceData(
    int version, const unsigned char* tree, const unsigned char* names, const unsigned char* data);
QT_END_NAMESPACE

namespace tavo {

// The resource compiler's binary output for vireo.qrc. Its C++ output would register itself when the library is loaded;
// the images are to be there from initVireo on.
extern const unsigned char buttonImages[];

void registerButtonImages()
{
    // The binary starts with four big-endian words behind its four-byte mark: version, and where the parts begin.
    const auto word = [](int i) { return qFromBigEndian<quint32>(buttonImages + 4 * i); };
    const unsigned char* const tree = buttonImages + word(2);
    const unsigned char* const data = buttonImages + word(3);
    const unsigned char* const names = buttonImages + word(4);
    qRegisterResourceData(static_cast<int>(word(1)), tree, names, data);
}

} // namespace tavo
