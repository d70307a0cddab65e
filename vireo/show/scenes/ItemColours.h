#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/scenes/ItemChoice.h"
#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/scenes/SentNumbers.h"
#include "vireo/show/scenes/drawnItem.h"

namespace tavo {

// What gives the points or the parts of an item their colours: the colours, and the numbers of every name, that were
// sent for them, and which of these is shown, and how.
class ItemColours
{
public:
    // What numbers belong to, and how many to each.
    struct Fit
    {
        bool areOfParts;
        std::size_t width;
    };

    // The numbers of one name.
    struct Field
    {
        std::string name;
        bool areSentLabels = false;
        bool areLabels = false;                                           // as chosen or else as sent
        SentNumbers values = {};                                          // as many as there are points or parts
        mutable std::optional<std::pair<double, double>> range = {};      // of the values, if it is known
        mutable std::optional<std::pair<double, double>> usualRange = {}; // of most of them
        mutable std::optional<bool> areNumbers = {};                      // any of them, if it is known
        mutable std::optional<std::set<std::int64_t>> categories = {};
    };

    // More different ones are not looked for.
    static constexpr std::size_t MOST_CATEGORIES = 1000;

    // Takes over what was sent. It is used as soon as it fits. Returns whether something else belongs to faces now.
    bool apply(ItemUpdate& update);

    // Uses what fits the shape. Returns whether that has changed.
    bool settle(const ItemShape& shape);

    // What is chosen wins over what was sent. Returns whether anything looks different.
    bool settleStyle(const ItemChoice& chosen);

    // Colours that were sent; null if there are none.
    const NumberTuples* sent() const { return m_Colours.used(); }
    const NumberTuples* waiting() const { return m_Colours.waiting(); }

    // What the program wants to be shown and has not sent; null if there is no such thing.
    const std::string* missing() const { return m_Sent.shown && !has(*m_Sent.shown) ? &*m_Sent.shown : nullptr; }
    bool areSentShown() const;
    void dropSent() { m_Colours = {}; }
    void dropField(const std::string& name)
    {
        std::erase_if(m_Fields, [&name](const Field& field) { return field.name == name; });
    }
    std::optional<RGBA8> sentAt(std::size_t source, std::size_t part) const;

    // In the order in which they came, those that wait too.
    const std::vector<Field>& fields() const { return m_Fields; }

    // Whose numbers are shown; null if none are.
    const Field* shownField() const;

    const std::string& colourMap() const { return m_ColourMap; }

    // Of a volume.
    const OpacityCurve& opacities() const { return m_Opacities; }

    // The numbers that have the first and the last colour.
    std::pair<double, double> rangeOf(const Field& field) const;

    // The different categories among its numbers, and the names of categories.
    const std::set<std::int64_t>& categoriesOf(const Field& field) const;
    const std::map<std::int64_t, std::string>& labelNames() const { return m_LabelNames; }
    // Whether any of its values is finite.
    static bool haveNumbers(const Field& field);

    // "colours", the name of the field, or empty for the one colour.
    std::string nameOfShown() const;

    // Whether each part has one colour.
    bool areOfParts() const;

    // Of numbers of that name, or "colours"; none if they are not as many as the points or the parts.
    std::optional<Fit> fitOf(const NumberTuples& tuples, const std::string& name) const;

    // A few of those that are shown, in the order in which a map has them; none if the one colour is.
    std::vector<RGBA8> swatch() const;

    // Of all vertices as they are drawn, red, green, blue and opacity; none if they have one colour.
    std::vector<unsigned char> ofVertices(const DrawnItem& drawn, std::size_t numVertices, double opacity) const;

private:
    // What was sent of how they are to look.
    struct Style
    {
        std::optional<std::string> shown;
        std::optional<std::pair<double, double>> range;
        std::optional<std::string> colourMap;
        std::optional<OpacityCurve> opacities;
        std::optional<bool> areCategories;
    };

    bool has(const std::string& shown) const;
    void settleRange(const ItemChoice& chosen);
    bool areSentAsLabels(const Field& field) const;
    OpacityCurve opacitiesSent() const;
    bool settleLabels(const ItemChoice& chosen);
    std::vector<RGBA8> swatchAsSent() const;
    std::vector<RGBA8> swatchOf(const Field& field) const;
    template <typename Use>
    static void forEachSource(const DrawnItem& drawn, std::size_t numVertices, bool areOfParts, Use use);
    std::vector<unsigned char> asSent(const DrawnItem& drawn, std::size_t numVertices, double opacity) const;
    std::vector<unsigned char> ofField(
        const Field& field, const DrawnItem& drawn, std::size_t numVertices, double opacity) const;

    std::size_t m_NumPoints = 0; // of the shape
    std::size_t m_NumParts = 0;
    SentNumbers m_Colours;
    std::vector<Field> m_Fields;
    std::set<std::string> m_OnFaces;
    std::map<std::int64_t, std::string> m_LabelNames;
    Style m_Sent;
    std::optional<std::string> m_Shown; // this and the following, as chosen or else as sent
    std::optional<std::pair<double, double>> m_Range;
    bool m_IsVolume = false;
    bool m_IsWhole = false; // the range, as chosen: without it, a volume leaves the least and the greatest out
    std::string m_ColourMap{namesOfColourMaps().front()};
    OpacityCurve m_Opacities = usualOpacities();
};

} // namespace tavo
