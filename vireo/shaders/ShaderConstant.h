#pragma once

#include <string>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

/// A constant of a shader: a vector of one to four floats, with the name and the number of the parameter it goes to.
/// ARB programs use the number, Cg programs the name. It calls no GL; GLShader::setConstant takes it. Constants of
/// other lengths can be kept, but no shader uses them.
///
///     ShaderConstant colour("colour", 0, 4);
///     const float yellow[] = {1, 1, 0, 1};
///     colour.setData(yellow);
class VIREO_EXPORT ShaderConstant
{
public:
    /// Makes components of 0. Their number must not be negative.
    ShaderConstant(const std::string& name, int index, int numComponents);

    /// Sets the first four components, one after the other. A constant of fewer deliberately throws std::out_of_range
    /// once it is full; of a longer one the rest stays.
    void setData(const float* values);

    /// Sets component `i`.
    /// @throws std::out_of_range If there is none.
    void setData(unsigned int i, float value);

    /// All components, valid until the constant is assigned to or destroyed.
    /// @throws std::out_of_range If there are none.
    const float* getDataPtr() const;

    std::string getName() const { return name; }
    int getIndex() const { return index; }
    int getNumComponents() const { return numComponents; }

private:
    std::vector<float> data;
    int numComponents;
    int index;
    std::string name;
};

} // namespace tavo
