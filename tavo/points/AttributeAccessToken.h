#pragma once

namespace tavo {

/// Where a PointSet finds an attribute. PointSet::getAAT() looks it up once, so that access to many points needs no
/// names. A token serves every set of the same layout.
///
///     #include <tavo/points/PointSet.h>
///
///     const AttributeAccessToken position = points.getAAT("position");
///     const float* const first = points.get3f(0, position);
class AttributeAccessToken
{
    friend class PointSet;

    explicit AttributeAccessToken(unsigned int offset)
        : m_Offset(offset)
    {}

    unsigned int m_Offset;
};

} // namespace tavo
