#pragma once

#include <string>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

// A constant of a shader: a vector of one to four floats, with the name and the number of the program's parameter that
// it goes to. ARB programs go by the number, Cg programs by the name. A value that calls no GL; a shader takes it by
// setConstant, and constants of other lengths are kept, but no shader uses them.
class VIREO_EXPORT ShaderConstant
{
public:
    // All components are 0. Their number must not be negative.
    ShaderConstant(const std::string& name, int index, int numComponents);

    // Sets four components, one after the other, whatever their number. A constant of fewer than four deliberately
    // throws std::out_of_range once it is full; one of more keeps what comes after the fourth.
    void setData(const float* values);

    // Sets component i. Throws std::out_of_range if there is none.
    void setData(unsigned int i, float value);

    // The first component, with the others behind it, until the constant is assigned to or destroyed. Throws
    // std::out_of_range if there is none.
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
