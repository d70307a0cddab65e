#pragma once

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <set>
#include <string>
#include <string_view>

#include "vireo/show/delivery/NumberArray.h"

namespace tavo {

// Whether one of the words of a name, such as "segment_index" or "ClassId", says that numbers tell apart instead of
// measuring.
inline bool isNameOfCategories(std::string_view name)
{
    constexpr std::array<std::string_view, 17> WORDS = {"index", "idx", "indices", "id", "ids", "label", "labels",
        "class", "classes", "classification", "segment", "segments", "cluster", "clusters", "category", "categories",
        "type"};
    std::string word;
    bool isFound = false;
    const auto end = [&] {
        isFound = isFound || std::find(WORDS.begin(), WORDS.end(), word) != WORDS.end();
        word.clear();
    };
    bool wasLower = false;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (!std::isalpha(byte) || (wasLower && std::isupper(byte)))
            end();
        if (std::isalpha(byte))
            word += static_cast<char>(std::tolower(byte));
        wasLower = std::islower(byte) != 0;
    }
    end();
    return isFound;
}

// Whether numbers of that name are better shown as categories: a few whole numbers.
inline bool lookLikeCategories(std::string_view name, const NumberArray& numbers)
{
    constexpr std::size_t MOST = 20;
    if (numbers.isEmpty() || !isNameOfCategories(name))
        return false;
    return numbers.visit([](const auto* values, std::size_t size) {
        std::set<double> different;
        for (std::size_t i = 0; i < size; ++i) {
            const auto value = static_cast<double>(values[i]);
            if (!std::isfinite(value) || value != std::floor(value))
                return false;
            if (different.insert(value).second && different.size() > MOST)
                return false;
        }
        return true;
    });
}

} // namespace tavo
