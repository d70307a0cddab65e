#pragma once

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <string>

#include "vireo/show/delivery/NumberArray.h"

namespace tavo {

// Numbers that a call sends, by so many, and what they are, for a person. Null if it sends none.
struct SentToBeSeen
{
    const NumberArray* numbers;
    const char* what;
    std::size_t width = 1;
    double largest = std::numeric_limits<double>::infinity(); // beyond which nothing can be drawn
};

// Why nothing would be seen of what belongs together one by one, for a person: there is none, none is finite, all are
// too far away, or nowhere all are finite. Empty if there is anything to see. The first place where there is ends the
// search.
std::string whyNothingIsSeen(std::initializer_list<SentToBeSeen> all);

} // namespace tavo
