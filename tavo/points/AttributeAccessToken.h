#pragma once

namespace tavo {

// Where a PointSet finds an attribute, looked up once by PointSet::getAAT() so that access to many points needs no
// names. It serves every set of the same layout.
class AttributeAccessToken
{
    friend class PointSet;

    explicit AttributeAccessToken(unsigned int offset)
        : m_Offset(offset)
    {}

    unsigned int m_Offset;
};

} // namespace tavo
