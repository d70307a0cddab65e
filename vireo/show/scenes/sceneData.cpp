#include "vireo/show/scenes/sceneData.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "vireo/show/delivery/csvFile.h"
#include "vireo/show/scenes/SceneItem.h"
#include "vireo/show/volumes/TransferFunction.h"
#include "vireo/show/volumes/niftiFile.h"

namespace tavo {

namespace {

NumberTuples tuplesOf(std::vector<double> numbers)
{
    const auto kept = std::make_shared<const std::vector<double>>(std::move(numbers));
    return {NumberArray(kept, kept->data(), kept->size(), NumberType::Float64), 3};
}

// Three arrows, which are what is seen of it.
void takeAxes(ItemShape& frame)
{
    std::vector<double> origins;
    std::vector<double> axes;
    for (std::size_t column = 0; column < 3; ++column)
        for (std::size_t row = 0; row < 3; ++row) {
            origins.push_back(frame.frame.at(row, 3));
            axes.push_back(frame.frame.at(row, column));
        }
    frame.points = tuplesOf(std::move(origins));
    frame.ends = tuplesOf(std::move(axes));
}

// The rows of one item.
class ItemRows
{
public:
    ItemRows(std::string path, ItemData data)
        : m_Path(std::move(path))
        , m_Data(std::move(data))
    {
        ItemShape& shape = m_Data.shape;
        if (shape.kind == ItemKind::Frame)
            takeAxes(shape);
        add({"x", "y", "z"}, shape.points, false);
        if (shape.kind == ItemKind::Boxes)
            add({"max x", "max y", "max z"}, shape.ends, false);
        else if (shape.ends.size() > 0)
            add({"direction x", "direction y", "direction z"}, shape.ends, false);
        for (const ItemData::Numbers& numbers : m_Data.numbers)
            add(numbers.names, numbers.tuples, numbers.areOfParts);
        if (shape.kind == ItemKind::Text)
            add({"text"}, {}, false);
        m_HaveParts = shape.kind == ItemKind::Mesh || std::any_of(m_Columns.begin(), m_Columns.end(),
                                                          [](const Column& column) { return column.isOfParts; });
        if (m_HaveParts)
            add({"vertices"}, {}, true);
    }

    void addNames(std::vector<std::string>& names) const
    {
        for (const Column& column : m_Columns)
            if (std::find(names.begin(), names.end(), column.name) == names.end())
                names.push_back(column.name);
    }

    // In the order of these names.
    void setOrder(const std::vector<std::string>& names)
    {
        for (const std::string& name : names) {
            const auto found = std::find_if(
                m_Columns.begin(), m_Columns.end(), [&name](const Column& column) { return column.name == name; });
            m_Order.push_back(found != m_Columns.end() ? &*found : nullptr);
        }
    }

    // False behind the last one.
    bool appendRow(QByteArray& text, bool hasPath)
    {
        const std::size_t numPoints = m_Data.shape.points.size();
        const bool isPart = m_Row >= numPoints;
        const std::size_t i = isPart ? m_Row - numPoints : m_Row;
        if (isPart && (!m_HaveParts || i >= m_Data.shape.numParts()))
            return false;
        if (hasPath)
            text += quotedCell(m_Path);
        for (std::size_t cell = 0; cell < m_Order.size(); ++cell) {
            text += cell > 0 || hasPath ? "," : "";
            if (const Column* const column = m_Order[cell]; column && column->isOfParts == isPart)
                appendCell(text, *column, i);
        }
        text += '\n';
        ++m_Row;
        return true;
    }

private:
    struct Column
    {
        std::string name;
        NumberTuples tuples;
        std::size_t component;
        bool isOfParts;
    };

    // A name that is taken already is told apart by a number.
    void add(const std::vector<std::string>& names, const NumberTuples& tuples, bool areOfParts)
    {
        for (std::size_t i = 0; i < names.size(); ++i) {
            std::string name = names[i];
            for (int number = 2; hasColumn(name); ++number)
                name = names[i] + ' ' + std::to_string(number);
            m_Columns.push_back({name, tuples, i, areOfParts});
        }
    }

    bool hasColumn(const std::string& name) const
    {
        return std::any_of(
            m_Columns.begin(), m_Columns.end(), [&name](const Column& column) { return column.name == name; });
    }

    // Columns without numbers have texts.
    void appendCell(QByteArray& text, const Column& column, std::size_t i)
    {
        if (column.tuples.numbers.isEmpty())
            return column.isOfParts ? appendVertices(text, i) : appendText(text);
        column.tuples.numbers.visit([&](const auto* numbers, std::size_t) {
            appendNumber(text, numbers[i * column.tuples.width + column.component]);
        });
    }

    void appendText(QByteArray& text) { text += quotedCell(m_Data.shape.text); }

    void appendVertices(QByteArray& text, std::size_t part)
    {
        const ItemShape& shape = m_Data.shape;
        if (shape.kind != ItemKind::Mesh) {
            const std::size_t first = shape.kind == ItemKind::Segments ? 2 * part : part;
            appendNumber(text, first);
            text += ' ';
            appendNumber(text, first + 1);
            return;
        }
        const std::size_t size = shape.numCornersOf(part);
        for (std::size_t corner = 0; corner < size; ++corner, ++m_Vertex) {
            text += corner > 0 ? " " : "";
            appendNumber(text, static_cast<std::size_t>(shape.faces.numbers[m_Vertex]));
        }
    }

    std::string m_Path;
    ItemData m_Data;
    std::vector<Column> m_Columns;
    std::vector<const Column*> m_Order; // null where the item has no such column
    bool m_HaveParts = false;
    std::size_t m_Row = 0;
    std::size_t m_Vertex = 0; // of all faces that were written
};

// Writes a table of items, piece by piece.
class SceneRows
{
public:
    explicit SceneRows(const std::map<std::string, ItemData>& items)
        : m_HasPath(items.size() > 1)
    {
        std::vector<std::string> names{"x", "y", "z"};
        for (const auto& [path, data] : items) {
            m_Items.push_back(std::make_shared<ItemRows>(path, data));
            m_Items.back()->addNames(names);
        }
        m_Text += m_HasPath ? quotedCell("path") : "";
        for (std::size_t i = 0; i < names.size(); ++i)
            m_Text += (i > 0 || m_HasPath ? "," : "") + quotedCell(names[i]);
        m_Text += '\n';
        for (const std::shared_ptr<ItemRows>& item : m_Items)
            item->setOrder(names);
    }

    QByteArray operator()()
    {
        while (m_Next < m_Items.size() && m_Text.size() < CSV_PIECE)
            if (!m_Items[m_Next]->appendRow(m_Text, m_HasPath))
                ++m_Next;
        return std::exchange(m_Text, {});
    }

private:
    bool m_HasPath;
    std::vector<std::shared_ptr<ItemRows>> m_Items; // functions are copied
    QByteArray m_Text;
    std::size_t m_Next = 0;
};

} // namespace

std::function<QByteArray()> sceneAsText(const std::map<std::string, ItemData>& items)
{
    return SceneRows(items);
}

namespace {

// Whichever of a volume the file has.
std::string saveVolume(const QString& file, const std::map<std::string, SceneItem>& items)
{
    const bool isFunction = isTransferFunctionFile(file);
    const SceneItem* volume = nullptr;
    std::size_t numVolumes = 0;
    for (const auto& [path, item] : items)
        if (item.isVolume()) {
            volume = &item;
            ++numVolumes;
        }
    if (numVolumes != 1)
        return (isFunction ? "a .json file has the transfer function of one volume, and the scene has "
                           : "a .nii file has one volume, and the scene ") +
               std::to_string(numVolumes);
    if (!isFunction)
        return saveNifti(file, *volume);
    const ItemState state = volume->state();
    if (state.numbers.isEmpty() && !state.areLabels)
        return "no numbers of the volume have a transfer function";
    return saveTransferFunction(file, {state.colourMap, state.range, state.opacities, state.areLabels});
}

} // namespace

std::string saveScene(const QString& file, const std::map<std::string, SceneItem>& items)
{
    if (isNiftiFile(file) || isTransferFunctionFile(file))
        return saveVolume(file, items);
    std::map<std::string, ItemData> saved;
    for (const auto& [path, item] : items)
        if (const std::optional<ItemData> data = item.data())
            saved.emplace(path, *data);
    return saveCsv(file, dataFormatsOf(ViewKind::Scene), sceneAsText(saved));
}

} // namespace tavo
