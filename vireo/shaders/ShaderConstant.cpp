#include "vireo/shaders/ShaderConstant.h"

#include "tavo/base/math/checkedAt.h"

namespace tavo {

ShaderConstant::ShaderConstant(const std::string& name, int index, int numComponents)
    : data(static_cast<std::size_t>(numComponents))
    , numComponents(numComponents)
    , index(index)
    , name(name)
{}

void ShaderConstant::setData(const float* values)
{
    for (unsigned int i = 0; i < 4; ++i)
        setData(i, values[i]);
}

void ShaderConstant::setData(unsigned int i, float value)
{
    checkedAt(data, i) = value;
}

const float* ShaderConstant::getDataPtr() const
{
    return &checkedAt(data, 0);
}

} // namespace tavo
