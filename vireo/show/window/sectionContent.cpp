#include "vireo/show/window/sectionContent.h"

#include <QAbstractButton>
#include <QScrollArea>
#include <optional>
#include <utility>
#include <vector>

#include "tavo/base/debug/DebugSection.h"
#include "tavo/points/PointSet.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"
#include "vireo/show/delivery/csvFile.h"

namespace tavo {

namespace {

using Series = std::vector<std::vector<Vector3f>>;

QScrollArea* makeScrollArea(QWidget* widget)
{
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(widget);
    return area;
}

// None if this is not how the object is made.
std::optional<Series> seriesOf(GLEventObject* object)
{
    if (const auto* graphs = dynamic_cast<GLGraphDisplayer*>(object))
        return graphs->getGraphs();
    auto* cloud = dynamic_cast<GLPointCloudDisplayer*>(object);
    if (!cloud || !cloud->getPointSet())
        return std::nullopt;
    Series series(1);
    cloud->getPointSet()->forEach3f("position", [&](const Vector3f& point) { series[0].push_back(point); });
    return series;
}

// The rows, in pieces. Where there are several series the first column counts them.
class SeriesText
{
public:
    explicit SeriesText(Series series)
        : m_Series(std::move(series))
    {}

    QByteArray operator()()
    {
        QByteArray text;
        if (!std::exchange(m_HasHead, true))
            text = m_Series.size() == 1 ? "\"x\",\"y\",\"z\"\n" : "\"graph\",\"x\",\"y\",\"z\"\n";
        for (; m_Number < m_Series.size(); ++m_Number, m_Row = 0)
            for (; m_Row < m_Series[m_Number].size(); ++m_Row) {
                if (text.size() >= CSV_PIECE)
                    return text;
                appendRow(text);
            }
        return text;
    }

private:
    void appendRow(QByteArray& text) const
    {
        if (m_Series.size() != 1)
            text.append(QByteArray::number(qulonglong(m_Number + 1))).append(',');
        const Vector3f& point = m_Series[m_Number][m_Row];
        for (int axis = 0; axis < 3; ++axis) {
            appendNumber(text, point[axis]);
            text.append(axis < 2 ? ',' : '\n');
        }
    }

    Series m_Series;
    std::size_t m_Number = 0;
    std::size_t m_Row = 0;
    bool m_HasHead = false;
};

} // namespace

DockContent contentOf(DebugSection& section)
{
    DockContent content{makeScrollArea(&section), [&section] { return section.getPicture(); }, nullptr, nullptr};
    auto* const widget = qobject_cast<GLEventDisplayerWidget*>(section.getDisplayerWidget());
    if (!widget)
        return content;
    content.saveData = [&section](const QString& file) { return saveSectionData(section, file); };
    if (auto* const button = widget->findChild<QAbstractButton*>("pbConfigure"))
        content.configure = [button] { button->click(); }; // what is shown may have no panel
    return content;
}

std::string saveSectionData(DebugSection& section, const QString& file)
{
    const auto* const widget = qobject_cast<GLEventDisplayerWidget*>(section.getDisplayerWidget());
    std::optional<Series> series = widget ? seriesOf(widget->getGLEventObject()) : std::nullopt;
    return series ? saveCsv(file, tableFormats(), SeriesText(*std::move(series)))
                  : "what is shown has no data to be saved";
}

} // namespace tavo
